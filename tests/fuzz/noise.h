// Numbers without a pattern, always the same for the same start.
#pragma once

#include <cstdint>

namespace fuzz {

class Noise {
public:
    explicit Noise(std::uint32_t state) : state_(state) {}
    std::uint8_t next() {
        state_ = state_ * 1664525 + 1013904223;
        return static_cast<std::uint8_t>(state_ >> 24);
    }

private:
    std::uint32_t state_;
};

} // namespace fuzz
