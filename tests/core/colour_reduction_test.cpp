// From true colour to palette images: built-in and adaptive palettes, reserved slots, remapping, dithering, change
// masks. Random pictures come from a generator whose numbers the C++ standard fixes, so every run sees the same ones.
// Checksums are CRC-32 of all 768 bytes, computed by a script that builds the palettes on its own.
#include "colour/colour_histogram.h"
#include "colour/palette.h"
#include "colour/palette_plan.h"
#include "colour/quantizer.h"
#include "colour/remap.h"
#include "pictures.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>
#include <deque>
#include <random>
#include <tuple>
#include <vector>

namespace veldran {
namespace {

TEST(Palette, BuiltInChoices) {
    const std::tuple<int, int, int, unsigned long> cases[] = {
        // choice, colours, depth, checksum
        {0, 2, 1, 0x21E6ECFE},   {1, 16, 4, 0x1E940959},  {2, 32, 5, 0x2D0EDC7D},   {3, 64, 6, 0x108C5FFB},
        {4, 128, 7, 0x40D893CF}, {5, 216, 8, 0x23EA7C80}, {6, 256, 8, 0xBB8FABC2},  {7, 256, 8, 0xC981EF12},
        {8, 256, 8, 0xA4205DE0}, {9, 8, 3, 0x6F3EBED1},   {10, 256, 8, 0xBB8FABC2}, {-1, 256, 8, 0xBB8FABC2}};
    for (const auto& c : cases) {
        const int choice = std::get<0>(c);
        Palette palette;
        palette.fill({1, 2, 3}); // what stood there before must be gone
        int depth = 0;
        const int count = fixedPalette(&palette, &depth, choice);
        const auto sum = crc32(0, reinterpret_cast<const Bytef*>(palette.data()), sizeof palette);
        EXPECT_EQ((std::tuple{choice, count, depth, sum}), c);
        EXPECT_EQ(fixedPalette(nullptr, nullptr, choice), count) << choice;
    }
}

TEST(Palette, DepthHoldsTheColours) {
    const int cases[][2] = {{1, 1}, {2, 1}, {3, 2}, {17, 5}, {128, 7}, {129, 8}, {256, 8}, {257, 24}, {INT32_MAX, 24}};
    for (const auto& [colours, depth] : cases)
        EXPECT_EQ(depthForColours(colours), depth) << colours;
}

TEST(Palette, NearestEntryIsTheLowestOfEquals) {
    const Palette palette{{{10, 10, 10}, {20, 10, 10}, {10, 10, 10}, {200, 200, 200}}};
    EXPECT_EQ(nearestEntry(palette, 4, makeColour(15, 10, 10)), 0); // 25 to each of the first three
    EXPECT_EQ(nearestEntry(palette, 4, makeColour(16, 10, 10)), 1);
    EXPECT_EQ(nearestEntry(palette, 3, makeColour(200, 200, 200)), 1);          // entries beyond the count take no part
    EXPECT_EQ(nearestEntry(palette, 4, makeColour(0, 10, 10) | 0xFF000000), 0); // the fourth byte is no colour
}

using Quantizer = std::optional<int> (*)(const QuantizeRequest&, Palette&);
constexpr Quantizer kBothMethods[] = {optimalPalette, optimalPaletteInSmallMemory};

// The lowest of the nearest, found by looking at every entry.
std::size_t nearest(const Palette& palette, int count, Colour colour) {
    const auto distance = [&](const PaletteEntry& entry) { return squaredDistance(entry, paletteEntry(colour)); };
    const auto entries = std::span(palette).first(static_cast<std::size_t>(count));
    return static_cast<std::size_t>(std::ranges::min_element(entries, {}, distance) - entries.begin());
}

TEST(Quantizer, FewColoursComeThroughExactly) {
    for (const int count : {1, 2, 17, 256})
        for (const int wanted : {count, 256}) {
            Animation animation; // each colour in one of two frames
            std::set<Colour> expected;
            for (int parity = 0; parity < 2; ++parity)
                animation.add(64, 2, 24 + 8 * parity, [&](int i) {
                    return *expected.insert(distinctColour(std::min(2 * i + parity, count - 1))).first;
                });
            Palette palette;
            palette.fill({9, 9, 9});
            EXPECT_EQ(optimalPalette({animation.frames, wanted, {}}, palette), count);
            EXPECT_EQ(colours(palette, count), expected) << count << " of " << wanted;
            EXPECT_EQ(std::count(palette.begin() + count, palette.end(), PaletteEntry{0, 0, 0}), 256 - count);
        }
}

TEST(Quantizer, EntriesAreTheMeansOfWhatTheyStandFor) {
    const std::tuple<Quantizer, std::vector<Colour>, std::set<Colour>> cases[] = {
        {optimalPalette, {0, 0, 0, makeColour(100, 40, 8)}, {makeColour(25, 10, 2)}},
        {optimalPalette, {grey(0), grey(1)}, {grey(1)}},                 // halves go up
        {optimalPaletteInSmallMemory, {0, 0, 0, grey(255)}, {grey(64)}}, // 63.75
    };
    for (const auto& [method, pixels, means] : cases) {
        Animation animation;
        animation.add(pixels);
        const int count = static_cast<int>(means.size());
        Palette palette;
        EXPECT_EQ(method({animation.frames, count, {}}, palette), count);
        EXPECT_EQ(colours(palette, count), means);
    }
}

// 120000 pixels of one colour and 40000 of another, standing still or flickering: a count that wraps anywhere would
// move the mean.
TEST(Quantizer, CountsBeyondSixteenBits) {
    for (const int frames : {1, 3})
        for (const int flicker : {0, 1}) {
            Animation animation;
            for (int i = 0; i < frames; ++i)
                animation.add(400, 400, 24, [&](int k) { return (k + flicker * i) % 4 == 0 ? grey(100) : grey(0); });
            for (const Quantizer method : kBothMethods)
                for (const auto& [excluded, mean] : {std::pair{kNoColour, grey(25)}, {grey(0), grey(100)}}) {
                    Palette palette;
                    ASSERT_EQ(method({animation.frames, 1, excluded}, palette), 1);
                    EXPECT_EQ(palette[0], paletteEntry(mean)) << frames << flicker;
                }
        }
}

TEST(Quantizer, TheOrderOfFramesDoesNotMatter) {
    Random random(3);
    Animation animation;
    for (const auto& [width, height] : {std::pair{31, 17}, {1, 1}, {64, 5}, {2, 90}})
        animation.add(width, height, 24, [&](int) { return random() & 0xFFFFFF; });
    for (const Quantizer method : kBothMethods) {
        Palette expected, palette;
        ASSERT_EQ(method({animation.frames, 100, {}}, expected), 100);
        for (std::size_t rotation = 0; rotation < animation.frames.size(); ++rotation) {
            std::ranges::rotate(animation.frames, animation.frames.begin() + 1);
            ASSERT_EQ(method({animation.frames, 100, {}}, palette), 100);
            EXPECT_TRUE(palette == expected) << rotation;
        }
    }
}

TEST(Quantizer, TheExcludedColourTakesNoPart) {
    const Colour red = makeColour(255, 0, 0);
    Animation both, redOnly;
    both.add({red, red, red, grey(0), red, grey(255)});
    redOnly.add({red, red});
    for (const Quantizer method : kBothMethods) {
        Palette palette;
        EXPECT_EQ(method({both.frames, 255, red}, palette), 2);
        EXPECT_EQ(colours(palette, 2), (std::set{grey(0), grey(255)}));
        EXPECT_EQ(method({both.frames, 255, {}}, palette), 3);
        EXPECT_EQ(method({redOnly.frames, 255, red}, palette), 0);
        EXPECT_EQ(method({{}, 255, {}}, palette), 0);
    }
}

// 33 levels a channel, 35937 colours in all. The best eight entries are the middles of the half cubes: halves of 17 and
// 16 levels at a distance of 255/32 have variances of (17² - 1) / 12 and (16² - 1) / 12 squared distances, which makes
// a mean squared error of 4317 over three channels. Five per cent on top.
TEST(Quantizer, ComesCloseToTheBestPaletteForManyColours) {
    const auto level = [](int i) { return i % 33 * 255 / 32; };
    Animation animation;
    animation.add(33, 33 * 33, 24, [&](int i) { return makeColour(level(i), level(i / 33), level(i / 33 / 33)); });
    for (const Quantizer method : kBothMethods) {
        Palette palette;
        ASSERT_EQ(method({animation.frames, 8, {}}, palette), 8);
        double error = 0;
        for (const Colour colour : animation.pictures[0].colours())
            error += squaredDistance(palette[nearest(palette, 8, colour)], paletteEntry(colour));
        EXPECT_LT(error / (33 * 33 * 33), 4317 * 1.05);
    }
}

TEST(PalettePlan, AdaptivePalettesReserveTheirLastEntry) {
    const Colour ground = distinctColour(40);
    const struct {
        const char* name;
        SlotWish wish;
        int colours, slot;
        std::ptrdiff_t kept; // of the 256 colours; two that must share an entry are both lost
    } cases[] = {{"nothing", {false, false, false, ground}, 256, -1, 256},
                 {"masked", {false, true, false, ground}, 255, 255, 255},
                 {"supercompressed and masked", {true, true, false, ground}, 255, 255, 254}};
    const Picture picture(16, 16, 24, distinctColour);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const PalettePlan plan = planAdaptivePalette(Frames{picture.view()}, c.wish, Dithering::None).value();
        EXPECT_TRUE(plan.adaptive && plan.colours == c.colours && plan.depth == 8 && plan.slot == c.slot);
        const std::set<Colour> used = colours(plan.palette, plan.colours);
        const std::vector<Colour> all = picture.colours();
        EXPECT_EQ(std::ranges::count_if(all, [&](Colour colour) { return used.contains(colour); }), c.kept);
        EXPECT_TRUE(c.kept != 255 || !used.contains(ground));
        const int entry = backgroundEntry(plan, ground);
        EXPECT_EQ(plan.palette[static_cast<std::size_t>(entry)], paletteEntry(ground));
        EXPECT_TRUE(c.slot < 0 || entry == 255);
    }
}

TEST(PalettePlan, FixedPalettesReserveWhatNothingUses) {
    constexpr SlotWish kMasked{false, true, false, 0}, kTransparent{false, true, true, 0};
    constexpr SlotWish kSupercompressed{true, false, false, kNoColour};
    constexpr Dithering kPlain = Dithering::None;
    const std::vector<Colour> none = {grey(0)}, grey100(9, grey(100));
    std::vector<Colour> allGreys;
    for (int i = 0; i < 256; ++i)
        allGreys.push_back(grey(i));
    std::vector<Colour> withoutOne = allGreys;
    withoutOne[77] = grey(78);
    const std::tuple<const char*, int, SlotWish, const std::vector<Colour>&, Dithering, int> cases[] = {
        {"masked only", 5, kMasked, none, kPlain, -1},
        {"216 colours", 5, kTransparent, none, kPlain, 216},
        {"first unused", 0, kTransparent, none, kPlain, 1},
        {"only unused", 8, kSupercompressed, withoutOne, kPlain, 77},
        {"all used", 8, kSupercompressed, allGreys, kPlain, -1},
        {"grey is nearest to black", 0, kSupercompressed, grey100, kPlain, 1},
        {"grey dithered takes both", 0, kSupercompressed, grey100, Dithering::ErrorDiffusion, -1}};
    for (const auto& [name, choice, wish, pixels, dithering, slot] : cases) {
        Animation animation; // the first frame shows one colour of them, the second all
        animation.add({pixels[0]});
        animation.add(pixels);
        PalettePlan plan = planFixedPalette(choice);
        EXPECT_EQ(plan.slot, -1);
        EXPECT_EQ(findFreeSlot(plan, animation.frames, wish, dithering), slot) << name;
        plan.slot = slot;
        EXPECT_EQ(backgroundEntry(plan, grey(255)), plan.colours - 1) << name; // white ends each of these palettes
    }
}

TEST(Remap, TakesTheNearestEntryOfAll) {
    Random random(5);
    for (const int count : {1, 2, 7, 256}) {
        Palette palette;
        for (PaletteEntry& entry : palette)
            entry = paletteEntry(random() & 0xF8F8F8); // few levels, so that some entries are equal
        const Picture picture(101, 60, count == 7 ? 32 : 24, [&](int) { return random() & 0xFFFFFF; });
        std::vector<int> expected;
        for (const Colour colour : picture.colours())
            expected.push_back(static_cast<int>(nearest(palette, count, colour)));
        Picture target(101, 60, 8);
        Remapper remapper(palette, count, Dithering::None);
        for (int pass = 0; pass < 2; ++pass) { // the second one meets what the first one kept
            remapper.remap(std::vector<RemapPair>{{picture.view(), target.view()}});
            ASSERT_EQ(target.indices(), expected) << count;
        }
    }
}

// Expected entries come from a script that diffuses in floating point; the choices are not close.
TEST(Dither, DiffusesErrorsRowByRowBackAndForth) {
    // The last one is a perfect match that is not allowed.
    const Palette palette{{{0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}, {140, 30, 120}}};
    const std::pair<Colour, std::vector<int>> cases[] = {
        // 6 x 4 entries
        {makeColour(140, 30, 120), {1, 3, 1, 3, 1, 3, 3, 1, 3, 1, 3, 1, 1, 3, 1, 4, 0, 1, 1, 3, 1, 3, 1, 3}},
        {makeColour(190, 80, 130), {1, 4, 1, 3, 1, 4, 4, 0, 4, 1, 4, 1, 1, 3, 1, 3, 1, 3, 4, 1, 4, 1, 4, 1}},
        {makeColour(0, 255, 0), std::vector<int>(24, 2)}};
    for (const int bits : {24, 32})
        for (const auto& [colour, entries] : cases) {
            const Picture picture(6, 4, bits, [&](int) { return colour; });
            Picture target(6, 4, 8);
            Remapper remapper(palette, 5, Dithering::ErrorDiffusion);
            for (int pass = 0; pass < 2; ++pass) { // no error goes on to the next frame
                remapper.remap(std::vector<RemapPair>{{picture.view(), target.view()}});
                EXPECT_EQ(target.indices(), entries) << std::hex << colour;
            }
        }
}

// A gradient on which a patch moves: most pixels stand still from one frame to the next.
Animation movingPatch(int frames, int width, int height) {
    Animation animation;
    Random random(11);
    for (int i = 0; i < frames; ++i)
        animation.add(width, height, 24, [&](int k) {
            const int x = k % width, y = k / width;
            const bool patch = x >= 3 * i && x < 3 * i + 9 && y > 4 && y < 20;
            return patch ? static_cast<Colour>(random() & 0xFFFFFF) : makeColour(60 + x, 200 - 2 * y, 90 + (x + y) / 3);
        });
    return animation;
}

std::vector<std::vector<int>> remapInGroups(const Animation& animation, Remapper&& remapper, std::size_t group) {
    std::deque<Picture> targets;
    std::vector<RemapPair> pairs;
    for (const ConstImageView& frame : animation.frames)
        pairs.push_back({frame, targets.emplace_back(frame.width, frame.height, 8).view()});
    for (std::size_t first = 0; first < pairs.size(); first += group)
        remapper.remap(std::span(pairs).subspan(first, std::min(group, pairs.size() - first)),
                       first == 0 ? nullptr : &pairs[first - 1]);
    std::vector<std::vector<int>> indices;
    for (const Picture& target : targets)
        indices.push_back(target.indices());
    return indices;
}

TEST(Remap, StillPixelsKeepTheirEntriesHoweverFramesAreGrouped) {
    const Animation animation = movingPatch(9, 61, 30);
    for (const Dithering dithering : {Dithering::None, Dithering::ErrorDiffusion}) {
        const PalettePlan plan = planAdaptivePalette(animation.frames, SlotWish{}, dithering).value();
        const auto inGroups = [&](std::size_t group) {
            return remapInGroups(animation, Remapper(plan.palette, 16, dithering), group);
        };
        const auto alone = inGroups(1);
        EXPECT_EQ(inGroups(9), alone);
        EXPECT_EQ(inGroups(5), alone);
        for (std::size_t i = 1; i < alone.size(); ++i) {
            const auto before = animation.pictures[i - 1].colours(), now = animation.pictures[i].colours();
            for (std::size_t k = 0; k < now.size(); ++k)
                ASSERT_TRUE(now[k] != before[k] || alone[i][k] == alone[i - 1][k]) << k;
        }
    }
}

// Frames of other sizes begin anew; one pixel, and long animations of it, are frames too.
TEST(Remap, TakesFramesOfAnySizes) {
    const Palette palette{{{0, 0, 0}, {255, 255, 255}}};
    Animation animation;
    for (int i = 0; i < 3000; ++i)
        animation.add(i % 7 == 0 ? 40 : 1, i % 5 == 0 ? 2 : 1, i % 11 == 0 ? 32 : 24,
                      [i](int) { return grey(i % 2 * 255); });
    for (const Dithering dithering : {Dithering::None, Dithering::ErrorDiffusion}) {
        const auto indices = remapInGroups(animation, Remapper(palette, 2, dithering), 4);
        for (std::size_t i = 0; i < indices.size(); ++i)
            ASSERT_EQ(indices[i], std::vector<int>(indices[i].size(), static_cast<int>(i % 2))) << i;
    }
}

// To the right of a gradient that is dithered lies an area of a palette colour, and a colour that is left apart from
// entries far away: neither shows errors, nor does the area behind it.
TEST(Dither, FlatAreasAndWhatIsLeftApartStopErrors) {
    const Palette palette{{{0, 0, 0}, {140, 140, 140}, {255, 255, 255}}};
    const Colour apart = makeColour(255, 0, 255);
    Animation animation;
    animation.add(60, 20, 24, [=](int k) {
        const int x = k % 60;
        return x < 20 ? grey(10 + 6 * x) : x < 40 ? grey(140) : x < 50 ? apart : grey(k % 2 == 0 ? 140 : 255);
    });
    const std::vector<int> indices =
        remapInGroups(animation, Remapper(palette, 3, Dithering::ErrorDiffusion, apart), 1)[0];
    for (std::size_t k = 0; k < 60 * 20; ++k) {
        const std::size_t x = k % 60;
        ASSERT_TRUE(x <= 20 || x >= 39 || indices[k] == 1) << x;
        ASSERT_TRUE(x < 50 || indices[k] == (k % 2 == 0 ? 1 : 2)) << x;
    }
    EXPECT_GT(std::ranges::count(indices, 0), 20); // and there were errors to stop
}

// The running image must show at every place what the frames so far would have shown there; the mask says where a frame
// brings nothing new. Runs of pixels that are alike are looked at at once, so odd ones are few or many.
TEST(ChangeMask, FramesOfAllSizesAreRebuilt) {
    constexpr int kWidth = 110, kHeight = 6;
    for (const int bits : {24, 32})
        for (const unsigned rarity : {4u, 60u, 400u}) {
            Random random(rarity);
            Picture running(kWidth, kHeight, bits);
            std::vector<Colour> shown(kWidth * kHeight, 0);
            int unchanged = 0;
            for (const auto& [width, height] : {std::pair{kWidth, kHeight},
                                                {17, 2},
                                                {kWidth, kHeight},
                                                {5, 7},
                                                {1, 1},
                                                {133, 9},
                                                {kWidth, kHeight}}) {
                const Picture frame(width, height, bits, [&](int) { return random() % rarity == 0 ? 0xFF0000u : 0u; });
                Picture mask(width, height, 1), filled(width, height, 8);
                for (int y = 0; y < height; ++y)
                    mask.view().row(y)[0] = 0xFF; // old bits must go
                updateChangeMask(running.view(), frame.view(), mask.view());
                fillUnchanged(filled.view(), mask.view(), 9);
                std::vector<int> expected;
                for (int i = 0; i < width * height; ++i) {
                    const int x = i % width, y = i / width;
                    Colour none = kNoColour; // the running image has no pixel there
                    Colour& before = x < kWidth && y < kHeight ? shown[static_cast<std::size_t>(kWidth * y + x)] : none;
                    expected.push_back(before == frame.at(x, y) ? 9 : 0);
                    before = frame.at(x, y);
                }
                ASSERT_EQ(filled.indices(), expected) << width;
                ASSERT_EQ(running.colours(), shown) << width;
                unchanged += static_cast<int>(std::ranges::count(expected, 9));
            }
            EXPECT_GT(unchanged, 100); // the masks do say something
        }
}

// Of more colours than wanted, the means of ever larger cubes: 1, 2, 4 and 8 levels a side, and no larger ones.
TEST(ColourHistogram, TakesNeighboursTogetherUntilTheyAreFewEnough) {
    Animation animation;
    animation.add(64, 64, 24, [](int i) { return makeColour(i % 16, i / 16 % 16, i / 256); });
    ColourHistogram histogram;
    histogram.count(animation.frames);
    for (const auto& [most, points] : {std::pair{4096u, 4096u}, {4095u, 512u}, {511u, 64u}, {63u, 8u}, {7u, 8u}}) {
        const std::vector<ColourPoint> found = histogram.points(most);
        EXPECT_EQ(found.size(), points);
        float weight = 0, red = 0;
        for (const ColourPoint& point : found) {
            weight += point.weight;
            red += point.weight * point.place[0];
        }
        EXPECT_EQ(weight, 4096);
        EXPECT_FLOAT_EQ(red / weight, 7.5f) << most;
    }
}

TEST(ReservedSlot, ReceivesItsColour) {
    const Colour row[] = {makeColour(1, 2, 3), makeColour(3, 2, 1), makeColour(1, 2, 4), makeColour(1, 2, 3)};
    for (const int bits : {24, 32}) {
        const Picture source(4, 1, bits, [&](int i) { return row[i]; });
        if (bits == 32)
            source.view().pixel(3, 0)[3] = 0x80; // alpha is no part of a colour
        Picture indexed(4, 1, 8);
        std::fill_n(indexed.view().row(0), 4, std::uint8_t{5});
        mapColourToSlot(indexed.view(), source.view(), makeColour(1, 2, 3), 200);
        EXPECT_EQ(indexed.indices(), (std::vector<int>{200, 5, 5, 200})) << bits;
    }
}

} // namespace
} // namespace veldran
