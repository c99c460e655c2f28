// Undoes calls that could not be completed.
#include <tuple>
#include <utility>

#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {

namespace {

template <class... Fields>
std::tuple<Fields...> CopyOf(const std::tuple<Fields&...>& fields) {
    return fields;
}

}  // namespace

struct Grid::Kept {
    explicit Kept(Grid& grid)
        : fields(CopyOf(grid.KeptFields())),
          watched(grid.store_.Observers().watch ? grid.store_.Observers().watch->Snapshot() : nullptr) {}
    decltype(CopyOf(std::declval<Grid&>().KeptFields())) fields;
    std::shared_ptr<void> watched;
};

Grid::AllOrNothing::AllOrNothing(Grid& grid, Reach reach) : grid_(grid), cursor_(grid.CurrentCursor()) {
    if (grid.isWhole_) {
        return;
    }
    if (reach == Reach::all) {
        kept_ = std::make_unique<Kept>(grid);
    }
    batch_.emplace(grid.store_, reach == Reach::all ? CellStore::Batch::Reach::rows : CellStore::Batch::Reach::texts);
    grid.isWhole_ = true;
}

void Grid::AllOrNothing::Commit() noexcept {
    if (batch_) {
        batch_->Commit();
        batch_.reset();
        grid_.isWhole_ = false;
    }
}

Grid::AllOrNothing::~AllOrNothing() {
    if (!batch_) {
        return;
    }
    grid_.isWhole_ = false;
    if (batch_->Dissolved()) {
        return;
    }
    batch_.reset();
    if (kept_) {
        grid_.KeptFields() = std::move(kept_->fields);
        if (grid_.store_.Observers().watch && kept_->watched) {
            grid_.store_.Observers().watch->Restore(kept_->watched);
        }
    }
    grid_.store_.Observers().Notify([](RowFollower& rows) { rows.RolledBack(); });
    grid_.PutCursorBack(cursor_);
}

}  // namespace qvx::flexgrid
