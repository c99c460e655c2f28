#include "win/window.h"

#include <array>
#include <mutex>
#include <set>
#include <string>
#include <utility>

#include "com/lock.h"
#include "com/module.h"
#include "common/keys.h"
#include "win/gdi_surface.h"
#include "win/module_instance.h"

namespace qvx {

namespace {

// Unregisters the classes: a class would stay registered when its module is unloaded, and its next window would call
// freed code.
class ClassRegistry {
  public:
    ~ClassRegistry() {
        for (const std::wstring& name : names_) {
            UnregisterClassW(name.c_str(), ModuleInstance());
        }
    }
    bool Ensure(const WindowClass& windowClass, WNDPROC procedure) {
        const std::lock_guard lock(access_);
        if (names_.contains(windowClass.name)) {
            return true;
        }
        WNDCLASSEXW record{};
        record.cbSize = sizeof record;
        record.style = windowClass.style;
        record.lpfnWndProc = procedure;
        record.cbWndExtra = sizeof(void*);
        record.hInstance = ModuleInstance();
        record.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(windowClass.cursor));
        record.lpszClassName = windowClass.name;
        // The name is noted first, so that no class stays registered unnoticed.
        const auto noted = names_.insert(windowClass.name).first;
        if (!RegisterClassExW(&record) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
            names_.erase(noted);
            return false;
        }
        return true;
    }

  private:
    Lock access_;
    std::set<std::wstring> names_;
};

// All subclasses, in lists that each have those of some windows. Nothing is allocated, so that attaching cannot fail
// for lack of memory.
struct Subclasses {
    static constexpr std::size_t lists = 256;

    WindowSubclass*& ListOf(HWND window) { return first[reinterpret_cast<UINT_PTR>(window) / 2 % lists]; }

    Lock access;
    WindowSubclass* first[lists] = {};
};

constinit Subclasses subclasses;

// The property of a window without subclasses whose procedure other code still calls: the window's own procedure.
constexpr const wchar_t* leftBehind = L"QvxSubclass";

// Returns the result of a message whose handler failed: nothing was created, nothing was done, and painting is not
// requested again at once.
LRESULT AnswerAfterFault(HWND window, UINT message) {
    if (message == WM_PAINT) {
        ValidateRect(window, nullptr);
    }
    return message == WM_CREATE ? -1 : 0;
}

// Handles a message so that no exception unwinds into the system. The object may be gone afterwards.
template <typename Handle, typename ReportFault>
LRESULT Fenced(HWND window, UINT message, const LifeWatch& watch, Handle handle, ReportFault reportFault) {
    try {
        return handle();
    } catch (...) {
        if (watch.Alive()) {
            reportFault();
        }
        return AnswerAfterFault(window, message);
    }
}

}  // namespace

Window::~Window() { Destroy(); }

void Window::Destroy() {
    const HWND window = handle_;
    if (!window) {
        return;
    }
    const LifeWatch watch = Watch();
    if (!DestroyWindow(window) && IsWindow(window)) {
        // The window belongs to another thread: the system keeps it, but it must no longer find this object.
        SetWindowLongPtrW(window, 0, 0);
    }
    if (watch.Alive()) {
        handle_ = nullptr;
    }
}

bool Window::Create(const WindowClass& windowClass, const wchar_t* title, DWORD style, DWORD exStyle,
                    const Rect& bounds, HWND parent, int id) {
    if (handle_ || !OfModule<ClassRegistry>().Ensure(windowClass, &Window::Procedure)) {
        return false;
    }
    const auto menu = reinterpret_cast<HMENU>(static_cast<INT_PTR>(id));
    const HWND created = CreateWindowExW(exStyle, windowClass.name, title, style, bounds.left, bounds.top,
                                         bounds.Width(), bounds.Height(), parent, menu, ModuleInstance(), this);
    if (!created) {
        handle_ = nullptr;
    }
    return created != nullptr;
}

LRESULT Window::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) { return Default(message, wParam, lParam); }

LRESULT Window::Default(UINT message, WPARAM wParam, LPARAM lParam) {
    return handle_ ? DefWindowProcW(handle_, message, wParam, lParam) : 0;
}

