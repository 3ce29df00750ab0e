// The host's window, opened for real and driven by messages as by a person: files, frames, playing, the plugin's
// dialog, and what happens when something is wrong.
#include "base/output_file.h"
#include "formats/animation_reader.h"
#include "windows/main_window/main_window.h"
#include "windows/window_ids.h"

#include "dialog_script.h"
#include "object_count.h"
#include "settings_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;
using namespace stage;

namespace {

// A folder of files for one test, with letters that no code page of the west has.
class Folder {
public:
    Folder() : path_(fs::temp_directory_path() / L"stage window \u4e2d") {
        fs::remove_all(path_);
        fs::create_directories(path_);
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    fs::path operator/(const char* name) const { return path_ / name; }

private:
    fs::path path_;
};

// Frames of one colour each, which tells their number: red is 10 times it.
Animation numbered(std::uint32_t frames, std::uint32_t delay) {
    Animation animation{8, 6, {}, 0, {}, {}, {}};
    for (std::uint32_t i = 0; i < frames; ++i) {
        const Rgb colour{static_cast<std::uint8_t>(10 * i), 0, 0};
        Frame frame = frameOf({8, 6, std::vector<Pixel>(48, pixelOf(colour))});
        frame.delay = delay;
        animation.frames.push_back(std::move(frame));
    }
    return animation;
}

fs::path written(const Folder& folder, const char* name, const Animation& animation) {
    saveAnimation(animation, *formatOfFile(folder / name), {}, folder / name);
    return folder / name;
}

Animation readBack(const fs::path& file) {
    const std::string content = readFile(file);
    return readAnimation({reinterpret_cast<const std::uint8_t*>(content.data()), content.size()}).animation;
}

fs::path pluginFile() {
    return programFolder() / "veldran1_x64.dll";
}

class StageWindow : public testing::Test {
protected:
    // The window of the test before has asked the thread to end.
    void SetUp() override {
        MSG message;
        while (PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) {
        }
    }
    void command(int id) { SendMessageW(window_.window(), WM_COMMAND, static_cast<WPARAM>(id), 0); }
    void key(int child, WPARAM key) { SendMessageW(GetDlgItem(window_.window(), child), WM_KEYDOWN, key, 0); }
    std::string shown(StatusPart part) const { return window_.status().shown(part); }

    // Handles what has been posted until the condition holds; false when it does not come to hold.
    bool pumpUntil(const std::function<bool()>& condition) {
        for (int i = 0; i < 3000; ++i) {
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                window_.dispatch(message);
            if (condition())
                return true;
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        }
        return false;
    }

    // The text of the box that the action shows, which is closed with the button.
    template <class Action>
    std::string boxOf(Action action, int button = IDCANCEL) {
        std::string text;
        dialog_script::drive(
            [&](HWND box) {
                for (HWND child = GetWindow(box, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
                    text += dialog_script::textOf(child);
                PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
            },
            action);
        return text;
    }

    Folder folder_;
    MainWindow window_{pluginFile()};
};

} // namespace

TEST_F(StageWindow, StepsThroughTheFramesOfAFile) {
    for (const int id : {ID_SAVE, ID_PLAY, ID_STEP_FORWARD, ID_EDIT_PARAMETERS, ID_ZOOM_IN}) // nothing is there yet
        command(id);
    EXPECT_EQ(window_.frame(), 0U);

    ASSERT_TRUE(window_.open(written(folder_, "five.gif", numbered(5, 40))));
    EXPECT_EQ(dialog_script::textOf(window_.window()), "five.gif - Stage");
    EXPECT_EQ(shown(StatusPart::Time), "0.20 s, forever");
    EXPECT_EQ(shown(StatusPart::Rate), "Browsers: 25.0 frames/s");
    EXPECT_TRUE(window_.isPlaying());
    command(ID_PLAY);
    EXPECT_FALSE(window_.isPlaying());

    command(ID_LAST_FRAME);
    EXPECT_EQ(shown(StatusPart::Frame), "Frame 5 of 5");
    command(ID_STEP_FORWARD);
    EXPECT_EQ(window_.frame(), 0U);
    key(ID_VIEW, VK_LEFT);
    EXPECT_EQ(window_.frame(), 4U);
    key(ID_STRIP, VK_HOME);
    key(ID_STRIP, VK_RIGHT);
    EXPECT_EQ(window_.frame(), 1U);
    SendDlgItemMessageW(window_.window(), ID_STRIP, WM_LBUTTONDOWN, 0, MAKELPARAM(300, 20));
    EXPECT_EQ(window_.frame(), 3U);
    const HWND slider = GetDlgItem(window_.window(), ID_SLIDER);
    EXPECT_EQ(SendMessageW(slider, TBM_GETPOS, 0, 0), 3);
    SendMessageW(slider, TBM_SETPOS, TRUE, 2);
    SendMessageW(window_.window(), WM_HSCROLL, TB_THUMBTRACK, reinterpret_cast<LPARAM>(slider));
    EXPECT_EQ(window_.frame(), 2U);

    // Arrow keys walk along a row of buttons and pass over those that are disabled.
    SetFocus(GetDlgItem(window_.window(), ID_STEP_BACK));
    key(ID_STEP_BACK, VK_LEFT);
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), ID_FIRST_FRAME);
    key(ID_FIRST_FRAME, VK_LEFT);
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), ID_LAST_FRAME);
    SetFocus(GetDlgItem(window_.window(), ID_SAVE));
    key(ID_SAVE, VK_RIGHT); // this file does not remember its parameters
    EXPECT_EQ(GetDlgCtrlID(GetFocus()), ID_ZOOM_OUT);

    command(ID_ZOOM_IN);
    EXPECT_EQ(window_.view().zoom(), 125);
    command(ID_ZOOM_FIT);
    EXPECT_TRUE(window_.view().isFitting());
    command(ID_ZOOM_ACTUAL);
    EXPECT_EQ(window_.view().zoom(), 100);
}

