// One function for each chunk of MNG 1.0; see the header.
#include "formats/png/mng_writer.h"

#include "document/timing.h"
#include "formats/png/png_coding.h"
#include "formats/steps.h"

#include <algorithm>

namespace stage {
namespace {

constexpr std::uint32_t kTicksPerSecond = 1000;
constexpr std::uint32_t kNoLimit = 0x7FFFFFFF; // of a field of 32 bits; "no limit" in some

// How pictures meet: each lies on those before, or on nothing.
enum class Framing : std::uint8_t { OverTheLast = 1, OverBackground = 3 };

// The bits of MHDR that tell a viewer what it needs not be able to do.
constexpr std::uint32_t profileFor(Framing framing) {
    constexpr std::uint32_t kIsValid = 1;
    constexpr std::uint32_t kSimpleFeatures = 1 << 1;
    constexpr std::uint32_t kTransparency = 1 << 3;
    constexpr std::uint32_t kLaterBitsValid = 1 << 6;
    constexpr std::uint32_t kBackgroundShows = 1 << 7;
    constexpr std::uint32_t kHalfOpaque = 1 << 8;
    const std::uint32_t always = kIsValid | kSimpleFeatures | kTransparency | kLaterBitsValid;
    return framing == Framing::OverBackground ? always | kBackgroundShows | kHalfOpaque : always;
}

// What is opaque; empty when nothing is.
Area visibleArea(const Picture& picture) {
    return changedArea({picture.width, picture.height, std::vector<Pixel>(picture.pixels.size(), kTransparentPixel)},
                       picture);
}

class MngFile {
public:
    MngFile(const Animation& animation, const std::optional<PngLook>& look, Framing framing, ByteSink& sink)
        : animation_(animation), look_(look), framing_(framing), sink_(sink) {
        PngBytes bytes(std::begin(kMngSignature), std::end(kMngSignature));
        headerAt_ = bytes.size();
        putHeader(bytes);
        putTermination(bytes);
        putTexts(bytes, animation.comment, animation.made);
        if (look_)
            putPaletteChunk(bytes, *look_); // of all pictures whose own chunk stays empty
        putChunk(bytes, "MEND", {});
        sink_.write(bytes);
    }

    void add(const Picture& picture, std::uint32_t delay) {
        PngBytes bytes;
        if (frames_ == 0 || delay != delay_)
            putFraming(bytes, delay);
        delay_ = delay;
        const Part part = partOf(picture);
        const Area& area = part.area;
        if (area.x != place_.x || area.y != place_.y)
            putPlace(bytes, area);
        place_ = area;
        putHeaderChunk(bytes, "IHDR", area.width, area.height, part.look);
        if (part.isShared)
            putChunk(bytes, "PLTE", {});
        else
            putPaletteChunk(bytes, part.look);
        putTransparencyChunk(bytes, part.look);
        putChunk(bytes, "IDAT", packedRows(part.content, part.look, PngEffort::Best));
        putChunk(bytes, "IEND", {});
        putChunk(bytes, "MEND", {});
        constexpr std::size_t kEmptyChunkBytes = 12;
        sink_.stepBack(kEmptyChunkBytes);
        sink_.write(bytes);
        ++frames_;
        ticks_ += delay;
        shown_ = picture;
        PngBytes header;
        putHeader(header);
        sink_.rewrite(headerAt_, header);
        sink_.flush();
    }

private:
    struct Part {
        Area area;
        Picture content;
        PngLook look;
        bool isShared = false; // the palette of all pictures

        std::size_t estimate() const {
            constexpr std::size_t kEntryBytes = 3;
            return packedRows(content, look, PngEffort::Estimate).size() +
                   (isShared ? 0 : look.palette.size() * kEntryBytes);
        }
    };

    // With a palette of all pictures where it fits, which it does when nothing is transparent: viewers disagree about a
    // shared palette with transparent entries.
    Part partWith(const Area& area, Picture content) const {
        PngSurvey survey;
        survey.add(content);
        const bool isShared = look_ && std::ranges::find(content.pixels, kTransparentPixel) == content.pixels.end();
        return {area, std::move(content), isShared ? *look_ : survey.look(), isShared};
    }

