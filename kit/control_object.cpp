// A control as the object of a container: site, verbs, activation in place, keyboard.
#include <olectl.h>

#include <cwctype>
#include <vector>

#include "com/enumerator.h"
#include "common/keys.h"
#include "kit/control_base.h"
#include "kit/control_window.h"
#include "win/dpi.h"
#include "win/extent.h"
#include "win/gdi_surface.h"

namespace qvx {

namespace {

// While the controls of a form are shown one after the other, their backgrounds are left to the first painting. The
// system would otherwise erase those of all others each time, for which each window needs its device context.
constexpr UINT eraseLater = SWP_DEFERERASE;

HRESULT NewTaskString(const wchar_t* text, LPOLESTR* out) {
    const size_t bytes = (wcslen(text) + 1) * sizeof(wchar_t);
    *out = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
    if (!*out) return E_OUTOFMEMORY;
    memcpy(*out, text, bytes);
    return S_OK;
}

struct CopyVerb {
    static void Out(const OLEVERB& from, OLEVERB* to) {
        *to = from;
        Check(NewTaskString(from.lpszVerbName, &to->lpszVerbName));
    }
};

}  // namespace

// --- IOleObject ---

STDMETHODIMP ControlBase::SetClientSite(IOleClientSite* site) {
    return Guard([&] {
        if (!site) Deactivate();
        host_.SetSite(site);
        if (!site) return;
        if (initPending_) {
            InitialiseNew();
        } else {
            OnAmbientChange(DISPID_UNKNOWN);
        }
        FollowUserMode();
    });
}

STDMETHODIMP ControlBase::GetClientSite(IOleClientSite** site) {
    if (!site) return E_POINTER;
    *site = host_.Site().detach();
    return S_OK;
}

// The names are for a window of the object's own, which a control never opens.
STDMETHODIMP ControlBase::SetHostNames(LPCOLESTR, LPCOLESTR) { return S_OK; }

STDMETHODIMP ControlBase::Close(DWORD saveOption) {
    return Guard([&] {
        const auto keep = KeepAlive();
        const auto site = host_.Site();
        if (saveOption != OLECLOSE_NOSAVE && dirty_ && site) site->SaveObject();
        Deactivate();
        DataChanged(ADVF_DATAONSTOP);
        if (advises_) advises_->SendOnClose();
    });
}

// Monikers are for objects that others link to; a control declares that it cannot be linked to.
STDMETHODIMP ControlBase::SetMoniker(DWORD, IMoniker*) { return E_NOTIMPL; }

STDMETHODIMP ControlBase::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    if (moniker) *moniker = nullptr;
    return E_NOTIMPL;
}

// A control is not created from the clipboard; the designer copies its properties.
STDMETHODIMP ControlBase::InitFromData(IDataObject*, BOOL, DWORD) { return E_NOTIMPL; }

