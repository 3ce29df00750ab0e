// The still picture comes from the instrument's preview entry, the moving one from the frames that a build would make.
#include "ui/windows/preview.h"

#include "base/windows/gdi.h"
#include "instruments/windows/frame_loop.h"
#include "render/blend.h"
#include "render/windows/frame_image.h"
#include "settings/output_options.h"
#include "ui/windows/panel.h"
#include "ui/windows/plugin_fonts.h"

#include <algorithm>
#include <cstdio>
#include <new>

namespace veldran {
namespace {

constexpr unsigned kShortestDelay = 10; // milliseconds; timers are no finer

BuildContext contextFor(HWND dialog, HostParams* host) {
    BuildContext context{};
    context.dialog = dialog;
    context.host = host;
    return context;
}

// Says that a file which the effect's parameters name is not there; empty when all are.
std::string missingFile(HWND dialog, int effect) {
    for (const BoundParameter& parameter : panelOf(effect)) {
        const ParameterKind kind = parameter.row->kind;
        if (kind != ParameterKind::Sound && kind != ParameterKind::PlayableSound && kind != ParameterKind::TextFile &&
            kind != ParameterKind::ImageFile)
            continue;
        char path[kTextLimit + 1] = "";
        GetDlgItemTextA(dialog, parameter.control, path, static_cast<int>(sizeof path));
        const DWORD attributes = GetFileAttributesA(path);
        if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
            return path[0] == '\0' ? "No file is chosen." : std::string("There is no file\n") + path;
    }
    return {};
}

void drawMessage(const DRAWITEMSTRUCT& item, const std::string& message) {
    const PluginFonts* fonts = currentFonts();
    const Selected font(item.hDC, fonts != nullptr ? fonts->labelFont.get() : nullptr);
    const TextStyle style(item.hDC, GetSysColor(COLOR_GRAYTEXT));
    RECT text = item.rcItem;
    constexpr UINT kFormat = DT_CENTER | DT_WORDBREAK | DT_NOPREFIX | DT_EDITCONTROL;
    const int height = DrawTextA(item.hDC, message.c_str(), -1, &text, kFormat | DT_CALCRECT);
    RECT box = item.rcItem;
    box.top += std::max<LONG>(0, (box.bottom - box.top - height) / 2);
    DrawTextA(item.hDC, message.c_str(), -1, &box, kFormat);
}

// Draws the picture in the middle and fills what it leaves free, so that nothing is painted twice while it plays.
void drawImage(const DRAWITEMSTRUCT& item, HGLOBAL image, const ImageView& view) {
    const LockedBlock block(image);
    const int areaWidth = item.rcItem.right - item.rcItem.left;
    const int areaHeight = item.rcItem.bottom - item.rcItem.top;
    const double fit = std::min({1.0, double(areaWidth) / view.width, double(areaHeight) / view.height});
    const int width = static_cast<int>(view.width * fit);
    const int height = static_cast<int>(view.height * fit);
    const int left = item.rcItem.left + (areaWidth - width) / 2;
    const int top = item.rcItem.top + (areaHeight - height) / 2;
    const int stretchMode = SetStretchBltMode(item.hDC, HALFTONE);
    SetBrushOrgEx(item.hDC, 0, 0, nullptr); // what the mode asks for
    StretchDIBits(item.hDC, left, top, width, height, 0, 0, view.width, view.height,
                  block.data() + sizeof(BitmapHeader) + colourTableBytes(view.bits),
                  reinterpret_cast<const BITMAPINFO*>(block.data()), DIB_RGB_COLORS, SRCCOPY);
    ExcludeClipRect(item.hDC, left, top, left + width, top + height);
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_BTNFACE));
    SelectClipRgn(item.hDC, nullptr);
    SetStretchBltMode(item.hDC, stretchMode);
}

// The picture over a checkerboard, as a picture without alpha.
GlobalBlock overCheckerboard(HGLOBAL image) {
    const LockedImage source(image);
    GlobalBlock flat = createImage(source.view().width, source.view().height, 24);
    if (const LockedImage target(flat.get()); target)
        blendOverCheckerboard(source.view(), target.view());
    return flat;
}

} // namespace

