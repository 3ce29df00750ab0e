// Sounds from file to loudspeaker: which files are read, what playing does with and without a device, and what the path
// control and its choosers show. Files are written into a temporary folder of the test's own.
#include "base/windows/module.h"
#include "dialog_script.h"
#include "host/windows/message_box.h"
#include "object_count.h"
#include "sound/windows/sound_file.h"
#include "sound/windows/wave_player.h"
#include "sound_bytes.h"
#include "ui/windows/controls/path_control.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <string>

#include <dlgs.h>

namespace {

using namespace recording;
using namespace veldran;

// Unsigned bytes of silence at 8 kHz.
std::string silence(std::size_t samples) {
    return riff(chunk("fmt ", formatBody(1)) + chunk("data", std::string(samples, '\x80')));
}

constexpr int kPathControl = 100;
constexpr int kPlayButton = 101;

class Sound : public testing::Test {
protected:
    void SetUp() override {
        setModuleInstance(GetModuleHandleA(nullptr));
        char temporary[MAX_PATH] = "";
        GetTempPathA(MAX_PATH, temporary);
        folder_ = std::string(temporary) + "sound test & more\\";
        CreateDirectoryA(folder_.c_str(), nullptr);
        window_ = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 300, 100, nullptr, nullptr, nullptr, nullptr);
        child(kPathControl, "");
        child(kPlayButton, "Play");
    }
    void TearDown() override {
        DestroyWindow(window_);
        DeleteFileA((folder_ + "a.wav").c_str());
        EXPECT_TRUE(RemoveDirectoryA(folder_.c_str())) << "a file is still there, or open";
    }

    void child(INT_PTR identity, const char* text) const {
        CreateWindowExA(0, "BUTTON", text, WS_CHILD, 0, 0, 150, 21, window_, reinterpret_cast<HMENU>(identity), nullptr,
                        nullptr);
    }

    std::string write(const std::string& bytes, const std::string& name = "a.wav") const {
        std::ofstream(folder_ + name, std::ios::binary) << bytes;
        return folder_ + name;
    }

    std::string textOf(int control) const { return dialog_script::textOf(window_, control); }

    std::string folder_;
    HWND window_ = nullptr;
};

TEST_F(Sound, FilesAreReadAndMeasuredOrLeaveNothing) {
    const std::string pcm = chunk("fmt ", formatBody(1, 2, 44100));
    const std::string samples = chunk("data", "abcdefg");
    const std::string odd = chunk("LIST", "odd");
    const struct {
        const char* what;
        std::string bytes;
        int dataBytes; // -1: refused
        int bits;      // what is measured has 8 or 16
    } cases[] = {
        {"plain", riff(pcm + samples), 7, 8},
        {"odd chunks between", riff(odd + pcm + odd + samples), 7, 8},
        {"fourteen bytes of format", riff(chunk("fmt ", formatBody(1).substr(0, 14)) + samples), 7, 0},
        {"no samples", riff(pcm + chunk("data", "")), 0, 8},
        {"extensible", riff(chunk("fmt ", formatBody(0xFFFE) + std::string(24, '\0')) + samples), -1, 0},
        {"a format record of one byte", riff(chunk("fmt ", "\1") + samples), 7, 0},
        {"no format", riff(samples), -1, 0},
        {"no data", riff(pcm + odd), -1, 0},
        {"a gigabyte promised", riff(pcm + "data" + little(1u << 30, 4) + "abc"), -1, 0},
        {"more than a file can hold", riff(pcm + "data" + little(0xFFFFFFFF, 4) + "abc"), -1, 0},
        {"data before the format", riff(samples + pcm), -1, 0},
        {"a format without bytes", riff(chunk("fmt ", "") + samples), -1, 0},
        {"three channels of 24 bits", riff(chunk("fmt ", formatBody(1, 3, 192000, 24)) + samples), 7, 24},
        {"another form", riff(pcm + samples, "AVI "), -1, 0},
        {"empty", "", -1, 0},
    };
    for (const auto& c : cases) {
        const std::string path = write(c.bytes);
        const std::size_t before = object_count::heapBytes();
        {
            const WaveSound sound = readWaveFile(path);
            ASSERT_EQ(static_cast<bool>(sound), c.dataBytes >= 0) << c.what;
            if (const LockedBlock locked(sound.block.get()); locked) {
                const auto read = samplesOf(locked, sound.dataBytes);
                EXPECT_EQ(std::string(read.begin(), read.end()), std::string("abcdefg").substr(0, sound.dataBytes));
                EXPECT_EQ(static_cast<int>(sound.dataBytes), c.dataBytes) << c.what;
                EXPECT_EQ(formatOf(locked).bitsPerSample, c.bits) << c.what;
            }
            for (const SoundMeasure measure : {SoundMeasure::Levels, SoundMeasure::Spectrum})
                EXPECT_EQ(measureSoundFile(path, 32760, measure, SoundScale::Normalised).has_value(), c.bits == 8)
                    << c.what;
        }
        EXPECT_TRUE(DeleteFileA(path.c_str())) << "still open: " << c.what;
        EXPECT_EQ(object_count::heapBytes(), before) << c.what;
    }
    for (const std::string& path : {folder_, folder_ + "missing.wav", std::string(), std::string(5000, 'x')})
        EXPECT_FALSE(readWaveFile(path)) << path.substr(0, 80);
    const std::string path = write(silence(5), std::string(150, 'n') + " + plus.wav");
    EXPECT_EQ(readWaveFile(path).dataBytes, 5u);
    DeleteFileA(path.c_str());
}

