// The lifetime of a control: references, window, focus, notifications.
#include "kit/control_base.h"

#include <olectl.h>

#include "com/type_library.h"
#include "common/keys.h"
#include "common/run_time_error.h"
#include "kit/control_window.h"
#include "win/dpi.h"
#include "win/extent.h"
#include "win/gdi_surface.h"

namespace qvx {

ControlBase::ControlBase(const ControlClass& controlClass, const IID& interfaceId)
    : class_(controlClass), interfaceId_(interfaceId), connections_(this, *controlClass.events) {}

ControlBase::~ControlBase() {
    // The window is destroyed next, and no one is notified any more.
    inPlace_.Forget();
    if (accelerators_) DestroyAcceleratorTable(accelerators_);
}

HRESULT ControlBase::QueryKitInterface(REFIID iid, void** object) {
    *object = nullptr;
    const auto offer = [&]<typename Interface>(Interface* self, auto... ids) {
        if (!*object && ((iid == ids) || ...)) *object = self;
    };
    offer(static_cast<IOleObject*>(this), IID_IOleObject);
    offer(static_cast<IOleInPlaceObject*>(this), IID_IOleInPlaceObject, IID_IOleWindow);
    offer(static_cast<IOleInPlaceActiveObject*>(this), IID_IOleInPlaceActiveObject);
    offer(static_cast<IOleControl*>(this), IID_IOleControl);
    offer(static_cast<IViewObjectEx*>(this), IID_IViewObjectEx, IID_IViewObject2, IID_IViewObject);
    offer(static_cast<IPersistPropertyBag*>(this), IID_IPersistPropertyBag);
    // IPersistStream has the same methods as IPersistStreamInit, except for the last one.
    offer(static_cast<IPersistStreamInit*>(this), IID_IPersistStreamInit, IID_IPersistStream, IID_IPersist);
    offer(static_cast<IPersistStorage*>(this), IID_IPersistStorage);
    offer(static_cast<IProvideClassInfo2*>(this), IID_IProvideClassInfo2, IID_IProvideClassInfo);
    offer(static_cast<IConnectionPointContainer*>(this), IID_IConnectionPointContainer);
    offer(static_cast<ISpecifyPropertyPages*>(this), IID_ISpecifyPropertyPages);
    offer(static_cast<IQuickActivate*>(this), IID_IQuickActivate);
    offer(static_cast<IDataObject*>(this), IID_IDataObject);
    offer(static_cast<ISupportErrorInfo*>(this), IID_ISupportErrorInfo);
    if (!*object) return E_NOINTERFACE;
    Unknown()->AddRef();
    return S_OK;
}

ULONG ControlBase::ReleaseReference() {
    const ULONG left = references_.Remove();
    if (left == 0) {
        references_.BeginDestruction();
        Terminate();
        delete this;
    }
    return left;
}

void ControlBase::Terminate() {
    if (std::exchange(terminated_, true)) return;
    Contain([&] { OnTerminate(); });
    Contain([&] { Deactivate(); });
    if (window_) window_->Destroy();
}

// --- The window ---

HWND ControlBase::EnsureWindow(HWND parent) {
    if (WindowHandle()) return WindowHandle();
    EnsureSize();
    // A control that chooses its own size does so before there are windows to resize.
    OnResize(PixelSize());
    if (!window_) window_ = std::make_unique<ControlWindow>(*this, ParkingWindow::OfThisThread());
    // An incomplete window is discarded: the next call creates a complete one.
    const auto giveUp = [this] {
        window_->Destroy();
        window_.reset();
    };
    try {
        if (window_->CreateHidden(PixelSize(), parent)) {
            windowMode_ = UserMode();
            OnWindowCreated(window_->Handle());
            OnResize(PixelSize());
            CutWindow(PixelSize());
            return window_->Handle();
        }
    } catch (...) {
        giveUp();
        throw;
    }
    giveUp();
    return nullptr;
}

void ControlBase::FollowUserMode() {
    if (!WindowHandle() || UserMode() == windowMode_) return;
    const auto keep = KeepAlive();
    windowMode_ = !windowMode_;
    OnWindowGoing();
    if (!WindowHandle()) return;
    OnWindowCreated(WindowHandle());
    OnResize(PixelSize());
    if (InPlaceActive()) OnShow();
    Invalidate();
}

HWND ControlBase::WindowHandle() const { return window_ ? window_->Handle() : nullptr; }

long ControlBase::WindowNumber() {
    // Handles have 32 significant bits on every architecture.
    return static_cast<long>(reinterpret_cast<LONG_PTR>(EnsureWindow()));
}

long ControlBase::DeviceContextNumber() {
    // Without a window, GetDC would return the device context of the whole screen.
    const HWND window = EnsureWindow();
    if (!window) return 0;
    // The window owns its device context, so it need not be released.
    return static_cast<long>(reinterpret_cast<LONG_PTR>(GetDC(window)));
}

Size ControlBase::PixelSize() const { return extent_.Pixels(); }

void ControlBase::EnsureSize() {
    if (!extent_.Unset()) return;
    const Dpi dpi = ScreenDpi();
    constexpr int designDpi = 96;
    const Size size = DefaultPixelSize();
    SetPixelSize({ScaleRounded(size.width, dpi.x, designDpi), ScaleRounded(size.height, dpi.y, designDpi)});
}

void ControlBase::SetPixelSize(Size pixels) { extent_.SetPixels(pixels, WindowDpi(WindowHandle())); }

void ControlBase::RequestPixelSize(Size pixels) {
    if (pixels == PixelSize() || resizing_) return;
    const auto keep = KeepAlive();
    resizing_ = true;
    if (const auto site = inPlace_.Site()) {
        RECT position{};
        GetWindowRect(WindowHandle(), &position);
        MapWindowPoints(nullptr, GetParent(WindowHandle()), reinterpret_cast<POINT*>(&position), 2);
        position.right = position.left + pixels.width;
        position.bottom = position.top + pixels.height;
        site->OnPosRectChange(&position);
    }
    if (pixels != PixelSize()) {
        extent_.ChangePixels(pixels, WindowDpi(WindowHandle()));
        if (const HWND window = WindowHandle()) {
            SetWindowPos(window, nullptr, 0, 0, pixels.width, pixels.height,
                         SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOMOVE);
        }
        ViewChanged();
    }
    resizing_ = false;
}

LRESULT ControlBase::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    // A handler of the host may release the control in the middle of a message.
    const auto keep = KeepAlive();
    if (const auto answer = OnWindowMessage(message, wParam, lParam)) return *answer;
    return HandleMessage(message, wParam, lParam);
}

