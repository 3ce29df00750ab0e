// Nothing is left over: drawing objects, windows and global memory stand still however often the dialog opens and
// whatever is built in it.
#include "object_count.h"
#include "recording_host.h"

#include <gtest/gtest.h>

namespace {

using namespace recording;

struct Counts {
    int drawing;
    int user;
    std::size_t heap;
};

Counts countAll() {
    return {object_count::drawingObjects(), object_count::userObjects(), object_count::heapBytes()};
}

// A frame of the sessions below has 193 x 193 pixels and at least 37000 bytes: a single one that is lost would show.
// The system itself keeps a little more after some calls.
constexpr std::size_t kHeapSlack = 30000;

void expectStandStill(const Session& session, int times) {
    run(session); // fonts, classes and caches that the system keeps
    run(session);
    const Counts before = countAll();
    for (int i = 0; i < times; ++i)
        run(session);
    const Counts after = countAll();
    EXPECT_EQ(after.drawing, before.drawing);
    EXPECT_EQ(after.user, before.user);
    EXPECT_LT(after.heap, before.heap + kHeapSlack);
}

Session building(const std::string& settings, int button) {
    Session session;
    session.settings = "MainEffect = 15\nMainRadarIncrement = 33\n" + settings;
    session.steps = {pressing(button)};
    return session;
}

TEST(Handles, CountersSeeWhatIsMade) {
    const Counts before = countAll();
    const HBRUSH brush = CreateSolidBrush(0x123456);
    const HWND window = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, 193 * 193);
    const Counts between = countAll();
    EXPECT_GT(between.drawing, before.drawing);
    EXPECT_GT(between.user, before.user);
    EXPECT_GT(between.heap, before.heap + kHeapSlack);
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
    expectStandStill(session, 8);
}

TEST(Handles, StandStillOverBuilds) {
    const struct {
        const char* name;
        const char* settings;
        int button;
        Refusal refusal;
        int times = 2;
    } cases[] = {
        {"default", "", kBuild, {}, 4},
        {"supercompressed", "MainSupercompress = 1\n", kTest, {}},
        {"true colour", "Truecolour = 1\n", kBuild, {}},
        {"alpha", "MainAlphaTrans = 1\n", kBuild, {}},
        {"no document", "MainSupercompress = 1\n", kBuild, {kHostCreateTask, 1}},
        {"frame refused", "MainSupercompress = 1\n", kBuild, {kHostAddImage, 3}},
        {"not drawable", "MainEffect = 7\n", kBuild, {}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        Session session = building(row.settings, row.button);
        session.refusals = {row.refusal};
        expectStandStill(session, row.times);
    }
}

} // namespace
