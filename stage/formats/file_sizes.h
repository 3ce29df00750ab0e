// How large a file would become, and what each frame costs in it, without writing the file.
#pragma once

#include "document/timing.h"
#include "formats/animation_writer.h"

namespace stage {

struct FileSizes {
    std::uint64_t bytes = 0;
    // Of each frame; 0 for one that is joined with the frame before. Empty when the format joins frames in another way.
    std::vector<std::uint64_t> frames;
};

// Takes the time of writing the file. Nothing when `progress` stopped the work. Throws as writeAnimation.
std::optional<FileSizes> measuredSizes(const Animation& animation, OutputFormat format, const WriteOptions& options,
                                       const WriteProgress& progress);

// "812 B", "12.3 kB", "4.0 MB"; a kilobyte is 1000 bytes.
std::string shortSizeText(std::uint64_t bytes);

} // namespace stage
