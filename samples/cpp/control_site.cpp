#include "control_site.h"

namespace {

constexpr DWORD shiftKey = 1;  // KEYMOD_SHIFT, which not every compiler's headers have

// The object that receives events; it lives as long as the control holds it.
class EventSink final : public IDispatch {
  public:
    EventSink(REFIID events, EventHandler handler) : events_(events), handler_(std::move(handler)) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == events_;
        *object = known ? static_cast<IDispatch*>(this) : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
    STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*, UINT*) override {
        handler_(event, *arguments);
        return S_OK;
    }

  private:
    ~EventSink() = default;

    ULONG references_ = 1;
    IID events_;
    EventHandler handler_;
};

}  // namespace

// ---- What the window does with its control -------------------------------------------------------------------------

HRESULT ControlSite::Create(REFCLSID id) {
    HRESULT result =
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject, reinterpret_cast<void**>(object_.Put()));
    if (FAILED(result)) return result;
    // The site comes first, because defaults such as the font are the container's.
    result = object_->SetClientSite(this);
    Reference<IPersistStreamInit> state;
    if (SUCCEEDED(result)) result = state.Query(object_.Get());
    if (SUCCEEDED(result)) result = state->InitNew();
    if (SUCCEEDED(result)) result = inPlace_.Query(object_.Get());
    if (SUCCEEDED(result)) result = keys_.Query(object_.Get());
    if (SUCCEEDED(result)) result = control_.Query(object_.Get());
    return result;
}

HRESULT ControlSite::Show(const RECT& place) {
    place_ = place;
    return object_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, this, 0, container_.Window(), &place_);
}

HRESULT ControlSite::Listen(REFIID events, EventHandler handler) {
    Reference<IConnectionPointContainer> points;
    HRESULT result = points.Query(object_.Get());
    if (SUCCEEDED(result)) result = points->FindConnectionPoint(events, point_.Put());
    if (FAILED(result)) return result;
    auto* sink = new EventSink(events, std::move(handler));
    result = point_->Advise(sink, &connection_);
    sink->Release();
    return result;
}

void ControlSite::MoveTo(const RECT& place) {
    place_ = place;
    if (inPlace_) inPlace_->SetObjectRects(&place_, &place_);
}

void ControlSite::Focus() {
    if (object_) object_->DoVerb(OLEIVERB_UIACTIVATE, nullptr, this, 0, container_.Window(), &place_);
}

void ControlSite::Close() {
    if (point_) point_->Unadvise(connection_);
    point_.Reset();
    keys_.Reset();
    control_.Reset();
    if (inPlace_) inPlace_->InPlaceDeactivate();
    inPlace_.Reset();
    if (!object_) return;
    object_->Close(OLECLOSE_NOSAVE);
    object_->SetClientSite(nullptr);
    object_.Reset();
}

bool ControlSite::OfferKey(MSG& key) { return keys_ && keys_->TranslateAccelerator(&key) == S_OK; }

CONTROLINFO ControlSite::Info() {
    CONTROLINFO info{};
    info.cb = sizeof info;
    if (!control_ || FAILED(control_->GetControlInfo(&info))) info = {};
    return info;
}

bool ControlSite::IsAccessKey(const MSG& key) {
    const CONTROLINFO info = Info();
    MSG copy = key;
    return info.cAccel > 0 && IsAccelerator(info.hAccel, info.cAccel, &copy, nullptr);
}

bool ControlSite::UsesEnter() { return (Info().dwFlags & CTRLINFO_EATS_RETURN) != 0; }

void ControlSite::Press(MSG& key) {
    if (control_) control_->OnMnemonic(&key);
}

// ---- What the control asks its site --------------------------------------------------------------------------------

STDMETHODIMP ControlSite::QueryInterface(REFIID iid, void** object) {
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IOleClientSite) *object = static_cast<IOleClientSite*>(this);
    if (iid == IID_IOleWindow || iid == IID_IOleInPlaceSite) *object = static_cast<IOleInPlaceSite*>(this);
    if (iid == IID_IOleControlSite) *object = static_cast<IOleControlSite*>(this);
    if (iid == IID_IDispatch) *object = static_cast<IDispatch*>(this);
    return *object ? S_OK : E_NOINTERFACE;
}

// Nothing links to the control, and no document lists it.
STDMETHODIMP ControlSite::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    *moniker = nullptr;
    return E_NOTIMPL;
}

STDMETHODIMP ControlSite::GetContainer(IOleContainer** container) {
    *container = nullptr;
    return E_NOINTERFACE;
}

STDMETHODIMP ControlSite::GetWindow(HWND* window) {
    *window = container_.Window();
    return S_OK;
}

STDMETHODIMP ControlSite::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** window, LPRECT position,
                                           LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
    // There are no menus or bars to share.
    *frame = nullptr;
    *window = nullptr;
    *position = place_;
    *clip = place_;
    info->fMDIApp = FALSE;
    info->hwndFrame = container_.Window();
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
}

// A control may ask for another size, as a text box does, which is as high as its text.
STDMETHODIMP ControlSite::OnPosRectChange(LPCRECT wanted) {
    MoveTo(*wanted);
    return S_OK;
}

STDMETHODIMP ControlSite::GetExtendedControl(IDispatch** control) {
    *control = nullptr;
    return E_NOTIMPL;
}

// The control hands on the keys that it does not use itself.
STDMETHODIMP ControlSite::TranslateAccelerator(MSG* key, DWORD modifiers) {
    if (key->message != WM_KEYDOWN || key->wParam != VK_TAB) return S_FALSE;
    container_.MoveFocus(*this, (modifiers & shiftKey) != 0);
    return S_OK;
}

STDMETHODIMP ControlSite::OnFocus(BOOL entered) {
    if (entered) container_.FocusEntered(*this);
    return S_OK;
}

STDMETHODIMP ControlSite::GetTypeInfoCount(UINT* count) {
    *count = 0;
    return S_OK;
}

// The form runs and is not being designed. A control has defaults for everything else.
STDMETHODIMP ControlSite::Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                 UINT*) {
    if (!(flags & DISPATCH_PROPERTYGET) || member != DISPID_AMBIENT_USERMODE || !result) return DISP_E_MEMBERNOTFOUND;
    V_VT(result) = VT_BOOL;
    V_BOOL(result) = VARIANT_TRUE;
    return S_OK;
}
