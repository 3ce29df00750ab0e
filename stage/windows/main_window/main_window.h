// The program's window: one document, its picture, its frames, and the commands on them. Owns the document; all other
// parts only show it.
#pragma once

#include "document/document.h"
#include "formats/animation_writer.h"
#include "windows/main_window/command_bar.h"
#include "windows/main_window/file_options_dialog.h"
#include "windows/main_window/frame_strip.h"
#include "windows/main_window/long_work.h"
#include "windows/main_window/notice_bar.h"
#include "windows/main_window/picture_view.h"
#include "windows/main_window/player.h"
#include "windows/main_window/size_meter.h"
#include "windows/main_window/status_line.h"
#include "windows/plugin/plugin_library.h"
#include "windows/system/com_apartment.h"

#include <shellapi.h>

#include <algorithm>
#include <array>

namespace stage {

// Per cent, from the slowest to the fastest.
inline constexpr std::array<int, 6> kSpeeds = {10, 25, 50, 100, 200, 400};
inline std::size_t speedIndex(int percent) {
    return static_cast<std::size_t>(std::ranges::find(kSpeeds, percent) - kSpeeds.begin());
}

// The delays at which the animation is played: those of its file, or what browsers make of them.
enum class PlayedAs { File, Browser };

class MainWindow {
public:
    // Hidden until `show`. `pluginFile` is loaded when it is needed first. Throws Failure.
    explicit MainWindow(std::filesystem::path pluginFile);
    ~MainWindow();
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    HWND window() const { return window_; }
    void show();
    // Until the window is closed.
    void run();
    // A message of the thread's loop: keys of the menu, the Tab key, the rest.
    void dispatch(MSG& message);

    // Both tell a person what went wrong, and answer false then.
    bool open(const std::filesystem::path& file);
    bool saveTo(const std::filesystem::path& file, OutputFormat format);

    const Document& document() const { return document_; }
    std::size_t frame() const { return frame_; }
    bool isPlaying() const { return player_ && player_->isPlaying(); }
    const StatusLine& status() const { return *status_; }
    const NoticeBar& notice() const { return *notice_; }
    const PictureView& view() const { return *view_; }

    LRESULT answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    // Building and placing what the window consists of: main_window_layout.cpp
    void create();
    void createPlayRow();
    void applyScale();
    void layOut();
    void placePlayRow(int top, int width);
    void placeLabel(HWND label, int listLeft, int top);

    // What is shown: main_window.cpp
    void setDocument(Document document);
    void updateFormat();
    void updateNotice();
    void updateTexts();
    void updateCommands();
    void showFrame(std::size_t frame);
    void showPicture();
    void chooseFrame(std::size_t frame);
    void onPlayerWakes();
    void onSizesKnown();
    void onHScroll(HWND control);
    void onDrop(HDROP drop);
    void onMenuOpens(HMENU menu);
    void onDestroy();

    // Commands: main_window_commands.cpp
    bool isPossible(int command) const;
    bool isChecked(int command) const;
    void onCommand(int command, int notification);
    void doFileCommand(int command);
    void doEditCommand(int command);
    void doViewCommand(int command);
    void doPlayCommand(int command);
    void doHelpCommand(int command);
    void setFileOptions(const FileOptions& options);
    void setBackdrop(BackdropKind kind);
    void setSpeed(int percent);
    void togglePlaying();
    bool mayLoseDocument();
    bool save();
    bool saveAs(OutputFormat format);
    void openAsked();
    void runPlugin(OutputFormat format, const std::optional<Remembered>& like);
    const PluginLibrary& plugin();
    // False when it failed, which has been told, or was stopped.
    bool runLongWork(const std::string& what, const std::function<void(WorkState&)>& work);

    std::filesystem::path pluginFile_;
    std::optional<PluginLibrary> plugin_;
    ComApartment apartment_;
    HWND window_ = nullptr;
    HACCEL keys_ = nullptr; // the program's
    int dpi_ = 96;
    Font font_;
    Font hintFont_;
    Icon smallIcon_;
    Icon largeIcon_;

    std::optional<CommandBar> tools_;
    std::optional<CommandBar> transport_;
    std::optional<NoticeBar> notice_;
    std::optional<PictureView> view_;
    std::optional<FrameStrip> strip_;
    std::optional<StatusLine> status_;
    std::optional<Player> player_;
    std::optional<SizeMeter> meter_;
    HWND formatLabel_ = nullptr;
    HWND formatBox_ = nullptr;
    HWND speedLabel_ = nullptr;
    HWND speedBox_ = nullptr;
    HWND slider_ = nullptr;
    HWND focused_ = nullptr; // while another window is active

    Document document_;
    std::size_t frame_ = 0;
    PlayingTime time_; // of the document in its format
    std::optional<FileSizes> sizes_;
    WriteOptions writeOptions_;
    PlayedAs playedAs_ = PlayedAs::Browser;
    bool isStripShown_ = true;
    bool isOfferClosed_ = false; // of the notice
    WorkState* work_ = nullptr;  // while long work is done; all commands but stopping it rest then
    bool isInPlugin_ = false;
};

} // namespace stage
