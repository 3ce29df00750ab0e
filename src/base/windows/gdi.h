// Owners of drawing objects and scopes that leave a device context as they found it. Outside of this file and the
// canvas nobody calls SelectObject or DeleteObject.
#pragma once

#include "base/owner.h"
#include "base/windows/memory_reserve.h"

#include <utility>

#include <windows.h>

namespace veldran {

template <class Handle>
inline void deleteGdiObject(Handle object) {
    DeleteObject(object);
}

using Pen = Owner<HPEN, deleteGdiObject<HPEN>>;
using Brush = Owner<HBRUSH, deleteGdiObject<HBRUSH>>;
using Font = Owner<HFONT, deleteGdiObject<HFONT>>;
using Region = Owner<HRGN, deleteGdiObject<HRGN>>;
using Bitmap = Owner<HBITMAP, deleteGdiObject<HBITMAP>>;

inline void deleteMemoryDc(HDC dc) {
    DeleteDC(dc);
}
using MemoryDc = Owner<HDC, deleteMemoryDc>;

// An object that a picture cannot do without: throws std::bad_alloc when it could not be made. Without it the picture
// would go out with a shape missing, and nobody would be told.
template <class Object>
Object required(Object object) {
    if (!object)
        throwOutOfMemory();
    return object;
}

// Selects an object for the scope's life. Declare it after the owner of the object, so that it goes first.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;
    ~Selected() {
        if (previous_ != nullptr)
            SelectObject(dc_, previous_);
    }

private:
    HDC dc_;
    HGDIOBJ previous_;
};

// Text colour and transparent background mode for the scope's life.
class TextStyle {
public:
    TextStyle(HDC dc, COLORREF colour)
        : dc_(dc), previousColour_(SetTextColor(dc, colour)), previousMode_(SetBkMode(dc, TRANSPARENT)) {}
    TextStyle(const TextStyle&) = delete;
    TextStyle& operator=(const TextStyle&) = delete;
    ~TextStyle() {
        SetBkMode(dc_, previousMode_);
        SetTextColor(dc_, previousColour_);
    }

private:
    HDC dc_;
    COLORREF previousColour_;
    int previousMode_;
};

// Drawing stays within a rectangle for the scope's life. For device contexts that are not clipped otherwise.
class Clipped {
public:
    Clipped(HDC dc, const RECT& area) : dc_(dc) { IntersectClipRect(dc, area.left, area.top, area.right, area.bottom); }
    Clipped(const Clipped&) = delete;
    Clipped& operator=(const Clipped&) = delete;
    ~Clipped() { SelectClipRgn(dc_, nullptr); }

private:
    HDC dc_;
};

// Needs no object of its own, so it cannot fail.
inline void fillBox(HDC dc, const RECT& box, COLORREF colour) {
    const COLORREF previous = SetDCBrushColor(dc, colour);
    FillRect(dc, &box, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    SetDCBrushColor(dc, previous);
}

} // namespace veldran
