#include "widgets/flexgrid/flexgrid_accessible_object.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "com/guard.h"
#include "com/members.h"
#include "widgets/flexgrid/flexgrid_window.h"
#include "win/accessible.h"

namespace qvx::flexgrid {

namespace {

ComPtr<IDispatch> PartObject(const std::shared_ptr<AccessibleLink>& link, const AccessiblePart& part);

Variant Given(const ComPtr<IDispatch>& object) { return Variant(object.get()); }

// The grid, a row or a cell.
class GridPart final : public AccessibleObject {
  public:
    GridPart(std::shared_ptr<AccessibleLink> link, const AccessiblePart& part) : link_(std::move(link)), part_(part) {}

  protected:
    HWND LiveWindow() const override { return link_->window ? link_->window->Handle() : nullptr; }
    void CheckConnected() const override {
        AccessibleObject::CheckConnected();
        if (!HasPart(Model(), part_)) throw ComError(CO_E_OBJNOTCONNECTED);
    }
    ComPtr<IDispatch> Parent() override {
        if (part_.IsGrid()) return AccessibleObject::Parent();
        return PartObject(link_, part_.IsCell() ? AccessiblePart{part_.row, -1} : AccessiblePart{});
    }
    long ChildCount() override { return flexgrid::ChildCount(Model(), part_); }
    ComPtr<IDispatch> Child(long child) override {
        const auto part = ChildOf(Model(), part_, static_cast<int>(child));
        return part ? PartObject(link_, *part) : nullptr;
    }
    std::optional<Text> Name(long child) override {
        const AccessiblePart part = Target(child);
        if (!part.IsGrid()) return NameOf(Model(), part);
        const Text name = link_->host ? link_->host->AccessibleName() : Text();
        return name.empty() ? Text(u"Grid") : name;
    }
    std::optional<Text> Value(long child) override {
        const AccessiblePart part = Target(child);
        if (part.IsCell() && link_->host)
            if (auto edited = link_->host->EditedText(part.row, part.col)) return edited;
        return ValueOf(Model(), part);
    }
    std::optional<Text> Description(long child) override {
        const AccessiblePart part = Target(child);
        const Text text = part.IsCell() && link_->host ? link_->host->DescriptionOf(part.row, part.col) : Text();
        return text.empty() ? std::nullopt : std::optional(text);
    }
    std::optional<Text> DefaultAction(long child) override {
        return Model().Enabled() && IsEditable(Target(child)) ? std::optional<Text>(u"Edit") : std::nullopt;
    }
    long Role(long child) override { return RoleOf(Model(), Target(child)); }
    long State(long child) override {
        const AccessiblePart part = Target(child);
        const long hidden = IsWindowVisible(LiveWindow()) ? 0 : accessible_state::invisible;
        return StateOf(Model(), View(), part, IsEditable(part)) | hidden;
    }
    Rect Location(long child) override {
        RECT area = ToRECT(AreaOf(Model(), View(), Target(child)));
        MapWindowPoints(LiveWindow(), nullptr, reinterpret_cast<POINT*>(&area), 2);
        return FromRECT(area);
    }
    Variant HitTest(Point screen) override {
        POINT at{screen.x, screen.y};
        MapWindowPoints(nullptr, LiveWindow(), &at, 1);
        const auto part = PartAt(Model(), View(), part_, {static_cast<int>(at.x), static_cast<int>(at.y)});
        if (!part) return {};
        return *part == part_ ? Variant(static_cast<long>(CHILDID_SELF)) : Given(PartObject(link_, *part));
    }
    Variant Focus() override {
        const Grid& grid = Model();
        if (GetFocus() != LiveWindow()) return {};
        const bool hasCells = grid.Rows() > 0 && grid.Cols() > 0;
        const AccessiblePart focused = hasCells ? AccessiblePart{grid.Row(), grid.Col()} : AccessiblePart{};
        if (part_ == focused) return Variant(static_cast<long>(CHILDID_SELF));
        const bool inside = part_.IsGrid() || (part_.IsRow() && part_.row == focused.row);
        return inside ? Given(PartObject(link_, focused)) : Variant();
    }
    Variant Selection() override;
    Variant Navigate(long direction, long child) override {
        if (direction < NAVDIR_UP || direction > NAVDIR_LASTCHILD) throw ComError(E_INVALIDARG);
        const auto part = StepFrom(Model(), Target(child), static_cast<AccessibleStep>(direction));
        return part ? Given(PartObject(link_, *part)) : Variant();
    }
    void Select(long flags, long child) override {
        const AccessiblePart part = Target(child);
        FlexGridWindow& window = *link_->window;
        const auto held = window.Hold();
        const LifeWatch watch = window.Watch();
        const auto cursor = SelectPart(Model(), View(), part, flags);
        if (!cursor) throw ComError(E_INVALIDARG);
        if ((flags & accessible_select::takeFocus) != 0) SetFocus(window.Handle());
        // Event handlers may do anything to the grid or its window.
        if (watch.Alive()) window.Model().Select(*cursor);
        const bool extended = (flags & accessible_select::extendSelection) != 0;
        const Grid& grid = window.Model();
        if (watch.Alive())
            window.ScrollIntoView(extended ? grid.RowSel() : grid.Row(), extended ? grid.ColSel() : grid.Col());
    }
    void DoDefaultAction(long child) override {
        const auto held = GoToEdit(Target(child));
        if (!link_->host || !link_->host->BeginEdit()) throw ComError(E_FAIL);
    }
    void SetValue(long child, TextView value) override {
        const auto held = GoToEdit(Target(child));
        if (!link_->host || !link_->host->EnterText(value)) throw ComError(E_FAIL);
    }

