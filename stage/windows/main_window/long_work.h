// Work that takes time, on a thread of its own, while the window goes on being drawn and answering.
#pragma once

#include "windows/system/handles.h"

#include <atomic>
#include <functional>

namespace stage {

// What the two threads know of each other.
struct WorkState {
    std::atomic<std::size_t> done = 0;
    std::atomic<std::size_t> total = 0; // 0: not known
    std::atomic<bool> isStopped = false;
};

// Answers when `work` has. Until then messages go to `dispatch`, and `show` is called about ten times a second. Throws
// what `work` throws.
void runWork(WorkState& state, const std::function<void()>& work, const std::function<void(MSG& message)>& dispatch,
             const std::function<void()>& show);

} // namespace stage