// The clipboard would hold the control itself, whose picture may have changed by the time it is pasted.
STDMETHODIMP ControlBase::GetClipboardData(DWORD, IDataObject** data) {
    if (data) *data = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP ControlBase::DoVerb(LONG verb, LPMSG, IOleClientSite* site, LONG, HWND parent, LPCRECT) {
    return Guard([&]() -> HRESULT {
        const auto keep = KeepAlive();
        if (site && !host_.Site()) Check(SetClientSite(site));
        switch (verb) {
            case OLEIVERB_PRIMARY:
            case OLEIVERB_UIACTIVATE:
                Activate(true);
                return S_OK;
            case OLEIVERB_SHOW:
            case OLEIVERB_INPLACEACTIVATE:
                Activate(false);
                return S_OK;
            case OLEIVERB_HIDE:
                Deactivate();
                return S_OK;
            case OLEIVERB_DISCARDUNDOSTATE:
                return S_OK;
            case OLEIVERB_PROPERTIES: {
                const auto pages = PropertyPages();
                if (pages.empty()) return OLEOBJ_S_INVALIDVERB;
                // The host's own dialog has priority.
                const auto controlSite = host_.ControlSite();
                if (controlSite && controlSite->ShowPropertyFrame() == S_OK) return S_OK;
                const DialogScope dialog(*this);
                IUnknown* self = Unknown();
                const RECT none{};
                return OleCreatePropertyFrame(parent, none.left, none.top, class_.name, 1, &self,
                                              static_cast<ULONG>(pages.size()), const_cast<CLSID*>(pages.data()),
                                              LOCALE_USER_DEFAULT, 0, nullptr);
            }
            default:
                // Negative numbers are the system's own verbs: an unknown one has a meaning that the control does not
                // support, and doing something else instead would be a surprise. An unknown verb of the object's own
                // does what the first verb does, and the result says so to the host.
                if (verb < 0) return E_NOTIMPL;
                Activate(true);
                return OLEOBJ_S_INVALIDVERB;
        }
    });
}

STDMETHODIMP ControlBase::EnumVerbs(IEnumOLEVERB** verbs) {
    return Guard([&]() -> HRESULT {
        if (!verbs) return E_POINTER;
        *verbs = nullptr;
        if (PropertyPages().empty()) return OLEOBJ_E_NOVERBS;
        static wchar_t name[] = L"&Properties";
        std::vector<OLEVERB> known{{OLEIVERB_PROPERTIES, name, 0, OLEVERBATTRIB_ONCONTAINERMENU}};
        using All = Enumerator<IEnumOLEVERB, OLEVERB, OLEVERB, CopyVerb>;
        *verbs = MakeObject<All>(std::move(known)).detach();
        return S_OK;
    });
}

STDMETHODIMP ControlBase::Update() { return S_OK; }
STDMETHODIMP ControlBase::IsUpToDate() { return S_OK; }
STDMETHODIMP ControlBase::GetUserClassID(CLSID* id) { return GetClassID(id); }

STDMETHODIMP ControlBase::GetUserType(DWORD form, LPOLESTR* name) {
    if (!name) return E_POINTER;
    return NewTaskString(form == USERCLASSTYPE_FULL ? class_.description : class_.name, name);
}

// The window of an active control gets its size through SetObjectRects instead.
void ControlBase::TakeExtent(const SIZEL& extent) {
    extent_.SetHimetric(extent);
    if (InPlaceActive()) return;
    extent_.FollowHimetric(WindowDpi(WindowHandle()));
    if (const HWND window = WindowHandle()) {
        const Size pixels = PixelSize();
        SetWindowPos(window, nullptr, 0, 0, pixels.width, pixels.height, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOMOVE);
    }
}

STDMETHODIMP ControlBase::SetExtent(DWORD aspect, SIZEL* size) {
    return Guard([&]() -> HRESULT {
        if (!size) return E_POINTER;
        if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
        if (size->cx < 0 || size->cy < 0) return E_INVALIDARG;
        TakeExtent(*size);
        if (!InPlaceActive()) OnResize(PixelSize());
        ViewChanged();
        DataChanged();
        return S_OK;
    });
}

STDMETHODIMP ControlBase::GetExtent(DWORD aspect, SIZEL* size) {
    return Guard([&]() -> HRESULT {
        if (!size) return E_POINTER;
        if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
        EnsureSize();
        *size = extent_.Himetric();
        return S_OK;
    });
}

STDMETHODIMP ControlBase::Advise(IAdviseSink* sink, DWORD* connection) {
    if (!advises_) {
        const HRESULT made = CreateOleAdviseHolder(advises_.put());
        if (FAILED(made)) return made;
    }
    return advises_->Advise(sink, connection);
}

STDMETHODIMP ControlBase::Unadvise(DWORD connection) {
    return advises_ ? advises_->Unadvise(connection) : OLE_E_NOCONNECTION;
}

STDMETHODIMP ControlBase::EnumAdvise(IEnumSTATDATA** advises) {
    if (!advises) return E_POINTER;
    *advises = nullptr;
    return advises_ ? advises_->EnumAdvise(advises) : S_OK;
}

STDMETHODIMP ControlBase::GetMiscStatus(DWORD aspect, DWORD* status) {
    if (!status) return E_POINTER;
    *status = aspect == DVASPECT_CONTENT ? class_.miscStatus : 0;
    return S_OK;
}

// System colours do not need a palette.
STDMETHODIMP ControlBase::SetColorScheme(LOGPALETTE*) { return S_OK; }

// --- Activation in place ---

void ControlBase::Activate(bool withUi) {
    if (!host_.Site()) throw ComError(OLE_E_NOT_INPLACEACTIVE);
    // A nested request, which a host makes while it is being notified, has nothing to do: the activation is already
    // under way.
    if (!inPlace_.UnderWay()) {
        setUp_ = true;
        const auto client = host_.Site();
        const auto place = inPlace_.Begin(client, [&](HWND parent) {
            const HWND window = host_.Site() == client ? EnsureWindow(parent) : nullptr;
            return window && (GetParent(window) == parent || SetParent(window, parent));
        });
        MoveWindowTo(place.position, place.clip);
        const bool hidden = (class_.miscStatus & OLEMISC_INVISIBLEATRUNTIME) && UserMode();
        constexpr UINT show = SWP_SHOWWINDOW | eraseLater | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;
        if (hidden) {
            ShowWindow(WindowHandle(), SW_HIDE);
        } else {
            SetWindowPos(WindowHandle(), nullptr, 0, 0, 0, 0, show);
        }
        OnShow();
    }
    // In any of these calls the host may have cancelled the activation or even changed its site, so each step checks
    // again.
    if (const auto client = host_.Site(); client && InPlaceActive()) client->ShowObject();
    if (withUi) ActivateUi();
}

void ControlBase::ActivateUi() {
    if (!InPlaceActive() || (class_.miscStatus & OLEMISC_NOUIACTIVATE)) return;
    if (!inPlace_.UiActive()) {
        inPlace_.BeginUi(*this, class_.name);
        if (!inPlace_.UiActive()) return;
    }
    const HWND focus = GetFocus();
    const HWND window = WindowHandle();
    if (focus != window && !IsChild(window, focus)) SetFocus(FocusWindow());
}

void ControlBase::Deactivate() {
    inPlace_.End([this] {
        if (WindowHandle()) window_->Park();
    });
}

void ControlBase::MoveWindowTo(const RECT& position, const RECT& clip) {
    const HWND window = WindowHandle();
    const Rect whole = FromRECT(position);
    const Rect visible = whole.Intersect(FromRECT(clip));
    SetPixelSize({std::max(0, whole.Width()), std::max(0, whole.Height())});
    // Some containers leave the clipping rectangle empty when they do not clip.
    const bool clip0 = clip.left == clip.right && clip.top == clip.bottom;
    clip_.reset();
    if (!clip0 && visible != whole) clip_ = visible.Empty() ? Rect{} : visible.Offset(-whole.left, -whole.top);
    CutWindow(PixelSize());
    const bool shown = GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE;
    SetWindowPos(window, nullptr, whole.left, whole.top, whole.Width(), whole.Height(),
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER | (shown ? 0u : eraseLater));
}

void ControlBase::CutWindow(Size size) {
    UniqueRegion region = WindowShape(size);
    if (clip_) {
        UniqueRegion visible(CreateRectRgn(clip_->left, clip_->top, clip_->right, clip_->bottom));
        if (region) {
            CombineRgn(visible.Get(), visible.Get(), region.Get(), RGN_AND);
        }
        region = std::move(visible);
    }
    const bool wasCut = std::exchange(cut_, static_cast<bool>(region));
    // The system owns the region of a window.
    if (wasCut || cut_) SetWindowRgn(WindowHandle(), region.Detach(), TRUE);
}

STDMETHODIMP ControlBase::GetWindow(HWND* window) {
    if (!window) return E_POINTER;
    *window = InPlaceActive() ? WindowHandle() : nullptr;
    return *window ? S_OK : E_FAIL;
}

// This is a mode in which a click asks for help; no host uses it with controls.
STDMETHODIMP ControlBase::ContextSensitiveHelp(BOOL) { return E_NOTIMPL; }

STDMETHODIMP ControlBase::InPlaceDeactivate() {
    return Guard([&] {
        const auto keep = KeepAlive();
        Deactivate();
    });
}

STDMETHODIMP ControlBase::UIDeactivate() {
    return Guard([&] {
        const auto keep = KeepAlive();
        inPlace_.EndUi();
    });
}

STDMETHODIMP ControlBase::SetObjectRects(LPCRECT position, LPCRECT clip) {
    return Guard([&]() -> HRESULT {
        if (!position) return E_POINTER;
        if (!InPlaceActive()) return OLE_E_NOT_INPLACEACTIVE;
        MoveWindowTo(*position, clip ? *clip : *position);
        return S_OK;
    });
}

STDMETHODIMP ControlBase::ReactivateAndUndo() { return INPLACE_E_NOTUNDOABLE; }

// --- IOleInPlaceActiveObject, IOleControl ---

STDMETHODIMP ControlBase::TranslateAccelerator(LPMSG message) {
    return Guard([&]() -> HRESULT {
        if (!message) return E_POINTER;
        if (message->message < WM_KEYFIRST || message->message > WM_KEYLAST) return S_FALSE;
        const auto keep = KeepAlive();
        if (WantsKey(*message)) {
            TranslateMessage(message);
            DispatchMessageW(message);
            return S_OK;
        }
        const auto site = host_.ControlSite();
        if (!site) return S_FALSE;
        // The system's KEYMOD_ bits equal those of key events.
        const auto modifiers = static_cast<DWORD>(ShiftState());
        return site->TranslateAccelerator(message, modifiers) == S_OK ? S_OK : S_FALSE;
    });
}

STDMETHODIMP ControlBase::OnFrameWindowActivate(BOOL) { return S_OK; }
STDMETHODIMP ControlBase::OnDocWindowActivate(BOOL) { return S_OK; }
// Controls have no toolbars around the document.
STDMETHODIMP ControlBase::ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) { return S_OK; }
STDMETHODIMP ControlBase::EnableModeless(BOOL) { return S_OK; }

