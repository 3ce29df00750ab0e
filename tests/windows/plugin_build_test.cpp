// Builds through the dialog: the order of messages, the records, and what each output option makes of the frames.
// The pictures themselves are measured elsewhere; here one knows only that the radar's corners show its panel.
#include "recording_host.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

using namespace recording;
using Texts = std::vector<std::string>;

constexpr COLORREF kPanel = 0x606060;
constexpr COLORREF kAlphaGrey = 0x7F7F7F;
constexpr int kSixFrames = 33; // the choice "60": degrees per frame
constexpr int kSide = 57;      // of the smallest radar: (526 + 2 x 10 x 2) x 10 %

std::string choose(const std::string& extra) {
    return "MainEffect = 15\r\nMainRadarSize = 48\r\nMainRadarPadding = 2\r\nMainRadarIncrement = " +
           std::to_string(kSixFrames) + "\r\n" + extra;
}

Session session(const std::string& settings, std::vector<Step> steps) {
    Session made;
    made.settings = settings;
    made.steps = std::move(steps);
    return made;
}

Recording build(const std::string& extra, std::uint32_t flags = kDelayInHundredths) {
    Session made = session(choose(extra), {pressing(kBuild)});
    made.flags = flags;
    return run(made);
}

void addCount(Texts& messages, int frames, int step, int total) {
    for (int i = 0; i < frames; ++i)
        messages.push_back("13 " + std::to_string(i * step) + ' ' + std::to_string(total));
}

// What a build of the radar sends until its frames are there; `step` is in degrees.
Texts rendering(int frames, int step) {
    Texts messages = {"18", "13 0 0", "10 Building", "10 Building"};
    addCount(messages, frames, step, 360);
    messages.push_back("13 0 0");
    return messages;
}

void addStages(Texts& messages, const Texts& stages, int frames) {
    for (const std::string& stage : stages) {
        messages.push_back("10 " + stage);
        if (stage != "Quantizing")
            addCount(messages, frames, 1, frames);
    }
}

// Plays frames over each other as a viewer does; `background` is what shows where nothing was drawn yet.
class Player {
public:
    explicit Player(COLORREF background) : background_(background) {}

    const std::vector<COLORREF>& show(const Frame& frame) {
        screen_.resize(static_cast<std::size_t>(frame.width() * frame.height()), background_);
        for (int y = 0; y < frame.height(); ++y)
            for (int x = 0; x < frame.width(); ++x)
                if (static_cast<std::uint32_t>(frame.index(x, y)) != frame.info.transparentIndex)
                    screen_[static_cast<std::size_t>(y * frame.width() + x)] = frame.colour(x, y);
        return screen_;
    }

private:
    COLORREF background_;
    std::vector<COLORREF> screen_;
};

TEST(Build, DefaultRadarHasItsSizeDelayAndComment) {
    const Recording seen = run(session("MainEffect = 15\r\n", {pressing(kBuild)}));
    ASSERT_EQ(seen.tasks.size(), 1u);
    const HostTaskInfo& task = seen.tasks[0];
    EXPECT_EQ(task.frameCount, 60u);
    // 526 / 160 is 3 artwork pixels to one; (526 + 2 x 3 x 10) x 33 % is 193.38.
    EXPECT_EQ(task.width, 193u);
    EXPECT_EQ(task.height, 193u);
    ASSERT_EQ(seen.frames.size(), 60u);
    for (std::uint32_t i = 0; i < 60; ++i) {
        const Frame& frame = seen.frames[i];
        EXPECT_TRUE(frame.width() == 193 && frame.height() == 193) << i;
        EXPECT_EQ(frame.info.delay, 5u);
        EXPECT_EQ(frame.info.index, i);
    }
    const std::string& comment = std::ranges::find(seen.messages, 3u, &Message::command)->text;
    EXPECT_TRUE(comment.starts_with("CREATED BY...\r\n\r\nThis animation was created by Korvel's Tavolin or Merrowin "
                                    "and the Voltane #1 plugin.\r\n\r\nSee\r\n\r\n    http"))
        << comment;
    EXPECT_TRUE(comment.ends_with("\r\n\r\nfor more information.")) << comment;
}

