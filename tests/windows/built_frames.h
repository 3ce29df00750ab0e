// What tests of pictures do alike: builds with given settings, many of them in one open dialog, files for them, and how
// much two frames differ.
#pragma once

#include "recording_host.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <numeric>
#include <utility>

namespace recording {

inline std::string line(const std::string& key, const std::string& value) {
    return key + " = " + value + "\n";
}

inline std::string line(const std::string& key, int value) {
    return line(key, std::to_string(value));
}

// Keys and values of settings in words: "Size=96 PanelColor=#FF8000 *Truecolour=1" for an instrument whose keys begin
// with `stem`; what follows a star is a whole key.
inline std::vector<std::pair<std::string, std::string>> settingsOf(const std::string& stem, const std::string& words) {
    std::vector<std::pair<std::string, std::string>> settings;
    for (const std::string& word : split(words, ' ')) {
        const std::size_t equals = word.find('=');
        if (equals == std::string::npos)
            continue; // between two blanks
        std::string value = word.substr(equals + 1);
        if (value.starts_with('#')) {
            const unsigned long colour = std::stoul(value.substr(1), nullptr, 16);
            value = std::to_string(RGB(colour >> 16, colour >> 8 & 255, colour & 255));
        }
        const std::string key = word.substr(0, equals);
        settings.emplace_back(key.starts_with('*') ? key.substr(1) : stem + key, value);
    }
    return settings;
}

inline std::string settingsFile(const std::string& stem, const std::string& words) {
    std::string file = line("MainEffect", effectOf(stem));
    for (const auto& [key, value] : settingsOf(stem, words))
        file += line(key, value);
    return file;
}

// Builds in an open dialog. The dialog stands until the step ends in which it is used, also after a build.
class Builder {
public:
    Builder(HWND dialog, std::string stem) : dialog_(dialog), stem_(std::move(stem)) {}

    HWND dialog() const { return dialog_; }

    void choose(const std::string& stem) {
        stem_ = stem;
        setChoice(dialog_, kEffect, effectOf(stem));
    }

    // For all builds that follow.
    void set(const std::string& key, const std::string& value) { exchangeSetting(dialog_, stem_ + key, value); }

    // One build with these settings, which then are what they were. It shows no message and gives a careful host
    // nothing to complain about.
    Recording build(const std::string& words, int button = kBuild) {
        auto settings = settingsOf(stem_, words);
        for (auto& [key, value] : settings)
            value = exchangeSetting(dialog_, key, value);
        takeRecording();
        press(dialog_, button);
        Recording seen = takeRecording();
        for (auto setting = settings.rbegin(); setting != settings.rend(); ++setting)
            exchangeSetting(dialog_, setting->first, setting->second);
        EXPECT_TRUE(seen.boxes.empty() && seen.faults.empty()) << words;
        return seen;
    }
    std::vector<Frame> frames(const std::string& words) { return build(words).frames; }
    Frame frame(const std::string& words, std::size_t index = 0) { return build(words).frames.at(index); }

private:
    HWND dialog_;
    std::string stem_;
};

// Opens the dialog on a settings file that has these settings and builds in it.
template <class Body>
void withBuilder(const std::string& stem, const std::string& words, Body body,
                 std::uint32_t flags = kDelayInHundredths) {
    Session session;
    session.settings = settingsFile(stem, words);
    session.flags = flags;
    session.steps = {[&](HWND dialog) {
        Builder builder(dialog, stem);
        try {
            body(builder);
        } catch (const std::exception& exception) {
            ADD_FAILURE() << exception.what();
        }
    }};
    run(session);
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

// That the step from the last frame to the first is hardly larger than the others.
inline void expectLoop(const std::vector<Frame>& frames, double slack = 1.25) {
    long most = 0;
    for (std::size_t i = 1; i < frames.size(); ++i)
        most = std::max(most, difference(frames[i - 1], frames[i]));
    EXPECT_GT(most, 0);
    EXPECT_LE(static_cast<double>(difference(frames.back(), frames.front())), static_cast<double>(most) * slack);
}

} // namespace recording
