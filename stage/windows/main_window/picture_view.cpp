// Painting, scrolling and zooming; see the header.
#include "windows/main_window/picture_view.h"

#include "windows/system/back_buffer.h"
#include "windows/system/screen_scale.h"
#include "windows/system/window_class.h"
#include "windows/window_ids.h"

#include <windowsx.h>

#include <algorithm>
#include <utility>

namespace stage {
namespace {

constexpr COLORREF kSurround = RGB(214, 217, 221); // a light neutral grey, against which both white and black show
constexpr COLORREF kEdge = RGB(150, 154, 160);
constexpr COLORREF kHintText = RGB(82, 88, 96);
constexpr int kLine = 24; // pixels that an arrow key or a scroll bar's arrow moves
constexpr int kSquare = 8;

} // namespace

PictureView::PictureView(HWND parent) {
    window_ = createWindowOf(*this, {.className = L"StagePictureView",
                                     .style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_HSCROLL | WS_VSCROLL,
                                     .parent = parent,
                                     .id = ID_VIEW});
    updateBars();
}

void PictureView::show(Picture picture) {
    const bool isOtherSize = picture.width != picture_.width || picture.height != picture_.height;
    picture_ = std::move(picture);
    if (isOtherSize)
        resize();
    InvalidateRect(window_, nullptr, FALSE);
}

void PictureView::setHint(std::wstring text, HFONT font) {
    hint_ = std::move(text);
    hintFont_ = font;
    InvalidateRect(window_, nullptr, FALSE);
}

void PictureView::setBackdrop(const Backdrop& backdrop) {
    backdrop_ = backdrop;
    InvalidateRect(window_, nullptr, FALSE);
}

ViewSize PictureView::viewSize() const {
    RECT area;
    GetClientRect(window_, &area);
    return {area.right, area.bottom};
}

ViewSize PictureView::pictureSize() const {
    return {static_cast<int>(picture_.width), static_cast<int>(picture_.height)};
}

ViewBox PictureView::place() const {
    return placedInView(zoomed(pictureSize(), zoom_), viewSize(), scroll_);
}

void PictureView::setZoom(int percent) {
    const ViewSize view = viewSize();
    zoomAround({view.width / 2, view.height / 2}, percent);
}

void PictureView::fit() {
    isFitting_ = true;
    resize();
}

void PictureView::beginNewPicture() {
    zoom_ = 100;
    scroll_ = {};
    isFitting_ = zoomToFit(pictureSize(), viewSize()) < 100;
    resize();
}

void PictureView::zoomAround(const ViewPoint& anchor, int percent) {
    const ViewBox before = place();
    isFitting_ = false;
    zoom_ = std::clamp(percent, kSmallestZoom, kLargestZoom);
    updateBars(); // which may change the view's size
    scroll_ = scrollAfterZoom(anchor, before, zoomed(pictureSize(), zoom_), viewSize());
    updateBars();
    InvalidateRect(window_, nullptr, FALSE);
}

void PictureView::scrollTo(const ViewPoint& scroll) {
    const ViewPoint next = clampedScroll(scroll, zoomed(pictureSize(), zoom_), viewSize());
    if (next == scroll_)
        return;
    scroll_ = next;
    updateBars();
    InvalidateRect(window_, nullptr, FALSE);
}

void PictureView::updateBars() {
    const ViewSize content = isFitting_ || picture_.pixels.empty() ? ViewSize{} : zoomed(pictureSize(), zoom_);
    // Twice, because a bar that appears takes room from the other direction.
    for (int pass = 0; pass < 2; ++pass) {
        const ViewSize view = viewSize();
        const auto set = [this](int bar, int length, int page, int position) {
            SCROLLINFO info{};
            info.cbSize = sizeof(info);
            info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
            info.nMax = std::max(length - 1, 0);
            info.nPage = static_cast<UINT>(page);
            info.nPos = position;
            SetScrollInfo(window_, bar, &info, TRUE);
        };
        set(SB_HORZ, content.width, view.width, scroll_.x);
        set(SB_VERT, content.height, view.height, scroll_.y);
    }
}

void PictureView::resize() {
    if (picture_.pixels.empty()) {
        updateBars();
    } else if (isFitting_) {
        updateBars(); // gone before the view is measured
        zoom_ = zoomToFit(pictureSize(), viewSize());
        scroll_ = {};
    } else {
        updateBars();
        scroll_ = clampedScroll(scroll_, zoomed(pictureSize(), zoom_), viewSize());
        updateBars();
    }
    InvalidateRect(window_, nullptr, FALSE);
}

void PictureView::paint() {
    backdrop_.square = scaled(kSquare, dotsPerInch(window_));
    paintBuffered(window_, [this](BackBuffer& buffer, const RECT& area) {
        fillArea(buffer.dc(), area, kSurround);
        if (picture_.pixels.empty()) {
            const Selected font(buffer.dc(), hintFont_ != nullptr ? hintFont_ : GetStockObject(DEFAULT_GUI_FONT));
            SetTextColor(buffer.dc(), kHintText);
            SetBkMode(buffer.dc(), TRANSPARENT);
            RECT needed = area;
            const int height =
                DrawTextW(buffer.dc(), hint_.c_str(), -1, &needed, DT_CENTER | DT_WORDBREAK | DT_CALCRECT);
            RECT middle{area.left, std::max(0L, (area.bottom - height) / 2), area.right, area.bottom};
            DrawTextW(buffer.dc(), hint_.c_str(), -1, &middle, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
            return;
        }
        const ViewBox box = place();
        const RECT edge{box.left - 1, box.top - 1, box.left + box.width + 1, box.top + box.height + 1};
        const Brush brush(CreateSolidBrush(kEdge));
        FrameRect(buffer.dc(), &edge, brush.get());
        drawPicture(picture_, box, backdrop_, buffer.target());
    });
}

void PictureView::onScrollBar(int bar, WPARAM wParam) {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_ALL;
    GetScrollInfo(window_, bar, &info);
    int position = info.nPos;
    switch (LOWORD(wParam)) {
    case SB_LINELEFT:
        position -= kLine;
        break;
    case SB_LINERIGHT:
        position += kLine;
        break;
    case SB_PAGELEFT:
        position -= static_cast<int>(info.nPage);
        break;
    case SB_PAGERIGHT:
        position += static_cast<int>(info.nPage);
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        position = info.nTrackPos;
        break;
    default:
        break;
    }
    scrollTo(bar == SB_HORZ ? ViewPoint{position, scroll_.y} : ViewPoint{scroll_.x, position});
}

// With Ctrl it zooms around the mouse, with Shift it scrolls sideways.
void PictureView::onWheel(WPARAM wParam, LPARAM lParam) {
    wheel_ += GET_WHEEL_DELTA_WPARAM(wParam);
    const int notches = wheel_ / WHEEL_DELTA;
    wheel_ -= notches * WHEEL_DELTA;
    if (notches == 0)
        return;
    if ((GET_KEYSTATE_WPARAM(wParam) & MK_CONTROL) != 0) {
        POINT mouse{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        ScreenToClient(window_, &mouse);
        zoomAround({mouse.x, mouse.y}, notches > 0 ? zoomAbove(zoom_) : zoomBelow(zoom_));
    } else if ((GET_KEYSTATE_WPARAM(wParam) & MK_SHIFT) != 0) {
        scrollBy(-notches * 3 * kLine, 0);
    } else {
        scrollBy(0, -notches * 3 * kLine);
    }
}

void PictureView::sendCommand(int command) const {
    SendMessageW(GetParent(window_), WM_COMMAND, static_cast<WPARAM>(command), 0);
}

bool PictureView::onKey(WPARAM key) {
    const ViewSize view = viewSize();
    const ViewSize range = scrollRange(zoomed(pictureSize(), zoom_), view);
    switch (key) {
    case VK_SPACE:
        sendCommand(ID_PLAY);
        return true;
    case VK_HOME:
        sendCommand(ID_FIRST_FRAME);
        return true;
    case VK_END:
        sendCommand(ID_LAST_FRAME);
        return true;
    case VK_LEFT:
        range.width > 0 ? scrollBy(-kLine, 0) : sendCommand(ID_STEP_BACK);
        return true;
    case VK_RIGHT:
        range.width > 0 ? scrollBy(kLine, 0) : sendCommand(ID_STEP_FORWARD);
        return true;
    case VK_UP:
        scrollBy(0, -kLine);
        return true;
    case VK_DOWN:
        scrollBy(0, kLine);
        return true;
    case VK_PRIOR:
        scrollBy(0, -view.height);
        return true;
    case VK_NEXT:
        scrollBy(0, view.height);
        return true;
    default:
        return false;
    }
}

LRESULT PictureView::answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    window_ = window;
    switch (message) {
    case WM_PAINT:
        paint();
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SIZE:
        resize();
        return 0;
    case WM_HSCROLL:
        onScrollBar(SB_HORZ, wParam);
        return 0;
    case WM_VSCROLL:
        onScrollBar(SB_VERT, wParam);
        return 0;
    case WM_MOUSEWHEEL:
        onWheel(wParam, lParam);
        return 0;
    case WM_LBUTTONDOWN:
        SetFocus(window);
        SetCapture(window);
        dragged_ = ViewPoint{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
        return 0;
    case WM_MOUSEMOVE:
        if (dragged_) {
            const ViewPoint mouse{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            scrollBy(dragged_->x - mouse.x, dragged_->y - mouse.y);
            dragged_ = mouse;
        }
        return 0;
    case WM_LBUTTONUP:
        ReleaseCapture();
        return 0;
    case WM_CAPTURECHANGED:
        dragged_.reset();
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
