// The filters' loop in registers of either length against each other. What the filters give is tested with the sounds.
#include "sound/band_lanes.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

namespace veldran {
namespace {

TEST(BandLanes, RegistersOfBothLengthsGiveTheSameBits) {
    if (!hasAvx())
        GTEST_SKIP() << "This processor has registers of one length.";
    constexpr std::size_t kPairs = 300;
    std::mt19937 random(3);
    std::uniform_real_distribution<double> sample(-1, 1);
    BandFactors factors{};
    for (std::size_t lane = 0; lane < kBandLanes; ++lane) { // the last one grows beyond what a double holds
        factors.gain[lane] = sample(random);
        factors.b1[lane] = -1.8 * sample(random);
        factors.b2[lane] = lane + 1 < kBandLanes ? 0.9 : 30;
    }
    alignas(32) double input[2 * kPairs];
    for (double& value : input)
        value = sample(random);
    BandState states[2]{};
    alignas(32) double loudest[2][kBandLanes]{};
    for (const std::size_t pairs : {0, 1, 2, 3, 17, 300}) {
        runBandLanesSse2(factors, states[0], input, pairs, loudest[0]);
        runBandLanesAvx(factors, states[1], input, pairs, loudest[1]);
        EXPECT_EQ(std::memcmp(&states[0], &states[1], sizeof(BandState)), 0) << pairs;
        EXPECT_EQ(std::memcmp(loudest[0], loudest[1], sizeof loudest[0]), 0) << pairs;
        EXPECT_EQ(loudest[0][0] > 0, pairs > 0);
    }
}

} // namespace
} // namespace veldran