// The system's functions walk through the chunks, so that no native test reaches this.
TEST_F(Sound, ChangedFilesAreReadOrLeaveNothing) {
    const std::string samples = "0123456789abcdef0123456789ABCDEF";
    const std::string whole = riff(chunk("LIST", "odd") + chunk("fmt ", formatBody(1, 2, 44100)) +
                                   chunk("data", samples) + chunk("LIST", "x"));
    std::mt19937 random(5);
    int refused = 0;
    measureSoundFile(write(whole), 7, SoundMeasure::Spectrum, SoundScale::Raw); // the system keeps something once
    const std::size_t before = object_count::heapBytes();
    for (int trial = 0; trial < 400; ++trial) {
        std::string changed = whole;
        for (int i = 0; i <= trial % 3; ++i)
            changed[random() % changed.size()] = static_cast<char>(trial % 2 == 0 ? random() % 4 : random());
        if (trial % 5 == 0)
            changed.resize(random() % changed.size());
        const std::string path = write(changed);
        const WaveSound sound = readWaveFile(path);
        const LockedBlock locked(sound.block.get());
        refused += locked ? 0 : 1;
        ASSERT_TRUE(!locked || readWaveHeader(path)) << trial;
        if (!locked)
            continue;
        const auto read = samplesOf(locked, sound.dataBytes);
        ASSERT_NE(changed.find(std::string(read.begin(), read.end())), std::string::npos) << trial;
        measureSoundFile(path, 7, SoundMeasure::Spectrum, SoundScale::Raw);
    }
    EXPECT_EQ(object_count::heapBytes(), before);
    EXPECT_TRUE(refused > 100 && refused < 350) << refused;
}

TEST_F(Sound, WhatCannotBePlayedLeavesNothing) {
    WavePlayer player;
    player.stop();
    EXPECT_FALSE(player.isDone(nullptr));
    EXPECT_FALSE(player.play(window_, WaveSound()));
    // No device takes a format without channels, and on a machine without one none is left to refuse the other.
    const std::string mute = riff(chunk("fmt ", formatBody(1, 0)) + chunk("data", "abc"));
    for (const std::string& bytes : {mute, waveOutGetNumDevs() == 0 ? silence(80) : mute}) {
        const std::string path = write(bytes);
        EXPECT_FALSE(player.play(window_, readWaveFile(path)));
        const std::size_t before = object_count::heapBytes();
        for (int i = 0; i < 50; ++i) {
            EXPECT_FALSE(player.play(window_, readWaveFile(path)));
            EXPECT_FALSE(player.isPlaying());
        }
        // The system's own threads take a little; fifty sounds, or fifty headers, would be more.
        EXPECT_LT(object_count::heapBytes(), before + 50 * sizeof(WAVEHDR));
    }
    player.stop();
}

