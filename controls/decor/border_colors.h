// The colours of the windows that have a flat border, and what is painted with them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "common/keyed_collection.h"
#include "common/ole_color.h"
#include "common/text.h"

namespace qvx::decor {

struct BorderColors {
    OleColor inner = Rgb(0, 0, 0);
    OleColor outer = Rgb(250, 251, 208);
    friend bool operator==(const BorderColors&, const BorderColors&) = default;
};

// A frame at the edge of the whole window.
struct BorderBand {
    OleColor color;
    int width;  // device pixels at any resolution
    friend bool operator==(const BorderBand&, const BorderBand&) = default;
};

// In the order of painting: the narrow band goes over the edge of the wide one.
std::array<BorderBand, 2> BorderBands(const BorderColors& colors);

// What a window's colours are kept under: its handle in decimal digits and "_".
Text WindowKey(std::int32_t window);

// The colours of all windows with a border, by the windows' handles.
class BorderTable {
  public:
    // In place of those that the window has.
    void Set(std::int32_t window, const BorderColors& colors);
    // Nothing for a window that has none.
    void Remove(std::int32_t window);
    std::optional<BorderColors> Find(std::int32_t window) const;
    bool Empty() const { return !inner_; }

  private:
    // Both have the same keys; there are none without a window.
    std::optional<KeyedCollection<OleColor>> inner_;
    std::optional<KeyedCollection<OleColor>> outer_;
};

}  // namespace qvx::decor
