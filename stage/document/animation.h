// The document: an animation that was rendered or opened, independent of any file format. It owns all its frames.
// Frames are whole pictures: a difference between frames is the business of the writers and readers alone.
#pragma once

#include "document/frame.h"
#include "document/remembered.h"

#include <string>

namespace stage {

// That a person can choose: GIF89a programs count the repetitions after the first time with 16 bits.
inline constexpr std::uint32_t kMostPlays = 65536;

struct Animation {
    std::uint32_t width = 0;   // pixels, 1 to 65535
    std::uint32_t height = 0;  // pixels, 1 to 65535
    std::vector<Frame> frames; // each of width x height; delays in milliseconds
    std::uint32_t plays = 0;   // how many times it is shown; 0: forever
    std::optional<Rgb>
        background;      // of the document; a GIF names it where it is one of the colours and nothing is transparent
    std::string comment; // UTF-8, for people; may be empty
    std::optional<Remembered> made; // how it was made, when the plugin made it
};

// Sum of the delays in milliseconds.
std::uint64_t totalDelay(const Animation& animation);

// Whether a pixel of any frame lets something shine through.
bool hasTransparency(const Animation& animation);

} // namespace stage