STDMETHODIMP ControlBase::GetControlInfo(CONTROLINFO* info) {
    return Guard([&]() -> HRESULT {
        if (!info) return E_POINTER;
        // Hosts compare with the pressed key or with the character that it produces, depending on the message that they
        // examine.
        std::vector<ACCEL> table;
        for (const char16_t key : AccessKeys()) {
            const SHORT scanned = VkKeyScanW(static_cast<wchar_t>(key));
            if (scanned != -1) {
                table.push_back({FALT | FVIRTKEY, LOBYTE(scanned), static_cast<WORD>(table.size())});
            }
            const auto lower = static_cast<WORD>(std::towlower(key));
            table.push_back({FALT, lower, static_cast<WORD>(table.size())});
        }
        if (accelerators_) DestroyAcceleratorTable(accelerators_);
        accelerators_ = table.empty() ? nullptr : CreateAcceleratorTableW(table.data(), static_cast<int>(table.size()));
        info->hAccel = accelerators_;
        info->cAccel = static_cast<USHORT>(accelerators_ ? table.size() : 0);
        const auto uses = [this](WPARAM key) { return WantsKey({WindowHandle(), WM_KEYDOWN, key, 0, 0, {}}); };
        info->dwFlags = 0;
        if (UserMode() && uses(keys::enter)) info->dwFlags |= CTRLINFO_EATS_RETURN;
        if (UserMode() && uses(keys::escape)) info->dwFlags |= CTRLINFO_EATS_ESCAPE;
        return S_OK;
    });
}

