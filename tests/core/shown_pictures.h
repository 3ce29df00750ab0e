// What a viewer shows of an animation, however a file divides it into frames: for tests of what is written and read.
#pragma once

#include "document/animation.h"
#include "document/picture.h"

#include <vector>

namespace stage {

struct ShownPicture {
    Picture picture;
    std::uint64_t delay; // ms
    bool operator==(const ShownPicture&) const = default;
};

// Equal pictures in a row are one, shown for the time of all.
inline std::vector<ShownPicture> shownPictures(const Animation& animation) {
    std::vector<ShownPicture> shown;
    for (const Frame& frame : animation.frames) {
        Picture picture = pictureOf(frame);
        if (!shown.empty() && shown.back().picture == picture)
            shown.back().delay += frame.delay;
        else
            shown.push_back({std::move(picture), frame.delay});
    }
    return shown;
}

} // namespace stage
