// Palettes and remapping when memory runs out: this program's operator new can be told to fail.
#include "colour/palette_plan.h"
#include "colour/quantizer.h"
#include "colour/remap.h"
#include "pictures.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr long kNever = std::numeric_limits<long>::max();
long allocationsLeft = kNever; // until the failure
bool onlyOnce = false;         // or from there on

bool mayAllocate() {
    if (allocationsLeft == kNever || allocationsLeft-- > 0)
        return true;
    if (onlyOnce)
        allocationsLeft = kNever;
    return false;
}

} // namespace

void* operator new(std::size_t bytes) {
    void* block = mayAllocate() ? std::malloc(bytes) : nullptr;
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
    return mayAllocate() ? std::malloc(bytes) : nullptr;
}
void* operator new[](std::size_t bytes) {
    return operator new(bytes);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}

namespace veldran {
namespace {

// Lets every allocation from the nth on fail, for each n, until a run meets no failure; returns that n. What leaks is
// for the leak checker.
template <class Run>
long failEverywhere(Run run) {
    for (long n = 0;; ++n) {
        allocationsLeft = n;
        run();
        const bool reached = allocationsLeft < 0;
        allocationsLeft = kNever;
        if (!reached)
            return n;
    }
}

Animation manyColours() {
    Animation animation;
    Random random(21);
    for (int i = 0; i < 5; ++i)
        animation.add(40, 30, 24, [&](int) { return random() & 0xFFFFFF; });
    return animation;
}

TEST(ShortMemory, AMethodSaysSoWhereverItRunsOut) {
    const Animation animation = manyColours();
    for (const auto method : {optimalPalette, optimalPaletteInSmallMemory})
        for (const bool forDithering : {false, true}) {
            const QuantizeRequest request{animation.frames, 4, {}, forDithering};
            Palette expected;
            ASSERT_EQ(method(request, expected), 4);
            int without = 0;
            failEverywhere([&] {
                Palette palette;
                const bool made = method(request, palette).has_value();
                EXPECT_TRUE(!made || palette == expected);
                without += made ? 0 : 1;
            });
            EXPECT_GE(without, 3);
        }
}

TEST(ShortMemory, TheSecondMethodStepsInForTheFirst) {
    const Animation animation = manyColours();
    Palette second;
    ASSERT_EQ(optimalPaletteInSmallMemory({animation.frames, 256, {}}, second), 256);
    for (const bool once : {true, false}) {
        onlyOnce = once;
        allocationsLeft = 0;
        const auto plan = planAdaptivePalette(animation.frames, SlotWish{}, Dithering::None);
        allocationsLeft = kNever;
        onlyOnce = false;
        EXPECT_EQ(plan.has_value(), once);
        EXPECT_TRUE(!plan || plan->palette == second);
    }
}

TEST(ShortMemory, RemappingSaysSo) {
    const Animation animation = manyColours();
    std::deque<Picture> targets;
    std::vector<RemapPair> pairs;
    for (const ConstImageView& frame : animation.frames)
        pairs.push_back({frame, targets.emplace_back(frame.width, frame.height, 8).view()});
    for (const Dithering dithering : {Dithering::None, Dithering::ErrorDiffusion}) {
        int thrown = 0;
        const long failures = failEverywhere([&] {
            try {
                Remapper(Palette{}, 7, dithering).remap(pairs);
            } catch (const std::bad_alloc&) {
                ++thrown;
            }
        });
        EXPECT_EQ(thrown, failures);
        EXPECT_GE(failures, 2);
    }
}

} // namespace
} // namespace veldran