LRESULT ControlBase::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND window = window_->Handle();
    switch (message) {
        case WM_PAINT:
            Paint(window);
            return 0;
        case WM_PRINTCLIENT: {
            GdiSurface surface(reinterpret_cast<HDC>(wParam), WindowDpi(window));
            DrawControl(surface, window_->ClientArea());
            return 0;
        }
        case WM_ERASEBKGND:
            return 1;
        case WM_SIZE:
            // EnsureWindow reports the size of created and parked windows, once inner windows exist.
            if (InPlaceActive()) {
                const Size size{LOWORD(lParam), HIWORD(lParam)};
                OnResize(size);
                CutWindow(size);
                // Everything in the picture may have moved.
                if (!IsCovered()) window_->Invalidate();
            }
            return 0;
        case WM_DPICHANGED_AFTERPARENT:
            // A host may keep the size of its controls in pixels.
            if (InPlaceActive()) {
                OnResize(PixelSize());
                CutWindow(PixelSize());
            }
            Invalidate();
            break;
        case WM_SETFOCUS:
            FocusMovesTo(window);
            return 0;
        case WM_KILLFOCUS:
            FocusMovesTo(reinterpret_cast<HWND>(wParam));
            return 0;
        case WM_MOUSEACTIVATE:
            // The message comes from inner windows too, before any of them receives the button.
            if (UserMode() && !HasFocus()) TakeFocus();
            break;
        case WM_DESTROY:
            OnWindowGoing();
            return 0;
        default:
            break;
    }
    return window_->DefaultFor(message, wParam, lParam);
}

void ControlBase::Paint(HWND window) {
    // Where inner windows cover all of it, some systems want it painted nevertheless. A control that knows that need
    // not get a device context for the question.
    RECT visible{};
    if (IsCovered() || GetClipBox(WindowDc(window).Get(), &visible) == NULLREGION) {
        ValidateRect(window, nullptr);
        return;
    }
    const Rect area = window_->ClientArea();
    BackBuffer buffer;
    BufferedPaint paint(window, WindowDpi(window), buffer, {area.Width(), area.Height()});
    DrawControl(paint.Surface(), area);
}

void ControlBase::OnWindowGone() {
    // The window was destroyed with the host's window; the object may be activated again in another one.
    focused_ = false;
    clip_.reset();
    cut_ = false;
    if (!InPlaceActive()) return;
    // A frame that still holds the active object would keep it alive for ever, because the object holds the frame.
    const auto keep = KeepAlive();
    Deactivate();
}

// --- Focus ---

void ControlBase::FocusMovesTo(HWND moving) {
    const auto keep = KeepAlive();
    const HWND window = WindowHandle();
    const bool inside = window && moving && (moving == window || IsChild(window, moving));
    if (inside != focused_) {
        focused_ = inside;
        if (inside && InPlaceActive() && !inPlace_.UiActive()) ActivateUi();
        // The host's handlers may move the focus on; a nested call has then reported the newer state already.
        const ComPtr<IOleControlSite> site = host_.ControlSite();
        if (site && focused_ == inside) site->OnFocus(inside);
        if (focused_ == inside) OnFocus(inside);
    }
    // The outer window passes the focus on to the window that it is meant for.
    if (inside && moving == window && focused_) {
        const HWND inner = FocusWindow();
        if (inner && inner != window && GetFocus() == window) SetFocus(inner);
    }
}

