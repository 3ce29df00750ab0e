// Owners of Windows handles: released exactly once, moved but never copied.
// Raw handles stay raw only where a fixed record or a Windows call wants them so.
#pragma once

#include <windows.h>

#include <utility>

namespace stage {

// `release` is called with every handle except the empty one.
template <class Handle, auto release, Handle empty = Handle{}>
class Owner {
public:
    Owner() = default;
    explicit Owner(Handle handle) : handle_(handle) {}
    Owner(Owner&& other) noexcept : handle_(std::exchange(other.handle_, empty)) {}
    Owner& operator=(Owner&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Owner() {
        if (handle_ != empty)
            release(handle_);
    }

    Handle get() const { return handle_; }
    explicit operator bool() const { return handle_ != empty; }
    // Gives the handle away: the caller releases it.
    Handle detach() { return std::exchange(handle_, empty); }

private:
    Handle handle_ = empty;
};

using Module = Owner<HMODULE, ::FreeLibrary>;
using Hook = Owner<HHOOK, ::UnhookWindowsHookEx>;
using Window = Owner<HWND, ::DestroyWindow>;
using Process = Owner<HANDLE, ::CloseHandle>;
using GlobalBlock = Owner<HGLOBAL, ::GlobalFree>;
using Font = Owner<HFONT, ::DeleteObject>;
using Bitmap = Owner<HBITMAP, ::DeleteObject>;
using Brush = Owner<HBRUSH, ::DeleteObject>;
using MemoryDc = Owner<HDC, ::DeleteDC>;
using Icon = Owner<HICON, ::DestroyIcon>;

// Selects a drawing object for as long as this lives. Declare it after the object's owner, so that it goes first.
class Selected {
public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), previous_(::SelectObject(dc, object)) {}
    ~Selected() { ::SelectObject(dc_, previous_); }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

private:
    HDC dc_;
    HGDIOBJ previous_;
};

// A global-memory block, locked for as long as this lives. `bytes` is null when it cannot be locked.
class LockedBlock {
public:
    explicit LockedBlock(HGLOBAL block) : block_(block), bytes_(::GlobalLock(block)) {}
    ~LockedBlock() {
        if (bytes_ != nullptr)
            ::GlobalUnlock(block_);
    }
    LockedBlock(const LockedBlock&) = delete;
    LockedBlock& operator=(const LockedBlock&) = delete;

    void* bytes() const { return bytes_; }

private:
    HGLOBAL block_;
    void* bytes_;
};

// A reference to a COM object; `put` is for calls that answer one.
template <class Interface>
class ComReference {
public:
    ComReference() = default;
    ~ComReference() {
        if (object_ != nullptr)
            object_->Release();
    }
    ComReference(const ComReference&) = delete;
    ComReference& operator=(const ComReference&) = delete;

    Interface** put() { return &object_; }
    Interface* get() const { return object_; }
    Interface* operator->() const { return object_; }

private:
    Interface* object_ = nullptr;
};

} // namespace stage
