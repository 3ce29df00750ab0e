// Allocation and locking of global memory.
#include "base/windows/global_block.h"

namespace veldran {

GlobalBlock allocateGlobal(std::size_t bytes) {
    return GlobalBlock(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, bytes));
}

bool resizeGlobal(GlobalBlock& block, std::size_t bytes) {
    const HGLOBAL resized = GlobalReAlloc(block.get(), bytes, GMEM_MOVEABLE | GMEM_ZEROINIT);
    if (resized == nullptr)
        return false;
    static_cast<void>(block.release()); // the old handle is gone, or the same
    block.reset(resized);
    return true;
}

LockedBlock::LockedBlock(HGLOBAL block) : block_(block) {
    if (block == nullptr)
        return;
    data_ = GlobalLock(block);
    size_ = data_ != nullptr ? GlobalSize(block) : 0;
}

LockedBlock::LockedBlock(LockedBlock&& other) noexcept
    : block_(other.block_), data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}

LockedBlock& LockedBlock::operator=(LockedBlock&& other) noexcept {
    if (this != &other) {
        unlock();
        block_ = other.block_;
        data_ = std::exchange(other.data_, nullptr);
        size_ = std::exchange(other.size_, 0);
    }
    return *this;
}

void LockedBlock::unlock() {
    if (data_ != nullptr)
        GlobalUnlock(block_);
    data_ = nullptr;
}

} // namespace veldran
