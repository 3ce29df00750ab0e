// What the menu, the buttons and the keys do.
#include "windows/main_window/main_window.h"

#include "base/output_file.h"
#include "commands/settings_text.h"
#include "formats/animation_reader.h"
#include "windows/main_window/file_dialogs.h"
#include "windows/plugin/host_session.h"
#include "windows/plugin/plugin_dialog.h"
#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"
#include "windows/system/window_class.h"
#include "windows/window_ids.h"

#include <commctrl.h>

#include <algorithm>

namespace stage {
namespace {

constexpr wchar_t kManual[] = L"VELDRap1.HTML";
constexpr const char* kAbout =
    "Stage " STAGE_VERSION "\n\nShows, makes and saves the animated instruments of the plugin "
    "Voltane #1.";

bool isBetween(int command, int first, int last) {
    return command >= first && command <= last;
}

OutputFormat formatAt(int index) {
    return static_cast<OutputFormat>(index);
}

Document readDocument(const std::filesystem::path& file, WorkState& state) {
    const std::string content = readFile(file);
    state.total = content.size();
    ReadOptions options;
    options.progress = [&state](std::uint64_t bytes) {
        state.done = bytes;
        return !state.isStopped;
    };
    AnimationFile read =
        readAnimation({reinterpret_cast<const std::uint8_t*>(content.data()), content.size()}, options);
    // Of a still PNG an animation can be made that is in one file.
    return {std::make_shared<const Animation>(std::move(read.animation)), file, read.format, read.format, false};
}

} // namespace

bool MainWindow::isPossible(int command) const {
    if (work_ != nullptr || isInPlugin_)
        return command == ID_STOP_WORK;
    if (command == ID_STOP_WORK)
        return false;
    const bool isThere = document_.animation != nullptr;
    const bool isMoving = document_.frames() > 1;
    switch (command) {
    case ID_EDIT_PARAMETERS:
        return isThere && document_.animation->made.has_value();
    case ID_SAVE:
    case ID_REPEAT:
    case ID_FILE_OPTIONS:
    case ID_ZOOM_IN:
    case ID_ZOOM_OUT:
    case ID_ZOOM_ACTUAL:
    case ID_ZOOM_FIT:
        return isThere;
    case ID_PLAY:
    case ID_STEP_BACK:
    case ID_STEP_FORWARD:
    case ID_FIRST_FRAME:
    case ID_LAST_FRAME:
        return isMoving;
    default:
        return isThere || !isBetween(command, ID_SAVE_GIF, ID_SAVE_PNG);
    }
}

bool MainWindow::isChecked(int command) const {
    if (isBetween(command, ID_FORMAT_GIF, ID_FORMAT_PNG))
        return formatAt(command - ID_FORMAT_GIF) == document_.format;
    if (isBetween(command, ID_BACKDROP_CHECKERBOARD, ID_BACKDROP_COLOUR))
        return static_cast<BackdropKind>(command - ID_BACKDROP_CHECKERBOARD) == view_->backdrop().kind;
    switch (command) {
    case ID_REPEAT:
        return document_.animation && document_.animation->plays == 0;
    case ID_ZOOM_FIT:
        return view_->isFitting();
    case ID_SHOW_STRIP:
        return isStripShown_;
    case ID_AS_BROWSERS:
        return playedAs_ == PlayedAs::Browser;
    default:
        return false;
    }
}

void MainWindow::onCommand(int command, int notification) {
    if (command == ID_FORMAT || command == ID_SPEED) {
        if (notification != CBN_SELCHANGE)
            return;
        const auto row = static_cast<int>(SendDlgItemMessageW(window_, command, CB_GETCURSEL, 0, 0));
        if (command == ID_SPEED)
            setSpeed(kSpeeds[static_cast<std::size_t>(std::max(row, 0))]);
        else
            onCommand(ID_FORMAT_GIF + std::max(row, 0), 0);
        return;
    }
    if (!isPossible(command))
        return;
    if (command == ID_STOP_WORK) {
        if (work_ != nullptr)
            work_->isStopped = true;
    } else if (isBetween(command, ID_NEW_GIF, ID_EXIT)) {
        doFileCommand(command);
    } else if (isBetween(command, ID_EDIT_PARAMETERS, ID_FILE_OPTIONS)) {
        doEditCommand(command);
    } else if (isBetween(command, ID_ZOOM_IN, ID_SHOW_STRIP)) {
        doViewCommand(command);
    } else if (isBetween(command, ID_PLAY, ID_AS_BROWSERS)) {
        doPlayCommand(command);
    } else {
        doHelpCommand(command);
    }
}

void MainWindow::doFileCommand(int command) {
    switch (command) {
    case ID_NEW_GIF:
    case ID_NEW_PNG:
        if (mayLoseDocument())
            runPlugin(command == ID_NEW_GIF ? OutputFormat::Gif : OutputFormat::Apng, std::nullopt);
        break;
    case ID_OPEN:
        openAsked();
        break;
    case ID_SAVE:
        save();
        break;
    case ID_EXIT:
        SendMessageW(window_, WM_CLOSE, 0, 0);
        break;
    default:
        saveAs(formatAt(command - ID_SAVE_GIF));
        break;
    }
}

void MainWindow::doEditCommand(int command) {
    switch (command) {
    case ID_EDIT_PARAMETERS:
        runPlugin(editorIn(document_.animation->made->settings).value_or(document_.format), document_.animation->made);
        break;
    case ID_REPEAT:
        setFileOptions({document_.animation->plays == 0 ? 1U : 0U, writeOptions_});
        break;
    case ID_FILE_OPTIONS:
        if (const auto options = askForFileOptions(window_, {document_.animation->plays, writeOptions_}))
            setFileOptions(*options);
        break;
    default:
        document_.format = formatAt(command - ID_FORMAT_GIF);
        updateFormat();
        break;
    }
}

void MainWindow::setFileOptions(const FileOptions& options) {
    if (options.plays != document_.animation->plays) {
        Animation changed = *document_.animation;
        changed.plays = options.plays;
        document_.animation = std::make_shared<const Animation>(std::move(changed));
        document_.isModified = true;
    }
    if (options.write != writeOptions_ && document_.format == OutputFormat::Gif &&
        hasTransparency(*document_.animation))
        document_.isModified = true;
    writeOptions_ = options.write;
    updateFormat();
}

void MainWindow::doViewCommand(int command) {
    switch (command) {
    case ID_ZOOM_IN:
        view_->setZoom(zoomAbove(view_->zoom()));
        break;
    case ID_ZOOM_OUT:
        view_->setZoom(zoomBelow(view_->zoom()));
        break;
    case ID_ZOOM_ACTUAL:
        view_->setZoom(100);
        break;
    case ID_ZOOM_FIT:
        view_->fit();
        break;
    case ID_SHOW_STRIP:
        isStripShown_ = !isStripShown_;
        layOut();
        break;
    default:
        setBackdrop(static_cast<BackdropKind>(command - ID_BACKDROP_CHECKERBOARD));
        break;
    }
    updateTexts();
}

void MainWindow::setBackdrop(BackdropKind kind) {
    Backdrop backdrop = view_->backdrop();
    backdrop.kind = kind;
    if (kind == BackdropKind::Colour) {
        const auto colour = askForColour(window_, backdrop.colour);
        if (!colour)
            return;
        backdrop.colour = *colour;
    }
    view_->setBackdrop(backdrop);
    strip_->setBackdrop(backdrop);
}

void MainWindow::doPlayCommand(int command) {
    const std::size_t frames = document_.frames();
    switch (command) {
    case ID_PLAY:
        togglePlaying();
        break;
    case ID_STEP_BACK:
        chooseFrame((frame_ + frames - 1) % frames);
        break;
    case ID_STEP_FORWARD:
        chooseFrame((frame_ + 1) % frames);
        break;
    case ID_FIRST_FRAME:
        chooseFrame(0);
        break;
    case ID_LAST_FRAME:
        chooseFrame(frames - 1);
        break;
    case ID_SLOWER:
        setSpeed(kSpeeds[speedIndex(player_->speed()) - (speedIndex(player_->speed()) > 0 ? 1 : 0)]);
        break;
    case ID_FASTER:
        setSpeed(kSpeeds[std::min(speedIndex(player_->speed()) + 1, kSpeeds.size() - 1)]);
        break;
    case ID_NORMAL_SPEED:
        setSpeed(100);
        break;
    default:
        playedAs_ = playedAs_ == PlayedAs::Browser ? PlayedAs::File : PlayedAs::Browser;
        updateFormat();
        break;
    }
}

void MainWindow::togglePlaying() {
    if (isPlaying())
        player_->stop();
    else // from the beginning when it has come to its end
        player_->start(document_.animation->plays != 0 && frame_ + 1 == document_.frames() ? 0 : frame_);
    onPlayerWakes();
    updateCommands();
}

void MainWindow::setSpeed(int percent) {
    player_->setSpeed(percent);
    status_->show(StatusPart::Message, "Speed " + std::to_string(percent) + " %");
    updateCommands();
}

void MainWindow::doHelpCommand(int command) {
    switch (command) {
    case ID_HELP_MANUAL:
        if (!showHelp(programFolder(), kManual))
            showTrouble(window_, "The manual \"" + utf8FromWide(kManual) +
                                     "\" is not beside this program, or cannot "
                                     "be shown.");
        break;
    case ID_ABOUT: {
        const ModernLooks looks;
        MessageBoxW(window_, wideFromUtf8(kAbout).c_str(), L"About Stage", MB_OK | MB_ICONINFORMATION);
        break;
    }
    case ID_CLOSE_NOTICE:
        isOfferClosed_ = true;
        updateNotice();
        break;
    default: // of IsDialogMessage, for the Enter key
        break;
    }
}

bool MainWindow::mayLoseDocument() {
    if (!document_.isModified)
        return true;
    switch (askToSave(window_, "Save the changes to \"" + documentName(document_) + "\"?")) {
    case Answer::Yes:
        return save();
    case Answer::No:
        return true;
    default:
        return false;
    }
}

bool MainWindow::save() {
    return document_.hasFileOfItsFormat() ? saveTo(document_.file, document_.format) : saveAs(document_.format);
}

bool MainWindow::saveAs(OutputFormat format) {
    const auto file = askForFileToSave(window_, format, suggestedFile(document_, format));
    return file && saveTo(*file, format);
}

bool MainWindow::saveTo(const std::filesystem::path& file, OutputFormat format) {
    std::optional<WrittenFiles> written;
    runLongWork("Saving " + utf8FromPath(file.filename()), [&](WorkState& state) {
        written = saveAnimation(*document_.animation, format, writeOptions_, file,
                                [&state](std::size_t done, std::size_t total) {
                                    state.done = done;
                                    state.total = total;
                                    return !state.isStopped;
                                });
    });
    if (!written)
        return false;
    document_.file = file;
    document_.fileFormat = format;
    document_.format = format;
    document_.isModified = false;
    isOfferClosed_ = true; // who saves it knows how it was made
    updateFormat();
    status_->show(StatusPart::Message, "Saved " + utf8FromPath(written->first.filename()));
    return true;
}

void MainWindow::openAsked() {
    if (!mayLoseDocument())
        return;
    if (const auto file = askForFileToOpen(window_))
        open(*file);
}

bool MainWindow::open(const std::filesystem::path& file) {
    std::optional<Document> document;
    if (!runLongWork("Opening " + utf8FromPath(file.filename()),
                     [&](WorkState& state) { document = readDocument(file, state); }))
        return false;
    setDocument(std::move(*document));
    status_->show(StatusPart::Message, "Opened " + utf8FromPath(file.filename()));
    return true;
}

bool MainWindow::runLongWork(const std::string& what, const std::function<void(WorkState&)>& work) {
    WorkState state;
    const HWND focused = GetFocus();
    if (IsChild(window_, focused))
        SetFocus(view_->window()); // a button that is disabled could not keep the keys
    work_ = &state;
    updateCommands();
    status_->show(StatusPart::Message, what + "...");
    std::string trouble;
    try {
        runWork(
            state, [&] { work(state); }, [this](MSG& message) { dispatch(message); },
            [&] { status_->showProgress(std::max<std::size_t>(state.done, 1), state.total); });
    } catch (const std::bad_alloc&) {
        trouble = "There is not enough memory.";
    } catch (const std::exception& exception) {
        trouble = exception.what();
    }
    work_ = nullptr;
    status_->showProgress(0, 0);
    status_->show(StatusPart::Message, state.isStopped ? "Stopped: " + what : "");
    updateCommands();
    if (IsChild(window_, focused) && IsWindowEnabled(focused))
        SetFocus(focused);
    if (!trouble.empty() && !state.isStopped)
        showTrouble(window_, what + " failed.\n\n" + trouble);
    return trouble.empty() && !state.isStopped;
}

const PluginLibrary& MainWindow::plugin() {
    if (!plugin_)
        plugin_ = PluginLibrary::load(pluginFile_);
    return *plugin_;
}

// While the dialog is open, what it tests is shown in the place of the document.
void MainWindow::runPlugin(OutputFormat format, const std::optional<Remembered>& like) {
    const Document before = document_;
    PluginDialogEvents events;
    events.status = [this](const std::string& text) { status_->show(StatusPart::Message, text); };
    events.progress = [this](std::uint64_t done, std::uint64_t total) { status_->showProgress(done, total); };
    events.tested = [&](Animation animation) {
        status_->show(StatusPart::Message, "This is only a test: press Build to keep an animation");
        setDocument({std::make_shared<const Animation>(std::move(animation)), {}, format, format, false});
    };
    DialogResult result;
    std::string trouble;
    isInPlugin_ = true;
    try {
        result = runPluginDialog(plugin(), window_, format, like, events);
    } catch (const std::exception& exception) {
        trouble = exception.what();
    }
    isInPlugin_ = false;
    status_->showProgress(0, 0);
    status_->show(StatusPart::Message, "");
    for (const std::string& warning : result.warnings)
        trouble += (trouble.empty() ? "" : "\n") + warning;
    if (result.animation) {
        Document made{std::make_shared<const Animation>(std::move(*result.animation)), {}, format, format, true};
        if (like) { // the same document
            made.file = before.file;
            made.format = before.format;
            made.fileFormat = before.fileFormat;
        }
        setDocument(std::move(made));
    } else if (document_.animation != before.animation) {
        setDocument(before);
    }
    updateCommands();
    if (!trouble.empty())
        showTrouble(window_, trouble);
}

} // namespace stage
