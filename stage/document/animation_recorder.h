// Takes an animation as the plugin delivers it and makes a document of it: whole pictures, delays in milliseconds.
// Never asks what instrument it is.
#pragma once

#include "document/animation.h"

namespace stage {

struct AnimationInfo {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitsPerPixel = 0; // 1 to 8, or 24
    Palette palette{};
    std::uint32_t frameCount = 0;
};

enum class DelayUnit { Hundredths, Milliseconds };

// Calls come in this order: announceDeltas or not, begin, setBackground..., addFrame..., addComment, finish. All throw
// Failure(PluginFailed) for a wrong order or wrong data.
class AnimationRecorder {
public:
    // `unit` is that of the delays of the frames that are added.
    explicit AnimationRecorder(DelayUnit unit) : unit_(unit) {}

    // The transparent pixels of the frames mean "as in the frame before", not "nothing here".
    void announceDeltas() { deltas_ = true; }
    void begin(const AnimationInfo& info);
    // What stands behind the first frame: an entry of the palette, or a colour of its own.
    void setBackgroundIndex(std::uintptr_t index);
    void setBackgroundColour(Rgb colour) { animation_.background = colour; }
    // A frame smaller than the animation lies at its top left corner, with nothing beside it.
    void addFrame(Frame frame);
    void addComment(std::string_view text) { animation_.comment = text; }
    // The document, without `made`; the recorder is empty then.
    Animation finish();

private:
    void fillHoles(Frame& frame) const;
    Rgb backgroundFor(const Frame& frame) const;

    DelayUnit unit_;
    std::optional<AnimationInfo> info_;
    std::optional<std::uint8_t> backgroundIndex_;
    bool deltas_ = false;
    Animation animation_;
};

// The name of the file when none was given: the effect's name in lower case, dashes between its words ("radar").
std::string defaultFileName(std::string_view effectName);

} // namespace stage