Preview::Preview() = default;
Preview::~Preview() = default;

void Preview::render(HWND dialog, HostParams* host, int effect) {
    stop();
    image_.reset();
    BuildContext context = contextFor(dialog, host);
    effectDescriptor(effect).preview(&context);
    image_.reset(context.previewImage);
    summarize(dialog, host, effect);
    if (summary_.empty())
        explain(missingFile(dialog, effect));
    InvalidateRect(GetDlgItem(dialog, kControlPreview), nullptr, FALSE);
}

// Tells why there is no animation: in the area, or below a picture that can be drawn all the same.
void Preview::explain(const std::string& missing) {
    if (!missing.empty())
        message_ = missing;
    else
        message_ = image_ ? "The animation cannot be built." : "The preview cannot be drawn.";
    if (image_) {
        summary_ = message_;
        std::ranges::replace(summary_, '\n', ' '); // the line below a picture is one
    }
}

void Preview::summarize(HWND dialog, HostParams* host, int effect) try {
    summary_.clear();
    const LockedImage image(image_.get());
    if (!image)
        return;
    const std::unique_ptr<FrameSequence> sequence = openFrames(effectDescriptor(effect).open, dialog, host);
    if (sequence == nullptr)
        return;
    std::uint64_t units = 0;
    for (int i = 0; i < sequence->frames(); ++i)
        units += sequence->delay(i);
    const bool hundredths = host != nullptr && (host->flags & kDelayInHundredths) != 0;
    const std::uint64_t time = hundredths ? units : (units + 5) / 10;
    // Whole numbers only: the runtime library prints fractions with memory whose lack it does not notice.
    char text[96];
    std::snprintf(text, sizeof text, "%d frames, %d x %d pixels, %llu.%02llu s", sequence->frames(), image.view().width,
                  image.view().height, time / 100, time % 100);
    summary_ = text;
} catch (const std::bad_alloc&) { // it stays empty, and explain() says something instead
}

bool Preview::play(HWND dialog, HostParams* host, int effect) {
    stop();
    sequence_ = openFrames(effectDescriptor(effect).open, dialog, host);
    frame_ = 0;
    if (sequence_ == nullptr || !showFrame(dialog)) {
        stop();
        return false;
    }
    due_ = GetTickCount64() + delayOf(host, 0);
    return true;
}

void Preview::stop() {
    sequence_.reset();
}

unsigned Preview::advance(HWND dialog, HostParams* host) {
    if (!isPlaying())
        return 0;
    const ULONGLONG now = GetTickCount64();
    // Frames that are late are left out, so that playing keeps its time; one turn of them at most.
    for (int skipped = 0; due_ <= now && skipped < sequence_->frames(); ++skipped) {
        frame_ = (frame_ + 1) % sequence_->frames();
        due_ += delayOf(host, frame_);
    }
    due_ = std::max(due_, now);
    if (!showFrame(dialog)) {
        stop();
        return 0;
    }
    const ULONGLONG after = GetTickCount64();
    return due_ > after + kShortestDelay ? static_cast<unsigned>(due_ - after) : kShortestDelay;
}

unsigned Preview::delayOf(const HostParams* host, int index) const {
    const bool hundredths = host != nullptr && (host->flags & kDelayInHundredths) != 0;
    return std::max(sequence_->delay(index) * (hundredths ? 10u : 1u), kShortestDelay);
}

bool Preview::showFrame(HWND dialog) {
    GlobalBlock frame = sequence_->renderFinished(frame_);
    if (!frame)
        return false;
    image_ = std::move(frame);
    InvalidateRect(GetDlgItem(dialog, kControlPreview), nullptr, FALSE);
    return true;
}

void Preview::draw(const DRAWITEMSTRUCT& item) const {
    const LockedImage image(image_.get());
    if (!image) {
        FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_BTNFACE));
        drawMessage(item, message_);
    } else if (image.view().bits != 32) {
        drawImage(item, image_.get(), image.view());
    } else if (const GlobalBlock flat = overCheckerboard(image_.get())) {
        drawImage(item, flat.get(), LockedImage(flat.get()).view());
    }
}

} // namespace veldran
