// Animation chunks around PNG rows; see the header.
#include "formats/png/apng_writer.h"

#include "document/timing.h"
#include "formats/animation_reader.h"
#include "formats/png/png_coding.h"
#include "formats/steps.h"

#include <algorithm>
#include <array>

namespace stage {
namespace {

constexpr std::uint32_t kLongestExactDelay = 65535; // ms: the numerator has 16 bits

// A way to draw the next picture.
struct Drawing {
    Disposal before = Disposal::Keep; // of the frame that is shown
    Blend blend = Blend::Replace;
    Area area;
    Picture content; // of the area
    std::size_t estimate = 0;
};

// The area's pixels with transparency for those that stay; nothing when a pixel cannot be drawn over what is there.
std::optional<Picture> overlay(const Picture& canvas, const Picture& picture, const Area& area) {
    Picture part = cutOut(picture, area);
    const Picture under = cutOut(canvas, area);
    for (std::size_t i = 0; i < part.pixels.size(); ++i) {
        Pixel& pixel = part.pixels[i];
        if (pixel == under.pixels[i])
            pixel = kTransparentPixel;
        else if (opacityOf(pixel) != 255 && under.pixels[i] != kTransparentPixel)
            return std::nullopt;
    }
    return part;
}

std::size_t changedPixels(const Picture& canvas, const Picture& picture) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < picture.pixels.size(); ++i)
        count += canvas.pixels[i] != picture.pixels[i] ? 1 : 0;
    return count;
}

class ApngFile {
public:
    ApngFile(const Animation& animation, const PngLook& look, PngEffort effort, ByteSink& sink)
        : look_(look), effort_(effort), sink_(sink) {
        plays_ = animation.plays;
        shown_ = {animation.width, animation.height,
                  std::vector<Pixel>(std::size_t{animation.width} * animation.height, kTransparentPixel)};
        PngBytes bytes(std::begin(kPngSignature), std::end(kPngSignature));
        putHeaderChunk(bytes, "IHDR", animation.width, animation.height, look);
        animationControlAt_ = bytes.size();
        putAnimationControl(bytes);
        putPaletteChunk(bytes, look);
        putTransparencyChunk(bytes, look);
        putTexts(bytes, animation.comment, animation.made);
        sink_.write(bytes);
    }

    void add(const Picture& picture, std::uint32_t delay) {
        Drawing best = frames_ == 0 ? wholePicture(picture) : smallestDrawing(picture);
        if (best.before != Disposal::Keep)
            setDisposalOfLast(best.before);
        PngBytes packed = packedRows(best.content, look_, effort_);
        // The canvas that the frame before leaves behind is what this one may be taken back to.
        left_ = frames_ == 0 ? shown_ : canvasAfter(best.before);
        shown_ = picture;
        lastArea_ = best.area;
        if (frames_ > 0)
            sink_.stepBack(kEmptyChunkBytes);
        lastControl_ = {best.area, delay, best.blend, sequence_++};
        lastControlAt_ = sink_.size();
        PngBytes bytes;
        putFrameControl(bytes, Disposal::Keep);
        if (frames_++ == 0) {
            putChunk(bytes, "IDAT", packed);
        } else {
            PngBytes data;
            putPngNumber(data, sequence_++);
            data.insert(data.end(), packed.begin(), packed.end());
            putChunk(bytes, "fdAT", data);
        }
        putChunk(bytes, "IEND", {});
        sink_.write(bytes);
        PngBytes control;
        putAnimationControl(control);
        sink_.rewrite(animationControlAt_, control);
        sink_.flush();
    }

private:
    static constexpr std::size_t kEmptyChunkBytes = 12;

    struct FrameControl {
        Area area;
        std::uint32_t delay = 0;
        Blend blend = Blend::Replace;
        std::uint32_t sequence = 0;
    };

    void putAnimationControl(PngBytes& bytes) const {
        PngBytes data;
        putPngNumber(data, std::max(frames_, 1u)); // 0 is not allowed
        putPngNumber(data, plays_);
        putChunk(bytes, "acTL", data);
    }

