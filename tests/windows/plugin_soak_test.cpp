// Nothing is left over and nothing grows: memory, drawing objects and windows stand still over many builds of all
// instruments and many openings of the dialog in one process.
#include "extent.h"
#include "object_count.h"
#include "small_instruments.h"

#include <chrono>
#include <cstdio>

#include <psapi.h>

namespace {

using namespace recording;

constexpr int kEffects = 20;
constexpr int kBatches = 2;

// The smallest frame of a build in the sessions below has 57 x 57 pixels and 3249 bytes, and each instrument is built
// three times a batch; the system was seen to keep 500 bytes after some calls.
constexpr std::ptrdiff_t kHeapSlack = 5000;

// A batch does its turn so many times.
int turnsOfABatch() {
    return testsAreThorough() ? 6 : 1;
}

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

// Takes a turn to warm up and then two batches of them, and expects that in one of these nothing grew. What the system
// loads at some first time shows in one batch, what is lost in both.
template <class Act>
void expectStandStill(const char* what, Act act) {
    const auto start = std::chrono::steady_clock::now();
    act();
    const std::size_t memory = privateBytes();
    const DWORD handles = kernelHandles();
    const object_count::Growth growth = object_count::leastGrowth(kBatches, turnsOfABatch(), act);
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
TEST(Soak, BuildsLeaveNothing) {
    constexpr int kOptionSets = 3;
    const SmallInstruments instruments;
    Session session;
    session.settings = instruments.settings();
    int builds = 0;
    std::size_t frames = 0;
    const auto buildAll = [&](HWND dialog) {
        for (int effect = 0; effect < kEffects; ++effect) {
            setChoice(dialog, kEffect, effect);
            SendMessageA(dialog, WM_TIMER, 1, 0);
            for (int i = 0; i < kOptionSets; ++i) {
                setCheck(dialog, kTrueColour, i % 3 == 1);
                setCheck(dialog, kSupercompress, i % 3 == 2);
                press(dialog, kTest);
                ++builds;
                frames += takeRecording().frames.size();
            }
        }
    };
    session.steps = {[&](HWND dialog) { expectStandStill("Builds", [&] { buildAll(dialog); }); }};
    run(session);
    EXPECT_EQ(builds, kEffects * kOptionSets * (1 + kBatches * turnsOfABatch()));
    EXPECT_GT(frames, static_cast<std::size_t>(2 * builds));
}

// Opened and closed with and without a build, also with one that fails.
TEST(Soak, OpeningsLeaveNothing) {
    const SmallInstruments instruments;
    const struct {
        const char* settings;
        int button;
        Refusal refusal;
    } cases[] = {
        {"", kBuild, {}},
        {"MainSupercompress = 1\n", kTest, {}},
        {"MainAlphaTrans = 1\n", kBuild, {}},
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
    const auto turn = [&] {
        for (std::size_t i = 0; i < std::size(cases); ++i)
            open();
    };
    expectStandStill("Openings", turn);
}

} // namespace
