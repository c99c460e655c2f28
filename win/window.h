// Windows of the library's own classes, and subclasses of the system's controls. A virtual function handles the
// messages behind a barrier, so that no C++ exception ever unwinds into the system or the host.
#pragma once

#include <windows.h>

#include <memory>

#include "common/geometry.h"

namespace qvx {

namespace detail {
// Lets code that may outlive an object find out whether the object still exists.
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

// Tells whether an object still exists after a call that may have destroyed it: hosts delete controls in event
// handlers.
class LifeWatch {
  public:
    explicit LifeWatch(std::shared_ptr<const bool> alive) : alive_(std::move(alive)) {}
    bool Alive() const { return *alive_; }

  private:
    std::shared_ptr<const bool> alive_;
};

// A window class; it is registered when its first window is created, and unregistered when the module is unloaded.
struct WindowClass {
    const wchar_t* name;
    UINT style = CS_DBLCLKS;
    WORD cursor = 32512;  // identifier of one of the system's cursors; the default is the arrow
};

// A window. Destroying the object destroys the window; the window may also be destroyed first (with its parent), and
// Handle then becomes null. The object may be destroyed while it handles a message: code that runs after a call to a
// host asks a LifeWatch before it uses members again.
class Window {
  public:
    Window() = default;
    // Messages that are sent while the base class destroys the window no longer reach the derived class: a class that
    // needs WM_DESTROY calls Destroy in its own destructor.
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // Null before creation and after destruction.
    HWND Handle() const { return handle_; }
    LifeWatch Watch() const { return LifeWatch(life_.Watch()); }
    void Destroy();

    // The client area in pixels, from (0, 0).
    Rect ClientArea() const;
    // Invalidates the whole window, or a part in client pixels; the window paints all of it itself.
    void Invalidate() const;
    void Invalidate(const Rect& area) const;

  protected:
    // Creates the window. The position is in pixels: relative to the parent for child windows, to the screen for
    // others. `id` is a child's identifier. Returns false when the system refuses or WM_CREATE's handler fails.
    bool Create(const WindowClass& windowClass, const wchar_t* title, DWORD style, DWORD exStyle, const Rect& bounds,
                HWND parent, int id = 0);

    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // Calls the system's own handling.
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);
    // Called inside the handler of an exception that OnMessage has thrown (rethrow to examine it). It must not throw.
    virtual void OnFault() noexcept {}
    // Called after the last message; Handle is already null. The object may delete itself here.
    virtual void OnGone() {}

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    HWND handle_ = nullptr;
    detail::LifeToken life_;
};

// Receives a window's messages before the window itself; for the system's controls, which are subclassed when they have
// been created. The one that was attached last comes first. It is removed automatically when the window is destroyed.
//
// The system's own subclasses look themselves up among the window's properties, more than once for each message. Where
// these are kept by another process, as in Wine, that takes longer than everything else that a control does.
class WindowSubclass {
  public:
    WindowSubclass() = default;
    virtual ~WindowSubclass();
    WindowSubclass(const WindowSubclass&) = delete;
    WindowSubclass& operator=(const WindowSubclass&) = delete;

    // Subclasses the window, instead of any previous one. Returns false when the system refuses.
    bool Attach(HWND window);
    void Detach();
    HWND Handle() const { return handle_; }
    LifeWatch Watch() const { return LifeWatch(life_.Watch()); }

  protected:
    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // Calls the window's own handling, or that of the next subclass.
    LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);
    virtual void OnFault() noexcept {}

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Leave(bool gone);
    // Handles the message behind the barrier.
    LRESULT Receive(UINT message, WPARAM wParam, LPARAM lParam);
    // The first of a window's subclasses from here on.
    static WindowSubclass* Find(WindowSubclass* from, HWND window);

    HWND handle_ = nullptr;
    WNDPROC original_ = nullptr;      // the window's own procedure
    WindowSubclass* next_ = nullptr;  // in the list that has the window's other subclasses
    detail::LifeToken life_;
};

// Returns the signed client coordinates of a mouse message.
inline Point MousePoint(LPARAM lParam) {
    return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
}

// Returns whether a key of that VK_ code is held down, as of the message that is being handled.
bool IsKeyDown(int key);

// Returns the Shift argument of key and mouse events (keys::shiftMask and so on) for the current state of the keyboard.
int ShiftState();

}  // namespace qvx
