// From true colour to palette images: adaptive palettes, reserved slots, remapping, dithering, change masks.
// Random pictures come from a generator whose numbers the C++ standard fixes, so every run sees the same ones.
#include "host/palette_plan.h"
#include "host/quantizer.h"
#include "host/remap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace veldran {
namespace {

using Random = std::mt19937;
using Frames = std::vector<ConstImageView>;

// A packed bitmap that owns its bytes; black, and without alpha, at first.
class Picture {
public:
    using Painter = std::function<Colour(int)>; // asked for the colour of each pixel by its running number

    Picture(int width, int height, int bits, const Painter& colourOf = {})
        : block_(packedBitmapBytes(width, height, bits).value()) {
        writeBitmapHeader(block_, width, height, bits);
        view_ = viewPackedBitmap(std::span<std::uint8_t>(block_)).value();
        for (int i = 0; colourOf && i < width * height; ++i)
            set(i % width, i / width, colourOf(i));
    }
    Picture(const Picture&) = delete;

    const ImageView& view() const { return view_; }
    Colour at(int x, int y) const {
        const std::uint8_t* pixel = view_.pixel(x, y);
        return makeColour(pixel[2], pixel[1], pixel[0]);
    }
    std::vector<int> indices() const {
        std::vector<int> all;
        for (int y = 0; y < view_.height; ++y)
            all.insert(all.end(), view_.row(y), view_.row(y) + view_.width);
        return all;
    }

private:
    void set(int x, int y, Colour colour) {
        std::uint8_t* pixel = view_.pixel(x, y);
        pixel[0] = static_cast<std::uint8_t>(blueOf(colour));
        pixel[1] = static_cast<std::uint8_t>(greenOf(colour));
        pixel[2] = static_cast<std::uint8_t>(redOf(colour));
    }

    std::vector<std::uint8_t> block_;
    ImageView view_;
};

// Frames that own their pixels.
struct Animation {
    std::deque<Picture> pictures;
    Frames frames;

