// What writers share: the order of the pictures that are shown, without those that change nothing.
#pragma once

#include "core/animation_writer.h"
#include "core/picture.h"

#include <functional>
#include <span>

namespace stage {

// A picture and how long it is shown, which may be the time of several equal frames.
struct Step {
    std::size_t frame = 0; // the first of them
    std::uint32_t delay = 0;
};

using PictureAt = std::function<Picture(std::size_t frame)>;

// `delays` has one for each frame. Equal frames in a row become one step unless its delay would exceed `longestDelay`.
std::vector<Step> joinedSteps(const Animation& animation, const PictureAt& pictureAt,
                              std::span<const std::uint32_t> delays, std::uint32_t longestDelay);

// Calls `write` with every step, its picture and the next picture, null at the end. False when `progress` stopped it.
bool writeSteps(std::span<const Step> steps, const PictureAt& pictureAt, const WriteProgress& progress,
                const std::function<void(const Step&, const Picture&, const Picture* next)>& write);

} // namespace stage
