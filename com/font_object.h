// Fonts as hosts use them: the system's standard font object, and a property that contains one.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <memory>

#include "com/pointer.h"
#include "common/font_spec.h"

namespace qvx {

// Creates a new standard font object. Throws ComError.
ComPtr<IFontDisp> MakeFontObject(const FontSpec& value);

// Reads the values of a font object; null, and every value that the object fails to return, gives the default font's
// value.
FontSpec ReadFontObject(IUnknown* font);

// A font property. Hosts change its object (`Font.Bold = True`) and expect the control to follow, so the property
// listens to the object. `changed` is called after any change, whoever makes it.
class FontProperty {
  public:
    explicit FontProperty(std::function<void()> changed);
    ~FontProperty();
    FontProperty(const FontProperty&) = delete;
    FontProperty& operator=(const FontProperty&) = delete;

    const FontSpec& Value() const { return value_; }
    // Replaces the object by a new one; `changed` is not called.
    void Load(const FontSpec& value);

    // Returns the object itself, with a reference for the caller; creates it at first use. Throws ComError.
    IFontDisp* Get();
    // Copies the value (`copy`, a property put) or shares the object (a property set). Throws run-time error 380 for
    // null.
    void Set(IFontDisp* font, bool copy);

  private:
    class Listener;
    void Attach(ComPtr<IFontDisp> font);
    void Detach();
    void OnObjectChanged();

    std::function<void()> changed_;
    FontSpec value_;
    ComPtr<IFontDisp> object_;
    ComPtr<Listener> listener_;
    ComPtr<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

}  // namespace qvx
