// Everything that can fail fails once at every place it occurs (VELDRAN_TESTS=all) or at one of those near each other:
// memory, global memory, locks, drawing objects, windows, resources, files and the host's commands, in every
// instrument's picture and build, in the driver and in the dialogs. After each the plugin has said what it has to say,
// holds what it held before, and the next build is as always.
#include "built_frames.h"
#include "fault_injection.h"
#include "object_count.h"
#include "small_instruments.h"

#include <algorithm>

namespace {

using namespace recording;
using faults::Call;
using faults::Injection;
using faults::Kind;
using Texts = std::vector<std::string>;

enum : int { kAdvanced = 5, kPlay = 7, kCustomPalette = 14, kDither = 15, kTransparent = 46, kAntialias = 48 };
constexpr int kEffects = 20;
constexpr int kFirstOfPanels = 100; // identity
constexpr UINT_PTR kPreviewTimer = 1;
constexpr UINT_PTR kPlayTimer = 2;
constexpr int kLadder = 11;  // an instrument that is quickly drawn
constexpr int kRounds = 400; // more than any act has places that end it

constexpr char kMemoryError[] = "Memory error";
constexpr char kTaskError[] = "Error creating new task.";
constexpr char kImageError[] = "There has been an error adding an image to the current file object.";

// The host's answer to a path: a picture of 8 x 8 pixels.
HGLOBAL pictureFromHost() {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(BITMAPINFOHEADER) + 8 * 8 * 3);
    *static_cast<BITMAPINFOHEADER*>(GlobalLock(block)) = {sizeof(BITMAPINFOHEADER), 8, 8, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    GlobalUnlock(block);
    return block;
}

// The plugin with its imports watched, for the process's life.
Injection& injection() {
    static Injection watched(LoadLibraryA("veldran1_x64.dll"));
    return watched;
}

std::string commandName(std::uint32_t command) {
    return "host command " + std::to_string(command);
}

// A session whose host may fail and loads pictures.
Session sessionWith(const SmallInstruments& instruments, std::vector<Step> steps) {
    Session session;
    session.settings = instruments.settings();
    session.steps = std::move(steps);
    session.loadImage = [](const std::string&) {
        const HGLOBAL block = pictureFromHost();
        injection().handOver(block);
        return block;
    };
    session.refuses = [](const Message& message) {
        return injection().hostFails(commandName(message.command).c_str());
    };
    return session;
}

// Output options; what is not named is off.
struct Options {
    const char* name;
    std::vector<int> checked;
    int button = kTest;
    bool exact = false;      // what is built is as always or not built at all
    bool otherPanel = false; // with the other half of the instrument's options
};

void choose(HWND dialog, const Options& options) {
    for (const int control : std::initializer_list<int>{kTrueColour, kAlpha, kAntialias, kCustomPalette, kDither,
                                                        kSupercompress, kTransparent})
        setCheck(dialog, control, std::ranges::find(options.checked, control) != options.checked.end());
}

// Every check box of the shown panel the other way round, every choice the next one.
void turnPanel(HWND dialog) {
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        const int identity = GetDlgCtrlID(child);
        if (identity < kFirstOfPanels || !IsWindowVisible(child))
            continue;
        char name[16] = "";
        GetClassNameA(child, name, sizeof name);
        if (lstrcmpiA(name, "COMBOBOX") == 0)
            setChoice(dialog, identity, static_cast<int>(SendMessageA(child, CB_GETCURSEL, 0, 0)) + 1);
        else if (lstrcmpiA(name, "BUTTON") == 0 && (GetWindowLongA(child, GWL_STYLE) & BS_TYPEMASK) == BS_AUTOCHECKBOX)
            SendMessageA(child, BM_CLICK, 0, 0);
    }
}

// Frames as always, or larger where a picture could not be reduced; without `exact`, as many.
bool framesAreGood(const Recording& seen, const Recording& healthy, bool exact) {
    if (seen.frames.size() != healthy.frames.size())
        return false;
    for (std::size_t i = 0; exact && i < seen.frames.size(); ++i)
        if (seen.frames[i].bitmap != healthy.frames[i].bitmap && seen.frames[i].width() <= healthy.frames[i].width())
            return false;
    return true;
}

