// Nothing is left over: drawing objects, windows and global memory stand still however often the dialog opens and
// whatever is built in it.
#include "built_frames.h"
#include "object_count.h"
#include "sound_bytes.h"

namespace {

using namespace recording;

// A frame of the sessions below has 193 x 193 pixels and at least 37000 bytes: a single one that is lost would show.
// The system itself keeps a little more after some calls.
constexpr std::ptrdiff_t kHeapSlack = 30000;

void expectStandStill(const Session& session, int times) {
    run(session); // fonts, classes and caches that the system keeps
    run(session);
    const object_count::Growth growth = object_count::leastGrowth(2, times, [&] { run(session); });
    EXPECT_LE(growth.drawing, 0);
    EXPECT_LE(growth.user, 0);
    EXPECT_LT(growth.heap, kHeapSlack);
}

Session building(const std::string& settings, int button) {
    Session session;
    session.settings = "MainEffect = 15\nMainRadarIncrement = 33\n" + settings;
    session.steps = {pressing(button)};
    return session;
}

TEST(Handles, CountersSeeWhatIsMade) {
    HBRUSH brush = nullptr;
    HWND window = nullptr;
    HGLOBAL block = nullptr;
    const object_count::Growth growth = object_count::leastGrowth(1, 1, [&] {
        brush = CreateSolidBrush(0x123456);
        window = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
        block = GlobalAlloc(GMEM_MOVEABLE, 193 * 193);
    });
    EXPECT_GT(growth.drawing, 0);
    EXPECT_GT(growth.user, 0);
    EXPECT_GT(growth.heap, kHeapSlack);
    DeleteObject(brush);
    DestroyWindow(window);
    GlobalFree(block);
}

TEST(Handles, StandStillOverOpenings) {
    Session session;
    session.settings = "MainEffect = 15\n";
    // Every instrument is chosen once, and the radar's preview is drawn.
    session.steps = {[](HWND dialog) {
        for (int row = 0; row < 20; ++row)
            setChoice(dialog, kEffect, row);
        setChoice(dialog, kEffect, kRadar);
        SendMessageA(dialog, WM_TIMER, 1, 0);
        RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    }};
    expectStandStill(session, 2);
}

TEST(Handles, StandStillOverBuilds) {
    const struct {
        const char* name;
        const char* settings;
        int button;
        Refusal refusal;
        int times = 1;
    } cases[] = {
        {"default", "", kBuild, {}, 2},
        {"supercompressed", "MainSupercompress = 1\n", kTest, {}},
        {"true colour", "Truecolour = 1\n", kBuild, {}},
        {"no document", "MainSupercompress = 1\n", kBuild, {kHostCreateTask, 1}},
        {"frame refused", "MainSupercompress = 1\n", kBuild, {kHostAddImage, 3}},
        {"without its file", "MainEffect = 10\nMainDatapadTextFile = C:\\no such file\n", kBuild, {}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        Session session = building(row.settings, row.button);
        session.refusals = {row.refusal};
        expectStandStill(session, row.times);
    }
}

// Every instrument with its mask, in one dialog: the host refuses each document, which leaves the dialog open.
TEST(Handles, StandStillOverAllInstruments) {
    const int levels[] = {0, 128, 254, 9};
    const TemporaryFile sound("veldran-handles-test.wav", levelSound(levels));
    const TemporaryFile text("veldran-handles-test.txt", "a\nb\n");
    Session session;
    session.settings =
        "MainAlphaTrans = 1\nMainRadarIncrement = 33\nMainLissajousIncrement = 33\nMainCountdownSeconds = 0\n"
        "MainVoiceStepSize = 64\nMainBubbleFrames = 64\nMainDatapadTextFile = " +
        text.path() + "\n";
    for (const char* key :
         {"VUAnalogSquare", "VUAnalogRound", "VUDigHorz", "VUDigVert", "Spectrum", "MagicEye", "Sonic", "Voice"})
        *session.settings += "Main" + std::string(key) + "Sound = " + sound.path() + "\n";
    for (const char* key : {"VUAnalogSquare", "VUAnalogRound", "VUDigHorz", "VUDigVert", "Spectrum", "MagicEye",
                            "Sonic", "Plasma", "Altimeter", "BarGraph", "Ladder", "Arclight", "Tach", "Stopwatch"})
        *session.settings += line("Main" + std::string(key) + "Frames", 4);
    for (int effect = 0; effect < 20; ++effect) {
        session.steps.push_back([effect](HWND dialog) {
            setChoice(dialog, kEffect, effect);
            press(dialog, kBuild);
        });
        session.refusals.push_back({kHostCreateTask, effect + 1});
    }
    const Recording seen = run(session);
    EXPECT_EQ(seen.count(kHostCreateTask), 20); // all of them came so far
    expectStandStill(session, 1);
}

} // namespace
