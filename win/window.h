// Windows of our own classes, and subclasses of the system's controls. Messages go to a virtual function behind a
// fence, so that no C++ exception ever unwinds into the system or the host.
#pragma once

#include <windows.h>

#include <memory>

#include "common/geometry.h"

namespace qvx {

namespace detail {
// Tells those who may outlive an object whether it is still there.
class LifeToken {
  public:
    LifeToken() : alive_(std::make_shared<bool>(true)) {}
    ~LifeToken() { *alive_ = false; }
    LifeToken(const LifeToken&) = delete;
    LifeToken& operator=(const LifeToken&) = delete;
    std::shared_ptr<const bool> Watch() const { return alive_; }

  private:
    std::shared_ptr<bool> alive_;
};
}  // namespace detail

// Whether an object is still there after a call that may have destroyed it: hosts delete controls in event handlers.
class LifeWatch {
  public:
    explicit LifeWatch(std::shared_ptr<const bool> alive) : alive_(std::move(alive)) {}
    bool Alive() const { return *alive_; }

  private:
    std::shared_ptr<const bool> alive_;
};

// A class of windows; registered when its first window is created, unregistered when the module is unloaded.
struct WindowClass {
    const wchar_t* name;
    UINT style = CS_DBLCLKS;
    WORD cursor = 32512;  // identifier of one of the system's cursors; this is the arrow
};

// One window. Destroying the object destroys the window; the window may also go first (with its parent), then Handle
// becomes null. The object may be destroyed while it handles a message: code that runs after a call out to a host
// asks a LifeWatch before touching members again.
class Window {
  public:
    Window() = default;
    // Messages sent while the base class destroys the window no longer reach the derived one: a class that wants its
    // WM_DESTROY calls Destroy in its own destructor.
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // Null before creation and after destruction.
    HWND Handle() const { return handle_; }
    LifeWatch Watch() const { return LifeWatch(life_.Watch()); }
    void Destroy();

    // Client area in pixels, from (0, 0).
    Rect ClientArea() const;
    // Asks for the whole window, or a part in client pixels, to be painted; the window paints all of it itself.
    void Invalidate() const;
    void Invalidate(const Rect& area) const;

  protected:
    // Position in pixels: relative to the parent for child windows, to the screen for others. `id` is a child's
    // identifier. False when the system refuses or WM_CREATE's handler fails.
    bool Create(const WindowClass& windowClass, const wchar_t* title, DWORD style, DWORD exStyle, const Rect& bounds,
                HWND parent, int id = 0);

    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // The system's own handling.
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);
    // Called inside the handler of an exception that OnMessage let through (rethrow to look at it). It must not throw.
    virtual void OnFault() noexcept {}
    // After the last message; Handle is null already. The object may delete itself here.
    virtual void OnGone() {}

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND handle_ = nullptr;
    detail::LifeToken life_;
};

// Sees a window's messages before the window itself; for the system's controls. Detached automatically when the
// window goes.
class WindowSubclass {
  public:
    WindowSubclass() = default;
    virtual ~WindowSubclass();
    WindowSubclass(const WindowSubclass&) = delete;
    WindowSubclass& operator=(const WindowSubclass&) = delete;

    bool Attach(HWND window);
    void Detach();
    HWND Handle() const { return handle_; }
    LifeWatch Watch() const { return LifeWatch(life_.Watch()); }

  protected:
    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // The window's own handling, or the next subclass's.
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);
    virtual void OnFault() noexcept {}

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR data);

    HWND handle_ = nullptr;
    detail::LifeToken life_;
};

// Signed client coordinates of a mouse message.
inline Point MousePoint(LPARAM lParam) {
    return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
}

// True while a key of that VK_ code is held, as of the message that is being handled.
bool IsKeyDown(int key);

// The Shift argument of key and mouse events (keys::shiftMask and so on) from the keyboard's present state.
int ShiftState();

}  // namespace qvx
