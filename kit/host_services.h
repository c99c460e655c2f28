// What a control asks of its host, with the nearest sensible answer when the host does not offer it. Nothing here
// fails: hosts that offer less are common.
#pragma once

#include <windows.h>

#include <ocidl.h>
#include <oleidl.h>

#include <optional>
#include <utility>

#include "com/pointer.h"
#include "com/variant.h"
#include "common/font_spec.h"
#include "common/ole_color.h"
#include "common/text.h"

namespace qvx {

// A property of any late-bound object; nothing when it has none of that name or refuses.
std::optional<Variant> ReadMember(IDispatch* object, const wchar_t* name);
// Sets one; false when it could not.
bool WriteMember(IDispatch* object, const wchar_t* name, const Variant& value);

// The product name from the host program's version resource, else its file name without extension.
Text ApplicationTitle();

class HostServices {
  public:
    // Null while the control has no site.
    void SetSite(IOleClientSite* site);
    // Owners, because a call through one may take the site away.
    ComPtr<IOleClientSite> Site() const { return site_; }
    ComPtr<IOleControlSite> ControlSite() const { return controlSite_; }

    // Ambient properties.
    std::optional<Variant> Ambient(DISPID property) const;
    // The control's name in the host: the ambient display name, else the extended control's name, else "".
    Text DisplayName() const;
    // False in a form designer; True when the host does not say.
    bool UserMode() const;
    FontSpec Font() const;
    // Window background and window text by default, as the system's own controls.
    OleColor BackColor() const;
    OleColor ForeColor() const;
    // True while the host wants no input taken, as when its program is halted.
    bool UiDead() const;

    // The host's own object around the control (Name, Tag, TabIndex, Parent ...); null when there is none.
    ComPtr<IDispatch> Extended() const;
    // The extended control's Tag; "" without one.
    Text Tag() const;
    bool SetTag(const Text& tag) const;
    // -1 when the host keeps no order.
    int TabIndex() const;

    // The form that holds the control; null when the host has no such object.
    ComPtr<IDispatch> Form() const;
    // The form's Caption, else the title of the top window that holds `window` (may be null), else the application's
    // title.
    Text FormCaption(HWND window) const;
    // The window that the control stands on: its container's hWnd, else the one that the host gives its windows to live
    // in, else the parent of `window` (the control's own, may be null). Null when there is none of this process.
    HWND ContainerWindow(HWND window) const;
    // The form's hWnd, else the top window around what the control stands on.
    HWND FormWindow(HWND window) const;
    // The form's collection of controls; null when there is none.
    ComPtr<IDispatch> Controls() const;
    // The name of the form's active control. Without such a form: the control's own display name while the keyboard
    // focus is inside `window`, else "".
    Text ActiveControlName(HWND window) const;
    // Whether the form's active control is this one: by its name, and by its index in an array of controls. Without
    // such a form: whether the keyboard focus is inside `window`.
    bool IsActiveControl(HWND window) const;
    // The host's object around the control of that name; null when the form has none.
    ComPtr<IDispatch> ControlNamed(const Text& name) const;

  private:
    ComPtr<IDispatch> ActiveControl() const;

    ComPtr<IOleClientSite> site_;
    ComPtr<IOleControlSite> controlSite_;
    ComPtr<IDispatch> ambients_;
};

// The host's font as a control follows it that has been given none of its own.
class AmbientFont {
  public:
    void Remember(const HostServices& host) { font_ = host.Font(); }
    // The host has another one: that, when what the control shows is the host's until now.
    std::optional<FontSpec> Followed(const HostServices& host, const FontSpec& shown) {
        const FontSpec before = std::exchange(font_, host.Font());
        return before == shown ? std::optional(font_) : std::nullopt;
    }

  private:
    FontSpec font_;  // as the host last gave it
};

}  // namespace qvx
