// The list grows by one record at a time and keeps no spare room.
#include "render/windows/frame_list.h"

#include <cstring>

namespace veldran {
namespace {

std::size_t bytesFor(std::int32_t count) {
    return static_cast<std::size_t>(count) * sizeof(FrameRecord);
}

bool store(HGLOBAL block, std::int32_t index, const FrameRecord& record) {
    const LockedBlock lock(block);
    if (!lock)
        return false;
    std::memcpy(lock.data() + bytesFor(index), &record, sizeof record);
    return true;
}

} // namespace

int append(FrameList& list, const FrameRecord& record) {
    GlobalBlock block(list.block);
    if (list.count == 0)
        block = allocateGlobal(sizeof record);
    else if (!resizeGlobal(block, bytesFor(list.count + 1))) {
        list.block = block.release();
        return 0;
    }
    if (!store(block.get(), list.count, record)) {
        // A block that was grown stays so; the first one goes.
        list.block = list.count == 0 ? nullptr : block.release();
        return 0;
    }
    list.block = block.release();
    ++list.count;
    return 1;
}

void freeAll(FrameList& list) {
    {
        LockedBlock lock(list.block);
        if (!lock) // once more: nobody else knows the images
            lock = LockedBlock(list.block);
        const auto* records = reinterpret_cast<const FrameRecord*>(lock.data());
        for (std::int32_t i = 0; lock && i < list.count; ++i) {
            GlobalBlock image(records[i].image);
            GlobalBlock mask(records[i].changeMask);
        }
    }
    GlobalBlock block(list.block);
    list = {};
}

} // namespace veldran
