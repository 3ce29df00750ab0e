// Hosts that misbehave: they call again, answer nonsense, are slow, do things of their own inside a command, or go
// away. The plugin must neither fall nor give anything but what a good host gets.
#include "built_frames.h"

#include <algorithm>
#include <thread>

namespace {

using namespace recording;
using Texts = std::vector<std::string>;

// And a bar graph that shows an image.
constexpr char kSmallRadar[] = "Increment=33 Size=48 *MainBarGraphType=2 *MainBarGraphFrames=3";
constexpr UINT_PTR kTimers[] = {1, 2};

Session building(std::vector<Step> steps = {pressing(kBuild)}) {
    Session session;
    session.settings = settingsFile("MainRadar", kSmallRadar);
    session.steps = std::move(steps);
    return session;
}

std::intptr_t PLUGIN16_CALL ignoreCommand(HostTaskInfo*, std::uint32_t, std::uintptr_t, std::intptr_t) {
    return 1;
}

int callAgain() {
    HostParams params{};
    params.size = sizeof params;
    params.version = 0x1000;
    params.message = ignoreCommand;
    params.flags = kHostIsPngEditor;
    return doBuildEntry()(nullptr, &params);
}

// The bar graph's picture asks for an image; then the radar is chosen again.
void showBarGraph(HWND dialog) {
    setChoice(dialog, kEffect, effectOf("MainBarGraph"));
    SendMessageA(dialog, WM_TIMER, kTimers[0], 0);
    setChoice(dialog, kEffect, kRadar);
}

// Without the date above them.
std::string settingsOf(const Recording& seen) {
    return seen.settingsFile.substr(std::min(seen.settingsFile.find("[PlugIn]"), seen.settingsFile.size()));
}

void expectSameBuild(const Recording& seen, const Recording& usual) {
    EXPECT_EQ(seen.result, 1);
    EXPECT_EQ(seen.describe(), usual.describe());
    EXPECT_EQ(seen.boxes, Texts{});
    EXPECT_EQ(seen.faults, Texts{});
    EXPECT_EQ(seen.dialogsOpened, 1);
    EXPECT_TRUE(settingsOf(seen) == settingsOf(usual)); // hundreds of lines
    ASSERT_EQ(seen.frames.size(), usual.frames.size());
    for (std::size_t i = 0; i < usual.frames.size(); ++i)
        EXPECT_EQ(seen.frames[i].bitmap, usual.frames[i].bitmap) << i;
}

TEST(Hosts, ThatCallAgainGetNothing) {
    const Recording usual = run(building());
    std::vector<int> results;
    const auto call = [&] {
        results.push_back(callAgain());
        std::thread([&] { results.push_back(callAgain()); }).join();
    };
    Session session = building({[&](HWND) { call(); }, pressing(kBuild)});
    session.whileAnswering = [&](std::uint32_t) { call(); };
    expectSameBuild(run(session), usual);
    EXPECT_GT(results.size(), 40U);
    EXPECT_EQ(std::ranges::count(results, 0), static_cast<std::ptrdiff_t>(results.size()));
    expectSameBuild(run(building()), usual); // the library was unloaded between them
    EXPECT_EQ(GetModuleHandleA("veldran1_x64.dll"), nullptr);
}

TEST(Hosts, WithoutBlocksAndEntries) {
    const HMODULE library = LoadLibraryA("veldran1_x64.dll");
    EXPECT_EQ(doBuildEntry()(nullptr, nullptr), 0);
    FreeLibrary(library);
    Session mute = building({pressing(kTest), pressing(kBuild)});
    mute.hasMessageEntry = false;
    const Recording seen = run(mute);
    EXPECT_EQ(seen.result, 1);
    EXPECT_EQ(seen.boxes, Texts(2, "Error creating new task."));
}

// A host that shows its progress in a loop of its own lets everything through to the dialog.
TEST(Hosts, ThatLetOtherMessagesInWhileTheyAnswer) {
    const std::vector<Step> steps = {showBarGraph, pressing(kBuild)};
    const Recording usual = run(building(steps));
    EXPECT_GE(usual.count(kHostLoadImage), 1);
    Session session = building(steps);
    session.whileAnswering = [](std::uint32_t command) {
        const HWND dialog = openDialog();
        if (dialog == nullptr || command == kHostShowHelp)
            return;
        for (const int button : {int{kBuild}, int{kTest}, int{kCancel}, 4, 5})
            PostMessageA(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED), 0);
        for (const UINT_PTR timer : kTimers)
            PostMessageA(dialog, WM_TIMER, timer, 0);
        PostMessageA(dialog, WM_HELP, 0, 0);
        PostMessageA(dialog, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(GetDlgItem(dialog, kRadarMarkerList)), 0);
        PostMessageA(dialog, WM_CLOSE, 0, 0);
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&message);
        Sleep(5); // and it is slow
    };
    expectSameBuild(run(session), usual);
}

// All commands, also the one that gives an image, which the preview of the bar graph asks for too.
TEST(Hosts, ThatAnswerNonsense) {
    std::uint8_t local[64] = {40};
    Session session = building({});
    session.steps = {[&](HWND dialog) {
        for (const std::intptr_t answer : {std::intptr_t{-1}, std::intptr_t{1}, std::intptr_t{0x7FFFFFFF},
                                           std::intptr_t{1} << 46, reinterpret_cast<std::intptr_t>(local + 1)}) {
            SCOPED_TRACE(answer);
            session.answer = answer;
            showBarGraph(dialog);
            setChoice(dialog, kEffect, effectOf("MainBarGraph"));
            press(dialog, kTest);
            setChoice(dialog, kEffect, kRadar);
            press(dialog, kTest);
            const Recording seen = takeRecording();
            EXPECT_GE(seen.frames.size(), 6U); // the radar at least
            EXPECT_EQ(seen.faults, Texts{});
        }
    }};
    EXPECT_EQ(run(session).result, 1);
}

// The host closes its windows in the middle of a build; the last invocation is a usual one.
TEST(Hosts, ThatDestroyTheDialog) {
    const std::vector<std::uint32_t> moments = {kHostBuildBegins, kHostShowProgress, kHostAddImage};
    std::size_t destroyed = 0;
    const Step lookBack = [](HWND) {
        const Recording before = takeRecording();
        EXPECT_EQ(before.count(kHostCreateTask), before.count(kHostFinishTask));
    };
    Session session = building({lookBack, pressing(kBuild)});
    session.invocations = 4;
    session.whileAnswering = [&](std::uint32_t command) {
        if (destroyed < moments.size() && command == moments[destroyed] && openDialog() != nullptr) {
            ++destroyed;
            DestroyWindow(openDialog());
        }
    };
    const Recording seen = run(session);
    EXPECT_EQ(destroyed, moments.size());
    EXPECT_EQ(seen.frames.size(), 6U);
    EXPECT_EQ(seen.boxes, Texts{});
}

} // namespace