// What a build has to say when this call fails; empty: nothing, or that memory is short.
std::string messageFor(const Call& call) {
    if (call.function == commandName(kHostCreateTask) || call.function == commandName(kHostCreateTestTask))
        return kTaskError;
    return call.function == commandName(kHostAddImage) ? kImageError : "";
}

void expectGoodBuild(const Recording& seen, const Recording& healthy, const Call& call, bool exact) {
    EXPECT_EQ(seen.faults, Texts{});
    const std::string message = messageFor(call);
    if (seen.boxes == healthy.boxes && message.empty()) {
        EXPECT_TRUE(framesAreGood(seen, healthy, exact));
        return;
    }
    if (call.function == "DialogBoxParamA") // the message itself
        return;
    EXPECT_EQ(seen.boxes, Texts{message.empty() ? kMemoryError : message});
    const Texts messages = seen.describe();
    EXPECT_EQ(messages.back(), "13 0 0");
    const bool created = !seen.tasks.empty() && message != kTaskError;
    EXPECT_EQ(std::ranges::count(messages, "4 0"), created ? 1 : 0);
    EXPECT_EQ(std::ranges::count(messages, "4 1"), 0);
}

bool sameBuild(const Recording& one, const Recording& other) {
    return one.describe() == other.describe() && one.boxes == other.boxes &&
           std::ranges::equal(one.frames, other.frames, {}, &Frame::bitmap, &Frame::bitmap);
}

// The first exception of a process and what the system loads with the first pictures stay.
void warmUp(const std::vector<faults::Act>& acts) {
    for (const faults::Act& act : acts) {
        act();
        injection().runFailing({Kind::Memory, "malloc", 0}, act);
        act();
    }
    takeRecording();
}

// One instrument under one set of options, in an open dialog.
class Walk {
public:
    Walk(HWND dialog, const Options& options) : dialog_(dialog), options_(options) {
        warmUp({[this] { preview(); }, [this] { build(); }});
        build();
        healthy_ = takeRecording();
        held_ = injection().held();
        EXPECT_FALSE(healthy_.frames.empty());
    }

    void previews() {
        // A picture that could not be drawn is not there.
        faults::Held without = held_;
        --without[static_cast<std::size_t>(Kind::GlobalMemory)];
        walk([this] { preview(); },
             [&](const Call&) {
                 EXPECT_EQ(takeRecording().faults, Texts{});
                 EXPECT_TRUE(injection().held() == held_ || injection().held() == without);
             });
        preview();
        expectAsBefore();
    }

    void builds() {
        int count = 0;
        walk([this] { build(); },
             [&](const Call& call) {
                 expectGoodBuild(takeRecording(), healthy_, call, options_.exact);
                 expectAsBefore();
                 if (++count % 32 == 0)
                     expectHealthyBuild();
             });
        expectHealthyBuild();
    }

    std::size_t failed() const { return failed_; } // places

    void playing() {
        walk([this] { play(); }, [this](const Call&) { EXPECT_EQ(takeRecording().faults, Texts{}); });
        preview();
        expectAsBefore();
    }

private:
    void preview() { SendMessageA(dialog_, WM_TIMER, kPreviewTimer, 0); }
    void play() {
        press(dialog_, kPlay);
        SendMessageA(dialog_, WM_TIMER, kPlayTimer, 0);
        preview(); // ends it
    }
    void build() { press(dialog_, options_.button); }

    template <class Check>
    void walk(const faults::Act& act, Check check) {
        const std::vector<Call> places = injection().newPlaces(act);
        takeRecording();
        failed_ += places.size();
        for (const Call& call : places) {
            SCOPED_TRACE(std::string(options_.name) + ", call " + std::to_string(call.number) + ", " + call.function);
            EXPECT_TRUE(injection().runFailing(call, act));
            check(call);
            EXPECT_EQ(injection().takeMisuses(), Texts{});
        }
    }

    void expectAsBefore() const { EXPECT_EQ(injection().held(), held_); }

    void expectHealthyBuild() {
        build();
        EXPECT_TRUE(sameBuild(takeRecording(), healthy_));
        expectAsBefore();
    }

    HWND dialog_;
    const Options& options_;
    Recording healthy_;
    faults::Held held_{};
    std::size_t failed_ = 0;
};

