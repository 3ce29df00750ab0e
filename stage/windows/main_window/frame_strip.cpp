// Cells, captions and scrolling; see the header.
#include "windows/main_window/frame_strip.h"

#include "formats/file_sizes.h"
#include "windows/system/back_buffer.h"
#include "windows/system/screen_scale.h"
#include "windows/system/wide_text.h"
#include "windows/system/window_class.h"
#include "windows/window_ids.h"

#include <windowsx.h>

#include <algorithm>

namespace stage {
namespace {

constexpr int kThumbnail = 72; // at 96 dots per inch, as the next ones
constexpr int kCellWidth = 92;
constexpr int kCellPadding = 6;
constexpr int kCellSquare = 4;
constexpr COLORREF kCellEdge = RGB(150, 154, 160);

} // namespace

FrameStrip::FrameStrip(HWND parent, std::function<void(std::size_t)> choose) : choose_(std::move(choose)) {
    window_ = createWindowOf(*this, {.className = L"StageFrameStrip",
                                     .style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_HSCROLL,
                                     .parent = parent,
                                     .id = ID_STRIP});
    updateBar();
}

int FrameStrip::height() const {
    return scaled(kThumbnail + 3 * kCellPadding, dpi_) + 2 * lineHeight_ + scrollBarThickness(dpi_);
}

void FrameStrip::setLook(HFONT font, int dpi) {
    font_ = font;
    dpi_ = dpi;
    const HDC dc = GetDC(window_);
    {
        const Selected selected(dc, font);
        TEXTMETRICW metrics{};
        GetTextMetricsW(dc, &metrics);
        lineHeight_ = metrics.tmHeight;
    }
    ReleaseDC(window_, dc);
    backdrop_.square = scaled(kCellSquare, dpi);
    thumbnails_.assign(frames(), {});
    updateBar();
}

void FrameStrip::setBackdrop(const Backdrop& backdrop) {
    backdrop_ = backdrop;
    backdrop_.square = scaled(kCellSquare, dpi_);
    InvalidateRect(window_, nullptr, FALSE);
}

void FrameStrip::setAnimation(std::shared_ptr<const Animation> animation) {
    animation_ = std::move(animation);
    thumbnails_.assign(frames(), {});
    bytes_.clear();
    delays_.clear();
    current_ = 0;
    scroll_ = 0;
    updateBar();
}

void FrameStrip::setDelays(std::vector<std::uint32_t> stored, std::vector<std::uint32_t> inBrowsers) {
    delays_ = std::move(stored);
    browserDelays_ = std::move(inBrowsers);
    InvalidateRect(window_, nullptr, FALSE);
}

void FrameStrip::setBytes(std::vector<std::uint64_t> bytes) {
    bytes_ = std::move(bytes);
    InvalidateRect(window_, nullptr, FALSE);
}

void FrameStrip::setCurrent(std::size_t frame) {
    if (frame == current_)
        return;
    current_ = frame;
    scrollTo(layout().scrollToShow(frame));
    InvalidateRect(window_, nullptr, FALSE);
}

StripLayout FrameStrip::layout() const {
    RECT area;
    GetClientRect(window_, &area);
    return {scaled(kCellWidth, dpi_), frames(), area.right, scroll_};
}

const Picture& FrameStrip::thumbnail(std::size_t frame) {
    Picture& small = thumbnails_[frame];
    if (small.pixels.empty()) {
        const Picture whole = pictureOf(animation_->frames[frame]);
        const ViewSize size{static_cast<int>(whole.width), static_cast<int>(whole.height)};
        const int side = scaled(kThumbnail, dpi_);
        const ViewSize reduced = zoomed(size, std::min(zoomToFit(size, {side, side}), 100));
        small = resizedPicture(whole, std::min(reduced.width, side), std::min(reduced.height, side));
    }
    return small;
}

void FrameStrip::paint() {
    paintBuffered(window_, [this](BackBuffer& buffer, const RECT& area) {
        fillArea(buffer.dc(), area, GetSysColor(COLOR_WINDOW));
        const Selected font(buffer.dc(), font_ != nullptr ? font_ : GetStockObject(DEFAULT_GUI_FONT));
        SetBkMode(buffer.dc(), TRANSPARENT);
        const StripLayout cells = layout();
        for (std::size_t i = cells.firstSeen(); i < cells.endSeen(); ++i) {
            const int left = cells.left(i);
            drawCell(buffer.dc(), buffer.target(), i, {left, 0, left + cells.cellWidth, area.bottom});
        }
    });
}

void FrameStrip::drawCell(HDC dc, const ScreenTarget& target, std::size_t frame, const RECT& cell) {
    const int side = scaled(kThumbnail, dpi_);
    const int padding = scaled(kCellPadding, dpi_);
    const bool isCurrent = frame == current_;
    if (isCurrent)
        fillArea(dc, cell, GetSysColor(COLOR_HIGHLIGHT));
    const Picture& small = thumbnail(frame);
    const int width = static_cast<int>(small.width);
    const int height = static_cast<int>(small.height);
    const ViewBox box{static_cast<int>((cell.left + cell.right - width) / 2), padding + (side - height) / 2, width,
                      height};
    const RECT edge{box.left - 1, box.top - 1, box.left + width + 1, box.top + height + 1};
    const Brush brush(CreateSolidBrush(kCellEdge));
    FrameRect(dc, &edge, brush.get());
    GdiFlush();
    drawPicture(small, box, backdrop_, target);
    SetTextColor(dc, GetSysColor(isCurrent ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    drawCaption(dc, frame, {cell.left + 2, 2 * padding + side, cell.right - 2, cell.bottom});
    if (isCurrent && GetFocus() == window_) {
        const RECT focus{cell.left + 1, cell.top + 1, cell.right - 1, cell.bottom - 1};
        DrawFocusRect(dc, &focus);
    }
}

// Number and bytes on one line, the delay below.
void FrameStrip::drawCaption(HDC dc, std::size_t frame, const RECT& cell) {
    std::string number = std::to_string(frame + 1);
    if (frame < bytes_.size())
        number += "  " + shortSizeText(bytes_[frame]);
    const std::string delay = frame < delays_.size() ? delayText(delays_[frame], browserDelays_[frame]) : "";
    RECT line{cell.left, cell.top, cell.right, cell.top + lineHeight_};
    for (const std::string& text : {number, delay}) {
        DrawTextW(dc, wideFromUtf8(text).c_str(), -1, &line, DT_CENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
        OffsetRect(&line, 0, lineHeight_);
    }
}

void FrameStrip::scrollTo(int scroll) {
    const int next = std::clamp(scroll, 0, layout().largestScroll());
    if (next == scroll_)
        return;
    scroll_ = next;
    updateBar();
}

void FrameStrip::updateBar() {
    const StripLayout cells = layout();
    scroll_ = std::clamp(scroll_, 0, cells.largestScroll());
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL; // its height never changes
    info.nMax = std::max(cells.contentWidth() - 1, 0);
    info.nPage = static_cast<UINT>(std::max(cells.viewWidth, 0));
    info.nPos = scroll_;
    SetScrollInfo(window_, SB_HORZ, &info, TRUE);
    InvalidateRect(window_, nullptr, FALSE);
}

void FrameStrip::onScrollBar(WPARAM wParam) {
    const StripLayout cells = layout();
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(window_, SB_HORZ, &info);
    switch (LOWORD(wParam)) {
    case SB_LINELEFT:
        scrollTo(scroll_ - cells.cellWidth);
        break;
    case SB_LINERIGHT:
        scrollTo(scroll_ + cells.cellWidth);
        break;
    case SB_PAGELEFT:
        scrollTo(scroll_ - cells.viewWidth);
        break;
    case SB_PAGERIGHT:
        scrollTo(scroll_ + cells.viewWidth);
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        scrollTo(info.nTrackPos);
        break;
    default:
        break;
    }
}

bool FrameStrip::onKey(WPARAM key) {
    if (key == VK_SPACE) {
        SendMessageW(GetParent(window_), WM_COMMAND, ID_PLAY, 0);
        return true;
    }
    if (frames() == 0)
        return false;
    const StripLayout cells = layout();
    const auto page = static_cast<std::size_t>(std::max(cells.viewWidth / cells.cellWidth, 1));
    const std::size_t last = frames() - 1;
    switch (key) {
    case VK_LEFT:
        choose_(current_ == 0 ? last : current_ - 1);
        return true;
    case VK_RIGHT:
        choose_(current_ == last ? 0 : current_ + 1);
        return true;
    case VK_PRIOR:
        choose_(current_ < page ? 0 : current_ - page);
        return true;
    case VK_NEXT:
        choose_(std::min(current_ + page, last));
        return true;
    case VK_HOME:
        choose_(0);
        return true;
    case VK_END:
        choose_(last);
        return true;
    default:
        return false;
    }
}

LRESULT FrameStrip::answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    window_ = window;
    switch (message) {
    case WM_PAINT:
        paint();
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SIZE:
        updateBar();
        return 0;
    case WM_HSCROLL:
        onScrollBar(wParam);
        return 0;
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL: {
        const int turned = MulDiv(GET_WHEEL_DELTA_WPARAM(wParam), layout().cellWidth, WHEEL_DELTA);
        scrollTo(message == WM_MOUSEWHEEL ? scroll_ - turned : scroll_ + turned);
        return 0;
    }
    case WM_LBUTTONDOWN: {
        SetFocus(window);
        const std::size_t frame = layout().cellAt(GET_X_LPARAM(lParam));
        if (frame < frames())
            choose_(frame);
        return 0;
    }
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        InvalidateRect(window, nullptr, FALSE);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_KEYDOWN:
        if (onKey(wParam))
            return 0;
        break;
    default:
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace stage
