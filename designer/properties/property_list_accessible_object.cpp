#include "designer/properties/property_list_accessible_object.h"

#include "com/guard.h"
#include "designer/properties/property_rows_window.h"
#include "win/accessible.h"

namespace qvx::host::designer {

namespace {

// Items are numbered from 1, as the lines of the table are from 0.
class AccessibleRows final : public AccessibleObject {
  public:
    explicit AccessibleRows(PropertyRowsWindow& rows) : rows_(&rows), watch_(rows.Watch()) {}

  protected:
    HWND LiveWindow() const override { return watch_.Alive() ? rows_->Handle() : nullptr; }
    long ChildCount() override { return rows_->View().count; }
    std::optional<Text> Name(long child) override {
        if (child == CHILDID_SELF) return u"Properties";
        const PropertyRow* row = RowOf(child);
        return row ? row->info.name : LineOf(child).heading;
    }
    std::optional<Text> Value(long child) override {
        if (child == CHILDID_SELF || !RowOf(child)) return std::nullopt;
        return rows_->ValueText(static_cast<std::size_t>(child - 1));
    }
    std::optional<Text> DefaultAction(long child) override {
        if (child == CHILDID_SELF) return std::nullopt;
        return Text(RowOf(child) ? u"Edit" : LineOf(child).open ? u"Collapse" : u"Expand");
    }
    long Role(long child) override {
        if (child == CHILDID_SELF) return ROLE_SYSTEM_LIST;
        return Checked(child), ROLE_SYSTEM_LISTITEM;
    }
    long State(long child) override {
        const bool focused = GetFocus() == rows_->Handle() || rows_->Editing();
        if (child == CHILDID_SELF) return STATE_SYSTEM_FOCUSABLE;
        const PropertyRow* row = RowOf(child);
        const RowsView view = rows_->View();
        const Rect area = view.LineArea(static_cast<int>(child) - 1);
        long state = STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE;
        if (row && row->info.readOnly) state |= STATE_SYSTEM_READONLY;
        if (!row) state |= LineOf(child).open ? STATE_SYSTEM_EXPANDED : STATE_SYSTEM_COLLAPSED;
        if (area.bottom <= 0 || area.top >= view.client.height) state |= STATE_SYSTEM_OFFSCREEN;
        if (child - 1 == rows_->Current()) state |= STATE_SYSTEM_SELECTED | (focused ? STATE_SYSTEM_FOCUSED : 0);
        return state;
    }
    Rect Location(long child) override {
        const RowsView view = rows_->View();
        const Rect whole{0, 0, view.client.width, view.client.height};
        RECT area = ToRECT(child == CHILDID_SELF ? whole : view.LineArea(Checked(child)));
        MapWindowPoints(rows_->Handle(), nullptr, reinterpret_cast<POINT*>(&area), 2);
        return FromRECT(area);
    }
    Variant HitTest(Point screen) override {
        POINT at{screen.x, screen.y};
        ScreenToClient(rows_->Handle(), &at);
        const Point point{static_cast<int>(at.x), static_cast<int>(at.y)};
        const RowsView view = rows_->View();
        if (const auto line = view.LineAt(point)) return Variant(*line + 1);
        if (Rect{0, 0, view.client.width, view.client.height}.Contains(point)) return Variant(CHILDID_SELF);
        return {};
    }
    Variant Focus() override {
        const bool focused = GetFocus() == rows_->Handle() || rows_->Editing();
        return focused && rows_->Current() >= 0 ? Variant(rows_->Current() + 1) : Variant();
    }
    Variant Selection() override { return rows_->Current() >= 0 ? Variant(rows_->Current() + 1) : Variant(); }
    Variant Navigate(long direction, long child) override {
        const int count = rows_->View().count;
        const long to = direction == NAVDIR_FIRSTCHILD                           ? 1
                        : direction == NAVDIR_LASTCHILD                          ? count
                        : child == CHILDID_SELF                                  ? 0
                        : direction == NAVDIR_NEXT || direction == NAVDIR_DOWN   ? child + 1
                        : direction == NAVDIR_PREVIOUS || direction == NAVDIR_UP ? child - 1
                                                                                 : 0;
        return to >= 1 && to <= count ? Variant(to) : Variant();
    }
    void Select(long flags, long child) override {
        const int line = Checked(child);
        const LifeWatch watch = watch_;
        if (flags & SELFLAG_TAKEFOCUS) SetFocus(rows_->Handle());
        if (watch.Alive()) rows_->GoTo(line);
    }
    void DoDefaultAction(long child) override { rows_->Activate(Checked(child)); }

  private:
    ~AccessibleRows() override = default;

    int Checked(long child) const {
        if (child < 1 || child > rows_->View().count) throw ComError(E_INVALIDARG);
        return static_cast<int>(child) - 1;
    }
    const ListedProperties::Line& LineOf(long child) const {
        const auto line = static_cast<std::size_t>(Checked(child));
        return rows_->Model()->Table().Lines()[line];
    }
    const PropertyRow* RowOf(long child) const {
        const auto line = static_cast<std::size_t>(Checked(child));
        return rows_->Model()->Table().RowAt(line);
    }

    PropertyRowsWindow* rows_;
    LifeWatch watch_;
};

}  // namespace

ComPtr<IAccessible> MakeAccessibleRows(PropertyRowsWindow& rows) {
    return ComPtr<IAccessible>(MakeObject<AccessibleRows>(rows));
}

}  // namespace qvx::host::designer
