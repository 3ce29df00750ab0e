// Reading GIF, PNG, APNG and MNG files; the one door to the readers. What a file says is never believed before it was
// held against the bytes that are there.
#pragma once

#include "document/animation.h"
#include "document/file_format.h"

#include <functional>
#include <span>

namespace stage {

// What becomes of a frame's place before the next one is drawn.
enum class Disposal : std::uint8_t { Keep, Clear, Restore };
// How a frame's pixels meet those that are there.
enum class Blend : std::uint8_t { Replace, Over };

// A picture as it lies in the file: a part of the canvas.
struct StoredFrame {
    std::uint32_t x = 0; // pixels from the left and the top
    std::uint32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t delay = 0; // ms
    Disposal disposal = Disposal::Keep;
    Blend blend = Blend::Replace;
    std::uint32_t colours = 0; // entries of its palette; 0: none
    std::uint64_t bytes = 0;   // of its compressed pixels
};

struct AnimationFile {
    OutputFormat format = OutputFormat::Gif; // Png: a still PNG
    Animation animation;                     // whole pictures: Rgb, or Rgba when anything shines through
    std::vector<StoredFrame> stored;         // one for each frame
};

struct ReadOptions {
    // A file of some hundred bytes can ask for any amount of memory; beyond this it is refused.
    std::uint64_t pixels = std::uint64_t{1} << 27; // of all frames together, up to 4 bytes each
    // Called after each frame with the bytes of all compressed pixels so far; false stops the work.
    std::function<bool(std::uint64_t bytes)> progress;
};

// Throws Failure(FileTrouble) saying what is wrong: another kind of file, cut off, damaged, more pixels than
// allowed; or that it was stopped.
// Supported of MNG are files of low complexity: PNG pictures with their places, framing and delays, without loops,
// stored objects, differences and JPEG pictures.
AnimationFile readAnimation(std::span<const std::uint8_t> bytes, const ReadOptions& options = {});

} // namespace stage
