// Owners of system handles: each releases its handle at the end of its scope. They can be moved, but not copied.
#pragma once

#include <windows.h>

#include <cassert>
#include <utility>

namespace qvx {

// `Release` is a stateless callable that takes the handle; a null handle means none.
template <class Handle, class Release>
class UniqueHandle {
  public:
    UniqueHandle() = default;
    explicit UniqueHandle(Handle handle) : handle_(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.Detach()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other) {
            Reset(other.Detach());
        }
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { Reset(); }

    Handle Get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }
    // Takes ownership of another handle, and releases the previous one.
    void Reset(Handle handle = nullptr) {
        if (Handle old = std::exchange(handle_, handle)) {
            Release{}(old);
        }
    }
    // Gives up ownership of the handle, to a caller or to the system.
    Handle Detach() { return std::exchange(handle_, nullptr); }
    // For calls that return a handle through a pointer.
    Handle* Put() {
        assert(!handle_);
        return &handle_;
    }

  private:
    Handle handle_ = nullptr;
};

namespace release {
struct GdiObject {
    void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
struct Dc {
    void operator()(HDC dc) const { DeleteDC(dc); }
};
struct Global {
    void operator()(HGLOBAL memory) const { GlobalFree(memory); }
};
struct Kernel {
    void operator()(HANDLE object) const { CloseHandle(object); }
};
struct FileSearch {
    void operator()(HANDLE search) const { FindClose(search); }
};
}  // namespace release

using UniqueFont = UniqueHandle<HFONT, release::GdiObject>;
using UniqueBitmap = UniqueHandle<HBITMAP, release::GdiObject>;
using UniqueBrush = UniqueHandle<HBRUSH, release::GdiObject>;
using UniquePen = UniqueHandle<HPEN, release::GdiObject>;
using UniqueRegion = UniqueHandle<HRGN, release::GdiObject>;
using UniqueMemoryDc = UniqueHandle<HDC, release::Dc>;
using UniqueGlobal = UniqueHandle<HGLOBAL, release::Global>;
using UniqueKernelObject = UniqueHandle<HANDLE, release::Kernel>;
using UniqueFileSearch = UniqueHandle<HANDLE, release::FileSearch>;

// Selects an object into a device context for the duration of a scope.
class SelectedObject {
  public:
    SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
    ~SelectedObject() {
        if (previous_ && previous_ != HGDI_ERROR) {
            SelectObject(dc_, previous_);
        }
    }
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;

  private:
    HDC dc_;
    HGDIOBJ previous_;
};

// Borrows a window's device context, or the screen's for a null window, for the duration of a scope.
class WindowDc {
  public:
    explicit WindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
    ~WindowDc() {
        if (dc_) {
            ReleaseDC(window_, dc_);
        }
    }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    HDC Get() const { return dc_; }

  private:
    HWND window_;
    HDC dc_;
};

// WM_PAINT's device context and update rectangle.
class PaintScope {
  public:
    explicit PaintScope(HWND window) : window_(window) { BeginPaint(window, &paint_); }
    ~PaintScope() { EndPaint(window_, &paint_); }
    PaintScope(const PaintScope&) = delete;
    PaintScope& operator=(const PaintScope&) = delete;
    HDC Dc() const { return paint_.hdc; }
    const RECT& Area() const { return paint_.rcPaint; }

  private:
    HWND window_;
    PAINTSTRUCT paint_{};
};

// Saves the whole state of a device context and restores it at the end of a scope.
class SavedDc {
  public:
    explicit SavedDc(HDC dc) : dc_(dc), state_(SaveDC(dc)) {}
    ~SavedDc() {
        if (state_) {
            RestoreDC(dc_, -1);
        }
    }
    SavedDc(const SavedDc&) = delete;
    SavedDc& operator=(const SavedDc&) = delete;

  private:
    HDC dc_;
    int state_;
};

// Locks movable memory for the duration of a scope.
template <class T>
class GlobalLockScope {
  public:
    explicit GlobalLockScope(HGLOBAL memory) : memory_(memory), data_(static_cast<T*>(GlobalLock(memory))) {}
    ~GlobalLockScope() {
        if (data_) {
            GlobalUnlock(memory_);
        }
    }
    GlobalLockScope(const GlobalLockScope&) = delete;
    GlobalLockScope& operator=(const GlobalLockScope&) = delete;
    T* Get() const { return data_; }

  private:
    HGLOBAL memory_;
    T* data_;
};

}  // namespace qvx
