// Movable global-memory blocks, the currency in which images and lists pass between the plugin and its host. Every
// allocation of one in the plugin goes through this file.
#pragma once

#include "base/owner.h"

#include <cstdint>
#include <span>

#include <windows.h>

namespace veldran {

inline void freeGlobal(HGLOBAL block) {
    GlobalFree(block);
}

using GlobalBlock = Owner<HGLOBAL, freeGlobal>;

// Movable and zeroed; empty when memory is exhausted.
GlobalBlock allocateGlobal(std::size_t bytes);

// Grows or shrinks a movable block; new bytes are zero. False leaves it as it was.
bool resizeGlobal(GlobalBlock& block, std::size_t bytes);

// A block locked for as long as the object lives; owns the lock, not the block.
class LockedBlock {
public:
    LockedBlock() = default;
    // Locks `block`; the object is false when that fails or `block` is null.
    explicit LockedBlock(HGLOBAL block);
    LockedBlock(LockedBlock&& other) noexcept;
    LockedBlock& operator=(LockedBlock&& other) noexcept;
    ~LockedBlock() { unlock(); }

    explicit operator bool() const { return data_ != nullptr; }
    std::uint8_t* data() const { return static_cast<std::uint8_t*>(data_); }
    std::span<std::uint8_t> bytes() const { return {data(), size_}; }

private:
    void unlock();

    HGLOBAL block_ = nullptr;
    void* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace veldran
