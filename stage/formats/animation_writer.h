// Writing an animation into any format; the one door to the writers.
//
//   saveAnimation(animation, OutputFormat::Apng, {}, path)      a file that replaces the one that was there
//   writeAnimation(animation, OutputFormat::Gif, {}, sink)      the same bytes into a sink
//   encodedSize(animation, OutputFormat::Mng, {})               how many bytes that would be
//
// All three take time (compression at its best): a second or so for a megapixel of frames. They touch nothing that is
// shared, so they may run on a thread of their own.
#pragma once

#include "base/byte_sink.h"
#include "document/animation.h"
#include "document/file_format.h"

#include <filesystem>
#include <functional>

namespace stage {

struct WriteOptions {
    // Of a GIF, whose pixels are transparent or not: those below the threshold become transparent, the others are laid
    // over the matte colour.
    Rgb matte{255, 255, 255};
    std::uint8_t opacityThreshold = 128; // 1 to 255

    // That compress the frames of a GIF; 0: one for each processor. The bytes do not depend on it.
    unsigned threads = 0;

    bool operator==(const WriteOptions&) const = default;
};

// Called before each frame with the number of frames done; false stops the work.
using WriteProgress = std::function<bool(std::size_t done, std::size_t total)>;

struct WrittenFiles {
    std::filesystem::path first; // the file, or the first of the numbered ones
    std::filesystem::path last;
    std::uint64_t bytes = 0; // of all files
};

// The bytes in the sink are a valid file after each frame; of Png they are all files one behind the other. False when
// `progress` stopped the work. Throws Failure: WrongUsage for an animation that the format cannot hold (no frames,
// sides above 65535), and what the sink throws.
bool writeAnimation(const Animation& animation, OutputFormat format, const WriteOptions& options, ByteSink& sink,
                    const WriteProgress& progress = {});

// The size in bytes of what saveAnimation would write; nothing when `progress` stopped the work.
std::optional<std::uint64_t> encodedSize(const Animation& animation, OutputFormat format, const WriteOptions& options,
                                         const WriteProgress& progress = {});

// Writes beside the target and replaces it when all is done; the file that was there stays when anything fails. Png
// takes `file` as a pattern: radar.png gives radar-0000.png and so on. Nothing when `progress` stopped the work. Throws
// as writeAnimation, and Failure(FileTrouble) with the system's reason.
std::optional<WrittenFiles> saveAnimation(const Animation& animation, OutputFormat format, const WriteOptions& options,
                                          const std::filesystem::path& file, const WriteProgress& progress = {});

// radar.png and 7 give radar-0007.png; a name without extension gets .png.
std::filesystem::path numberedFile(const std::filesystem::path& pattern, std::size_t number);

} // namespace stage
