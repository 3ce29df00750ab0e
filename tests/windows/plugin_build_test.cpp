// Builds through the dialog: the order of messages, the records, and what each output option makes of the frames.
// The pictures themselves are measured elsewhere; here one knows only that the radar's corners show its panel.
#include "built_frames.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

using namespace recording;
using Texts = std::vector<std::string>;

constexpr COLORREF kPanel = 0x606060;
constexpr COLORREF kAlphaGrey = 0x7F7F7F;
constexpr int kSide = 57;                                         // (526 + 2 x 10 x 2) x 10 %
constexpr char kSmallRadar[] = "Size=48 Padding=2 Increment=33 "; // of six frames

Session session(const std::string& settings, std::vector<Step> steps) {
    Session made;
    made.settings = settings;
    made.steps = std::move(steps);
    return made;
}

// What a build of the small radar sends until its frames are ready, with these stages.
Texts messagesUntil(const std::string& stages) {
    Texts messages = {"18", "13 0 0", "10 Building", "10 Building"};
    const auto count = [&](int step, int total) {
        for (int i = 0; i < 6; ++i)
            messages.push_back("13 " + std::to_string(i * step) + ' ' + std::to_string(total));
    };
    count(60, 360); // degrees
    messages.push_back("13 0 0");
    for (const std::string& stage : split(stages, ' ')) {
        messages.push_back("10 " + stage);
        if (stage != "Quantizing")
            count(1, 6);
    }
    return messages;
}

const Message& sent(const Recording& seen, std::uint32_t command) {
    return *std::ranges::find(seen.messages, command, &Message::command);
}

TEST(Build, DefaultRadarHasItsSizeDelayAndComment) {
    const Recording seen = run(session("MainEffect = 15\r\n", {pressing(kBuild)}));
    ASSERT_EQ(seen.tasks.size(), 1u);
    EXPECT_EQ(seen.tasks[0].frameCount, 60u);
    // 526 / 160 is 3 artwork pixels to one; (526 + 2 x 3 x 10) x 33 % is 193.38.
    EXPECT_TRUE(seen.tasks[0].width == 193 && seen.tasks[0].height == 193);
    ASSERT_EQ(seen.frames.size(), 60u);
    for (std::uint32_t i = 0; i < 60; ++i) {
        const Frame& frame = seen.frames[i];
        EXPECT_TRUE(frame.width() == 193 && frame.height() == 193 && frame.info.delay == 5 && frame.info.index == i);
    }
    const std::string& comment = sent(seen, kHostAddComment).text;
    EXPECT_TRUE(comment.starts_with("CREATED BY...\r\n\r\nThis animation was created by Korvel's Tavolin or Merrowin "
                                    "and the Voltane #1 plugin.\r\n\r\nSee\r\n\r\n    http"))
        << comment;
    EXPECT_TRUE(comment.ends_with("\r\n\r\nfor more information.")) << comment;
}

struct OptionCase {
    const char* settings;
    int bits; // of the frames
    const char* stages;
    std::uint32_t transparent;
    const char* background; // command 15; empty when the palette decides
    COLORREF corner;
    int reserved = -1; // entry of the corners; -1: any
};

constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr char kMade[] = "Quantizing Remapping";
constexpr char kGiven[] = "Remapping";
constexpr char kPacked[] = "Supercompressing Remapping";

// Entries nearest to the panel, 0x60 = 96 a channel: the 256-colour cube has 108 (3 of 8) and 85 (1 of 4) next to it,
// which gives 3 x 32 + 3 x 4 + 1; the safe one 102 (2 of 6), 2 x 36 + 2 x 6 + 2. To the grey of 127: 144 (4) and 85,
// 4 x 32 + 4 x 4 + 1.
const OptionCase kOptionCases[] = {
    {"", 8, kMade, kNone, "15 e 255", kPanel, 255},
    {"*MainMaskBackground=0", 8, kMade, kNone, "", kPanel},
    {"*MainTransparent=1", 8, kMade, 255, "15 e 255", kPanel, 255},
    {"*MainSupercompress=1", 8, "Quantizing Supercompressing Remapping", 255, "15 e 255", kPanel},
    {"*MainCustompalette=0", 8, kGiven, kNone, "15 e 109", RGB(108, 108, 85)},
    {"*MainCustompalette=0 *MainPalette=5 *MainTransparent=1", 8, kGiven, 216, "15 e 86", 0, 216},
    {"*MainCustompalette=0 *MainPalette=5 *MainSupercompress=1", 8, kPacked, 216, "15 e 86", 0},
    {"*Truecolour=1 *MainSupercompress=1 *MainTransparent=1", 24, kGiven, kNone, "15 e 109", kPanel},
    {"*MainAlphaTrans=1", 32, kGiven, 0, "15 e 145", kAlphaGrey},
    {"*MainAlphaTrans=1 *UseAlphaGreyBack=0", 32, kGiven, 0, "15 e 109", kPanel},
};

