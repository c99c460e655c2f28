// Finding and replacing in a grid for data entry: the keys and the bar of its user, and the methods of its host.
#include <limits>

#include "common/flag_scope.h"
#include "common/locale.h"
#include "controls/grid/entry_grid_finder_window.h"
#include "controls/grid/replace_cells.h"

namespace qvx::grid {
namespace {

// Ends a slice of counting before it holds up typing.
class CountingSlice {
  public:
    CountingSlice() {
        QueryPerformanceFrequency(&frequency_);
        QueryPerformanceCounter(&start_);
    }
    bool GoOn() const {
        constexpr LONGLONG slices = 60;  // to a second
        LARGE_INTEGER now;
        QueryPerformanceCounter(&now);
        return (now.QuadPart - start_.QuadPart) * slices < frequency_.QuadPart;
    }

  private:
    LARGE_INTEGER frequency_{};
    LARGE_INTEGER start_{};
};

constexpr UINT nextSlice = 10;      // milliseconds: keys and painting come first
constexpr UINT afterEditing = 250;  // the text of an open edit is not in its cell

long CountToLong(std::int64_t count) {
    return static_cast<long>(std::min<std::int64_t>(count, std::numeric_limits<long>::max()));
}

}  // namespace

// ---- The bar -------------------------------------------------------------------------------------------------------

void EntryGrid::Finder::Act(FindAction action) {
    owner_.CommitOpenEdit();
    if (owner_.EditIsOpen()) return;
    if (action == FindAction::Find || action == FindAction::Replace) {
        Open(action == FindAction::Replace);
    } else if (search_.Empty()) {
        Open(false);
    } else {
        Step(action == FindAction::Next);
    }
}

void EntryGrid::Finder::Open(bool replaces) {
    const bool wasOpen = bar_.IsOpen();
    const HWND control = owner_.events_.ControlWindow();
    if (!bar_.Open(control, owner_.Model().RightToLeft(), replaces || (wasOpen && bar_.Replaces()))) {
        MessageBeep(MB_OK);
        return;
    }
    owner_.LayOut();
    if (!wasOpen) {
        anchor_ = Cursor();
        moves_ = false;
        Look();
        owner_.window_->ShowHits(this);
        owner_.window_->ScrollIntoView(owner_.Model().Row(), owner_.Model().Col());
    }
    // The text that is searched already can be typed over.
    if (bar_.IsOpen()) bar_.Focus(replaces && !search_.Empty() ? BarPart::With : BarPart::Text);
    GoOn();
}

void EntryGrid::Finder::Close() {
    if (!bar_.IsOpen()) return;
    if (bar_.HasFocus()) SetFocus(owner_.window_->Handle());
    bar_.Hide();
    search_.StopCounting();
    owner_.window_->ShowHits(nullptr);
    owner_.LayOut();
}

void EntryGrid::Finder::Detach() {
    bar_.Hide();
    bar_.Destroy();
    owner_.window_->ShowHits(nullptr);
}

int EntryGrid::Finder::Place(Size control) {
    return bar_.Place(control, owner_.Model().Font(), owner_.Model().Metrics().Resolution());
}

void EntryGrid::Finder::Look() {
    SearchOptions options;
    options.matchCase = bar_.IsChosen(BarPart::MatchCase);
    options.wholeCell = bar_.IsChosen(BarPart::WholeCell);
    options.dotlessI = SystemHasDotlessI();
    if (bar_.IsChosen(BarPart::InColumn)) options.column = owner_.Model().Col();
    search_.Look(bar_.TextOf(BarPart::Text), options);
    stale_ = true;
    keepsStatus_ = false;
}

void EntryGrid::Finder::BarChanged() {
    owner_.Reporting([this] {
        Look();
        owner_.window_->ShowHits(this);
        moves_ = true;
        GoOn();
    });
}

void EntryGrid::Finder::GoOn() {
    if (!bar_.IsOpen()) return;
    if (owner_.EditIsOpen()) {
        bar_.StartTimer(afterEditing);
        return;
    }
    if (stale_) {
        search_.StartCounting(anchor_.row);
        stale_ = false;
    }
    const CountingSlice slice;
    const bool complete = search_.Count([&] { return slice.GoOn(); });
    if (moves_) FollowText();
    // Handlers of the cursor's events may have closed the bar, and may have changed cells.
    if (!bar_.IsOpen()) return;
    if (!complete || stale_) bar_.StartTimer(nextSlice);
    if (keepsStatus_) return;
    bar_.SetStatus(HitText({!search_.Empty(), search_.Counted(), search_.NumberOf(Cursor()), search_.Total()}));
}

// Moves to the first hit from the anchor on once it is known.
void EntryGrid::Finder::FollowText() {
    const CellSearch::NextHit next = search_.Next(anchor_, true, true, true);
    if (!next.known) return;
    moves_ = false;
    if (!next.place || *next.place == Cursor()) return;
    const ValueScope moving(moving_, true);
    owner_.GoToHit(*next.place);
}

void EntryGrid::Finder::Step(bool forward) {
    moves_ = false;
    keepsStatus_ = false;
    const bool inColumn = search_.Options().column != SearchOptions::allColumns;
    if (inColumn && search_.Options().column != owner_.Model().Col() && bar_.Handle()) Look();
    const std::optional<CellPlace> place = search_.Next(Cursor(), forward).place;
    if (!place) {
        MessageBeep(MB_OK);
    } else if (*place != Cursor()) {
        owner_.GoToHit(*place);
    } else {
        owner_.window_->ScrollIntoView(place->row, place->col);
    }
    GoOn();
}

void EntryGrid::Finder::Replace(bool all) {
    const CellPlace cursor = Cursor();
    if (!all && !search_.IsHit(cursor.row, cursor.col)) {
        Step(true);
        return;
    }
    const Replacements done =
        owner_.ReplaceHits(search_, bar_.TextOf(BarPart::With), all ? std::nullopt : std::optional<CellPlace>(cursor));
    if (!bar_.IsOpen()) return;
    if (!all && done.refused == 0) {
        Step(true);
        return;
    }
    if (done.replaced == 0) MessageBeep(MB_OK);
    moves_ = false;
    keepsStatus_ = true;
    bar_.SetStatus(ReplacedText(done));
    GoOn();
}

void EntryGrid::Finder::BarAction(FindAction action) {
    owner_.Reporting([&] {
        owner_.CommitOpenEdit();
        switch (action) {
            case FindAction::Close:
                Close();
                break;
            case FindAction::Next:
            case FindAction::Previous:
                Step(action == FindAction::Next);
                break;
            case FindAction::ReplaceThis:
            case FindAction::ReplaceAll:
                Replace(action == FindAction::ReplaceAll);
                break;
            case FindAction::Find:
            case FindAction::Replace:
                Open(action == FindAction::Replace);
                break;
            default:
                break;
        }
    });
}

void EntryGrid::Finder::BarTimer() {
    owner_.Reporting([this] { GoOn(); });
}

// ---- What happens in the grid --------------------------------------------------------------------------------------

void EntryGrid::Finder::Invalidated(flexgrid::GridChange change, const flexgrid::CellRange& range) {
    if (!bar_.IsOpen()) return;
    switch (change) {
        case flexgrid::GridChange::texts:
            search_.RowsChanged(range.top, range.bottom);
            break;
        case flexgrid::GridChange::layout:
            search_.StopCounting();
            stale_ = true;
            break;
        case flexgrid::GridChange::look:
            if (!owner_.Model().Enabled()) {
                Close();
                return;
            }
            if (owner_.Model().RightToLeft() != bar_.RightToLeft())
                bar_.Open(GetParent(bar_.Handle()), owner_.Model().RightToLeft(), bar_.Replaces());
            owner_.LayOut();
            break;
        default:
            return;
    }
    keepsStatus_ = false;
    bar_.StartTimer(nextSlice);
}

void EntryGrid::Finder::CursorMoved() {
    if (!moving_) {
        anchor_ = Cursor();
        moves_ = false;
    }
    if (!bar_.IsOpen()) return;
    keepsStatus_ = false;
    bar_.StartTimer(nextSlice);
    // In a search of the current column, the column has changed.
    const int column = search_.Options().column;
    if (column == SearchOptions::allColumns || column == owner_.Model().Col()) return;
    Look();
    owner_.window_->ShowHits(this);
}

// ---- The grid for data entry ---------------------------------------------------------------------------------------

EntryGrid::Finder& EntryGrid::Finding() {
    if (!finder_) finder_ = std::make_unique<Finder>(*this);
    return *finder_;
}

void EntryGrid::LayOut() {
    const HWND control = window_->Handle() ? GetParent(window_->Handle()) : nullptr;
    RECT client{};
    if (control && GetClientRect(control, &client))
        Resize({static_cast<int>(client.right), static_cast<int>(client.bottom)});
}

void EntryGrid::SetFindBar(bool shown) {
    state_.findBar = shown;
    if (!shown && finder_) finder_->Close();
}

void EntryGrid::GoToHit(CellPlace place) {
    if (place.row >= Model().Rows() || place.col >= Model().Cols()) return;
    Model().MoveTo(place.row, place.col);
    window_->ScrollIntoView(Model().Row(), Model().Col());
}

Replacements EntryGrid::ReplaceHits(const CellSearch& search, TextView with, std::optional<CellPlace> only) {
    const CellSources sources = SourcesForCells();
    Replacements done;
    ChangeRows(
        [&] { done = ReplaceCells<EntryGridEvents>(Model(), state_, history_, events_, sources, search, with, only); });
    return done;
}

CellSearch EntryGrid::SearchFor(TextView text, SearchOptions options, bool inColumn) {
    CommitOpenEdit();
    options.dotlessI = SystemHasDotlessI();
    if (inColumn) options.column = Model().Col();
    CellSearch search(Model());
    search.Look(text, options);
    return search;
}

bool EntryGrid::Find(TextView text, const SearchOptions& options, bool inColumn, bool forward) {
    const auto keep = events_.KeepAlive();
    const CellSearch search = SearchFor(text, options, inColumn);
    const std::optional<CellPlace> place = search.Next({Model().Row(), Model().Col()}, forward).place;
    if (place && (place->row != Model().Row() || place->col != Model().Col())) GoToHit(*place);
    return place.has_value();
}

long EntryGrid::ReplaceAll(TextView text, TextView with, const SearchOptions& options, bool inColumn) {
    const auto keep = events_.KeepAlive();
    const CellSearch search = SearchFor(text, options, inColumn);
    return CountToLong(ReplaceHits(search, with, std::nullopt).replaced);
}

long EntryGrid::FindCount(TextView text, const SearchOptions& options, bool inColumn) {
    const auto keep = events_.KeepAlive();
    CellSearch search = SearchFor(text, options, inColumn);
    search.StartCounting(0);
    search.Count([] { return true; });
    return CountToLong(search.Total());
}

}  // namespace qvx::grid