void ControlBase::TakeFocus() {
    if (InPlaceActive() && !inPlace_.UiActive()) {
        ActivateUi();
    } else if (!HasFocus()) {
        SetFocus(FocusWindow());
    }
}

bool ControlBase::MoveFocusOn(bool backwards) {
    const auto site = host_.ControlSite();
    if (!site) return false;
    MSG tab{GetFocus(), WM_KEYDOWN, VK_TAB, 1, static_cast<DWORD>(GetMessageTime()), {}};
    // The system's KEYMOD_ bits equal those of key events.
    const auto modifiers = static_cast<DWORD>(backwards ? keys::shiftMask : 0);
    return site->TranslateAccelerator(&tab, modifiers) == S_OK;
}

// --- Notifying the host ---

void ControlBase::Changed(TextView name) {
    if (loading_ > 0) return;
    // A listener may release the control, which may then be held by nothing but a font that it listens to.
    const auto keep = KeepAlive();
    dirty_ = true;
    initPending_ = false;
    // The change has been made: a notification that fails for lack of memory is lost, and is not reported as a failure.
    // Without anyone to notify, finding the number would take longer than writing a cell.
    if (connections_.HasPropertySinks()) {
        DISPID member = DISPID_UNKNOWN;
        Contain([&] { member = MembersOf(interfaceId_)->NumberOf(name); });
        Contain([&] { connections_.NotifyChanged(member); });
    }
    Invalidate();
    DataChanged();
}

void ControlBase::Invalidate() {
    if (window_ && !IsCovered()) window_->Invalidate();
    ViewChanged();
}

void ControlBase::ViewChanged() {
    // A container draws the control itself only while it has no window in place. The view of a control that is being
    // read changes once, at the end.
    if (!viewSink_ || InPlaceActive() || loading_ > 0) return;
    const ComPtr<IAdviseSink> sink = viewSink_;
    if (viewFlags_ & ADVF_ONLYONCE) viewSink_.reset();
    sink->OnViewChange(DVASPECT_CONTENT, -1);
}

void ControlBase::Fire(TextView event, EventArguments arguments) {
    if (!RaisesEvents()) return;
    const auto keep = KeepAlive();
    Contain([&] { connections_.Fire(event, std::move(arguments)); });
}

void ControlBase::AccessKeysChanged() {
    if (const ComPtr<IOleControlSite> site = host_.ControlSite()) site->OnControlInfoChanged();
}

ControlBase::DialogScope::DialogScope(ControlBase& control)
    : keep_(control.KeepAlive()), frame_(control.inPlace_.Frame()) {
    if (frame_) frame_->EnableModeless(FALSE);
}

ControlBase::DialogScope::~DialogScope() {
    if (frame_) frame_->EnableModeless(TRUE);
}

// --- Connections, class information, errors ---

STDMETHODIMP ControlBase::EnumConnectionPoints(IEnumConnectionPoints** points) {
    return connections_.Enumerate(points);
}

STDMETHODIMP ControlBase::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
    return connections_.Find(iid, point);
}

STDMETHODIMP ControlBase::GetClassInfo(ITypeInfo** info) {
    return Guard([&]() -> HRESULT {
        if (!info) return E_POINTER;
        *info = TypeInfoOf(*class_.id).detach();
        return S_OK;
    });
}

STDMETHODIMP ControlBase::GetGUID(DWORD kind, GUID* id) {
    if (!id) return E_POINTER;
    *id = GUID_NULL;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
    *id = *class_.events;
    return S_OK;
}

STDMETHODIMP ControlBase::InterfaceSupportsErrorInfo(REFIID iid) {
    return iid == interfaceId_ || iid == IID_IDispatch ? S_OK : S_FALSE;
}

STDMETHODIMP ControlBase::GetClassID(CLSID* id) {
    if (!id) return E_POINTER;
    *id = *class_.id;
    return S_OK;
}

STDMETHODIMP ControlBase::GetPages(CAUUID* pages) {
    if (!pages) return E_POINTER;
    const auto ids = PropertyPages();
    pages->cElems = 0;
    pages->pElems = nullptr;
    if (ids.empty()) return S_OK;
    pages->pElems = static_cast<GUID*>(CoTaskMemAlloc(ids.size_bytes()));
    if (!pages->pElems) return E_OUTOFMEMORY;
    std::copy(ids.begin(), ids.end(), pages->pElems);
    pages->cElems = static_cast<ULONG>(ids.size());
    return S_OK;
}

}  // namespace qvx
