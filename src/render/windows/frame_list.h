// The frames of one animation in order, as the instruments append them and the build driver works through them.
#pragma once

#include "base/windows/global_block.h"

#include <cstddef>
#include <cstdint>

namespace veldran {

// No palette index: the frame has no transparent pixels.
inline constexpr std::uint32_t kNotTransparent = 0xFFFFFFFF;

// One frame. A record in a list owns its two images.
struct FrameRecord {
    HGLOBAL image;
    HGLOBAL changeMask;              // 1 bit: 1 = as in the frame before; null when there is none
    std::uint32_t delay;             // in the host's unit
    std::uint32_t transparent;       // palette index once remapped; before, supercompression keeps a colour here
    std::uint8_t instrumentData[32]; // carried along unchanged
};
static_assert(offsetof(FrameRecord, delay) == 16 && offsetof(FrameRecord, instrumentData) == 24);

// The records in one movable block of exactly `count` records; no block when there are none. The list does not free
// itself: freeAll does, once the build has ended.
struct FrameList {
    HGLOBAL block = nullptr;
    std::int32_t count = 0;
};

// Adds a record at the end. 1, and the record's images belong to the list; 0 when memory is exhausted: the list is as
// it was, and the images stay with the caller.
int append(FrameList& list, const FrameRecord& record);

// Frees every image and the block; the list is empty afterwards.
void freeAll(FrameList& list);

} // namespace veldran