TEST_F(StageWindow, PlaysToTheEndOfItsPlays) {
    Animation animation = numbered(3, 20);
    animation.plays = 2;
    ASSERT_TRUE(window_.open(written(folder_, "twice.apng", animation)));
    EXPECT_TRUE(pumpUntil([&] { return !window_.isPlaying(); }));
    EXPECT_EQ(window_.frame(), 2U);
    command(ID_PLAY); // again from its beginning
    EXPECT_TRUE(window_.isPlaying());
    command(ID_REPEAT);
    EXPECT_TRUE(window_.document().isModified);
    std::size_t last = 0;
    EXPECT_TRUE(pumpUntil([&] { return last > window_.frame() || (last = window_.frame(), false); })); // a new round
}

TEST_F(StageWindow, SavesInEveryFormatAndSaysHowLargeTheFileIs) {
    ASSERT_TRUE(window_.open(written(folder_, "quick.gif", numbered(4, 10))));
    ASSERT_EQ(window_.notice().lines().size(), 1U); // browsers will differ
    for (const auto& [format, name] : {std::pair{OutputFormat::Apng, "out.png"}, {OutputFormat::Mng, "out.mng"}}) {
        ASSERT_TRUE(window_.saveTo(folder_ / name, format));
        EXPECT_EQ(window_.document().format, format);
        EXPECT_EQ(readBack(folder_ / name).frames.size(), 4U);
        EXPECT_TRUE(pumpUntil([&] {
            return shown(StatusPart::Bytes) ==
                   fileSizeText(format, static_cast<std::uint64_t>(fs::file_size(folder_ / name)));
        }));
    }
    ASSERT_TRUE(window_.saveTo(folder_ / "still.png", OutputFormat::Png));
    EXPECT_TRUE(fs::exists(folder_ / "still-0003.png"));

    // A change of format makes the size that of the other file.
    command(ID_FORMAT_GIF);
    EXPECT_TRUE(pumpUntil([&] {
        return shown(StatusPart::Bytes) ==
               fileSizeText(OutputFormat::Gif, static_cast<std::uint64_t>(fs::file_size(folder_ / "quick.gif")));
    }));
}