    void add(int width, int height, int bits, const Picture::Painter& colourOf) {
        frames.push_back(pictures.emplace_back(width, height, bits, colourOf).view());
    }
    // One row of pixels.
    void add(const std::vector<Colour>& pixels) {
        add(static_cast<int>(pixels.size()), 1, 24, [&](int i) { return pixels[static_cast<std::size_t>(i)]; });
    }
};

Colour grey(int level) {
    return makeColour(level, level, level);
}

Colour colourOfEntry(const PaletteEntry& entry) {
    return makeColour(entry.red, entry.green, entry.blue);
}

std::set<Colour> colours(const Palette& palette, int count) {
    std::set<Colour> all;
    for (int i = 0; i < count; ++i)
        all.insert(colourOfEntry(palette[static_cast<std::size_t>(i)]));
    return all;
}

int squaredDistance(Colour a, Colour b) {
    const int red = redOf(a) - redOf(b);
    const int green = greenOf(a) - greenOf(b);
    const int blue = blueOf(a) - blueOf(b);
    return red * red + green * green + blue * blue;
}

Colour distinctColour(int i) { // different for 0 to 255
    return makeColour(i, 255 - i, i * 7);
}

using Quantizer = std::optional<int> (*)(const QuantizeRequest&, Palette&);
constexpr Quantizer kBothMethods[] = {optimalPalette, optimalPaletteInSmallMemory};

TEST(Quantizer, FewColoursComeThroughExactly) {
    for (const int count : {1, 2, 17, 256})
        for (const int wanted : {count, 256}) {
            Animation animation; // each colour in one of two frames
            for (int parity = 0; parity < 2; ++parity)
                animation.add(64, 2, 24 + 8 * parity,
                              [=](int i) { return distinctColour(std::min(2 * i + parity, count - 1) % count); });
            std::set<Colour> expected;
            for (int i = 0; i < count; ++i)
                expected.insert(distinctColour(i));
            Palette palette;
            palette.fill({9, 9, 9});
            EXPECT_EQ(optimalPalette({animation.frames, wanted, {}}, palette), count);
            EXPECT_EQ(colours(palette, count), expected) << count << " of " << wanted;
            EXPECT_TRUE(std::all_of(palette.begin() + count, palette.end(), [](const PaletteEntry& entry) {
                return entry == PaletteEntry{0, 0, 0};
            }));
        }
}

TEST(Quantizer, EntriesAreTheMeansOfWhatTheyStandFor) {
    std::vector<Colour> unequal(200, grey(10)); // many pixels close together count less than two far apart
    std::fill_n(unequal.begin(), 100, grey(12));
    unequal.insert(unequal.end(), {grey(200), grey(240)});
    const struct {
        Quantizer method;
        std::vector<Colour> pixels;
        std::set<Colour> means;
    } cases[] = {
        {optimalPalette, {0, 0, 0, makeColour(100, 40, 8)}, {makeColour(25, 10, 2)}},
        {optimalPalette, {grey(0), grey(1)}, {grey(1)}}, // halves go up
        {optimalPalette, {makeColour(255, 0, 10)}, {makeColour(255, 0, 10)}},
        {optimalPalette, unequal, {grey(11), grey(200), grey(240)}},
        {optimalPaletteInSmallMemory, {0, 0, 0, grey(255)}, {grey(64)}}, // 63.75
    };
    for (const auto& c : cases) {
        Animation animation;
        animation.add(c.pixels);
        const int count = static_cast<int>(c.means.size());
        Palette palette;
        EXPECT_EQ(c.method({animation.frames, count, {}}, palette), count);
        EXPECT_EQ(colours(palette, count), c.means);
    }
}

TEST(Quantizer, TheOrderOfFramesAndPixelsDoesNotMatter) {
    Random random(3);
    Animation animation;
    const int sizes[][2] = {{31, 17}, {1, 1}, {64, 5}, {2, 90}};
    for (const auto& [width, height] : sizes)
        animation.add(width, height, 24, [&](int) { return random() & 0xFFFFFF; });
    Animation upsideDown;
    for (const Picture& picture : animation.pictures) {
        const ImageView& view = picture.view();
        const int last = view.width * view.height - 1;
        upsideDown.add(view.width, view.height, 32,
                       [&](int i) { return picture.at((last - i) % view.width, (last - i) / view.width); });
    }
    for (const Quantizer method : kBothMethods) {
        Palette expected;
        ASSERT_EQ(method({animation.frames, 100, {}}, expected), 100);
        Frames order = upsideDown.frames;
        for (std::size_t rotation = 0; rotation < order.size(); ++rotation) {
            std::ranges::rotate(order, order.begin() + 1);
            Palette palette;
            ASSERT_EQ(method({order, 100, {}}, palette), 100);
            EXPECT_TRUE(palette == expected) << rotation;
        }
    }
}

TEST(Quantizer, TheExcludedColourTakesNoPart) {
    const Colour red = makeColour(255, 0, 0);
    for (const Quantizer method : kBothMethods) {
        Animation animation;
        animation.add({red, red, red, grey(0), red, grey(255)});
        Palette palette;
        EXPECT_EQ(method({animation.frames, 255, red}, palette), 2);
        EXPECT_EQ(colours(palette, 2), (std::set{grey(0), grey(255)}));
        EXPECT_EQ(method({animation.frames, 255, {}}, palette), 3);
        Animation redOnly;
        redOnly.add({red, red});
        EXPECT_EQ(method({redOnly.frames, 255, red}, palette), 0);
        EXPECT_EQ(method({{}, 255, {}}, palette), 0);
    }
}

// 33 levels a channel, 35937 colours in all. The best eight entries are the middles of the half cubes: halves of 17 and
// 16 levels at a distance of 255/32 have variances of (17² - 1) / 12 and (16² - 1) / 12 squared distances, which makes
// a mean squared error of 4317 over three channels. Five per cent on top.
TEST(Quantizer, ComesCloseToTheBestPaletteForManyColours) {
    const auto level = [](int i) { return (i * 255 + 16) / 32; };
    const Picture picture(33, 33 * 33, 24,
                          [&](int i) { return makeColour(level(i % 33), level(i / 33 % 33), level(i / 33 / 33)); });
    const Frames frames = {picture.view()};
    for (const Quantizer method : kBothMethods) {
        Palette palette;
        ASSERT_EQ(method({frames, 8, {}}, palette), 8);
        double error = 0;
        for (int y = 0; y < picture.view().height; ++y)
            for (int x = 0; x < picture.view().width; ++x) {
                int least = INT32_MAX;
                for (const PaletteEntry& entry : std::span(palette).first(8))
                    least = std::min(least, squaredDistance(colourOfEntry(entry), picture.at(x, y)));
                error += least;
            }
        EXPECT_LT(error / (33 * 33 * 33), 4317 * 1.05);
    }
}

TEST(PalettePlan, AdaptivePalettesReserveTheirLastEntry) {
    const Colour ground = distinctColour(40);
    const struct {
        const char* name;
        SlotWish wish;
        int colours, slot;
        std::size_t kept; // of the 256 colours; two that must share an entry are both lost
    } cases[] = {{"nothing", {false, false, false, ground}, 256, -1, 256},
                 {"masked", {false, true, false, ground}, 255, 255, 255},
                 {"supercompressed", {true, false, false, ground}, 255, 255, 254},
                 {"supercompressed and masked", {true, true, false, ground}, 255, 255, 254}};
    const Picture picture(16, 16, 24, [](int i) { return distinctColour(i); });
    for (const auto& c : cases) {
        const PalettePlan plan = planAdaptivePalette(Frames{picture.view()}, c.wish).value();
        EXPECT_TRUE(plan.adaptive && plan.colours == c.colours && plan.depth == 8 && plan.slot == c.slot) << c.name;
        const std::set<Colour> used = colours(plan.palette, plan.colours);
        std::size_t kept = 0;
        for (int i = 0; i < 256; ++i)
            kept += used.count(distinctColour(i));
        EXPECT_EQ(kept, c.kept) << c.name;
        EXPECT_TRUE(c.kept != 255 || !used.contains(ground)) << c.name;
        const int entry = backgroundEntry(plan, ground);
        EXPECT_EQ(colourOfEntry(plan.palette[static_cast<std::size_t>(entry)]), ground) << c.name;
        EXPECT_TRUE(c.slot < 0 || entry == 255) << c.name;
    }
}

TEST(PalettePlan, FixedPalettesReserveWhatNothingUses) {
    constexpr SlotWish kMasked{false, true, false, 0};
    constexpr SlotWish kTransparent{false, true, true, 0};
    constexpr SlotWish kSupercompressed{true, false, false, kNoColour};
    const std::vector<Colour> none = {grey(0)};
    const std::vector<Colour> grey100(9, grey(100));
    const std::vector<Colour> bothEnds = {grey(0), grey(255)};
    std::vector<Colour> allGreys;
    for (int i = 0; i < 256; ++i)
        allGreys.push_back(grey(i));
    std::vector<Colour> withoutOne = allGreys;
    withoutOne[77] = grey(78);
    const struct {
        const char* name;
        int choice;
        SlotWish wish;
        const std::vector<Colour>& pixels;
        Dithering dithering;
        int slot;
    } cases[] = {{"masked only", 5, kMasked, none, Dithering::None, -1},
                 {"216 colours", 5, kTransparent, none, Dithering::None, 216},
                 {"first unused", 0, kTransparent, none, Dithering::None, 1},
                 {"only unused", 8, kSupercompressed, withoutOne, Dithering::None, 77},
                 {"all used", 8, kSupercompressed, allGreys, Dithering::None, -1},
                 {"eight of three bits", 9, kSupercompressed, bothEnds, Dithering::None, 1},
                 {"grey is nearest to black", 0, kSupercompressed, grey100, Dithering::None, 1},
                 {"grey dithered takes both", 0, kSupercompressed, grey100, Dithering::ErrorDiffusion, -1}};
    for (const auto& c : cases) {
        Animation animation; // the first frame shows one colour of them, the second all
        animation.add({c.pixels[0]});
        animation.add(c.pixels);
        PalettePlan plan = planFixedPalette(c.choice);
        EXPECT_EQ(plan.slot, -1);
        EXPECT_EQ(findFreeSlot(plan, animation.frames, c.wish, c.dithering), c.slot) << c.name << " " << c.choice;
        plan.slot = c.slot;
        EXPECT_EQ(backgroundEntry(plan, grey(255)), plan.colours - 1) << c.name; // white ends each of these palettes
    }
}

TEST(Remap, TakesTheNearestEntryOfAll) {
    Random random(5);
    for (const int count : {1, 2, 7, 256}) {
        Palette palette;
        for (PaletteEntry& entry : palette)
            entry = paletteEntry(random() & 0xF8F8F8); // few levels, so that some entries are equal
        const Picture picture(101, 60, count == 7 ? 32 : 24, [&](int) { return random() & 0xFFFFFF; });
        Picture target(101, 60, 8);
        Remapper remapper(palette, count, Dithering::None);
        for (int pass = 0; pass < 2; ++pass) { // the second one meets what the first one kept
            remapper.remap(picture.view(), target.view());
            for (int y = 0; y < 60; ++y)
                for (int x = 0; x < 101; ++x) {
                    const int chosen = target.view().row(y)[x];
                    ASSERT_LT(chosen, count);
                    const auto distance = [&](int i) {
                        return squaredDistance(colourOfEntry(palette[static_cast<std::size_t>(i)]), picture.at(x, y));
                    };
                    for (int i = 0; i < count; ++i)
                        ASSERT_TRUE(i < chosen ? distance(i) > distance(chosen) : distance(i) >= distance(chosen))
                            << x << "," << y << " took " << chosen << " instead of " << i;
                }
        }
    }
}

// Expected entries come from a script that diffuses in floating point; the choices are not close.
TEST(Dither, DiffusesErrorsRowByRowBackAndForth) {
    Palette palette{};
    const PaletteEntry five[] = {{0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}};
    std::ranges::copy(five, palette.begin());
    palette[5] = paletteEntry(makeColour(120, 40, 70)); // a perfect match that is not allowed
    const struct {
        Colour colour;
        std::vector<int> entries; // 6 x 4
    } cases[] = {{makeColour(120, 40, 70), {0, 1, 0, 1, 0, 1, 3, 1, 3, 0, 4, 0, 1, 2, 1, 1, 3, 1, 3, 1, 0, 3, 1, 0}},
                 {makeColour(90, 140, 200), {3, 4, 3, 4, 3, 4, 4, 3, 2, 3, 2, 3, 3, 4, 3, 4, 3, 4, 2, 3, 2, 4, 2, 3}},
                 {makeColour(150, 110, 30), {1, 2, 1, 2, 1, 2, 2, 1, 1, 2, 1, 1, 1, 2, 1, 4, 0, 2, 1, 2, 1, 2, 1, 1}},
                 {makeColour(0, 255, 0), std::vector<int>(24, 2)}};
    for (const int bits : {24, 32})
        for (const auto& c : cases) {
            const Picture picture(6, 4, bits, [&](int) { return c.colour; });
            Picture target(6, 4, 8);
            Remapper remapper(palette, 5, Dithering::ErrorDiffusion);
            for (int pass = 0; pass < 2; ++pass) { // no error goes on to the next frame
                remapper.remap(picture.view(), target.view());
                EXPECT_EQ(target.indices(), c.entries) << std::hex << c.colour;
            }
        }
}

// The running image must show at every place what the frames so far would have shown there; the mask says where a frame
// brings nothing new. Together that is what a viewer needs to rebuild each frame.
TEST(ChangeMask, FramesOfAllSizesAreRebuilt) {
    const int sizes[][2] = {{11, 3}, {17, 2}, {11, 3}, {5, 7}, {1, 1}, {33, 9}, {11, 3}};
    for (const int bits : {24, 32}) {
        Random random(static_cast<unsigned>(bits));
        Picture running(11, 3, bits);
        const auto bytes = static_cast<std::size_t>(bits / 8);
        std::map<std::pair<int, int>, std::vector<std::uint8_t>> shown;
        for (int i = 0; i < 33; ++i)
            shown[{i % 11, i / 11}].resize(bytes);
        int unchanged = 0;
        for (const auto& [width, height] : sizes) {
            Picture frame(width, height, bits);
            Picture mask(width, height, 1);
            for (int y = 0; y < height; ++y) {
                std::generate_n(frame.view().row(y),
                                width * static_cast<int>(bytes), // mostly 0, as in the frame before
                                [&] { return static_cast<std::uint8_t>(random() % 8 == 0 ? 255 : 0); });
                mask.view().row(y)[0] = 0xFF; // old bits must go
            }
            updateChangeMask(running.view(), frame.view(), mask.view());
            for (int y = 0; y < height; ++y)
                for (int x = 0; x < width; ++x) {
                    const std::uint8_t* pixel = frame.view().pixel(x, y);
                    const std::vector<std::uint8_t> value(pixel, pixel + bytes);
                    const auto before = shown.find({x, y}); // only where the running image has pixels
                    const bool marked = (mask.view().row(y)[x / 8] >> (7 - x % 8) & 1) != 0;
                    ASSERT_EQ(marked, before != shown.end() && before->second == value) << x << "," << y;
                    unchanged += marked ? 1 : 0;
                    if (before != shown.end())
                        before->second = value;
                }
            for (const auto& [place, value] : shown)
                ASSERT_EQ(std::memcmp(running.view().pixel(place.first, place.second), value.data(), bytes), 0);
        }
        EXPECT_GT(unchanged, 30); // the masks do say something
    }
}

TEST(ReservedSlot, ReceivesWhatTheMaskOrTheColourSays) {
    Picture mask(11, 2, 1);
    mask.view().row(0)[0] = 0x81;
    mask.view().row(0)[1] = 0x7F; // the last five bits are padding
    mask.view().row(1)[1] = 0x20;
    Picture target(11, 2, 8);
    fillUnchanged(target.view(), mask.view(), 9);
    EXPECT_EQ(target.indices(), (std::vector<int>{9, 0, 0, 0, 0, 0, 0, 9, 0, 9, 9, //
                                                  0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9}));
    for (const int bits : {24, 32}) {
        const Colour row[] = {makeColour(1, 2, 3), makeColour(3, 2, 1), makeColour(1, 2, 4), makeColour(1, 2, 3)};
        const Picture source(4, 1, bits, [&](int i) { return row[i]; });
        if (bits == 32)
            source.view().pixel(3, 0)[3] = 0x80; // alpha is no part of a colour
        Picture indexed(4, 1, 8);
        std::ranges::fill(std::span(indexed.view().row(0), 4), std::uint8_t{5});
        mapColourToSlot(indexed.view(), source.view(), makeColour(1, 2, 3), 200);
        EXPECT_EQ(indexed.indices(), (std::vector<int>{200, 5, 5, 200})) << bits;
    }
}

} // namespace
} // namespace veldran