LRESULT CALLBACK Window::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        auto* created = static_cast<Window*>(create->lpCreateParams);
        created->handle_ = window;
        SetWindowLongPtrW(window, 0, reinterpret_cast<LONG_PTR>(created));
    }
    auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, 0));
    if (!self) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    const LifeWatch watch = self->Watch();
    const LRESULT result = Fenced(
        window, message, watch, [&] { return self->OnMessage(message, wParam, lParam); }, [&] { self->OnFault(); });
    if (message == WM_NCDESTROY && watch.Alive()) {
        SetWindowLongPtrW(window, 0, 0);
        self->handle_ = nullptr;
        try {
            self->OnGone();
        } catch (...) {
            // There is nobody to report the error to.
        }
    }
    return result;
}

Rect Window::ClientArea() const {
    RECT client{};
    GetClientRect(handle_, &client);
    return FromRECT(client);
}

void Window::Invalidate() const {
    if (handle_) {
        InvalidateRect(handle_, nullptr, FALSE);
    }
}

void Window::Invalidate(const Rect& area) const {
    if (handle_ && !area.Empty()) {
        const RECT r = ToRECT(area);
        InvalidateRect(handle_, &r, FALSE);
    }
}

WindowSubclass::~WindowSubclass() { Detach(); }

WindowSubclass* WindowSubclass::Find(WindowSubclass* from, HWND window) {
    while (from && from->handle_ != window) from = from->next_;
    return from;
}

bool WindowSubclass::Attach(HWND window) {
    Detach();
    const std::lock_guard lock(subclasses.access);
    WindowSubclass*& first = subclasses.ListOf(window);
    // Another one has put the procedure in its place, which other code may have replaced since.
    if (const WindowSubclass* const other = Find(first, window)) {
        original_ = other->original_;
    } else if (const HANDLE left = RemovePropW(window, leftBehind)) {
        original_ = reinterpret_cast<WNDPROC>(left);
    } else {
        original_ =
            reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
    }
    if (!original_) return false;
    handle_ = window;
    next_ = std::exchange(first, this);
    return true;
}

void WindowSubclass::Detach() { Leave(false); }

// With `gone`, the window gets no further messages.
void WindowSubclass::Leave(bool gone) {
    if (!handle_) return;
    const std::lock_guard lock(subclasses.access);
    WindowSubclass** link = &subclasses.ListOf(handle_);
    while (*link != this) link = &(*link)->next_;
    *link = next_;
    const HWND window = std::exchange(handle_, nullptr);
    if (gone || Find(subclasses.ListOf(window), window)) return;
    if (reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC)) == &Procedure) {
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(original_));
    } else {
        // Code that has replaced the procedure goes on calling it.
        KeepModuleLoaded();
        SetPropW(window, leftBehind, reinterpret_cast<HANDLE>(original_));
    }
}

LRESULT WindowSubclass::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return Default(message, wParam, lParam);
}

LRESULT WindowSubclass::Default(UINT message, WPARAM wParam, LPARAM lParam) {
    if (!handle_) return 0;
    WindowSubclass* next = nullptr;
    {
        const std::lock_guard lock(subclasses.access);
        next = Find(next_, handle_);
    }
    return next ? next->Receive(message, wParam, lParam) : CallWindowProcW(original_, handle_, message, wParam, lParam);
}

LRESULT WindowSubclass::Receive(UINT message, WPARAM wParam, LPARAM lParam) {
    const LifeWatch watch = Watch();
    const LRESULT result = Fenced(
        handle_, message, watch, [&] { return OnMessage(message, wParam, lParam); }, [&] { OnFault(); });
    if (message == WM_NCDESTROY && watch.Alive()) Leave(true);
    return result;
}

LRESULT CALLBACK WindowSubclass::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    WindowSubclass* first = nullptr;
    {
        const std::lock_guard lock(subclasses.access);
        first = Find(subclasses.ListOf(window), window);
    }
    if (first) return first->Receive(message, wParam, lParam);
    const auto original = reinterpret_cast<WNDPROC>(GetPropW(window, leftBehind));
    if (message == WM_NCDESTROY) RemovePropW(window, leftBehind);
    return original ? CallWindowProcW(original, window, message, wParam, lParam)
                    : DefWindowProcW(window, message, wParam, lParam);
}

bool IsKeyDown(int key) { return GetKeyState(key) < 0; }

int ShiftState() {
    // One call for the three of them, since each may be one to another process.
    std::array<BYTE, 256> state{};
    GetKeyboardState(state.data());
    const auto mask = [&](int key, int bit) { return (state[static_cast<std::size_t>(key)] & 0x80U) != 0 ? bit : 0; };
    return mask(VK_SHIFT, keys::shiftMask) | mask(VK_CONTROL, keys::controlMask) | mask(VK_MENU, keys::altMask);
}

}  // namespace qvx
