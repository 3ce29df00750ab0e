// What tests of pictures do alike: one build with given settings, and how much two frames differ.
#pragma once

#include "recording_host.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

namespace recording {

// The frames of a build that shows no message and gives a careful host nothing to complain about.
inline std::vector<Frame> buildFrames(const std::string& settings) {
    Session session;
    session.settings = settings;
    session.steps = {pressing(kBuild)};
    Recording seen = run(session);
    EXPECT_TRUE(seen.boxes.empty() && seen.faults.empty()) << settings;
    return std::move(seen.frames);
}

// All channels' differences, summed up.
inline long difference(const Frame& a, const Frame& b) {
    long sum = 0;
    for (std::size_t i = 40; i < a.bitmap.size(); ++i)
        sum += std::abs(a.bitmap[i] - b.bitmap[i]);
    return sum;
}

// The largest difference of neighbours; the one over the seam is not among them.
inline long largestStep(const std::vector<Frame>& frames) {
    long most = 0;
    for (std::size_t i = 1; i < frames.size(); ++i)
        most = std::max(most, difference(frames[i - 1], frames[i]));
    return most;
}

} // namespace recording
