// Counts what goes into a sink between two frames; see the header.
#include "formats/file_sizes.h"

#include "formats/steps.h"

#include <cstdio>

namespace stage {
namespace {

std::vector<std::uint64_t> bytesOfFrames(const Animation& animation, OutputFormat format,
                                         const std::vector<std::uint64_t>& pieces) {
    if (pieces.size() == animation.frames.size())
        return pieces;
    const std::vector<Step> steps = writtenSteps(animation, format);
    if (steps.size() != pieces.size())
        return {};
    std::vector<std::uint64_t> bytes(animation.frames.size(), 0);
    for (std::size_t i = 0; i < pieces.size(); ++i)
        bytes[steps[i].frame] = pieces[i];
    return bytes;
}

} // namespace

std::optional<FileSizes> measuredSizes(const Animation& animation, OutputFormat format, const WriteOptions& options,
                                       const WriteProgress& progress) {
    CountingSink sink;
    std::vector<std::uint64_t> begins; // of each written picture
    const auto note = [&](std::size_t done, std::size_t total) {
        begins.push_back(sink.size());
        return !progress || progress(done, total);
    };
    if (!writeAnimation(animation, format, options, sink, note))
        return std::nullopt;
    begins.push_back(sink.size());
    std::vector<std::uint64_t> pieces;
    for (std::size_t i = 1; i < begins.size(); ++i)
        pieces.push_back(begins[i] - begins[i - 1]);
    return FileSizes{sink.size(), bytesOfFrames(animation, format, pieces)};
}

std::string shortSizeText(std::uint64_t bytes) {
    char text[32];
    const auto number = static_cast<double>(bytes);
    if (bytes < 1000)
        std::snprintf(text, sizeof(text), "%.0f B", number);
    else if (bytes < 1000 * 1000)
        std::snprintf(text, sizeof(text), "%.1f kB", number / 1000);
    else
        std::snprintf(text, sizeof(text), "%.1f MB", number / (1000 * 1000));
    return text;
}

} // namespace stage
