#include "host/control_site_object.h"

#include <olectl.h>

#include "com/guard.h"
#include "com/variant.h"
#include "common/himetric.h"
#include "host/form_object.h"
#include "host/form_window.h"

namespace qvx::host {

namespace {

// The form's window as the frame of the active control. It offers no room for tool bars.
class Frame final : public ComObject<IOleInPlaceFrame> {
  public:
    explicit Frame(HWND window) : window_(window) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (object && (iid == IID_IOleInPlaceUIWindow || iid == IID_IOleWindow)) {
            *object = static_cast<IOleInPlaceFrame*>(this);
            AddRef();
            return S_OK;
        }
        return ComObject::QueryInterface(iid, object);
    }
    STDMETHODIMP GetWindow(HWND* window) override {
        if (!window) return E_POINTER;
        *window = window_;
        return S_OK;
    }
    // The answer of a frame without a mode of asking for help by a click. Forms have tool tips instead.
    STDMETHODIMP ContextSensitiveHelp(WINBOOL) override { return E_NOTIMPL; }
    STDMETHODIMP GetBorder(LPRECT) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP RequestBorderSpace(LPCBORDERWIDTHS) override { return INPLACE_E_NOTOOLSPACE; }
    STDMETHODIMP SetBorderSpace(LPCBORDERWIDTHS) override { return S_OK; }
    STDMETHODIMP SetActiveObject(IOleInPlaceActiveObject*, LPCOLESTR) override { return S_OK; }
    // This answer says that controls put nothing into the form's menu.
    STDMETHODIMP InsertMenus(HMENU, LPOLEMENUGROUPWIDTHS) override { return E_NOTIMPL; }
    STDMETHODIMP SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
    // Controls have put no menus in, so that there are none to remove.
    STDMETHODIMP RemoveMenus(HMENU) override { return E_NOTIMPL; }
    STDMETHODIMP SetStatusText(LPCOLESTR) override { return S_OK; }
    STDMETHODIMP EnableModeless(WINBOOL) override { return S_OK; }
    STDMETHODIMP TranslateAccelerator(LPMSG, WORD) override { return S_FALSE; }

  private:
    ~Frame() override = default;
    HWND window_;
};

}  // namespace

STDMETHODIMP SitedControl::Site::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
    if (moniker) *moniker = nullptr;
    // The answer of sites whose objects are never linked to from outside, as a form's controls are not.
    return E_NOTIMPL;
}

STDMETHODIMP SitedControl::Site::GetContainer(IOleContainer** container) {
    if (!container) return E_POINTER;
    *container = nullptr;
    if (!form_) return E_NOINTERFACE;
    return form_->Automation()->QueryInterface(IID_IOleContainer, reinterpret_cast<void**>(container));
}

STDMETHODIMP SitedControl::Site::GetWindow(HWND* window) {
    if (!window) return E_POINTER;
    *window = control_ ? form_->ParentWindow(*control_) : nullptr;
    return *window ? S_OK : E_FAIL;
}

STDMETHODIMP SitedControl::Site::OnUIActivate() { return S_OK; }

STDMETHODIMP SitedControl::Site::DeactivateAndUndo() {
    return Guard([&]() -> HRESULT {
        if (!control_) return E_UNEXPECTED;
        control_->OnLeft();
        return S_OK;
    });
}

STDMETHODIMP SitedControl::Site::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document,
                                                  LPRECT position, LPRECT clip, LPOLEINPLACEFRAMEINFO info) {
    return Guard([&]() -> HRESULT {
        if (!frame || !document || !position || !clip || !info) return E_POINTER;
        *frame = nullptr;
        *document = nullptr;
        if (!control_) return E_UNEXPECTED;
        *frame = MakeObject<Frame>(form_->Handle()).detach();
        *position = *clip = control_->PixelBounds();
        info->fMDIApp = FALSE;
        info->hwndFrame = form_->Handle();
        info->haccel = nullptr;
        info->cAccelEntries = 0;
        return S_OK;
    });
}