    // Smallest of: what changed, what changed with the rest left out. With nothing beneath, what is visible.
    Part partOf(const Picture& picture) const {
        Area area{0, 0, picture.width, picture.height};
        if (framing_ == Framing::OverBackground)
            area = visibleArea(picture);
        else if (frames_ > 0)
            area = changedArea(shown_, picture);
        if (area.width == 0)
            area = {0, 0, 1, 1};
        Part whole = partWith(area, cutOut(picture, area));
        if (framing_ == Framing::OverBackground || frames_ == 0)
            return whole;
        Picture changes = whole.content;
        const Picture under = cutOut(shown_, area);
        for (std::size_t i = 0; i < changes.pixels.size(); ++i)
            if (changes.pixels[i] == under.pixels[i])
                changes.pixels[i] = kTransparentPixel;
        Part overlay = partWith(area, std::move(changes));
        return overlay.estimate() < whole.estimate() ? overlay : whole;
    }

    void putHeader(PngBytes& bytes) const {
        PngBytes data;
        for (const std::uint32_t number : {animation_.width, animation_.height, kTicksPerSecond})
            putPngNumber(data, number);
        // The background counts as a layer each time it is shown.
        const std::uint32_t layers = framing_ == Framing::OverBackground ? frames_ * 2 : frames_ + 1;
        for (const std::uint64_t number : {std::uint64_t{layers}, std::uint64_t{frames_}, ticks_})
            putPngNumber(data, static_cast<std::uint32_t>(std::min<std::uint64_t>(number, kNoLimit)));
        putPngNumber(data, profileFor(framing_));
        putChunk(bytes, "MHDR", data);
    }

    void putTermination(PngBytes& bytes) const {
        constexpr std::uint8_t kRepeat = 3;
        constexpr std::uint8_t kThenShowLast = 0;
        if (animation_.plays == 1)
            return;
        PngBytes data = {kRepeat, kThenShowLast};
        putPngNumber(data, 0); // delay before it begins again
        putPngNumber(data, animation_.plays == 0 ? kNoLimit : std::min(animation_.plays, kNoLimit));
        putChunk(bytes, "TERM", data);
    }

    // From this frame on: the framing and the delay after each picture. The timeout that never runs out, which is the
    // default anyway, is there for viewers that overlook a delay at a chunk's end.
    void putFraming(PngBytes& bytes, std::uint32_t delay) const {
        constexpr std::uint8_t kNoName = 0;
        constexpr std::uint8_t kFromNowOn = 2;
        PngBytes data = {static_cast<std::uint8_t>(framing_), kNoName, kFromNowOn, kFromNowOn, 0, 0};
        putPngNumber(data, std::min(delay, kNoLimit));
        putPngNumber(data, kNoLimit);
        putChunk(bytes, "FRAM", data);
    }

    void putPlace(PngBytes& bytes, const Area& area) const {
        PngBytes data = {0, 0, 0, 0}; // object 0, shown, not stored
        putPngNumber(data, area.x);
        putPngNumber(data, area.y);
        putChunk(bytes, "DEFI", data);
    }

    const Animation& animation_;
    const std::optional<PngLook>& look_; // of the palette of all pictures, when there is one
    Framing framing_;
    ByteSink& sink_;
    std::uint64_t headerAt_ = 0;
    std::uint32_t frames_ = 0;
    std::uint64_t ticks_ = 0;
    std::uint32_t delay_ = 0;
    Area place_;
    Picture shown_;
};

} // namespace

bool writeMng(const Animation& animation, ByteSink& sink, const WriteProgress& progress) {
    const auto pictureAt = [&animation](std::size_t index) { return pictureOf(animation.frames[index]); };
    const std::vector<Step> steps =
        joinedSteps(animation, pictureAt, storedDelays(animation, OutputFormat::Mng), kNoLimit);
    PngSurvey survey;
    for (const Step& step : steps)
        survey.add(pictureAt(step.frame));
    // What lies over the last picture cannot take anything of it away.
    const Framing framing = hasTransparency(animation) ? Framing::OverBackground : Framing::OverTheLast;
    std::optional<PngLook> look = survey.look();
    if (look->colour != PngColour::Palette || framing == Framing::OverBackground)
        look.reset();
    MngFile file(animation, look, framing, sink);
    return writeSteps(steps, pictureAt, progress,
                      [&](const Step& step, const Picture& picture, const Picture*) { file.add(picture, step.delay); });
}

} // namespace stage