struct OptionCase {
    const char* name;
    int bits;            // of the frames
    std::uint32_t depth; // that the task reports
    const char* stages;
    std::uint32_t transparent;
    const char* background; // command 15, "any" when the palette decides
    COLORREF corner;
    const char* settings;
    int reserved = -1; // entry of the corners; -1: any
    std::uint32_t flags = kDelayInHundredths;
};

constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr char kMade[] = "Quantizing Remapping";
constexpr char kGiven[] = "Remapping";
constexpr char kPacked[] = "Supercompressing Remapping";

// Entries nearest to the panel, 0x60 = 96 a channel: the 256-colour cube has 108 (3 of 8) and 85 (1 of 4) next to it,
// which gives 3 x 32 + 3 x 4 + 1; the safe one 102 (2 of 6), 2 x 36 + 2 x 6 + 2. To the grey of 127: 144 (4) and 85,
// 4 x 32 + 4 x 4 + 1.
const OptionCase kOptionCases[] = {
    {"custom palette", 8, 8, kMade, kNone, "15 e 255", kPanel, "", 255},
    {"nothing masked", 8, 8, kMade, kNone, "any", kPanel, "MainMaskBackground = 0"},
    {"transparent", 8, 8, kMade, 255, "15 e 255", kPanel, "MainTransparent = 1", 255},
    {"supercompressed", 8, 8, "Quantizing Supercompressing Remapping", 255, "15 e 255", kPanel,
     "MainSupercompress = 1"},
    {"256 colours", 8, 8, kGiven, kNone, "15 e 109", RGB(108, 108, 85), "MainCustompalette = 0"},
    {"safe colours, transparent", 8, 8, kGiven, 216, "15 e 86", 0,
     "MainCustompalette = 0\nMainPalette = 5\nMainTransparent = 1", 216},
    {"safe colours, supercompressed", 8, 8, kPacked, 216, "15 e 86", 0,
     "MainCustompalette = 0\nMainPalette = 5\nMainSupercompress = 1"},
    {"true colour", 24, 8, kGiven, kNone, "15 e 109", kPanel,
     "Truecolour = 1\nMainSupercompress = 1\nMainTransparent = 1"},
    {"alpha on grey", 32, 8, kGiven, 0, "15 e 145", kAlphaGrey, "MainAlphaTrans = 1"},
    {"alpha on the panel", 32, 8, kGiven, 0, "15 e 109", kPanel, "MainAlphaTrans = 1\nUseAlphaGreyBack = 0"},
    {"PNG editor", 8, 8, kMade, kNone, "15 d 6316128", kPanel, "", 255, kHostIsPngEditor},
};

void expectFrames(const Recording& seen, const OptionCase& row) {
    ASSERT_EQ(seen.frames.size(), 6u);
    for (const Frame& frame : seen.frames) {
        EXPECT_EQ(frame.bits(), row.bits);
        EXPECT_EQ(frame.info.transparentIndex, row.transparent);
        EXPECT_EQ(frame.info.alpha, row.bits == 32 ? 1u : 0u);
        EXPECT_EQ(frame.colour(0, 0), row.corner);
        EXPECT_EQ(frame.colour(kSide - 1, kSide - 1), row.corner);
        if (row.reserved >= 0) {
            EXPECT_EQ(frame.index(0, 0), row.reserved);
            EXPECT_EQ(frame.index(kSide - 1, kSide / 2), row.reserved);
            EXPECT_NE(frame.index(kSide / 2, kSide / 2), row.reserved);
        }
        if (row.bits == 32) {
            EXPECT_EQ(frame.alpha(0, 0), 0);
            EXPECT_EQ(frame.alpha(28, 28), 255);
            EXPECT_EQ(frame.alpha(28, 5), 255); // the disc ends 26 pixels from the centre
            EXPECT_EQ(frame.alpha(28, 0), 0);
        }
        for (int i = 0; row.bits == 8 && i < 256; ++i) {
            const std::uint8_t* entry = seen.tasks[0].palette[i];
            ASSERT_EQ(frame.tableColour(i), RGB(entry[0], entry[1], entry[2])) << i;
        }
    }
}

