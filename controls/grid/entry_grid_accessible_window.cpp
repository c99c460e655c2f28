// The information for assistive programs about a grid for data entry beyond its cells.
#include "controls/grid/entry_grid_window.h"

namespace qvx::grid {

class EntryGrid::AccessibleEditing final : public flexgrid::AccessibleHost {
  public:
    explicit AccessibleEditing(EntryGrid& owner) : owner_(owner) {}

    Text AccessibleName() override { return owner_.events_.AccessibleName(); }
    bool IsEditable(int row, int col) override { return MayEdit(owner_.Model(), owner_.state_, row, col); }
    std::optional<Text> EditedText(int row, int col) override {
        const ControlState& state = owner_.state_;
        if (!owner_.EditIsOpen() || state.editing || state.editRow != row || state.editCol != col) return std::nullopt;
        const ComboWindow* combo = owner_.frame_ ? owner_.frame_->Find(owner_.editor_) : nullptr;
        return combo && owner_.frame_->Shown() ? std::optional(combo->GetText()) : std::nullopt;
    }
    Text DescriptionOf(int row, int col) override {
        return owner_.state_.markInvalid ? Text(owner_.marks_.MessageOf(row, col)) : Text();
    }
    bool BeginEdit() override {
        const auto keep = owner_.events_.KeepAlive();
        return owner_.OpenEditor();
    }
    bool EnterText(TextView text) override {
        const auto keep = owner_.events_.KeepAlive();
        owner_.TypeIntoCell(text);
        if (!owner_.EditIsOpen()) return false;
        owner_.EndEdit();
        return true;
    }

  private:
    EntryGrid& owner_;
};

std::unique_ptr<flexgrid::AccessibleHost> EntryGrid::MakeAccessible() {
    auto accessible = std::make_unique<AccessibleEditing>(*this);
    window_->Accessibility().SetHost(accessible.get());
    return accessible;
}

}  // namespace qvx::grid