// The host refuses the last frame of a real build, which leaves the dialog open.
Session refusingLastFrames(Session session) {
    session.refuses = [chained = session.refuses](const Message& message) {
        const auto* info = reinterpret_cast<const HostImageInfo*>(message.lParam);
        static std::uint32_t frames = 0;
        static bool test = false;
        if (message.command == kHostCreateTask || message.command == kHostCreateTestTask) {
            frames = reinterpret_cast<const HostTaskInfo*>(message.lParam)->frameCount;
            test = message.command == kHostCreateTestTask;
        }
        return chained(message) || (message.command == kHostAddImage && !test && info->index + 1 == frames);
    };
    return session;
}

// First of all, so that even the first exception of the process is thrown without memory.
TEST(Faults, NothingIsThereFromSomePlaceOn) {
    const SmallInstruments instruments;
    int failed = 0;
    const Step step = [&](HWND dialog) {
        for (const int effect : {kLadder, kRadar, 2}) { // memory alone, drawing objects, a sound
            setChoice(dialog, kEffect, effect);
            const faults::Act build = [&] { press(dialog, kTest); };
            for (const Call& call : injection().newPlaces(build)) {
                if (call.kind == Kind::Host)
                    continue; // whose memory is its own
                SCOPED_TRACE(call.function);
                ++failed;
                takeRecording();
                injection().runShort(call, build);
                const Recording seen = takeRecording();
                EXPECT_EQ(seen.faults, Texts{});
                EXPECT_EQ(seen.count(kHostFinishTask), static_cast<int>(seen.tasks.size()));
                EXPECT_EQ(seen.boxes.empty(), seen.describe().back() == "4 1");
            }
            build();
            EXPECT_FALSE(takeRecording().frames.empty());
        }
    };
    run(sessionWith(instruments, {step}));
    EXPECT_GT(failed, 0);
}

TEST(Faults, OnceAtEveryPlaceOfPicturesAndBuilds) {
    const Options plain{"true colour", {kTrueColour, kAntialias}, kTest, true};
    const Options alpha{"alpha, other options", {kAlpha}, kBuild, false, true};
    constexpr int kCached = 8;               // drawing objects that the system keeps from some first time
    constexpr int kGlowing[] = {12, 17, 18}; // scopes: where memory is short their light does not spread
    const SmallInstruments instruments;
    const Step step = [&](HWND dialog) {
        const int drawing = object_count::drawingObjects();
        const int windows = object_count::userObjects();
        std::size_t failed = 0;
        for (int effect = 0; effect < kEffects; ++effect) {
            setChoice(dialog, kEffect, effect);
            SCOPED_TRACE(textOf(GetDlgItem(dialog, kEffect)));
            for (Options options : {plain, alpha}) {
                choose(dialog, options);
                if (options.otherPanel)
                    turnPanel(dialog);
                options.exact = options.exact && std::ranges::find(kGlowing, effect) == std::end(kGlowing);
                Walk walk(dialog, options);
                if (!options.otherPanel)
                    walk.previews();
                walk.builds();
                failed += walk.failed();
            }
        }
        EXPECT_GT(failed, 0u);
        EXPECT_LE(object_count::drawingObjects(), drawing + kCached);
        EXPECT_EQ(object_count::userObjects(), windows);
    };
    run(refusingLastFrames(sessionWith(instruments, {step})));
}

TEST(Faults, OnceAtEveryPlaceOfTheDriverAndThePlayer) {
    const Options cases[] = {
        {"custom palette", {kCustomPalette}},
        {"custom palette, dithered, transparent", {kCustomPalette, kDither, kTransparent}},
        {"custom palette, supercompressed", {kCustomPalette, kSupercompress}},
        {"fixed palette, dithered, supercompressed", {kDither, kSupercompress}},
        {"fixed palette, transparent", {kTransparent}},
    };
    const SmallInstruments instruments;
    const Step step = [&](HWND dialog) {
        setChoice(dialog, kEffect, kLadder);
        for (const Options& options : cases) {
            choose(dialog, options);
            Walk walk(dialog, options);
            walk.builds();
            walk.playing();
        }
    };
    run(sessionWith(instruments, {step}));
}

