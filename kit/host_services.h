// What a control asks of its host, with the most sensible answer when the host does not offer it. Nothing here fails,
// because hosts that offer less are common.
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

// Reads a property of any late-bound object; nothing when the object has none of that name, refuses, or returns Empty.
std::optional<Variant> ReadMember(IDispatch* object, const wchar_t* name);
// Sets a property of any late-bound object; false when this fails.
bool WriteMember(IDispatch* object, const wchar_t* name, const Variant& value);

// Returns the product name from the host program's version resource, else its file name without extension.
Text ApplicationTitle();

class HostServices {
  public:
    // `site` is null while the control has none.
    void SetSite(IOleClientSite* site);
    // Both return references, because a call through the site may remove it.
    ComPtr<IOleClientSite> Site() const { return site_; }
    ComPtr<IOleControlSite> ControlSite() const { return controlSite_; }

    // Reads an ambient property; nothing when the host does not offer it.
    std::optional<Variant> Ambient(DISPID property) const;
    // Returns the control's name in the host: the ambient display name, else the extended control's name, else "".
    Text DisplayName() const;
    // Whether the form runs: false in a form designer, true when the host does not say.
    bool UserMode() const;
    // Returns the ambient font, or the default font.
    FontSpec Font() const;
    // Return the ambient colours; by default window background and window text, the defaults of the system's own
    // controls.
    OleColor BackColor() const;
    OleColor ForeColor() const;
    // Whether the host wants input to be ignored, as while its program is halted; false when it does not say.
    bool UiDead() const;

    // Returns the host's own object around the control (Name, Tag, TabIndex, Parent ...); null when there is none.
    ComPtr<IDispatch> Extended() const;
    // Returns the extended control's Tag; "" without one.
    Text Tag() const;
    // Sets the extended control's Tag; false when this fails.
    bool SetTag(const Text& tag) const;
    // Returns the position in the tab order; -1 when the host keeps none.
    int TabIndex() const;

    // Returns the form that holds the control; null when the host has no such object.
    ComPtr<IDispatch> Form() const;
    // Returns the form's Caption, else the title of the top-level window that holds `window` (may be null), else the
    // application's title.
    Text FormCaption(HWND window) const;
    // Returns the window that the control is on: its container's hWnd (the form's if it has no container), else the
    // window that the host gives its controls as parent, else the form's hWnd, else the parent of `window` (the
    // control's own, may be null). Null when there is none of this process.
    HWND ContainerWindow(HWND window) const;
    // Returns the form's hWnd, else the top-level window around ContainerWindow; null without either.
    HWND FormWindow(HWND window) const;
    // Returns the form's collection of controls; null when there is none.
    ComPtr<IDispatch> Controls() const;
    // Returns the name of the form's active control. Without such a form: the control's own display name while the
    // keyboard focus is inside `window`, else "".
    Text ActiveControlName(HWND window) const;
    // Whether the form's active control is this one: by its name, and by its index in an array of controls. Without
    // such a form: whether the keyboard focus is inside `window`.
    bool IsActiveControl(HWND window) const;
    // Returns the host's object around the control of that name; null when the form has none.
    ComPtr<IDispatch> ControlNamed(const Text& name) const;

  private:
    ComPtr<IDispatch> ActiveControl() const;

    ComPtr<IOleClientSite> site_;
    ComPtr<IOleControlSite> controlSite_;
    ComPtr<IDispatch> ambients_;
};

// Follows the host's font for a control that has not been given a font of its own.
class AmbientFont {
  public:
    void Remember(const HostServices& host) { font_ = host.Font(); }
    // Called when the host has another font. Returns it if the control has shown the host's previous font until now.
    std::optional<FontSpec> Followed(const HostServices& host, const FontSpec& shown) {
        const FontSpec before = std::exchange(font_, host.Font());
        return before == shown ? std::optional(font_) : std::nullopt;
    }

  private:
    FontSpec font_;  // as the host last gave it
};

}  // namespace qvx