  private:
    ~GridPart() override = default;

    const Grid& Model() const { return link_->window->Model(); }
    flexgrid::View View() const { return link_->window->SettledView(); }
    bool IsEditable(const AccessiblePart& part) const {
        return part.IsCell() && link_->host && link_->host->IsEditable(part.row, part.col);
    }
    AccessiblePart Target(long child) const {
        const auto part = child == CHILDID_SELF ? part_ : ChildOf(Model(), part_, static_cast<int>(child));
        if (!part) throw ComError(E_INVALIDARG);
        return *part;
    }
    // Moves the focus to the cell. The result keeps the window alive while the cell is edited.
    std::vector<std::shared_ptr<void>> GoToEdit(const AccessiblePart& part) {
        if (!Model().Enabled() || !IsEditable(part)) throw ComError(DISP_E_MEMBERNOTFOUND);
        auto held = link_->window->Hold();
        GridPart::Select(accessible_select::takeFocus, IdFor(part));
        const bool there = link_->window && AccessiblePart{Model().Row(), Model().Col()} == part;
        if (!there) throw ComError(E_FAIL);
        return held;
    }
    long IdFor(const AccessiblePart& part) const {
        return part == part_ ? CHILDID_SELF : part_.IsGrid() ? IdInGrid(Model(), part) : part.col + 1;
    }

    std::shared_ptr<AccessibleLink> link_;
    AccessiblePart part_;
};

ComPtr<IDispatch> PartObject(const std::shared_ptr<AccessibleLink>& link, const AccessiblePart& part) {
    return ComPtr<IDispatch>(MakeObject<GridPart>(link, part));
}

// Enumerates the parts that were selected when the client asked; each object is created when its turn comes.
class SelectionEnumerator final : public ComObject<IEnumVARIANT> {
  public:
    SelectionEnumerator(std::shared_ptr<AccessibleLink> link, const SelectedParts& parts, std::int64_t next = 0)
        : link_(std::move(link)), parts_(parts), next_(next) {}

