// Writes an animated GIF89a frame by frame; the file is a valid GIF after every frame.
// Never reduces colours: frames come with their palettes.
#pragma once

#include "core/frame.h"
#include "core/output_file.h"

#include <string_view>

namespace stage {

struct GifScreen {
    std::uint32_t width = 0;   // 1 to 65535
    std::uint32_t height = 0;  // 1 to 65535
    unsigned bitsPerPixel = 8; // 1 to 8; the global palette has 2^bitsPerPixel entries
    Palette palette{};
    std::uint8_t backgroundIndex = 0;
};

// What becomes of a frame before the next is drawn; the values are those of GIF89a.
enum class Disposal : std::uint8_t { Keep = 1, RestoreBackground = 2 };

class GifWriter {
public:
    // Writes the header with the extension that repeats the animation forever. `file` must outlive the writer. Throws
    // Failure: PluginFailed for a screen out of range, FileTrouble from the file; so do the other members.
    GifWriter(OutputFile& file, const GifScreen& screen);

    // An Indexed frame not larger than the screen, drawn at its top left corner. Delays above 65535 are cut to that.
    void addFrame(const Frame& frame, Disposal disposal);
    void addComment(std::string_view text);

private:
    void append(std::vector<std::uint8_t> blocks);

    OutputFile& file_;
    GifScreen screen_;
};

} // namespace stage
