// Takes an animation as the plugin delivers it and writes the files that were asked for, frame by frame.
// Never asks what instrument it is, and never shows a half-written file under its final name.
#pragma once

#include "core/arguments.h"
#include "core/gif_writer.h"

#include <memory>

namespace stage {

struct RecordingPlan {
    OutputFormat format = OutputFormat::Gif;
    std::filesystem::path outFile;                     // of a PNG recording the pattern: radar.png gives radar-0000.png
    std::optional<std::filesystem::path> framesFolder; // for additional PNG files; made when missing
};

struct Recording {
    std::string file; // as shown to the person
    std::uint32_t frames = 0;
    std::uint32_t width = 0;    // pixels
    std::uint32_t height = 0;   // pixels
    std::uint64_t bytes = 0;    // of the file, or of all numbered files
    std::uint64_t duration = 0; // sum of the delays, in their unit
};

struct AnimationInfo {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitsPerPixel = 0; // 1 to 8, or 24
    Palette palette{};
    std::uint32_t frameCount = 0;
};

// Calls come in this order: announceDeltas or not, begin, setBackground..., addFrame..., addComment, finish. All throw
// Failure: FileTrouble, PluginFailed for a wrong order or wrong data, WrongUsage for frames that the format cannot
// hold.
class AnimationRecorder {
public:
    // Opens or prepares what can be opened before there is a frame, so that trouble shows before the work is done.
    explicit AnimationRecorder(RecordingPlan plan);

    // The transparent pixels of the frames mean "as in the frame before", not "nothing here".
    void announceDeltas() { deltas_ = true; }
    void begin(const AnimationInfo& info);
    // What stands behind the first frame: an entry of the palette, or a colour of its own.
    void setBackgroundIndex(std::uintptr_t index);
    void setBackgroundColour(Rgb colour) { backgroundColour_ = colour; }
    void addFrame(Frame frame);
    void addComment(std::string_view text);
    // Puts the complete files into place.
    Recording finish();

private:
    GifWriter& gif();
    void putOnBackground(Frame& frame) const;
    void writePng(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);

    RecordingPlan plan_;
    std::unique_ptr<OutputFile> gifFile_;
    std::unique_ptr<GifWriter> gifWriter_;
    std::optional<AnimationInfo> info_;
    std::uint8_t backgroundIndex_ = 0;
    std::optional<Rgb> backgroundColour_;
    bool deltas_ = false;
    Recording recording_;
};

// The name of the file when none was given: the effect's name in lower case, dashes between its words ("radar.gif").
std::string defaultFileName(std::string_view effectName, OutputFormat format);

} // namespace stage
