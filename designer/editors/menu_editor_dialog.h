// The menu editor: the form's menus as an indented list, and the fields of the one that is selected.
#pragma once

#include "designer/document/menu_edit.h"
#include "designer/editors/editor_dialog.h"

namespace qvx::host::designer {

class MenuEditor final : public EditorDialog {
  public:
    // `form` has the menus and the names that are taken. It outlives the dialog.
    explicit MenuEditor(const Block& form);
    const std::vector<MenuLine>& Lines() const { return lines_; }

  protected:
    void Build() override;
    HWND FirstField() const override;
    void OnCommand(int id, int notification) override;
    bool Accept() override;

  private:
    // The controls' identifiers.
    enum Id {
        list = 100,
        caption,
        name,
        index,
        shortcut,
        checked,
        enabled,
        visible,
        insert,
        remove,
        outdent,
        indent,
        up,
        down
    };

    void ShowList(std::size_t selected);
    void ShowLine();
    void TakeFields();
    std::size_t Selected() const;
    Text ItemText(const MenuLine& line) const;

    const Block& form_;
    std::vector<MenuLine> lines_;
    std::size_t current_ = 0;
    bool showing_ = false;
};

}  // namespace qvx::host::designer
