// Shell around the core's pixel work: records in, records out.
#include "host/windows/frame_reduction.h"

#include "base/windows/host_link.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>

namespace veldran {
namespace {

// The records of a list, locked.
class LockedRecords {
public:
    explicit LockedRecords(const FrameList& list) : lock_(list.block), count_(list.count) {}
    explicit operator bool() const { return static_cast<bool>(lock_); }
    FrameRecord* begin() const { return reinterpret_cast<FrameRecord*>(lock_.data()); }
    FrameRecord* end() const { return begin() + count_; }

private:
    LockedBlock lock_;
    std::int32_t count_;
};

bool makeChangeMask(const ImageView& running, FrameRecord& record) {
    const LockedImage frame(record.image);
    if (!frame || frame.view().bits != running.bits)
        return false;
    GlobalBlock mask = createImage(frame.view().width, frame.view().height, 1);
    const LockedImage maskImage(mask.get());
    if (!maskImage)
        return false;
    updateChangeMask(running, frame.view(), maskImage.view());
    GlobalBlock old(record.changeMask);
    record.changeMask = mask.release();
    return true;
}

void fillColourTable(const LockedImage& image, const Palette& palette) {
    auto* out = const_cast<std::uint8_t*>(image.view().colourTable);
    for (const PaletteEntry& entry : palette) {
        *out++ = entry.blue;
        *out++ = entry.green;
        *out++ = entry.red;
        *out++ = 0;
    }
}

// Writes the reserved slot into a remapped frame and answers the frame's transparent index; nothing when its mask
// cannot be locked.
std::optional<std::uint32_t> fillSlot(const FrameRecord& record, bool isFirst, const ImageView& source,
                                      const ImageView& target, const PalettePlan& plan, const SlotWish& wish) {
    if (plan.slot < 0)
        return kNotTransparent;
    const auto slot = static_cast<std::uint8_t>(plan.slot);
    if (!wish.supercompress) {
        mapColourToSlot(target, source, wish.colour, slot);
        return wish.transparent ? slot : kNotTransparent;
    }
    if (isFirst && wish.colour != kNoColour)
        mapColourToSlot(target, source, wish.colour, slot);
    if (record.changeMask == nullptr)
        return slot;
    const LockedImage mask(record.changeMask);
    if (!mask)
        return std::nullopt;
    fillUnchanged(target, mask.view(), slot);
    return slot;
}

// A frame on its way from true colour to the palette. The locks end before the block does.
struct FrameAtWork {
    LockedImage source;
    GlobalBlock image;
    LockedImage target;

    explicit operator bool() const { return source && target; }
    RemapPair pair() const { return {source.view(), target.view()}; }
};

FrameAtWork beginFrame(const FrameRecord& record, const Palette& palette) {
    FrameAtWork frame;
    frame.source = LockedImage(record.image);
    if (!frame.source)
        return frame;
    frame.image = createImage(frame.source.view().width, frame.source.view().height, 8);
    frame.target = LockedImage(frame.image.get());
    if (frame.target)
        fillColourTable(frame.target, palette);
    return frame;
}

// Replaces the record's image by what the frame has become; false leaves the record as it was.
bool finishFrame(FrameRecord& record, bool isFirst, FrameAtWork frame, const PalettePlan& plan, const SlotWish& wish) {
    const auto transparent = fillSlot(record, isFirst, frame.source.view(), frame.target.view(), plan, wish);
    if (!transparent)
        return false;
    record.transparent = *transparent;
    const GlobalBlock old(record.image);
    record.image = frame.image.release();
    frame.source = LockedImage();
    frame.target = LockedImage();
    return true;
}

} // namespace

LockedFrames::LockedFrames(const FrameList& list) {
    const LockedRecords records(list);
    complete_ = static_cast<bool>(records);
    for (const FrameRecord* record = records.begin(); complete_ && record != records.end(); ++record) {
        LockedImage image(record->image);
        complete_ = image && image.view().bits >= 24;
        if (complete_)
            views_.push_back(image.view());
        images_.push_back(std::move(image));
    }
}

bool makeChangeMasks(FrameList& list, Colour transparentColour, const HostParams* host) {
    const LockedRecords records(list);
    if (!records)
        return false;
    const GlobalBlock runningBlock = copyImage(records.begin()->image);
    const LockedImage running(runningBlock.get());
    if (!running)
        return false;
    showProgress(host, 0, list.count);
    for (int i = 1; i < list.count; ++i) {
        FrameRecord& record = records.begin()[i];
        if (!makeChangeMask(running.view(), record))
            return false;
        record.transparent = transparentColour;
        showProgress(host, i, list.count);
    }
    return true;
}

bool remapFrames(FrameList& list, const PalettePlan& plan, const SlotWish& wish, Dithering dithering,
                 const HostParams* host) {
    const LockedRecords records(list);
    if (!records)
        return false;
    Remapper remapper(plan.palette, plan.colours, dithering, plan.slot >= 0 ? colourApart(wish) : kNoColour);
    // The remapper looks back at the last frame of the group before, as it was without the reserved slot: that frame is
    // finished one group later.
    std::deque<FrameAtWork> open;
    int finished = 0;
    const auto finishUntil = [&](std::size_t left) {
        for (; open.size() > left; ++finished) {
            if (!finishFrame(records.begin()[finished], finished == 0, std::move(open.front()), plan, wish))
                return false;
            open.pop_front();
            showProgress(host, finished, list.count);
        }
        return true;
    };
    for (int next = 0; next < list.count;) {
        std::optional<RemapPair> before;
        if (!open.empty())
            before = open.back().pair();
        std::vector<RemapPair> group;
        for (; next < list.count && group.size() < Remapper::kSideBySide; ++next) {
            open.push_back(beginFrame(records.begin()[next], plan.palette));
            if (!open.back())
                return false;
            group.push_back(open.back().pair());
        }
        remapper.remap(group, before ? &*before : nullptr);
        if (!finishUntil(1))
            return false;
    }
    return finishUntil(0);
}

std::optional<FrameSize> largestFrame(const FrameList& list) {
    FrameSize largest{0, 0};
    const LockedRecords records(list);
    if (!records)
        return std::nullopt;
    for (const FrameRecord& record : records) {
        const LockedImage image(record.image);
        if (!image)
            return std::nullopt;
        largest.width = std::max(largest.width, image.view().width);
        largest.height = std::max(largest.height, image.view().height);
    }
    return largest;
}

} // namespace veldran