TEST_F(StageWindow, TellsWhatIsWrongAndKeepsWhatWasThere) {
    const fs::path good = written(folder_, "good.gif", numbered(3, 50));
    ASSERT_TRUE(window_.open(good));
    const auto before = window_.document().animation;

    const std::string content = readFile(good);
    writeFile(folder_ / "cut.gif", content.substr(0, 30));
    writeFile(folder_ / "text.gif", "no picture");
    for (const char* name : {"cut.gif", "text.gif", "missing.gif"}) {
        bool isOpen = true;
        const std::string text = boxOf([&] { isOpen = window_.open(folder_ / name); });
        EXPECT_FALSE(isOpen);
        EXPECT_NE(text.find(name), std::string::npos) << text;
        EXPECT_EQ(window_.document().animation, before);
    }
    command(ID_REPEAT);
    fs::create_directory(folder_ / "folder.gif");
    bool isSaved = true;
    EXPECT_NE(boxOf([&] { isSaved = window_.saveTo(folder_ / "folder.gif", OutputFormat::Gif); }), "");
    EXPECT_FALSE(isSaved);
    EXPECT_TRUE(window_.document().isModified);
    EXPECT_EQ(window_.document().file, good);
    EXPECT_EQ(readFile(good), content);

    MainWindow lonely(folder_ / "veldran1_x64.dll");
    const std::string text = boxOf([&] { SendMessageW(lonely.window(), WM_COMMAND, ID_NEW_GIF, 0); });
    EXPECT_NE(text.find("is missing"), std::string::npos) << text;
}

TEST_F(StageWindow, AsksBeforeUnsavedWorkIsLost) {
    const fs::path file = written(folder_, "work.gif", numbered(3, 50));
    ASSERT_TRUE(window_.open(file));
    command(ID_REPEAT);
    const auto close = [&] { SendMessageW(window_.window(), WM_CLOSE, 0, 0); };
    EXPECT_NE(boxOf(close, IDCANCEL).find("work.gif"), std::string::npos);
    EXPECT_TRUE(IsWindow(window_.window()));
    EXPECT_EQ(readBack(file).plays, 0U);
    boxOf(close, IDYES);
    EXPECT_FALSE(IsWindow(window_.window()));
    EXPECT_EQ(readBack(file).plays, 1U);
}

TEST_F(StageWindow, ChangesWhatTheFileSaysOfItsWhole) {
    Animation half = numbered(2, 50);
    for (Frame& frame : half.frames) {
        frame = frameOf({8, 6, std::vector<Pixel>(48, pixelOf({200, 0, 0}, 100))});
        frame.delay = 50;
    }
    ASSERT_TRUE(window_.open(written(folder_, "half.apng", half)));
    EXPECT_EQ(window_.view().shown().pixels[0], pixelOf({200, 0, 0}, 100));
    command(ID_FORMAT_GIF);
    EXPECT_EQ(window_.view().shown().pixels[0], kTransparentPixel);

    const auto change = [&](const char* plays, const char* threshold, const std::function<void(HWND)>& press) {
        dialog_script::drive(
            [&](HWND dialog) {
                CheckRadioButton(dialog, ID_FOREVER, ID_COUNTED, ID_COUNTED);
                SetDlgItemTextA(dialog, ID_PLAYS, plays);
                SetDlgItemTextA(dialog, ID_THRESHOLD, threshold);
                press(dialog);
            },
            [&] { command(ID_FILE_OPTIONS); });
    };
    const auto ok = [](HWND dialog) { SendMessageW(dialog, WM_COMMAND, IDOK, 0); };
    change("3", "100", ok);
    EXPECT_TRUE(window_.document().isModified);
    EXPECT_EQ(shown(StatusPart::Time), "0.10 s, 3 times");
    EXPECT_EQ(window_.view().shown().pixels[0], pixelOf({233, 155, 155})); // over white
    ASSERT_TRUE(window_.saveTo(folder_ / "half.gif", OutputFormat::Gif));
    const Animation saved = readBack(folder_ / "half.gif");
    EXPECT_EQ(saved.plays, 3U);
    EXPECT_EQ(pictureOf(saved.frames[0]).pixels[0], pixelOf({233, 155, 155}));

    // What is no such number is told, and nothing changes.
    for (const auto& [plays, threshold] : {std::pair{"0", "100"}, {"65537", "100"}, {"2", "256"}, {"", "1"}})
        change(plays, threshold, [&](HWND dialog) {
            const std::string told = boxOf([&] { ok(dialog); });
            EXPECT_NE(told.find("Give a number from 1 to"), std::string::npos) << told;
        });
    EXPECT_EQ(window_.document().animation->plays, 3U);
    EXPECT_FALSE(window_.document().isModified);
}

