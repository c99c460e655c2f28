#include "widgets/button/button_accessible_object.h"

#include <utility>

#include "com/guard.h"
#include "widgets/button/accessible_button.h"
#include "widgets/button/push_element_win32.h"
#include "win/accessible.h"
#include "win/gdi_surface.h"

namespace qvx::buttons {

namespace {

static_assert(accessibleButtonRole == ROLE_SYSTEM_PUSHBUTTON && accessible_state::hasPopup == STATE_SYSTEM_HASPOPUP);

class ButtonObject final : public AccessibleObject {
  public:
    explicit ButtonObject(std::shared_ptr<PushElement*> link) : link_(std::move(link)) {}

  protected:
    HWND LiveWindow() const override { return *link_ ? (*link_)->WindowHandle() : nullptr; }
    std::optional<Text> Name(long child) override { return AccessibleName(Look(child)); }
    std::optional<Text> Shortcut(long child) override { return AccessibleShortcut(Look(child)); }
    std::optional<Text> DefaultAction(long child) override {
        return Look(child).enabled ? std::optional<Text>(u"Press") : std::nullopt;
    }
    long Role(long child) override { return Look(child), accessibleButtonRole; }
    long State(long child) override {
        const long hidden = IsWindowVisible(LiveWindow()) ? 0 : STATE_SYSTEM_INVISIBLE;
        return AccessibleState(Look(child).enabled, GetFocus() == LiveWindow(), (*link_)->HasPopup()) | hidden;
    }
    Rect Location(long child) override {
        Look(child);
        RECT area{};
        GetWindowRect(LiveWindow(), &area);
        return FromRECT(area);
    }
    Variant HitTest(Point screen) override {
        return Location(CHILDID_SELF).Contains(screen) ? Variant(static_cast<long>(CHILDID_SELF)) : Variant();
    }
    Variant Focus() override {
        return GetFocus() == LiveWindow() ? Variant(static_cast<long>(CHILDID_SELF)) : Variant();
    }
    void Select(long flags, long child) override {
        if (flags != SELFLAG_TAKEFOCUS || !Look(child).enabled) throw ComError(E_INVALIDARG);
        SetFocus(LiveWindow());
    }
    void DoDefaultAction(long child) override {
        if (!Look(child).enabled) throw ComError(DISP_E_MEMBERNOTFOUND);
        PostMessageW(LiveWindow(), ButtonAccessibility::pressMessage, 0, 0);
    }

  private:
    ~ButtonObject() override = default;

    // A button has no children.
    const PushLook& Look(long child) const {
        if (child != CHILDID_SELF) throw ComError(E_INVALIDARG);
        return (*link_)->Look();
    }

    std::shared_ptr<PushElement*> link_;
};

}  // namespace

std::optional<LRESULT> ButtonAccessibility::Answer(WPARAM wParam, LPARAM lParam) {
    return AnswerGetObject(wParam, lParam, [this] { return ComPtr<IAccessible>(MakeObject<ButtonObject>(link_)); });
}

}  // namespace qvx::buttons
