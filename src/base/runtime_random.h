// Random numbers that are the same everywhere. A value of its own for each set-up: neither a runtime library nor a host
// can disturb the sequence, and using it disturbs nobody. Core: knows no windows.
#pragma once

#include <cstdint>

namespace veldran {

// The sequence of srand and rand in Microsoft's C runtime: a linear congruential generator of 32 bits. Not for secrets.
class RuntimeRandom {
public:
    explicit RuntimeRandom(std::uint32_t seed) : state_(seed) {}

    // 0 to 32767.
    int next() {
        state_ = state_ * 214013u + 2531011u;
        return static_cast<int>(state_ >> 16 & 0x7FFF);
    }

private:
    std::uint32_t state_;
};

} // namespace veldran