// Fails what no run of `act` has shown before, every `step`-th place of a function, until there is nothing new.
template <class Check>
void failAll(const char* name, int step, const faults::Act& act, Check check) {
    for (int round = 0;; ++round) {
        ASSERT_LT(round, kRounds) << name;
        const std::vector<Call> failed = injection().runFailingNewPlaces(act, step);
        SCOPED_TRACE(failed.empty() ? std::string() : failed.back().function);
        check(failed);
        EXPECT_EQ(injection().takeMisuses(), Texts{});
        if (failed.empty())
            return;
    }
}

void redraw(HWND window) {
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

// As much as before; the runtime library keeps a mutex for its emergency store once that has been used.
bool holdsAsMuch(const faults::Held& now, faults::Held before) {
    if (now == before)
        return true;
    ++before[static_cast<std::size_t>(Kind::Memory)];
    return now == before;
}

// Editors and the advanced settings, closed with OK, and what the dialog shows.
TEST(Faults, OnceAtEveryPlaceOfEditorsAndPainting) {
    const SmallInstruments instruments;
    const Step step = [&](HWND dialog) {
        const auto command = [dialog](int control, int code) {
            SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(control, code),
                         reinterpret_cast<LPARAM>(GetDlgItem(dialog, control)));
        };
        constexpr int kAltitudes = 540;
        const struct {
            const char* name;
            int effect;
            faults::Act act;
        } cases[] = {
            {"Message box", kLadder,
             [&] {
                 setCheck(dialog, kTrueColour, true);
                 press(dialog, kBuild); // is refused
             }},
            {"Painting", 0, [&] { redraw(dialog); }},
            {"Choosing an instrument", 2,
             [&] {
                 setChoice(dialog, kEffect, 1);
                 setChoice(dialog, kEffect, 2);
             }},
            {"Marker editor", kRadar, [&] { command(kRadarMarkerList, LBN_DBLCLK); }},
            {"Altitudes", 1, [&] { command(kAltitudes, BN_CLICKED); }},
            {"Advanced settings", kRadar, [&] { press(dialog, kAdvanced); }},
        };
        for (const auto& row : cases) {
            SCOPED_TRACE(row.name);
            setChoice(dialog, kEffect, row.effect);
            SendMessageA(dialog, WM_TIMER, kPreviewTimer, 0);
            // With any message the dialog asks again for the memory that it had given up.
            const faults::Act act = [&] {
                row.act();
                SendMessageA(dialog, WM_NULL, 0, 0);
            };
            warmUp({act});
            const faults::Held held = injection().held();
            const int windows = object_count::userObjects();
            failAll(row.name, 1, act, [&](const std::vector<Call>&) {
                EXPECT_EQ(takeRecording().faults, Texts{});
                EXPECT_TRUE(holdsAsMuch(injection().held(), held));
                EXPECT_EQ(object_count::userObjects(), windows);
            });
        }
    };
    Session session = sessionWith(instruments, {step});
    session.refusals = {};
    session.refuses = [chained = session.refuses](const Message& message) {
        return chained(message) || message.command == kHostCreateTask;
    };
    session.otherDialogs = redraw;
    run(session);
}

// Opening and closing: the dialog comes up, or a message says why not, and a person's settings are still there.
TEST(Faults, OnceAtEveryPlaceOfOpeningAndClosing) {
    const SmallInstruments instruments;
    Recording seen;
    const faults::Act open = [&] { seen = run(sessionWith(instruments, {[](HWND dialog) { redraw(dialog); }})); };
    injection().runFailing({Kind::Window, "CreateWindowExA", 0}, open); // throws, and shows a message
    open();
    const faults::Held held = injection().held();
    const int windows = object_count::userObjects();
    constexpr int kStep = 6; // each takes an opening of its own
    failAll("Opening and closing", kStep, open, [&](const std::vector<Call>& failed) {
        EXPECT_EQ(seen.faults, Texts{});
        if (seen.result == 1) {
            EXPECT_TRUE(seen.dialogsOpened == 1 && seen.boxes.empty());
        } else if (failed.back().function != "DialogBoxParamA") { // the message itself
            EXPECT_EQ(seen.boxes, Texts{kMemoryError});
        }
        EXPECT_NE(seen.settingsFile.find("MainRadarIncrement = 33"), std::string::npos);
        EXPECT_EQ(injection().held(), held);
        EXPECT_EQ(object_count::userObjects(), windows);
    });
}

} // namespace
