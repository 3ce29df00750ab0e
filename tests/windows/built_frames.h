// What tests of pictures do alike: builds with given settings, files for them,
// and how much two frames differ.
#pragma once

#include "recording_host.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <utility>

namespace recording {

// A build that shows no message and gives a careful host nothing to complain
// about, after these steps in the dialog.
inline Recording build(const std::string& settings, std::vector<Step> steps = {},
                       std::uint32_t flags = kDelayInHundredths) {
    Session session;
    session.settings = settings;
    session.flags = flags;
    session.steps = std::move(steps);
    session.steps.push_back(pressing(kBuild));
    Recording seen = run(session);
    EXPECT_TRUE(seen.boxes.empty() && seen.faults.empty()) << settings;
    return seen;
}

inline std::vector<Frame> buildFrames(const std::string& settings, std::vector<Step> steps = {}) {
    return build(settings, std::move(steps)).frames;
}

inline std::string line(const std::string& key, int value) {
    return key + " = " + std::to_string(value) + "\n";
}

// Deleted with the object.
class TemporaryFile {
public:
    TemporaryFile(const std::string& name, const std::string& bytes) {
        char folder[MAX_PATH] = "";
        GetTempPathA(MAX_PATH, folder);
        path_ = folder + name;
        std::ofstream(path_, std::ios::binary) << bytes;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    ~TemporaryFile() { DeleteFileA(path_.c_str()); }

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

// All channels' differences, summed up.
inline long difference(const Frame& a, const Frame& b) {
    long sum = 0;
    for (std::size_t i = 40; i < a.bitmap.size(); ++i)
        sum += std::abs(a.bitmap[i] - b.bitmap[i]);
    return sum;
}

// The largest difference of neighbours; the one over the seam is not among
// them.
inline long largestStep(const std::vector<Frame>& frames) {
    long most = 0;
    for (std::size_t i = 1; i < frames.size(); ++i)
        most = std::max(most, difference(frames[i - 1], frames[i]));
    return most;
}

} // namespace recording
