// The texts of a line below the rows of a grid.
#pragma once

#include "common/text.h"

namespace qvx::flexgrid {

class CellFooter {
  public:
    // Returns the text below a column; "" for none. Called for columns that are drawn.
    virtual Text TextOf(int col) const = 0;

  protected:
    ~CellFooter() = default;
};

}  // namespace qvx::flexgrid
