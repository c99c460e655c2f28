// The Backup control as a form designer shows it: a small square with a disk on it.
#pragma once

#include "common/geometry.h"
#include "elements/surface/surface.h"

namespace qvx::backup {

// Twips; every other size is set back.
constexpr Size controlSize{270, 270};

void PaintControlPicture(Surface& surface, const Rect& area);

}  // namespace qvx::backup
