// The same work on many things at once, on as many threads as there are processors.
#pragma once

#include <cstddef>
#include <functional>

namespace stage {

// Calls `work` with 0 to count - 1, in any order and from up to `threads` threads (0: one for each processor), and
// answers when all is done. Throws the first of what they throw; what was not begun by then is left out.
void forEachInParallel(std::size_t count, unsigned threads, const std::function<void(std::size_t index)>& work);

} // namespace stage