    void putFrameControl(PngBytes& bytes, Disposal disposal) const {
        std::uint32_t part = lastControl_.delay;
        std::uint32_t parts = 1000; // a second
        for (; part > kLongestExactDelay && parts > 1; parts /= 10)
            part = (part + 5) / 10;
        PngBytes data;
        const Area& area = lastControl_.area;
        for (const std::uint32_t number : {lastControl_.sequence, area.width, area.height, area.x, area.y})
            putPngNumber(data, number);
        putPngShort(data, std::min(part, kLongestExactDelay));
        putPngShort(data, parts);
        data.push_back(static_cast<std::uint8_t>(disposal));
        data.push_back(static_cast<std::uint8_t>(lastControl_.blend));
        putChunk(bytes, "fcTL", data);
    }

    void setDisposalOfLast(Disposal disposal) {
        PngBytes control;
        putFrameControl(control, disposal);
        sink_.rewrite(lastControlAt_, control);
    }

    Picture canvasAfter(Disposal disposal) const {
        if (disposal == Disposal::Restore)
            return left_;
        Picture canvas = shown_;
        if (disposal == Disposal::Clear)
            fill(canvas, lastArea_, kTransparentPixel);
        return canvas;
    }

    static Drawing wholePicture(const Picture& picture) {
        return {Disposal::Keep, Blend::Replace, {0, 0, picture.width, picture.height}, picture, 0};
    }

    Drawing smallestDrawing(const Picture& picture) const {
        std::vector<Drawing> drawings;
        std::size_t fewest = ~std::size_t{0};
        for (const Disposal disposal : {Disposal::Keep, Disposal::Clear, Disposal::Restore}) {
            const bool isFirstFrame = frames_ == 1;
            if (disposal == Disposal::Restore && isFirstFrame) // the same as clearing
                continue;
            const Picture canvas = canvasAfter(disposal);
            const std::size_t changed = changedPixels(canvas, picture);
            if (changed >= fewest)
                continue;
            fewest = changed;
            addDrawings(drawings, disposal, canvas, picture);
        }
        return *std::ranges::min_element(drawings, {}, &Drawing::estimate);
    }

    void addDrawings(std::vector<Drawing>& drawings, Disposal disposal, const Picture& canvas,
                     const Picture& picture) const {
        Area area = changedArea(canvas, picture);
        if (area.width == 0)
            area = {0, 0, 1, 1};
        drawings.push_back({disposal, Blend::Replace, area, cutOut(picture, area), 0});
        if (look_.hole)
            if (auto content = overlay(canvas, picture, area))
                drawings.push_back({disposal, Blend::Over, area, std::move(*content), 0});
        for (Drawing& drawing : drawings)
            if (drawing.estimate == 0)
                drawing.estimate = packedRows(drawing.content, look_, PngEffort::Estimate).size();
    }

    const PngLook& look_;
    PngEffort effort_;
    ByteSink& sink_;
    std::uint32_t plays_ = 0;
    std::uint32_t frames_ = 0;
    std::uint32_t sequence_ = 0;
    std::uint64_t animationControlAt_ = 0;
    std::uint64_t lastControlAt_ = 0;
    FrameControl lastControl_;
    Picture shown_; // the last picture
    Picture left_;  // what was there before it was drawn
    Area lastArea_;
};

} // namespace

bool writeApng(const Animation& animation, ByteSink& sink, const WriteProgress& progress) {
    const auto pictureAt = [&animation](std::size_t index) { return pictureOf(animation.frames[index]); };
    const std::vector<Step> steps =
        joinedSteps(animation, pictureAt, storedDelays(animation, OutputFormat::Apng), kLongestExactDelay);
    PngSurvey survey;
    for (const Step& step : steps)
        survey.add(pictureAt(step.frame));
    const auto write = [&](const PngLook& look, PngEffort effort, ByteSink& target, const WriteProgress& watcher) {
        ApngFile file(animation, look, effort, target);
        return writeSteps(steps, pictureAt, watcher, [&](const Step& step, const Picture& picture, const Picture*) {
            file.add(picture, step.delay);
        });
    };
    std::vector<PngLook> looks = survey.looksForChanges();
    if (steps.size() == 1)
        looks = {survey.look()};
    std::size_t best = 0;
    std::uint64_t smallest = ~std::uint64_t{0};
    for (std::size_t i = 0; i < looks.size() && looks.size() > 1; ++i) {
        CountingSink trial;
        write(looks[i], PngEffort::Estimate, trial, {});
        if (trial.size() < smallest) {
            smallest = trial.size();
            best = i;
        }
    }
    return write(looks[best], PngEffort::Best, sink, progress);
}

} // namespace stage
