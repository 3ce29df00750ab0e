// Palettes, remapping, supercompression.
#include "bench.h"

#include "colour/quantizer.h"
#include "colour/remap.h"

#include <stdexcept>

namespace veldran::bench {
namespace {

constexpr int kWidth = 320;
constexpr int kHeight = 240;
constexpr int kFrames = 40;

Palette adaptivePalette(std::span<const ConstImageView> frames, bool forDithering) {
    Palette palette{};
    if (!optimalPalette({frames, 256, {}, forDithering}, palette))
        throw std::bad_alloc();
    return palette;
}

// The frames and images for what becomes of them.
class Remapping {
public:
    explicit Remapping(std::span<const ConstImageView> frames) {
        for (const ConstImageView& frame : frames) {
            std::vector<std::uint8_t>& target = targets_.emplace_back(pixelsOf(frame));
            pairs_.push_back({frame, {target.data(), frame.width, frame.height, frame.width, 8, nullptr}});
        }
    }
    void run(const Palette& palette, Dithering dithering) { Remapper(palette, 256, dithering).remap(pairs_); }
    const ImageView& target(std::size_t i) const { return pairs_[i].target; }

private:
    static std::size_t pixelsOf(const ConstImageView& frame) {
        return static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height);
    }
    std::vector<std::vector<std::uint8_t>> targets_;
    std::vector<RemapPair> pairs_;
};

// Change masks of all frames, and the slot written where they say so.
void supercompress(std::span<const ConstImageView> frames, const Remapping& remapping) {
    const ConstImageView& first = frames[0];
    std::vector<std::uint8_t> running(first.top, first.top + first.stride * first.height);
    const ImageView runningView{running.data(), first.width, first.height, first.stride, first.bits, nullptr};
    const auto maskStride = static_cast<std::ptrdiff_t>(bitmapStride(first.width, 1));
    std::vector<std::uint8_t> mask(static_cast<std::size_t>(maskStride * first.height));
    const ImageView maskView{mask.data(), first.width, first.height, maskStride, 1, nullptr};
    for (std::size_t i = 1; i < frames.size(); ++i) {
        updateChangeMask(runningView, frames[i], maskView);
        fillUnchanged(remapping.target(i), maskView, 255);
    }
}

} // namespace

void benchColours() {
    const Scene scene(kWidth, kHeight, kFrames);
    const Scene still(kWidth, kHeight, 1);
    const std::vector<ConstImageView> stillFrames(kFrames, still.frames()[0]);
    const Palette plain = adaptivePalette(scene.frames(), false);
    const Palette reaching = adaptivePalette(scene.frames(), true);
    Remapping remapping(scene.frames());
    Remapping stillRemapping(stillFrames);
    const auto stage = [&scene](const char* name, double bytesPerPixel, std::function<void()> run) {
        return Stage{name, scene.pixels(), bytesPerPixel * scene.pixels(), kFrames, std::move(run)};
    };
    // Bytes of a pixel that a stage touches: its source, its entry, and the same of the frame before.
    constexpr double kSource = 3;
    constexpr double kBoth = 4;
    constexpr double kBothTwice = 8;
    const Stage stages[] = {
        stage("palette of 256 colours", kSource, [&] { adaptivePalette(scene.frames(), false); }),
        stage("palette in small memory", kSource,
              [&] {
                  Palette palette;
                  optimalPaletteInSmallMemory({scene.frames(), 256, {}}, palette);
              }),
        stage("nearest entries", kBoth, [&] { remapping.run(plain, Dithering::None); }),
        stage("nearest entries, all still", kBothTwice, [&] { stillRemapping.run(plain, Dithering::None); }),
        stage("error diffusion", kBoth, [&] { remapping.run(reaching, Dithering::ErrorDiffusion); }),
        stage("change masks and slot", kBothTwice, [&] { supercompress(scene.frames(), remapping); }),
        stage("change masks and slot, all still", kBothTwice, [&] { supercompress(stillFrames, stillRemapping); }),
    };
    printTable("Colours", stages);
}

} // namespace veldran::bench
