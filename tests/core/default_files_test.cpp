// What instruments show before anybody has chosen a file.
#include "defaults/song.h"
#include "sound/sound_analysis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace veldran {
namespace {

TEST(DefaultSound, MovesEveryBandOnBothSides) {
    const std::string file = defaults::waveFile(defaults::song());
    WaveFormat format;
    std::memcpy(&format, file.data() + 20, sizeof format);
    const std::vector<std::uint8_t> samples(file.begin() + 44, file.end());
    const auto spectrum = analyseSound(format, samples, 128, SoundMeasure::Spectrum, SoundScale::Normalised);
    ASSERT_TRUE(spectrum);
    EXPECT_EQ(spectrum->playingMilliseconds, 4000);
    for (const ChannelLevels& band : spectrum->bands)
        for (const auto& levels : {band.left, band.right}) {
            EXPECT_GT(std::ranges::max(levels), 255 / 2);
            EXPECT_LT(std::ranges::min(levels), std::ranges::max(levels) / 3);
        }
}

TEST(DefaultSound, LoopsWithoutAClick) {
    const defaults::Loop loop = defaults::song();
    const auto step = [&](std::size_t i) { return std::abs(loop.left(i + 1) - loop.left(i)); };
    double largest = 0;
    for (std::size_t i = 0; i + 1 < loop.size(); ++i)
        largest = std::max(largest, step(i));
    EXPECT_LT(step(loop.size() - 1), largest / 2);
}

} // namespace
} // namespace veldran