// The `wParam` of the next MM_WOM_DONE; 0 when none comes.
WPARAM awaitDone() {
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < 10000) {
        MSG message;
        if (PeekMessageA(&message, nullptr, MM_WOM_DONE, MM_WOM_DONE, PM_REMOVE))
            return message.wParam;
        Sleep(5);
    }
    return 0;
}

// The sound that comes with the plugin. On a device whose output is recorded, the recording shows what was played.
TEST_F(Sound, PlaysTheDefaultSound) {
    const HRSRC resource = FindResourceA(nullptr, "DEFAULT_WAV", RT_RCDATA);
    ASSERT_NE(resource, nullptr);
    const auto* bytes = static_cast<const char*>(LockResource(LoadResource(nullptr, resource)));
    WaveSound sound = readWaveFile(write(std::string(bytes, SizeofResource(nullptr, resource))));
    ASSERT_TRUE(sound);
    if (waveOutGetNumDevs() == 0)
        GTEST_SKIP() << "no output device";
    WavePlayer player;
    ASSERT_TRUE(player.play(window_, std::move(sound)));
    EXPECT_TRUE(player.isDone(reinterpret_cast<HWAVEOUT>(awaitDone())));
}

TEST_F(Sound, PlaysToTheEndAndOnceMore) {
    if (waveOutGetNumDevs() == 0)
        GTEST_SKIP() << "no output device";
    WavePlayer player;
    const std::string path = write(silence(1600));
    ASSERT_TRUE(player.play(window_, readWaveFile(path)));
    for (int round = 0; round < 2; ++round) {
        const auto device = reinterpret_cast<HWAVEOUT>(awaitDone());
        EXPECT_TRUE(player.isDone(device));
        ASSERT_TRUE(player.repeat());
        EXPECT_FALSE(player.isDone(device));
    }
    player.stop();
    SetDlgItemTextA(window_, kPathControl, path.c_str());
    for (const char* text : {"Stop", "Play", "Stop"}) {
        toggleSound(window_, kPathControl, kPlayButton);
        EXPECT_EQ(textOf(kPlayButton), text);
    }
    while (!onSoundDone(window_, awaitDone())) // messages of what was stopped come first
        ASSERT_EQ(textOf(kPlayButton), "Stop");
    EXPECT_EQ(textOf(kPlayButton), "Play");
}

// What the message says that `act` shows; it is closed.
template <class Act>
std::string messageOf(int textControl, Act act) {
    std::string text;
    dialog_script::drive(
        [&](HWND dialog) {
            text = dialog_script::textOf(dialog, textControl);
            PostMessageA(dialog, WM_COMMAND, IDOK, 0);
        },
        act);
    return text;
}

TEST_F(Sound, MessagesTellWhatIsWrong) {
    constexpr int kBoxText = 0xFFFF; // of the system's message box
    const auto play = [this] { toggleSound(window_, kPathControl, kPlayButton); };
    const auto inform = [this] { showSoundInformation(window_, kPathControl); };
    SetDlgItemTextA(window_, kPathControl, write("no sound").c_str());
    EXPECT_EQ(messageOf(MESSAGE_TEXT, play), "This sound cannot be read.");
    EXPECT_EQ(messageOf(MESSAGE_TEXT, inform), "Memory error");
    SetDlgItemTextA(window_, kPathControl, write(riff(chunk("fmt ", formatBody(1, 0)) + chunk("data", ""))).c_str());
    EXPECT_EQ(messageOf(MESSAGE_TEXT, play), "This sound cannot be played.");
    EXPECT_EQ(textOf(kPlayButton), "Play");
    SetDlgItemTextA(window_, kPathControl, write(silence(12000)).c_str());
    EXPECT_EQ(messageOf(kBoxText, inform), "a.wav\n\nChannels: Mono\nSample rate: 8.0 kHz\nPlaying time: 00:01.50");
}

