// The document on the screen: frames, texts, playing.
#include "windows/main_window/main_window.h"

#include "base/output_file.h"
#include "commands/report.h"
#include "formats/gif/gif_writer.h"
#include "formats/steps.h"
#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"
#include "windows/window_ids.h"

#include <commctrl.h>

#include <algorithm>

namespace stage {
namespace {

constexpr int kFirstCommand = ID_NEW_GIF;
constexpr int kLastCommand = ID_STOP_WORK;

std::string pictureText(const Animation& animation, int zoom) {
    return std::to_string(animation.width) + " \u00D7 " + std::to_string(animation.height) + ", " +
           std::to_string(zoom) + " %";
}

} // namespace

MainWindow::MainWindow(std::filesystem::path pluginFile) : pluginFile_(std::move(pluginFile)) {
    create();
    setDocument({});
}

MainWindow::~MainWindow() {
    if (IsWindow(window_))
        DestroyWindow(window_);
}

void MainWindow::show() {
    ShowWindow(window_, SW_SHOWDEFAULT);
    SetFocus(view_->window());
}

void MainWindow::run() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        dispatch(message);
}

void MainWindow::dispatch(MSG& message) {
    const bool isOurs = message.hwnd == window_ || IsChild(window_, message.hwnd);
    // Esc stops long work; otherwise it closes a list that is open.
    const bool isKey = work_ != nullptr || message.wParam != VK_ESCAPE;
    if (isOurs && isKey && TranslateAcceleratorW(window_, keys_, &message))
        return;
    if (isOurs && IsDialogMessageW(window_, &message))
        return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

void MainWindow::setDocument(Document document) {
    const bool hadAnimation = document_.animation != nullptr;
    document_ = std::move(document);
    isOfferClosed_ = false;
    if (hadAnimation != (document_.animation != nullptr))
        layOut(); // the strip comes or goes
    strip_->setAnimation(document_.animation);
    SendMessageW(slider_, TBM_SETRANGEMIN, FALSE, 0);
    SendMessageW(slider_, TBM_SETRANGEMAX, TRUE, static_cast<LPARAM>(std::max<std::size_t>(document_.frames(), 1) - 1));
    SendMessageW(slider_, TBM_SETPAGESIZE, 0, static_cast<LPARAM>(std::max<std::size_t>(document_.frames() / 10, 1)));
    frame_ = document_.frames(); // none of them
    if (document_.animation)
        showFrame(0);
    else
        view_->show({});
    view_->beginNewPicture();
    updateFormat();
    if (document_.frames() > 1)
        player_->start(0);
    updateCommands();
}

// What depends on the format: delays, the rate, warnings, bytes.
void MainWindow::updateFormat() {
    const bool wasPlaying = isPlaying();
    SendMessageW(formatBox_, CB_SETCURSEL, static_cast<WPARAM>(document_.format), 0);
    if (document_.animation) {
        FrameTimes times = frameTimes(*document_.animation, document_.format);
        time_ = times.whole;
        player_->load(playedAs_ == PlayedAs::Browser ? times.inBrowsers : times.stored, document_.animation->plays);
        strip_->setDelays(std::move(times.stored), std::move(times.inBrowsers));
    } else {
        player_->load({}, 0);
    }
    if (wasPlaying)
        player_->start(frame_);
    if (document_.animation)
        showPicture();
    sizes_.reset();
    strip_->setBytes({});
    meter_->request(document_.animation, document_.format, writeOptions_);
    updateNotice();
    updateTexts();
    updateCommands();
}

void MainWindow::updateNotice() {
    std::vector<NoticeLine> lines;
    const Animation* animation = document_.animation.get();
    if (animation != nullptr && !isOfferClosed_) {
        const FileReport file{document_.format, documentName(document_), 0, time_};
        if (const auto warning = browserWarning(file))
            lines.push_back({Sign::Warning, *warning});
        if (animation->made && !document_.file.empty() && !document_.isModified)
            lines.push_back(
                {Sign::Remember, "This file remembers how it was made. Its parameters can be edited again."});
    }
    const bool isOffer = !lines.empty() && lines.back().sign == Sign::Remember;
    const int before = notice_->height();
    notice_->show(std::move(lines), isOffer ? ID_EDIT_PARAMETERS : 0, L"Edit Parameters...");
    if (notice_->height() != before)
        layOut();
}

void MainWindow::updateTexts() {
    SetWindowTextW(window_, wideFromUtf8(windowTitle(document_)).c_str());
    if (!document_.animation) {
        for (const StatusPart part :
             {StatusPart::Picture, StatusPart::Frame, StatusPart::Time, StatusPart::Rate, StatusPart::Bytes})
            status_->show(part, "");
        return;
    }
    const Animation& animation = *document_.animation;
    status_->show(StatusPart::Picture, pictureText(animation, view_->zoom()));
    status_->show(StatusPart::Frame, frameText(frame_, document_.frames()));
    status_->show(StatusPart::Time, playingTimeText(time_, animation.plays));
    status_->show(StatusPart::Rate, browserRateText(document_.format, time_));
    status_->show(StatusPart::Bytes,
                  fileSizeText(document_.format, sizes_ ? std::optional(sizes_->bytes) : std::nullopt));
}

void MainWindow::updateCommands() {
    for (int command = kFirstCommand; command <= kLastCommand; ++command) {
        tools_->setEnabled(command, isPossible(command));
        transport_->setEnabled(command, isPossible(command));
    }
    transport_->setSign(ID_PLAY, isPlaying() ? Sign::Pause : Sign::Play);
    const BOOL isFree = work_ == nullptr ? TRUE : FALSE;
    EnableWindow(formatBox_, isFree);
    EnableWindow(speedBox_, isFree);
    EnableWindow(slider_, isFree != FALSE && document_.frames() > 1);
    SendMessageW(speedBox_, CB_SETCURSEL, speedIndex(player_->speed()), 0);
}

void MainWindow::onMenuOpens(HMENU menu) {
    for (int command = kFirstCommand; command <= kLastCommand; ++command) {
        EnableMenuItem(menu, static_cast<UINT>(command), isPossible(command) ? MF_ENABLED : MF_GRAYED);
        CheckMenuItem(menu, static_cast<UINT>(command), isChecked(command) ? MF_CHECKED : MF_UNCHECKED);
    }
}

void MainWindow::showFrame(std::size_t frame) {
    if (frame == frame_)
        return;
    frame_ = frame;
    showPicture();
    strip_->setCurrent(frame);
    SendMessageW(slider_, TBM_SETPOS, TRUE, static_cast<LPARAM>(frame));
    status_->show(StatusPart::Frame, frameText(frame, document_.frames()));
}

// As the file will show it: a GIF has no half transparent pixels.
void MainWindow::showPicture() {
    const Frame& frame = document_.animation->frames[frame_];
    view_->show(document_.format == OutputFormat::Gif ? gifPicture(frame, writeOptions_) : pictureOf(frame));
}

void MainWindow::chooseFrame(std::size_t frame) {
    player_->stop();
    showFrame(frame);
    updateCommands();
}

void MainWindow::onPlayerWakes() {
    if (!isPlaying()) // stopped since the message was sent
        return;
    showFrame(player_->due());
    UpdateWindow(view_->window()); // before anything else that waits
    if (!isPlaying())
        updateCommands(); // it was the last frame
}

void MainWindow::onSizesKnown() {
    if (auto sizes = meter_->take()) {
        sizes_ = std::move(sizes);
        strip_->setBytes(sizes_->frames);
        updateTexts();
    }
}

void MainWindow::onHScroll(HWND control) {
    if (control == slider_ && document_.animation)
        chooseFrame(
            std::min(static_cast<std::size_t>(SendMessageW(slider_, TBM_GETPOS, 0, 0)), document_.frames() - 1));
}

void MainWindow::onDrop(HDROP drop) {
    std::wstring name(static_cast<std::size_t>(DragQueryFileW(drop, 0, nullptr, 0)), L'\0');
    DragQueryFileW(drop, 0, name.data(), static_cast<UINT>(name.size() + 1));
    DragFinish(drop);
    if (work_ != nullptr || isInPlugin_ || name.empty())
        return;
    SetForegroundWindow(window_);
    if (mayLoseDocument())
        open(name);
}

void MainWindow::onDestroy() {
    player_->stop();
    meter_->request(nullptr, document_.format, writeOptions_);
    PostQuitMessage(0);
}

} // namespace stage