TEST(Build, OptionsDecideStagesAndRecords) {
    for (const OptionCase& row : kOptionCases) {
        SCOPED_TRACE(row.name);
        const Recording seen = build(row.settings, row.flags);
        EXPECT_EQ(seen.result, 1);
        EXPECT_EQ(seen.faults, Texts{});
        Texts expected = rendering(6, 60);
        addStages(expected, split(row.stages, ' '), 6);
        expected.push_back("1");
        ASSERT_GT(seen.messages.size(), expected.size());
        const bool any = std::string(row.background) == "any";
        expected.push_back(any ? seen.messages[expected.size()].describe() : row.background);
        expected.insert(expected.end(), 6, "2");
        expected.insert(expected.end(), {"3", "4 1"});
        EXPECT_EQ(seen.describe(), expected);
        ASSERT_EQ(seen.tasks.size(), 1u);
        EXPECT_EQ(seen.tasks[0].bitsPerPixel, row.depth);
        if (std::string(row.background) == "15 e 255") {
            EXPECT_TRUE(std::ranges::all_of(seen.tasks[0].palette[255], [](int c) { return c == 0x60; }));
        }
        expectFrames(seen, row);
    }
}

TEST(Build, SupercompressedFramesPlayLikeWholeOnes) {
    // In the last case everything but the panel and two squares has the screen's colour: a made palette then holds all.
    const Step squares = [](HWND dialog) { setLines(dialog, kRadarMarkerList, {",60,70", ",175,50"}); };
    const char* const cases[] = {
        "MainCustompalette = 0\nMainPalette = 5\n",
        "MainCustompalette = 0\nMainPalette = 0\n",
        "MainRadarGreenColor = 1052688\nMainRadarWhiteColor = 1052688\n",
    };
    for (const char* settings : cases) {
        SCOPED_TRACE(settings);
        const bool fixed = std::string(settings).starts_with("MainCustompalette");
        const std::vector<Step> steps = {fixed ? Step([](HWND) {}) : squares, pressing(kBuild)};
        const Recording whole = run(session(choose(settings), steps));
        const Recording packed = run(session(choose(std::string(settings) + "MainSupercompress = 1\n"), steps));
        ASSERT_EQ(whole.frames.size(), 6u);
        ASSERT_EQ(packed.frames.size(), 6u);
        EXPECT_TRUE(!fixed || std::memcmp(packed.tasks[0].palette, whole.tasks[0].palette, 768) == 0);
        const auto background = std::ranges::find(packed.messages, 15u, &Message::command);
        Player player(packed.frames[0].tableColour(static_cast<int>(background->lParam)));
        Player reference(0);
        for (std::size_t i = 0; i < 6; ++i) {
            EXPECT_EQ(packed.frames[i].info.transparentIndex, packed.frames[0].info.transparentIndex);
            EXPECT_TRUE(player.show(packed.frames[i]) == reference.show(whole.frames[i])) << "frame " << i;
        }
    }
}

TEST(Build, TestBuildsNeverCarryAlphaAndLeaveTheDialogAsItWas) {
    bool checked = false;
    bool enabled = true;
    const Step look = [&](HWND dialog) {
        checked = IsDlgButtonChecked(dialog, kAlpha) == BST_CHECKED;
        enabled = IsWindowEnabled(GetDlgItem(dialog, kTrueColour));
    };
    const Recording seen = run(session(choose("MainAlphaTrans = 1"), {pressing(kTest), look, pressing(kBuild)}));
    EXPECT_EQ(seen.result, 1);
    EXPECT_EQ(seen.faults, Texts{});
    EXPECT_TRUE(checked);
    EXPECT_FALSE(enabled);
    EXPECT_EQ(seen.count(kHostBuildBegins), 2);
    EXPECT_EQ(seen.count(kHostCreateTestTask), 1);
    EXPECT_EQ(seen.count(kHostCreateTask), 1);
    ASSERT_EQ(seen.frames.size(), 12u);
    EXPECT_EQ(seen.frames[0].bits(), 8);
    EXPECT_EQ(seen.frames[0].info.alpha, 0u);
    EXPECT_EQ(seen.frames[0].colour(0, 0), kPanel); // not the grey behind alpha
    EXPECT_EQ(seen.frames[6].bits(), 32);
    EXPECT_EQ(seen.frames[6].info.alpha, 1u);
}

