// Puts the parts that a file holds together to whole pictures, within limits. Shared by all readers.
#pragma once

#include "document/picture.h"
#include "formats/animation_reader.h"

namespace stage {

class FrameCanvas {
public:
    // Throws Failure(FileTrouble) for a canvas beyond the limits, as do the others.
    FrameCanvas(std::uint32_t width, std::uint32_t height, const ReadOptions& options);

    // Counts a frame, and the pixels of a part before they are allocated.
    void reserve(std::uint64_t partPixels);
    // Draws the part into its place, which may reach beyond the canvas, and answers the whole picture. Then the canvas
    // becomes what the frame leaves behind. `part` has width * height pixels. Tells the progress.
    Frame show(const StoredFrame& stored, const Picture& part);

private:
    Picture canvas_;
    std::uint64_t pixelsLeft_;
    std::function<bool(std::uint64_t bytes)> progress_;
    std::uint64_t bytes_ = 0; // of the compressed pixels of all frames so far
};

} // namespace stage
