// The block of a font in the form file.
#pragma once

#include <memory>

#include "common/font_spec.h"
#include "host/saved_properties.h"

namespace qvx::host {

// The class identifier after "BeginProperty Font".
constexpr TextView fontClassId = u"{0BE35203-8F91-11CE-9DE3-00AA004BB851}";

// The font of a form whose file names none.
FontSpec DefaultFont();

// Whether a property group is a font: it says so by its class identifier, or says nothing.
bool IsFontBlock(const Block& group);

// What the block leaves out, or gives a size for that no font has, comes from `base`.
FontSpec ReadFont(const Block& block, const FontSpec& base);
std::shared_ptr<SavedGroup> SaveFont(const FontSpec& font);

}  // namespace qvx::host