void expectFrame(const Frame& frame, const HostTaskInfo& task, const OptionCase& row) {
    EXPECT_EQ(frame.bits(), row.bits);
    EXPECT_EQ(frame.info.transparentIndex, row.transparent);
    EXPECT_EQ(frame.info.alpha, row.bits == 32 ? 1u : 0u);
    EXPECT_TRUE(frame.colour(0, 0) == row.corner && frame.colour(kSide - 1, kSide - 1) == row.corner);
    if (row.reserved >= 0) {
        EXPECT_EQ(frame.index(0, 0), row.reserved);
        EXPECT_EQ(frame.index(kSide - 1, kSide / 2), row.reserved);
        EXPECT_NE(frame.index(kSide / 2, kSide / 2), row.reserved);
    }
    if (row.bits == 32) { // the disc ends 26 pixels from the centre
        EXPECT_EQ(frame.alpha(0, 0) + frame.alpha(28, 0), 0);
        EXPECT_EQ(frame.alpha(28, 28) + frame.alpha(28, 5), 2 * 255);
    }
    for (int i = 0; row.bits == 8 && i < 256; ++i) {
        const std::uint8_t* entry = task.palette[i];
        ASSERT_EQ(frame.tableColour(i), RGB(entry[0], entry[1], entry[2])) << i;
    }
}

void expectBuild(const Recording& seen, const OptionCase& row) {
    SCOPED_TRACE(row.settings);
    Texts expected = messagesUntil(row.stages);
    expected.insert(expected.end(), {"1", *row.background != 0 ? row.background : sent(seen, 15).describe()});
    expected.insert(expected.end(), 6, "2");
    expected.insert(expected.end(), {"3", "4 1"});
    EXPECT_EQ(seen.describe(), expected);
    ASSERT_EQ(seen.tasks.size(), 1u);
    EXPECT_EQ(seen.tasks[0].bitsPerPixel, 8u);
    if (std::string(row.background) == "15 e 255") {
        EXPECT_TRUE(std::ranges::all_of(seen.tasks[0].palette[255], [](int c) { return c == 0x60; }));
    }
    ASSERT_EQ(seen.frames.size(), 6u);
    for (const Frame& frame : seen.frames)
        expectFrame(frame, seen.tasks[0], row);
}

TEST(Build, OptionsDecideStagesAndRecords) {
    withBuilder("MainRadar", kSmallRadar, [](Builder& radar) {
        for (const OptionCase& row : kOptionCases)
            expectBuild(radar.build(row.settings), row);
    });
    const OptionCase other = {"", 8, kMade, kNone, "15 d 6316128", kPanel, 255};
    withBuilder(
        "MainRadar", kSmallRadar, [&](Builder& radar) { expectBuild(radar.build(""), other); }, kHostIsPngEditor);
}

// What frames show one over the other, as a viewer plays them.
std::vector<std::vector<COLORREF>> played(const Recording& seen) {
    const Frame& first = seen.frames.at(0);
    std::vector<COLORREF> screen(static_cast<std::size_t>(kSide * kSide),
                                 first.tableColour(static_cast<int>(sent(seen, kHostSetBackground).lParam)));
    std::vector<std::vector<COLORREF>> screens;
    for (const Frame& frame : seen.frames) {
        for (int at = 0; at < kSide * kSide; ++at)
            if (static_cast<std::uint32_t>(frame.index(at % kSide, at / kSide)) != frame.info.transparentIndex)
                screen[static_cast<std::size_t>(at)] = frame.colour(at % kSide, at / kSide);
        EXPECT_EQ(frame.info.transparentIndex, first.info.transparentIndex);
        screens.push_back(screen);
    }
    return screens;
}

TEST(Build, SupercompressedFramesPlayLikeWholeOnes) {
    withBuilder("MainRadar", kSmallRadar, [](Builder& radar) {
        for (const std::string fixed : {"*MainCustompalette=0 *MainPalette=5", "*MainCustompalette=0 *MainPalette=0"}) {
            const Recording whole = radar.build(fixed);
            const Recording packed = radar.build(fixed + " *MainSupercompress=1");
            EXPECT_EQ(std::memcmp(packed.tasks.at(0).palette, whole.tasks.at(0).palette, 768), 0);
            EXPECT_TRUE(whole.frames.size() == 6 && played(whole) == played(packed)) << fixed;
        }
        // Everything but the panel and two squares has the screen's colour: a made palette then holds all.
        setLines(radar.dialog(), kRadarMarkerList, {",60,70", ",175,50"});
        const std::string few = "GreenColor=#101010 WhiteColor=#101010";
        EXPECT_TRUE(played(radar.build(few)) == played(radar.build(few + " *MainSupercompress=1")));
    });
}

