#include "controls/grid/projection.h"

#include <optional>

namespace qvx::grid {

bool Projection::OnDataCell() const {
    return grid_.Row() >= grid_.FixedRows() && grid_.Row() < grid_.Rows() && grid_.Col() >= grid_.FixedCols() &&
           grid_.Col() < grid_.Cols();
}

void Projection::TakeBack() {
    if (OnDataCell()) grid_.SetForeColorAndBoldOf(grid_.Row(), grid_.Col(), grid_.ForeColor(), false);
    shown_ = false;
}

void Projection::Show() {
    if (!state_.projectSelection || !state_.initialised || !OnDataCell()) return;
    grid_.SetForeColorAndBoldOf(grid_.Row(), grid_.Col(), grid_.ForeColorSel(),
                                state_.projectionBold ? std::optional(true) : std::nullopt);
    shown_ = true;
}

void Projection::Leave() {
    if (held_ == 0 && (shown_ || (state_.projectSelection && state_.initialised))) TakeBack();
}

void Projection::Enter() {
    if (held_ == 0) Show();
}

// A highlight that fails for lack of memory must not prevent the change of rows that it accompanies.
void Projection::Hold() noexcept {
    if (held_++ > 0 || !shown_) return;
    try {
        TakeBack();
    } catch (...) {
    }
}

void Projection::Release() noexcept {
    if (--held_ > 0) return;
    try {
        Show();
    } catch (...) {
    }
}

}  // namespace qvx::grid