STDMETHODIMP SitedControl::Site::OnPosRectChange(LPCRECT position) {
    return Guard([&]() -> HRESULT {
        if (!position) return E_POINTER;
        if (!control_) return E_UNEXPECTED;
        const RECT present = control_->PixelBounds();
        TwipsRect bounds = control_->Bounds();
        const Dpi dpi = form_->FormDpi();
        // A position that is the same in pixels keeps its twips, since a pixel has several.
        const auto take = [](int& twips, LONG before, LONG now, int dots) {
            if (now != before) twips = PixelsToTwips(static_cast<int>(now), dots);
        };
        take(bounds.left, present.left, position->left, dpi.x);
        take(bounds.top, present.top, position->top, dpi.y);
        take(bounds.width, present.right - present.left, position->right - position->left, dpi.x);
        take(bounds.height, present.bottom - present.top, position->bottom - position->top, dpi.y);
        control_->Move(bounds);
        return S_OK;
    });
}

STDMETHODIMP SitedControl::Site::OnInPlaceActivateEx(WINBOOL* noRedraw, DWORD) {
    if (noRedraw) *noRedraw = FALSE;
    return S_OK;
}

STDMETHODIMP SitedControl::Site::GetExtendedControl(IDispatch** extended) {
    if (!extended) return E_POINTER;
    *extended = control_ ? control_->Extended() : nullptr;
    if (!*extended) return E_FAIL;
    (*extended)->AddRef();
    return S_OK;
}

STDMETHODIMP SitedControl::Site::TransformCoords(POINTL* himetric, POINTF* container, DWORD flags) {
    if (!himetric || !container) return E_POINTER;
    // The form counts in twips.
    if (flags & XFORMCOORDS_HIMETRICTOCONTAINER) {
        container->x = static_cast<float>(himetric->x) * twipsPerInch / himetricPerInch;
        container->y = static_cast<float>(himetric->y) * twipsPerInch / himetricPerInch;
        return S_OK;
    }
    if (flags & XFORMCOORDS_CONTAINERTOHIMETRIC) {
        himetric->x = ScaleRounded(static_cast<int>(container->x), himetricPerInch, twipsPerInch);
        himetric->y = ScaleRounded(static_cast<int>(container->y), himetricPerInch, twipsPerInch);
        return S_OK;
    }
    return E_INVALIDARG;
}

STDMETHODIMP SitedControl::Site::TranslateAccelerator(MSG* message, DWORD modifiers) {
    return Guard([&]() -> HRESULT {
        if (!message) return E_POINTER;
        MSG copy = *message;
        // The bits are those of key events.
        return form_ && form_->Keyboard().HandleKey(copy, static_cast<int>(modifiers)) ? S_OK : S_FALSE;
    });
}

STDMETHODIMP SitedControl::Site::OnFocus(WINBOOL gotFocus) {
    return Guard([&] {
        if (form_ && gotFocus) form_->Keyboard().FollowFocus();
    });
}

STDMETHODIMP SitedControl::Site::Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                        UINT*) {
    return Guard([&]() -> HRESULT {
        if (!result) return E_POINTER;
        if (!control_) return DISP_E_MEMBERNOTFOUND;
        Variant value;
        switch (member) {
            case DISPID_AMBIENT_USERMODE:
                value = Variant(!form_->DesignMode());
                break;
            case DISPID_AMBIENT_DISPLAYNAME:
                value = Variant(control_->Name());
                break;
            case DISPID_AMBIENT_FONT: {
                const auto font = ComPtr<IFontDisp>::Adopt(form_->Font().Get());
                value = Variant(static_cast<IDispatch*>(font.get()));
                break;
            }
            case DISPID_AMBIENT_BACKCOLOR:
                value = Variant(static_cast<long>(form_->BackColor()));
                break;
            case DISPID_AMBIENT_FORECOLOR:
                value = Variant(static_cast<long>(form_->ForeColor()));
                break;
            case DISPID_AMBIENT_LOCALEID:
                value = Variant(static_cast<long>(GetUserDefaultLCID()));
                break;
            case DISPID_AMBIENT_SCALEUNITS:
                value = Variant(u"Twip");
                break;
            case DISPID_AMBIENT_UIDEAD:
            case DISPID_AMBIENT_SHOWGRABHANDLES:
            case DISPID_AMBIENT_SHOWHATCHING:
            case DISPID_AMBIENT_DISPLAYASDEFAULT:
                value = Variant(member == DISPID_AMBIENT_DISPLAYASDEFAULT && control_->IsDefault());
                break;
            case DISPID_AMBIENT_SUPPORTSMNEMONICS:
            case DISPID_AMBIENT_MESSAGEREFLECT:
                value = Variant(member == DISPID_AMBIENT_SUPPORTSMNEMONICS);
                break;
            default:
                return DISP_E_MEMBERNOTFOUND;
        }
        *result = value.detach();
        return S_OK;
    });
}

}  // namespace qvx::host