TEST(Build, TestBuildsNeverCarryAlphaAndLeaveTheDialogAsItWas) {
    withBuilder("MainRadar", kSmallRadar + std::string("*MainAlphaTrans=1"), [](Builder& radar) {
        const Recording test = radar.build("", kTest);
        EXPECT_EQ(IsDlgButtonChecked(radar.dialog(), kAlpha), static_cast<UINT>(BST_CHECKED));
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(radar.dialog(), kTrueColour)));
        EXPECT_TRUE(test.count(kHostCreateTestTask) == 1 && test.count(kHostCreateTask) == 0);
        ASSERT_EQ(test.frames.size(), 6u);
        EXPECT_TRUE(test.frames[0].bits() == 8 && test.frames[0].info.alpha == 0);
        EXPECT_EQ(test.frames[0].colour(0, 0), kPanel); // not the grey behind alpha
        const Recording real = radar.build("");
        EXPECT_TRUE(real.count(kHostCreateTestTask) == 0 && real.count(kHostCreateTask) == 1);
        EXPECT_TRUE(real.frames.at(0).bits() == 32 && real.frames[0].info.alpha == 1);
    });
}

TEST(Build, CommentAndDelayFollowTheSettingsInEveryInvocation) {
    Session twice =
        session(settingsFile("MainRadar", kSmallRadar) + "AddDescriptiveCommentBlock = 0\nMainDelay = 40000\n",
                {pressing(kBuild)});
    twice.invocations = 2;
    const Recording seen = run(twice);
    EXPECT_EQ(seen.result, 1);
    EXPECT_EQ(seen.count(kHostAddComment), 0);
    ASSERT_EQ(seen.frames.size(), 12u);
    EXPECT_EQ(seen.frames[5].info.delay, 32768u);
    EXPECT_EQ(seen.frames[5].bitmap, seen.frames[11].bitmap);
}

TEST(Build, RefusalsOfTheHostAreReportedAndLeaveNothingBehind) {
    constexpr char kNoTask[] = "Error creating new task.";
    constexpr char kNoImage[] = "There has been an error adding an image to the current file object.";
    const struct {
        std::uint32_t command;
        int time; // 1: the first of these commands
        int button;
        const char* box;
        const char* end; // the messages from the task's on
    } cases[] = {
        {kHostCreateTask, 1, kBuild, kNoTask, "1;13 0 0"},
        {kHostCreateTestTask, 1, kTest, kNoTask, "5;13 0 0"},
        {kHostAddImage, 3, kTest, kNoImage, "5;15 e 255;2;2;2;4 0;13 0 0"},
        {kHostAddImage, 6, kBuild, kNoImage, "1;15 e 255;2;2;2;2;2;2;4 0;13 0 0"},
    };
    const auto* row = cases;
    int time = 0;
    const Texts begun = messagesUntil(kMade);
    Session failing = session(settingsFile("MainRadar", kSmallRadar), {});
    failing.refuses = [&](const Message& message) { return message.command == row->command && ++time == row->time; };
    failing.steps.assign(std::size(cases), [&](HWND dialog) {
        SCOPED_TRACE(row->end);
        press(dialog, row->button);
        EXPECT_TRUE(IsWindowVisible(dialog));
        press(dialog, kTest); // as if nothing had happened
        const Recording seen = takeRecording();
        EXPECT_EQ(seen.boxes, Texts{row->box});
        EXPECT_EQ(seen.faults, Texts{});
        Texts expected = begun;
        std::ranges::copy(split(row->end, ';'), std::back_inserter(expected));
        expected.insert(expected.end(), begun.begin(), begun.end());
        expected.insert(expected.end(), {"5", "15 e 255", "2", "2", "2", "2", "2", "2", "3", "4 1"});
        EXPECT_EQ(seen.describe(), expected);
        ++row;
        time = 0;
    });
    EXPECT_EQ(run(failing).result, 1);
    EXPECT_EQ(row, std::end(cases));
}

// Meters, scopes and spectrum that follow a sound, bar graph and data pad, tested in one dialog.
TEST(Build, InstrumentsWithoutTheirFileFailAndTheNextBuildWorks) {
    std::string settings = settingsFile("MainRadar", kSmallRadar) + line("MainDatapadTextFile", "C:\\no such file");
    for (const char* key :
         {"VUAnalogSquare", "VUAnalogRound", "VUDigHorz", "VUDigVert", "Spectrum", "MagicEye", "Sonic", "Voice"})
        settings += line("Main" + std::string(key) + "Sound", "C:\\no such file");
    const Step testAll = [](HWND dialog) {
        for (const int effect : {2, 3, 4, 8, 9, 10, 13, 17, 18, kRadar}) {
            setChoice(dialog, kEffect, effect);
            press(dialog, kTest);
        }
    };
    const Recording seen = run(session(settings, {testAll}));
    EXPECT_EQ(seen.boxes, Texts(9, "Memory error"));
    EXPECT_EQ(seen.frames.size(), 6u);
    const Texts messages = seen.describe();
    ASSERT_GT(messages.size(), 6u);
    EXPECT_EQ(Texts(messages.begin(), messages.begin() + 6),
              (Texts{"18", "13 0 0", "10 Building", "10 Building", "13 0 0", "18"}));
}

} // namespace
