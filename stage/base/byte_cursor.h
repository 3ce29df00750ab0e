// Reads through the bytes of a file from another hand: every step is checked against what is there.
#pragma once

#include "base/failure.h"

#include <cstdint>
#include <span>
#include <string>

namespace stage {

// For what a file says: `what` completes "The file is damaged: ".
inline void requireOfFile(bool condition, const std::string& what) {
    if (!condition)
        throw Failure(ExitCode::FileTrouble, "The file is damaged: " + what + ".");
}

class ByteCursor {
public:
    explicit ByteCursor(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

    std::size_t left() const { return rest_.size(); }
    // Throws Failure(FileTrouble) when fewer bytes are left; so do the others.
    std::span<const std::uint8_t> take(std::size_t count) {
        requireOfFile(count <= rest_.size(), "it ends too early");
        const auto taken = rest_.first(count);
        rest_ = rest_.subspan(count);
        return taken;
    }
    std::uint8_t byte() { return take(1)[0]; }
    std::uint32_t littleShort() {
        const auto b = take(2);
        return b[0] | std::uint32_t{b[1]} << 8;
    }
    std::uint32_t bigShort() {
        const auto b = take(2);
        return std::uint32_t{b[0]} << 8 | b[1];
    }
    std::uint32_t bigNumber() {
        const std::uint32_t high = bigShort();
        return high << 16 | bigShort();
    }

private:
    std::span<const std::uint8_t> rest_;
};

} // namespace stage
