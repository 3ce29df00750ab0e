// Recording of an animation into files; see the header.
#include "core/animation_recorder.h"

#include "core/failure.h"
#include "core/png_writer.h"
#include "core/settings_text.h"
#include "core/text.h"

#include <algorithm>
#include <cstdio>

namespace stage {
namespace {

namespace fs = std::filesystem;

// "frame", ".png" and 7 give frame-0007.png.
fs::path numbered(const fs::path& stem, const fs::path& extension, std::uint32_t number) {
    char digits[16];
    std::snprintf(digits, sizeof(digits), "-%04u", number);
    fs::path path = stem;
    path += digits;
    path += extension;
    return path;
}

fs::path numberedOutput(const fs::path& pattern, std::uint32_t number) {
    return numbered(pattern.parent_path() / pattern.stem(), pattern.has_extension() ? pattern.extension() : ".png",
                    number);
}

} // namespace

std::string defaultFileName(std::string_view effectName, OutputFormat format) {
    std::string name;
    for (const char c : lowerCase(effectName)) {
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'))
            name += c;
        else if (c == ' ' && !name.empty() && !name.ends_with('-'))
            name += '-';
    }
    while (name.ends_with('-'))
        name.pop_back();
    return (name.empty() ? "animation" : name) + (format == OutputFormat::Gif ? ".gif" : ".png");
}

AnimationRecorder::AnimationRecorder(RecordingPlan plan) : plan_(std::move(plan)) {
    if (plan_.framesFolder)
        makeFolder(*plan_.framesFolder);
    if (plan_.format == OutputFormat::Gif)
        gifFile_ = std::make_unique<OutputFile>(plan_.outFile);
    else // made and thrown away: tells whether the folder takes files
        OutputFile(numberedOutput(plan_.outFile, 0));
}

void AnimationRecorder::begin(const AnimationInfo& info) {
    requireOfPlugin(!info_, "The plugin began a second animation before the first was done.");
    requireOfPlugin(info.width >= 1 && info.height >= 1 && info.frameCount >= 1,
                    "The plugin announced an empty animation.");
    if (plan_.format == OutputFormat::Gif && info.bitsPerPixel > 8)
        throw Failure(ExitCode::WrongUsage, trueColourRefusal());
    info_ = info;
    recording_.width = info.width;
    recording_.height = info.height;
}

void AnimationRecorder::setBackgroundIndex(std::uintptr_t index) {
    requireOfPlugin(index <= 255, "The plugin set a background outside the palette.");
    backgroundIndex_ = static_cast<std::uint8_t>(index);
}

// The header holds the background, which is known only when the first frame comes.
GifWriter& AnimationRecorder::gif() {
    if (!gifWriter_)
        gifWriter_ = std::make_unique<GifWriter>(
            *gifFile_, GifScreen{info_->width, info_->height, info_->bitsPerPixel, info_->palette, backgroundIndex_});
    return *gifWriter_;
}

// Before the first difference stands nothing that it could leave as it is, so the document's background shows there.
void AnimationRecorder::putOnBackground(Frame& frame) const {
    const std::uint8_t hole = *frame.transparentIndex;
    frame.transparentIndex.reset();
    if (backgroundColour_)
        frame.palette[hole] = *backgroundColour_;
    else
        std::ranges::replace(frame.pixels, hole, backgroundIndex_);
}

void AnimationRecorder::addFrame(Frame frame) {
    requireOfPlugin(info_.has_value(), "The plugin delivered a frame before it began an animation.");
    requireOfPlugin(recording_.frames < info_->frameCount, "The plugin delivered more frames than it announced.");
    if (plan_.format == OutputFormat::Gif && frame.format != PixelFormat::Indexed)
        throw Failure(ExitCode::WrongUsage, trueColourRefusal());

    Disposal disposal = Disposal::Keep;
    if (frame.transparentIndex && !deltas_)
        disposal = Disposal::RestoreBackground;
    if (deltas_ && recording_.frames == 0 && frame.transparentIndex)
        putOnBackground(frame);

    if (plan_.format == OutputFormat::Png || plan_.framesFolder) {
        const std::vector<std::uint8_t> png = encodePng(frame);
        if (plan_.framesFolder)
            writePng(numbered(*plan_.framesFolder / "frame", ".png", recording_.frames), png);
        if (plan_.format == OutputFormat::Png) {
            writePng(numberedOutput(plan_.outFile, recording_.frames), png);
            recording_.bytes += png.size();
        }
    }
    if (plan_.format == OutputFormat::Gif)
        gif().addFrame(frame, disposal);
    ++recording_.frames;
    recording_.duration += frame.delay;
}

void AnimationRecorder::writePng(const fs::path& path, std::span<const std::uint8_t> bytes) {
    OutputFile file(path);
    file.write(bytes);
    file.commit();
}

void AnimationRecorder::addComment(std::string_view text) {
    if (plan_.format == OutputFormat::Gif && info_)
        gif().addComment(text);
}

Recording AnimationRecorder::finish() {
    requireOfPlugin(info_ && recording_.frames == info_->frameCount,
                    "The plugin delivered fewer frames than it announced.");
    if (plan_.format == OutputFormat::Gif) {
        recording_.bytes = gifFile_->size();
        recording_.file = utf8FromPath(plan_.outFile);
        gifFile_->commit();
    } else {
        recording_.file = utf8FromPath(numberedOutput(plan_.outFile, 0));
        if (recording_.frames > 1)
            recording_.file += " to " + utf8FromPath(numberedOutput(plan_.outFile, recording_.frames - 1).filename());
    }
    return recording_;
}

} // namespace stage
