// The site of a control, through which the control reaches its form.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include "com/untyped_dispatch.h"
#include "host/sited_control.h"

namespace qvx {

template <>
struct InterfaceTraits<IOleInPlaceSiteEx> {
    static bool Answers(REFIID iid) {
        return iid == __uuidof(IOleInPlaceSiteEx) || iid == __uuidof(IOleInPlaceSite) || iid == __uuidof(IOleWindow);
    }
};

}  // namespace qvx

namespace qvx::host {

// Its IDispatch answers the ambient properties.
class SitedControl::Site final : public ComObject<IOleClientSite, IOleInPlaceSiteEx, IOleControlSite, UntypedDispatch> {
  public:
    Site(SitedControl& control, HostForm& form) : control_(&control), form_(&form) {}
    // The control leaves the form. From then on, its calls of the site fail.
    void Forget() {
        control_ = nullptr;
        form_ = nullptr;
    }

    // IOleClientSite
    // The form is saved as a whole, by its user or its script; a control cannot ask for it alone.
    STDMETHODIMP SaveObject() override { return E_NOTIMPL; }
    STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
    STDMETHODIMP GetContainer(IOleContainer** container) override;
    STDMETHODIMP ShowObject() override { return S_OK; }
    STDMETHODIMP OnShowWindow(WINBOOL) override { return S_OK; }
    // Only documents that flow around their objects have a layout to make anew.
    STDMETHODIMP RequestNewObjectLayout() override { return E_NOTIMPL; }
    // IOleWindow
    STDMETHODIMP GetWindow(HWND* window) override;
    // No mode of asking for help by a click, as in the frame.
    STDMETHODIMP ContextSensitiveHelp(WINBOOL) override { return E_NOTIMPL; }
    // IOleInPlaceSite
    STDMETHODIMP CanInPlaceActivate() override { return form_ ? S_OK : S_FALSE; }
    STDMETHODIMP OnInPlaceActivate() override { return S_OK; }
    STDMETHODIMP OnUIActivate() override;
    STDMETHODIMP GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, LPRECT position,
                                  LPRECT clip, LPOLEINPLACEFRAMEINFO info) override;
    // A form does not scroll.
    STDMETHODIMP Scroll(SIZE) override { return E_NOTIMPL; }
    STDMETHODIMP OnUIDeactivate(WINBOOL) override { return S_OK; }
    STDMETHODIMP OnInPlaceDeactivate() override { return S_OK; }
    // The form keeps no undo of its own: there is nothing to discard, and nothing it could undo.
    STDMETHODIMP DiscardUndoState() override { return S_OK; }
    // The form has no undo to go back to, so that the control merely gives up the input.
    STDMETHODIMP DeactivateAndUndo() override;
    STDMETHODIMP OnPosRectChange(LPCRECT position) override;
    // IOleInPlaceSiteEx
    STDMETHODIMP OnInPlaceActivateEx(WINBOOL* noRedraw, DWORD flags) override;
    STDMETHODIMP OnInPlaceDeactivateEx(WINBOOL) override { return S_OK; }
    STDMETHODIMP RequestUIActivate() override { return form_ ? S_OK : S_FALSE; }
    // IOleControlSite
    STDMETHODIMP OnControlInfoChanged() override { return S_OK; }
    STDMETHODIMP LockInPlaceActive(WINBOOL) override { return S_OK; }
    STDMETHODIMP GetExtendedControl(IDispatch** extended) override;
    STDMETHODIMP TransformCoords(POINTL* himetric, POINTF* container, DWORD flags) override;
    STDMETHODIMP TranslateAccelerator(MSG* message, DWORD modifiers) override;
    STDMETHODIMP OnFocus(WINBOOL gotFocus) override;
    // The form shows property pages from its menu; a control that asks for them shows its own frame on this answer.
    STDMETHODIMP ShowPropertyFrame() override { return E_NOTIMPL; }
    // IDispatch
    STDMETHODIMP Invoke(DISPID member, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT* argumentInError) override;

  private:
    ~Site() override = default;

    SitedControl* control_;
    HostForm* form_;
};

}  // namespace qvx::host
