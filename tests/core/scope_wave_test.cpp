// Waves of sounds and the light of a beam that draws them. Samples are small enough to be worked out by hand.
#include "instruments/scopes/scope_wave.h"
#include "raster.h"
#include "wave_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

namespace veldran {
namespace {

using Values = std::vector<float>;

TEST(WaveValues, ChannelsScalesAndKindsOfSamples) {
    using enum SoundChannels;
    using enum SoundScale;
    const Bytes samples = words({16384, -8192, -4096, 0, 0, 4096}), bytes = {127, 255, 63, 0};
    const WaveFormat stereo = pcm(2, 16);
    const std::tuple<const char*, WaveFormat, const Bytes&, SoundChannels, SoundScale, int, Values> cases[] = {
        {"left", stereo, samples, Left, Raw, 0, {0.5f, -0.125f, 0}},
        {"right", stereo, samples, Right, Raw, 0, {-0.25f, 0, 0.125f}},
        {"first of two", stereo, samples, Stereo, Raw, 0, {0.5f, -0.125f, 0}},
        {"second of two", stereo, samples, Stereo, Normalised, 1, {-1, 0, 0.5f}},
        {"mono", stereo, samples, Mono, Raw, 0, {0.125f, -0.0625f, 0.0625f}},
        {"the largest byte is no valley", pcm(1, 8), bytes, Left, Raw, 0, {0, 1, -0.5f}},
        {"six channels", pcm(6, 16), samples, Left, Raw, 0, {0, 0, 0}}};
    for (const auto& [what, format, data, channels, scale, display, values] : cases)
        EXPECT_EQ(WaveValues(format, data, channels, scale).read(display, 0, 3, 9), values) << what;

    const Bytes quiet(40, 128); // bytes that are silent for every program but this one
    EXPECT_LT(WaveValues(pcm(1, 8), quiet, Left, Normalised).read(0, 0, 1, 2)[0], 0.01f);
    const Bytes alone = words({5, 6, 10}); // a left sample without its right one is the loudest
    EXPECT_EQ(WaveValues(stereo, alone, Left, Normalised).read(0, 0, 2, 9), (Values{0.5f, 1}));
}

TEST(WaveValues, LongStretchesKeepTheirPeaks) {
    std::vector<int> samples(3000);
    samples[700] = 32767;
    samples[701] = -32768;
    samples[2999] = -16384;
    const Bytes bytes = words(samples);
    const WaveValues wave(pcm(1, 16), bytes, SoundChannels::Left, SoundScale::Raw);
    ASSERT_EQ(wave.size(), 3000u);
    const Values values = wave.read(0, 0, 3000, 21); // ten groups of 300
    ASSERT_EQ(values.size(), 20u);
    EXPECT_GT(values[4], 0.99f); // in the order in which they come
    EXPECT_EQ(values[5], -1);
    EXPECT_EQ(values[19], -0.5f);
    EXPECT_EQ(std::ranges::count(values, 0.0f), 17);
    EXPECT_EQ(wave.read(0, 2999, 3, 9), (Values{-0.5f, 0, 0})); // silence beyond the end
    EXPECT_TRUE(wave.read(0, 0, 0, 9).empty());
}

int green(const Raster& screen, int x, int y) {
    return screen.view.pixel(x, y)[1];
}

TEST(BeamLight, IsWeakerWhereTheBeamIsQuick) {
    BeamLight light(60, 100);
    // Level for 20 columns, then ever steeper.
    light.write(std::vector<BeamPoint>{{5, 90}, {15, 90}, {25, 90}, {35, 70}, {45, 10}}, 10);
    light.widen();
    Raster screen(80, 120, 24, RowOrder::TopDown, 0);
    Bytes columns(60, 255);
    std::fill_n(columns.begin(), 9, std::uint8_t{0});
    light.show(screen.view, 10, 20, 0, 0x00C000, columns);
    const int level = green(screen, 30, 110), steep = green(screen, 40, 100), steeper = green(screen, 50, 60);
    EXPECT_TRUE(level > steep + 10 && steep > steeper + 10 && steeper > 40) << level << steep << steeper;
    EXPECT_GT(screen.view.pixel(30, 110)[0], 0); // a white core where it is slow
    EXPECT_EQ(screen.view.pixel(50, 60)[0], 0);
    for (int y = 0; y < 120; ++y)
        EXPECT_EQ(green(screen, 18, y) + green(screen, 70, y), 0) << y; // weight 0, and where nothing was written
}

TEST(BeamLight, DarkTracesAreNeverWhiteAndBordersHold) {
    BeamLight light(20, 20);
    light.write(std::vector<BeamPoint>{{-30, 10}, {50, 10}, {50, -999}, {10, 1e4f}, {19, 19}}, 500);
    light.widen();
    Raster screen(12, 12, 24, RowOrder::TopDown, 200);
    light.show(screen.view, -4, -4, 0xC8C8C8, 0x101010, Bytes(20, 255));
    for (int y = 0; y < 12; ++y)
        EXPECT_LE(std::ranges::max(screen.row(y)), 200);
    EXPECT_LT(green(screen, 6, 6), 30);
}

// Of two sides each is written in its half, full scale just inside; moments that are silent are a level line.
TEST(ScopeWave, EverySideHasItsLane) {
    const Bytes samples = words({32767, 0, 32767, 0, 32767, 0});
    const WaveValues wave(pcm(2, 16), samples, SoundChannels::Stereo, SoundScale::Raw);
    for (const std::size_t count : {3u, 1u, 0u}) { // of no moment: silence on both sides
        BeamLight light(30, 60);
        writeWave(light, wave, SoundChannels::Stereo, 0, count, 4);
        Raster screen(30, 60, 24, RowOrder::TopDown, 0);
        light.show(screen.view, 0, 0, 0x000000, 0x00FF00, Bytes(30, 255));
        std::vector<int> lit;
        for (int y = 0; y < 60; ++y)
            if (green(screen, 15, y) > 0)
                lit.push_back(y);
        EXPECT_EQ(lit, count > 0 ? (std::vector{0, 1, 44, 45}) : (std::vector{14, 15, 44, 45})) << count;
    }
}

TEST(BeamSpot, IsWhiteWithinAndColouredAroundAndEnds) {
    Raster screen(40, 40, 24, RowOrder::TopDown, 0), paper(9, 9, 24, RowOrder::TopDown, 250);
    drawBeamSpot(screen.view, {20, 20}, 4, 0x000000, 0x00FF00);
    EXPECT_TRUE(redOf(screen.at(20, 20)) > 200 && green(screen, 20, 20) == 255);
    EXPECT_TRUE(redOf(screen.at(20, 28)) == 0 && green(screen, 20, 28) > 20);
    EXPECT_EQ(green(screen, 20, 33) + green(screen, 7, 20), 0);
    const Bytes middle = screen.row(20);
    drawBeamSpot(screen.view, {-3, 50}, 4, 0x000000, 0x00FF00); // half beyond the border
    drawBeamSpot(screen.view, {1e6f, -1e6f}, 4, 0x000000, 0x00FF00);
    EXPECT_EQ(screen.row(20), middle);
    EXPECT_GT(green(screen, 0, 39), 0);
    drawBeamSpot(paper.view, {4, 4}, 3, 0xFAFAFA, 0x101010); // darker than the screen: nothing turns white
    EXPECT_LE(green(paper, 4, 4), 16);
}

} // namespace
} // namespace veldran
