// Texts that cells show in place of those that they contain.
#pragma once

#include "common/text.h"

namespace qvx::flexgrid {

class CellTexts {
  public:
    // Returns what a cell of the column shows for a text that is not empty: that text, or another one that is put into
    // `scratch`. Called for cells that are not fixed.
    virtual TextView ShownText(int col, TextView text, Text& scratch) const = 0;

  protected:
    ~CellTexts() = default;
};

}  // namespace qvx::flexgrid