STDMETHODIMP ControlBase::OnMnemonic(LPMSG message) {
    return Guard([&]() -> HRESULT {
        if (!message) return E_POINTER;
        const auto keep = KeepAlive();
        const bool character = message->message == WM_CHAR || message->message == WM_SYSCHAR;
        WPARAM key = message->wParam;
        // Enter and Escape have the same number as keys and as characters.
        if (!character && key != keys::enter && key != keys::escape) {
            key = MapVirtualKeyW(static_cast<UINT>(key), MAPVK_VK_TO_CHAR) & 0xFFFF;
        }
        OnAccessKey(static_cast<int>(std::towlower(static_cast<wint_t>(key))));
        return S_OK;
    });
}

STDMETHODIMP ControlBase::OnAmbientPropertyChange(DISPID property) {
    return Guard([&] {
        const auto keep = KeepAlive();
        OnAmbientChange(property);
        if (property == DISPID_AMBIENT_USERMODE || property == DISPID_UNKNOWN) FollowUserMode();
    });
}

STDMETHODIMP ControlBase::FreezeEvents(BOOL freeze) {
    frozen_ += freeze ? 1 : -1;
    if (frozen_ < 0) frozen_ = 0;
    return S_OK;
}

// --- IQuickActivate ---

STDMETHODIMP ControlBase::QuickActivate(QACONTAINER* container, QACONTROL* control) {
    return Guard([&]() -> HRESULT {
        if (!container || !control) return E_POINTER;
        const ULONG size = control->cbSize;
        *control = {};
        control->cbSize = size;
        if (container->pClientSite) Check(SetClientSite(container->pClientSite));
        if (container->pAdviseSink) Check(SetAdvise(DVASPECT_CONTENT, 0, container->pAdviseSink));
        Check(connections_.Connect(container->pUnkEventSink, &control->dwEventCookie, container->pPropertyNotifySink,
                                   &control->dwPropNotifyCookie));
        control->dwMiscStatus = class_.miscStatus;
        Check(GetViewStatus(&control->dwViewStatus));
        return S_OK;
    });
}

STDMETHODIMP ControlBase::SetContentExtent(LPSIZEL size) { return SetExtent(DVASPECT_CONTENT, size); }
STDMETHODIMP ControlBase::GetContentExtent(LPSIZEL size) { return GetExtent(DVASPECT_CONTENT, size); }

}  // namespace qvx
