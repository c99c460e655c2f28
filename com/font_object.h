// Fonts as hosts hold them: the system's standard font object, and a property that keeps one.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <memory>

#include "com/pointer.h"
#include "common/font_spec.h"

namespace qvx {

// A new standard font object. Throws ComError.
ComPtr<IFontDisp> MakeFontObject(const FontSpec& value);

// What a font object says; the default font for null and for what an object refuses to say.
FontSpec ReadFontObject(IUnknown* font);

// A font property. Hosts change the object behind it (`Font.Bold = True`) and expect the control to follow, so it
// listens. `changed` is called after any change, whoever makes it.
class FontProperty {
  public:
    explicit FontProperty(std::function<void()> changed);
    ~FontProperty();
    FontProperty(const FontProperty&) = delete;
    FontProperty& operator=(const FontProperty&) = delete;

    const FontSpec& Value() const { return value_; }
    // Replaces the object by a new one; `changed` is not called.
    void Load(const FontSpec& value);

    // The object itself, made at first use; with a reference for the caller. Throws ComError.
    IFontDisp* Get();
    // Takes a copy of the value (`copy`, a property put) or shares the object (a property set). Null is refused with
    // run-time error 380.
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
