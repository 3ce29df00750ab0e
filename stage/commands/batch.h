// The text file of the verb batch.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace stage {

struct BatchLine {
    std::size_t number = 0; // from 1
    std::vector<std::string> words;
};

// The lines that ask for something. Words are divided by blanks and tabs; double quotes hold blanks together, and \"
// inside them is a quote, while any other \ stands for itself, as in paths. Throws Failure(WrongUsage) for a quote
// that is not closed.
std::vector<BatchLine> parseBatch(std::string_view text);

} // namespace stage
