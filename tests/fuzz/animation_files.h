// What must hold for every file that a reader takes, shared by the targets of all formats.
#pragma once

#include "fuzz_target.h"
#include "shown_pictures.h"

#include "base/failure.h"
#include "formats/animation_reader.h"
#include "formats/animation_writer.h"

#include <optional>
#include <set>

namespace fuzz {

inline const stage::ReadOptions kLimits{1 << 18, {}};
// A byte is compressed in a microsecond or two, some hundred times longer when everything is watched.
inline constexpr std::size_t kMostRewrittenPixels = 1500;

// A GIF holds these pixels without a loss.
inline bool fitsGif(const stage::Animation& animation) {
    std::set<stage::Pixel> colours;
    for (const stage::Frame& frame : animation.frames)
        for (const stage::Pixel pixel : stage::pictureOf(frame).pixels) {
            colours.insert(pixel);
            if (colours.size() > 255 || (stage::opacityOf(pixel) != 0 && stage::opacityOf(pixel) != 255))
                return false;
        }
    return true;
}

// Whether every delay is one that the format can say.
inline bool fitsDelays(const stage::Animation& animation, stage::OutputFormat format) {
    const std::uint32_t most = format == stage::OutputFormat::Gif   ? 655350
                               : format == stage::OutputFormat::Mng ? 0x7FFFFFFF
                                                                    : 65535;
    const std::uint32_t unit = format == stage::OutputFormat::Gif ? 10 : 1;
    return std::ranges::all_of(
        animation.frames, [&](const stage::Frame& frame) { return frame.delay % unit == 0 && frame.delay <= most; });
}

// Writes the animation and reads it back: the same must be seen. Where a GIF cannot hold it, only its size and time.
inline void mustComeBack(const stage::Animation& animation, stage::OutputFormat format) {
    stage::MemorySink sink;
    mustHold(stage::writeAnimation(animation, format, {}, sink), "what is not stopped is written");
    const stage::Animation read = stage::readAnimation(sink.bytes()).animation;
    mustHold(read.width == animation.width && read.height == animation.height, "the size comes back");
    if (format == stage::OutputFormat::Gif && !fitsGif(animation)) {
        mustHold(!fitsDelays(animation, format) || stage::totalDelay(read) == stage::totalDelay(animation),
                 "the time comes back");
        return;
    }
    const std::vector<stage::ShownPicture> wanted = stage::shownPictures(animation);
    const std::vector<stage::ShownPicture> shown = stage::shownPictures(read);
    mustHold(shown.size() == wanted.size(), "as many pictures come back");
    for (std::size_t i = 0; i < shown.size(); ++i) {
        mustHold(shown[i].picture == wanted[i].picture, "every pixel comes back");
        mustHold(!fitsDelays(animation, format) || shown[i].delay == wanted[i].delay, "every delay comes back");
    }
    const std::uint32_t mostPlays = 65536; // that every format can count
    mustHold(animation.plays > mostPlays || read.plays == animation.plays, "the number of plays comes back");
    mustHold(read.made == animation.made, "how it was made comes back");
}

// Writing takes a hundred times as long as reading, so only one input in sixteen is written again. The bytes decide, so
// that an input always does the same.
inline bool isWrittenAgain(std::span<const std::uint8_t> bytes) {
    std::uint32_t hash = 2166136261; // FNV-1a
    for (const std::uint8_t byte : bytes)
        hash = (hash ^ byte) * 16777619;
    return hash >> 28 == 0;
}

inline void checkFile(const stage::AnimationFile& file, bool mayBeWritten) {
    const stage::Animation& animation = file.animation;
    mustHold(!animation.frames.empty() && file.stored.size() == animation.frames.size(),
             "there is a stored frame for each");
    std::uint64_t pixels = 0;
    for (const stage::Frame& frame : animation.frames) {
        mustHold(frame.width == animation.width && frame.height == animation.height, "frames are whole pictures");
        mustHold(frame.format != stage::PixelFormat::Indexed && frame.pixels.size() == frame.rowBytes() * frame.height,
                 "frames have all their pixels");
        pixels += std::uint64_t{frame.width} * frame.height;
    }
    mustHold(pixels <= kLimits.pixels, "limits are kept");
    if (!mayBeWritten || pixels > kMostRewrittenPixels)
        return;
    for (const stage::OutputFormat format :
         {stage::OutputFormat::Gif, stage::OutputFormat::Apng, stage::OutputFormat::Mng})
        mustComeBack(animation, format);
}

// Any other exception than a refusal is a fault.
inline void readOrRefuse(std::span<const std::uint8_t> bytes) {
    std::optional<stage::AnimationFile> file;
    try {
        file = stage::readAnimation(bytes, kLimits);
    } catch (const stage::Failure& failure) {
        mustHold(failure.code() == stage::ExitCode::FileTrouble, "a refusal is about the file");
        return;
    }
    checkFile(*file, isWrittenAgain(bytes));
}

} // namespace fuzz