TEST_F(StageWindow, OpensWhatIsDroppedOnIt) {
    const std::wstring name = written(folder_, "dropped.mng", numbered(2, 50)).wstring();
    const std::size_t bytes = sizeof(DROPFILES) + (name.size() + 2) * sizeof(wchar_t);
    const HGLOBAL block = GlobalAlloc(GHND, bytes);
    auto* files = static_cast<DROPFILES*>(GlobalLock(block));
    files->pFiles = sizeof(DROPFILES);
    files->fWide = TRUE;
    name.copy(reinterpret_cast<wchar_t*>(files + 1), name.size());
    GlobalUnlock(block);
    SendMessageW(window_.window(), WM_DROPFILES, reinterpret_cast<WPARAM>(block), 0);
    EXPECT_EQ(window_.document().file.wstring(), name);
    EXPECT_EQ(window_.document().format, OutputFormat::Mng);
}

TEST_F(StageWindow, LeavesNoDrawingObjectsBehind) {
    ASSERT_TRUE(window_.open(written(folder_, "five.gif", numbered(5, 40))));
    command(ID_PLAY);
    window_.show();
    EXPECT_FALSE(object_count::leavesObjects(3, 2, [&] {
        const RECT place{0, 0, 900, 700};
        for (const int dpi : {144, 96})
            SendMessageW(window_.window(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
        for (const int id : {ID_STEP_FORWARD, ID_ZOOM_IN, ID_ZOOM_OUT, ID_BACKDROP_BLACK, ID_SHOW_STRIP}) {
            command(id);
            dialog_script::redraw(window_.window());
        }
    }));
}

// Everything lies inside the window and beside each other, on monitors of any scaling.
TEST_F(StageWindow, FollowsTheMonitorsScaling) {
    ASSERT_TRUE(window_.open(written(folder_, "quick.gif", numbered(4, 10))));
    for (const int dpi : {96, 144, 192}) {
        SCOPED_TRACE(dpi);
        const RECT place{0, 0, 1000 * dpi / 96, 700 * dpi / 96};
        SendMessageW(window_.window(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
        const auto faults = dialog_script::layoutFaults(window_.window(), {}, [](HWND) { return false; });
        EXPECT_TRUE(faults.empty()) << faults.front();
        const RECT strip = dialog_script::boxIn(window_.window(), GetDlgItem(window_.window(), ID_STRIP));
        EXPECT_GE(strip.bottom - strip.top, 110 * dpi / 96);
    }
}

TEST_F(StageWindow, MakesAnAnimationAndEditsItAgain) {
    std::optional<recording::SettingsFolder> settings("MainEffect = 15\nMainRadarIncrement = 33\nMainRadarSize = 64\n");
    const int testButton = static_cast<int>(PluginLibrary::load(pluginFile()).catalog().testButton());
    const auto press = [](HWND dialog, int button) {
        SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
    };

    // What is tested is seen while the dialog is open, and gone afterwards.
    std::size_t tested = 0;
    dialog_script::drive(
        [&](HWND dialog) {
            press(dialog, testButton);
            tested = window_.document().frames();
        },
        [&] { command(ID_NEW_GIF); });
    EXPECT_EQ(tested, 6U);
    EXPECT_EQ(window_.document().frames(), 0U);

    dialog_script::drive([&](HWND dialog) { press(dialog, IDOK); }, [&] { command(ID_NEW_GIF); });
    ASSERT_EQ(window_.document().frames(), 6U);
    EXPECT_TRUE(window_.document().isModified);
    EXPECT_EQ(shown(StatusPart::Message), "");
    ASSERT_TRUE(window_.saveTo(folder_ / "radar.gif", OutputFormat::Gif));

    // The file brings its settings with it, and the person's own ones, which are others by now, stay.
    const auto made = window_.document().animation->made;
    const std::string own = "MainEffect = 7\n";
    settings.reset();
    settings.emplace(own);
    ASSERT_TRUE(window_.open(folder_ / "radar.gif"));
    EXPECT_FALSE(window_.notice().lines().empty());
    dialog_script::drive([&](HWND dialog) { press(dialog, IDOK); }, [&] { command(ID_EDIT_PARAMETERS); });
    EXPECT_EQ(window_.document().frames(), 6U);
    EXPECT_EQ(window_.document().animation->made, made);
    EXPECT_EQ(window_.document().file, folder_ / "radar.gif");
    EXPECT_TRUE(window_.document().isModified);
    EXPECT_EQ(settings->read(), own);
}