TEST(Build, CommentAndDelayFollowTheSettingsInEveryInvocation) {
    Session twice = session(choose("AddDescriptiveCommentBlock = 0\nMainDelay = 40000\n"), {pressing(kBuild)});
    twice.invocations = 2;
    const Recording seen = run(twice);
    EXPECT_EQ(seen.count(kHostAddComment), 0);
    ASSERT_EQ(seen.frames.size(), 12u);
    EXPECT_EQ(seen.frames[5].info.delay, 32768u);
    EXPECT_EQ(seen.frames[5].bitmap, seen.frames[11].bitmap);
}

struct RefusalCase {
    std::uint32_t command;
    int time;
    int button;
    const char* box;
    const char* end; // the messages from the task's on
};

TEST(Build, RefusalsOfTheHostAreReportedAndLeaveNothingBehind) {
    const char* noTask = "Error creating new task.";
    const char* noImage = "There has been an error adding an image to the current file object.";
    const RefusalCase cases[] = {
        {kHostCreateTask, 1, kBuild, noTask, "1;13 0 0"},
        {kHostCreateTestTask, 1, kTest, noTask, "5;13 0 0"},
        {kHostAddImage, 3, kTest, noImage, "5;15 e 255;2;2;2;4 0;13 0 0"},
        {kHostAddImage, 6, kBuild, noImage, "1;15 e 255;2;2;2;2;2;2;4 0;13 0 0"},
    };
    for (const RefusalCase& row : cases) {
        SCOPED_TRACE(row.end);
        bool open = false;
        const Step look = [&](HWND dialog) { open = IsWindow(dialog); };
        Session failing = session(choose(""), {pressing(row.button), look, pressing(kBuild)});
        failing.refusals = {{row.command, row.time}};
        const Recording seen = run(failing);
        EXPECT_TRUE(open);
        EXPECT_EQ(seen.result, 1);
        EXPECT_EQ(seen.boxes, Texts{row.box});
        EXPECT_EQ(seen.faults, Texts{});
        Texts expected = rendering(6, 60);
        addStages(expected, {"Quantizing", "Remapping"}, 6);
        const Texts begun = expected;
        std::ranges::copy(split(row.end, ';'), std::back_inserter(expected));
        // The second build is as if nothing had happened.
        expected.insert(expected.end(), begun.begin(), begun.end());
        expected.insert(expected.end(), {"1", "15 e 255", "2", "2", "2", "2", "2", "2", "3", "4 1"});
        EXPECT_EQ(seen.describe(), expected);
    }
}

// Meters, scopes and spectrum that follow a sound, bar graph and data pad, tested in one dialog.
TEST(Build, InstrumentsWithoutTheirFileFailAndTheNextBuildWorks) {
    constexpr char kNowhere[] = " = C:\\no such file\n";
    std::string settings = std::string("MainDatapadTextFile") + kNowhere;
    for (const char* key :
         {"VUAnalogSquare", "VUAnalogRound", "VUDigHorz", "VUDigVert", "Spectrum", "MagicEye", "Sonic", "Voice"})
        settings += "Main" + std::string(key) + "Sound" + kNowhere;
    std::vector<Step> steps;
    for (const int effect : {2, 3, 4, 8, 9, 10, 13, 17, 18, kRadar})
        steps.push_back([effect](HWND dialog) {
            setChoice(dialog, kEffect, effect);
            press(dialog, kTest);
        });
    const Recording seen = run(session(choose(settings), steps));
    EXPECT_EQ(seen.boxes, Texts(9, "Memory error"));
    EXPECT_EQ(seen.frames.size(), 6u);
    const Texts messages = seen.describe();
    ASSERT_GT(messages.size(), 6u);
    EXPECT_EQ(Texts(messages.begin(), messages.begin() + 6),
              (Texts{"18", "13 0 0", "10 Building", "10 Building", "13 0 0", "18"}));
}

} // namespace