// The window with the preview's controls.
HWND previewOf(HWND dialog) {
    HWND hook = nullptr;
    while ((hook = FindWindowExA(dialog, hook, "#32770", nullptr)) != nullptr)
        if (GetDlgItem(hook, SOUND_STATUS) != nullptr)
            return hook;
    return nullptr;
}

TEST_F(Sound, ChooserShowsFiguresAndLeavesNothing) {
    const std::string path = write(silence(12000));
    std::string status;
    const auto choose = [&](const std::string& text, int answer) {
        SetDlgItemTextA(window_, kPathControl, text.c_str());
        return dialog_script::drive(
            [&](HWND dialog) {
                status = dialog_script::textOf(previewOf(dialog), SOUND_STATUS);
                PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(answer), 0);
            },
            [this] { return choosePath(window_, kPathControl, PathKind::Sound); });
    };
    EXPECT_FALSE(choose(path, IDCANCEL));
    EXPECT_EQ(status, "Mono, 8.0 kHz, 00:01.50");
    EXPECT_TRUE(choose(folder_ + ".\\a.wav", IDOK)); // the same file, named otherwise
    EXPECT_EQ(textOf(kPathControl), path);
    const auto cancel = [&] { EXPECT_FALSE(choose("no|name?*", IDCANCEL)); };
    cancel();
    EXPECT_FALSE(object_count::leavesObjects(2, 5, cancel));
    EXPECT_EQ(textOf(kPathControl), "no|name?*");
}

TEST_F(Sound, PreviewLoopsUntilItIsToldNotTo) {
    if (waveOutGetNumDevs() == 0)
        GTEST_SKIP() << "no output device";
    SetDlgItemTextA(window_, kPathControl, write(silence(800)).c_str());
    std::string seen; // "S" for each look at a preview that plays, "P" for one that does not
    const auto listen = [&](HWND dialog) {
        const HWND hook = previewOf(dialog);
        CheckDlgButton(hook, SOUND_LOOP, BST_CHECKED);
        SendDlgItemMessageA(hook, SOUND_PREVIEW, BM_CLICK, 0, 0);
        const DWORD start = GetTickCount();
        for (DWORD elapsed = 0; elapsed < 2500; elapsed = GetTickCount() - start) {
            MSG message;
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageA(&message);
            if (elapsed > 1000)
                CheckDlgButton(hook, SOUND_LOOP, BST_UNCHECKED);
            const char now = dialog_script::textOf(hook, SOUND_PREVIEW) == "Sto&p" ? 'S' : 'P';
            if (seen.empty() || seen.back() != now)
                seen += now;
            Sleep(10);
        }
        SendDlgItemMessageA(hook, SOUND_PREVIEW, BM_CLICK, 0, 0);
    };
    EXPECT_FALSE(dialog_script::drive(listen, [this] { return choosePath(window_, kPathControl, PathKind::Sound); }));
    EXPECT_EQ(seen, "SP"); // ten times its length and more, then to its end
}

TEST_F(Sound, PathControlTakesAnyTextAndState) {
    const auto draw = [&](UINT state, int width) {
        const DRAWITEMSTRUCT item{ODT_BUTTON, 0, 0, 0, state, GetDlgItem(window_, kPathControl), nullptr, {}, 0};
        return dialog_script::pixelsOf(item, {width, 21}, drawPathControl);
    };
    SetDlgItemTextA(window_, kPathControl, "C:\\one\\file.wav");
    const auto plain = draw(0, 150);
    for (const UINT state : {ODS_SELECTED, ODS_FOCUS, ODS_DISABLED})
        EXPECT_TRUE(draw(state, 150) != plain) << state;
    const int drawn = object_count::drawingObjects();
    for (const std::string& text : {std::string(), std::string("C:\\"), std::string(1000, 'm'), std::string("a&b")}) {
        SetDlgItemTextA(window_, kPathControl, text.c_str());
        for (const int width : {0, 3, 20, 150})
            draw(ODS_FOCUS, width);
    }
    EXPECT_EQ(object_count::drawingObjects(), drawn);
}

} // namespace