    STDMETHODIMP Next(ULONG count, VARIANT* out, ULONG* fetched) override {
        return Guard([&]() -> HRESULT {
            if (fetched) *fetched = 0;
            Required(out);
            ULONG given = 0;
            for (; given < count && next_ < parts_.Count(); ++given) {
                out[given] = Given(PartObject(link_, parts_.At(next_))).detach();
                ++next_;
                if (fetched) *fetched = given + 1;
            }
            return given == count ? S_OK : S_FALSE;
        });
    }
    STDMETHODIMP Skip(ULONG count) override {
        const std::int64_t left = parts_.Count() - next_;
        next_ += std::min<std::int64_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override {
        next_ = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(IEnumVARIANT** out) override {
        return Guard([&] { *Required(out) = MakeObject<SelectionEnumerator>(link_, parts_, next_).detach(); });
    }

  private:
    ~SelectionEnumerator() override = default;

    std::shared_ptr<AccessibleLink> link_;
    SelectedParts parts_;
    std::int64_t next_;
};

Variant GridPart::Selection() {
    const SelectedParts parts = SelectedIn(Model(), part_);
    if (parts.Count() == 0) return {};
    if (parts.Count() == 1) return Given(PartObject(link_, parts.At(0)));
    const ComPtr<IUnknown> all(MakeObject<SelectionEnumerator>(link_, parts));
    return Variant(all.get());
}

DWORD EventOf(AccessibleEvent::Kind kind) {
    switch (kind) {
        case AccessibleEvent::Kind::reorder:
            return EVENT_OBJECT_REORDER;
        case AccessibleEvent::Kind::focus:
            return EVENT_OBJECT_FOCUS;
        case AccessibleEvent::Kind::selection:
            return EVENT_OBJECT_SELECTION;
        case AccessibleEvent::Kind::selectionWithin:
            return EVENT_OBJECT_SELECTIONWITHIN;
        case AccessibleEvent::Kind::nameChange:
            return EVENT_OBJECT_NAMECHANGE;
        default:
            return EVENT_OBJECT_VALUECHANGE;
    }
}

bool SomebodyListens() {
    return IsWinEventHookInstalled(EVENT_OBJECT_FOCUS) || IsWinEventHookInstalled(EVENT_OBJECT_SELECTION) ||
           IsWinEventHookInstalled(EVENT_OBJECT_VALUECHANGE) || IsWinEventHookInstalled(EVENT_OBJECT_REORDER) ||
           IsWinEventHookInstalled(EVENT_OBJECT_NAMECHANGE);
}

}  // namespace

GridAccessibility::GridAccessibility(FlexGridWindow& window)
    : link_(std::make_shared<AccessibleLink>(AccessibleLink{&window, nullptr})) {
    window.Model().AddListener(this);
}

GridAccessibility::~GridAccessibility() {
    link_->window->Model().RemoveListener(this);
    *link_ = {};
}

std::optional<LRESULT> GridAccessibility::Answer(WPARAM wParam, LPARAM lParam) {
    return AnswerGetObject(wParam, lParam,
                           [this] { return ComPtr<IAccessible>(MakeObject<GridPart>(link_, AccessiblePart{})); });
}

// Costs next to nothing while no client listens, and a flag for each change after the first one while a client does.
template <class NoteDown>
void GridAccessibility::Note(NoteDown note) {
    const bool pending = events_.Pending();
    const HWND window = link_->window->Handle();
    if (!window || (!pending && !SomebodyListens())) return;
    note();
    if (!pending && events_.Pending() && !PostMessageW(window, notifyMessage, 0, 0)) events_ = {};
}

void GridAccessibility::FocusCame() {
    Note([this] { events_.NoteFocus(); });
}

void GridAccessibility::ValueEntered(int row, int col) {
    Note([&] { events_.NoteValue(row, col); });
}

void GridAccessibility::RowColChange() {
    Note([this] { events_.NoteCursor(); });
}

void GridAccessibility::SelChange() { RowColChange(); }

void GridAccessibility::Invalidated(GridChange change, const CellRange& range) {
    if (change == GridChange::layout) {
        Note([this] { events_.NoteStructure(); });
    } else if (change == GridChange::texts) {
        const Grid& grid = link_->window->Model();
        if (AccessibleEvents::Concerned(grid, range)) Note([&] { events_.NoteTexts(grid, range); });
    }
}

void GridAccessibility::NotifyNow() {
    FlexGridWindow& window = *link_->window;
    const Grid& grid = window.Model();
    const HWND handle = window.Handle();
    const bool edited = link_->host && link_->host->EditedText(grid.Row(), grid.Col()).has_value();
    // Clients inside this process may do anything.
    const LifeWatch watch = window.Watch();
    std::vector<AccessibleEvent> events;
    try {
        events = events_.Take(grid, GetFocus() == handle, edited);
    } catch (const std::bad_alloc&) {
        // Otherwise neither the pending events nor any later ones would ever be sent.
        events_ = {};
    }
    for (const AccessibleEvent& event : events)
        if (watch.Alive()) NotifyAssistive(EventOf(event.kind), window.Handle(), event.childId);
}

}  // namespace qvx::flexgrid
