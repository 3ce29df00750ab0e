// Nothing is left over and nothing grows: memory, drawing objects and windows stand still over a thousand builds of all
// instruments and over fifty openings of the dialog in one process.
#include "object_count.h"
#include "small_instruments.h"

#include <chrono>
#include <cstdio>

#include <psapi.h>

namespace {

using namespace recording;

constexpr int kEffects = 20;
constexpr int kBuilds = 1000;
constexpr int kOpenings = 50;

// The smallest frame of a build in the sessions below has 57 x 57 pixels and 3249 bytes; a thousand builds that each
// lost something would lose more than the system keeps after some calls.
constexpr std::ptrdiff_t kHeapSlack = 30000;

std::size_t privateBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

DWORD kernelHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

void redraw(HWND window) {
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

// Runs `act` once to warm up and then in two batches, and expects that in one of them nothing grew. What the system
// loads at some first time shows in one batch, what is lost in both.
template <class Act>
void expectStandStill(const char* what, int times, Act act) {
    const auto start = std::chrono::steady_clock::now();
    act();
    const std::size_t memory = privateBytes();
    const DWORD handles = kernelHandles();
    const object_count::Growth growth = object_count::leastGrowth(2, (times - 1) / 2, act);
    std::printf("%s in %.1f s: heap %+td bytes, %+d drawing objects, %+d windows, %+d handles; private bytes %zu KB, "
                "at first %zu KB\n",
                what, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), growth.heap,
                growth.drawing, growth.user, static_cast<int>(kernelHandles() - handles), privateBytes() / 1024,
                memory / 1024);
    EXPECT_LE(growth.drawing, 0);
    EXPECT_LE(growth.user, 0);
    EXPECT_LT(growth.heap, kHeapSlack);
    EXPECT_LE(kernelHandles(), handles + 2);
}

TEST(Soak, CountersSeeWhatIsMade) {
    HBRUSH brush = nullptr;
    HWND window = nullptr;
    HGLOBAL block = nullptr;
    const object_count::Growth growth = object_count::leastGrowth(1, 1, [&] {
        brush = CreateSolidBrush(0x123456);
        window = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
        block = GlobalAlloc(GMEM_MOVEABLE, kHeapSlack);
    });
    EXPECT_GT(growth.drawing, 0);
    EXPECT_GT(growth.user, 0);
    EXPECT_GE(growth.heap, kHeapSlack);
    DeleteObject(brush);
    DestroyWindow(window);
    GlobalFree(block);
}

// Every instrument with its picture and builds under three sets of options, in one dialog.
TEST(Soak, AThousandBuildsLeaveNothing) {
    constexpr int kRounds = 10;
    constexpr int kTimes = kBuilds / kEffects / kRounds; // that an instrument is built in a round
    const SmallInstruments instruments;
    Session session;
    session.settings = instruments.settings();
    int builds = 0;
    std::size_t frames = 0;
    const auto buildAll = [&](HWND dialog) {
        for (int effect = 0; effect < kEffects; ++effect) {
            setChoice(dialog, kEffect, effect);
            SendMessageA(dialog, WM_TIMER, 1, 0);
            for (int i = 0; i < kTimes; ++i) {
                setCheck(dialog, kTrueColour, i % 3 == 1);
                setCheck(dialog, kSupercompress, i % 3 == 2);
                press(dialog, kTest);
                ++builds;
                frames += takeRecording().frames.size();
            }
        }
    };
    session.steps = {[&](HWND dialog) {
        buildAll(dialog);
        expectStandStill("1000 builds", kRounds - 1, [&] { buildAll(dialog); });
    }};
    run(session);
    EXPECT_EQ(builds, kBuilds);
    EXPECT_GT(frames, static_cast<std::size_t>(2 * kBuilds));
}

// Opened and closed with and without a build, also with one that fails.
TEST(Soak, FiftyOpeningsLeaveNothing) {
    const SmallInstruments instruments;
    const struct {
        const char* settings;
        int button;
        Refusal refusal;
    } cases[] = {
        {"", kBuild, {}},
        {"MainSupercompress = 1\n", kTest, {}},
        {"Truecolour = 1\n", kBuild, {}},
        {"MainAlphaTrans = 1\n", kBuild, {}},
        {"MainSupercompress = 1\n", kBuild, {kHostCreateTask, 1}},
        {"MainSupercompress = 1\n", kBuild, {kHostAddImage, 3}},
        {"MainEffect = 10\nMainDatapadTextFile = C:\\no such file\n", kBuild, {}},
    };
    std::size_t next = 0;
    const auto open = [&] {
        const auto& row = cases[next++ % std::size(cases)];
        Session session;
        session.settings = instruments.settings() + "MainEffect = 15\n" + row.settings;
        session.refusals = {row.refusal};
        session.steps = {[](HWND dialog) {
                             SendMessageA(dialog, WM_TIMER, 1, 0);
                             redraw(dialog);
                         },
                         pressing(row.button)};
        run(session);
    };
    // A batch begins with the same case as the other one.
    const int turns = kOpenings / static_cast<int>(std::size(cases));
    const auto turn = [&] {
        for (std::size_t i = 0; i < std::size(cases); ++i)
            open();
    };
    open(); // the fiftieth
    expectStandStill("50 openings", turns, turn);
    EXPECT_EQ(next, static_cast<std::size_t>(kOpenings));
}

} // namespace
