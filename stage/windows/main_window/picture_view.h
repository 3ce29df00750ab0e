// The large view of one frame: zoomed, scrolled, over a backdrop. Keys and the wheel that concern the animation go to
// the parent as commands.
#pragma once

#include "view/screen_picture.h"
#include "windows/system/handles.h"

#include <string>

namespace stage {

class PictureView {
public:
    explicit PictureView(HWND parent);

    HWND window() const { return window_; }
    // An empty picture shows the text instead.
    void show(Picture picture);
    const Picture& shown() const { return picture_; }
    void setHint(std::wstring text, HFONT font);
    void setBackdrop(const Backdrop& backdrop);
    const Backdrop& backdrop() const { return backdrop_; }

    // In per cent of the picture's size.
    int zoom() const { return zoom_; }
    bool isFitting() const { return isFitting_; }
    // Around the middle of the view.
    void setZoom(int percent);
    // From now on the whole picture is shown, as large as it can be.
    void fit();
    // At its own size, or smaller if it would not be seen whole then.
    void beginNewPicture();

    LRESULT answer(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    ViewSize viewSize() const;
    ViewSize pictureSize() const;
    ViewBox place() const;
    void zoomAround(const ViewPoint& anchor, int percent);
    void scrollTo(const ViewPoint& scroll);
    void scrollBy(int x, int y) { scrollTo({scroll_.x + x, scroll_.y + y}); }
    void updateBars();
    void resize();
    void paint();
    void onScrollBar(int bar, WPARAM wParam);
    void onWheel(WPARAM wParam, LPARAM lParam);
    bool onKey(WPARAM key);
    void sendCommand(int command) const;

    HWND window_ = nullptr;
    Picture picture_; // empty: nothing is shown
    Backdrop backdrop_;
    int zoom_ = 100;
    bool isFitting_ = false;
    ViewPoint scroll_;
    std::optional<ViewPoint> dragged_; // where the mouse was last
    int wheel_ = 0;                    // turns that are less than a notch
    std::wstring hint_;
    HFONT hintFont_ = nullptr; // the parent's
};

} // namespace stage
