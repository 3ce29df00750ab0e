// What writers share: the order of the pictures that are shown, without those that change nothing.
#pragma once

#include "document/picture.h"
#include "document/timing.h"
#include "formats/animation_writer.h"

#include <functional>
#include <span>

namespace stage {

// A picture and how long it is shown, which may be the time of several equal frames.
struct Step {
    std::size_t frame = 0; // the first of them
    std::uint32_t delay = 0;
};

using PictureAt = std::function<Picture(std::size_t frame)>;

// The pictures of a file of the format with their delays in milliseconds, when equal frames in a row are one; frames of
// numbered files never are. For GIFs before transparency is cut, which may make a few more frames equal.
std::vector<Step> writtenSteps(const Animation& animation, OutputFormat format);

// How long a file of the format shows the animation's frames.
struct FrameTimes {
    std::vector<std::uint32_t> stored; // ms, of each frame
    // As browsers show it. Where they show frames that are joined for longer than the file says, the first one has it.
    std::vector<std::uint32_t> inBrowsers;
    PlayingTime whole; // of the joined pictures
};
FrameTimes frameTimes(const Animation& animation, OutputFormat format);

// `delays` has one for each frame. Equal frames in a row become one step unless its delay would exceed `longestDelay`.
std::vector<Step> joinedSteps(const Animation& animation, const PictureAt& pictureAt,
                              std::span<const std::uint32_t> delays, std::uint32_t longestDelay);

// Calls `write` with every step, its picture and the next picture, null at the end. False when `progress` stopped it.
bool writeSteps(std::span<const Step> steps, const PictureAt& pictureAt, const WriteProgress& progress,
                const std::function<void(const Step&, const Picture&, const Picture* next)>& write);

} // namespace stage
