// The window of the dialog that backs up or restores a database; its owner provides the actions of its buttons.
#pragma once

#include <windows.h>

#include <functional>

#include "controls/backup/dialog_layout.h"
#include "controls/backup/modal_form_window.h"
#include "controls/backup/steps.h"
#include "widgets/textbox/text_box_window.h"
#include "win/accessible.h"
#include "win/tool_tip.h"

namespace qvx::backup {

class BackupDialog final : public ModalForm, private TextBoxListener {
  public:
    // The actions of the Browse and the OK button, which get the contents of the fields and display their changes with
    // Refresh. While one of them runs, the dialog accepts no input, and keys and clicks are dropped.
    std::function<void(FormState&)> onBrowse;
    std::function<void(FormState&)> onRun;

    explicit BackupDialog(Mode mode) : mode_(mode) {}
    ~BackupDialog() override { Destroy(); }

    // Shows the dialog over `owner`'s top-level window (may be null) and returns when it is closed, or when its owner
    // or the program ends meanwhile.
    void Run(HWND owner);
    // Displays the contents of the fields at once.
    void Refresh(const FormState& form);
    // Paints pending updates, while no message is handled.
    void Repaint() const;

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void LayOut() override;
    void OnCloseBox() override;

  private:
    // The notification does not say which field has changed; both are updated.
    void TextBoxChange() override;
    void TextBoxKeyPress(int& character) override;

    bool Fill(HWND owner);
    bool AddField(TextBoxWindow& field, TextView name);
    HWND WindowOf(form::Item item) const;
    void ShowGroupName(bool shown);
    bool EmailChecked() const;
    void EnableOk();
    FormState Contents() const;
    void Operate(const std::function<void(FormState&)>& work);
    void DropInput() const;

    const Mode mode_;
    bool busy_ = false;
    HWND frame_ = nullptr;
    TextBoxWindow location_{*this};
    buttons::ButtonWindow browse_;
    HWND email_ = nullptr;
    HWND groupLabel_ = nullptr;
    TextBoxWindow groupName_{*this};
    HWND outcome_ = nullptr;
    ToolTip outcomeTip_;
    buttons::ButtonWindow ok_;
    buttons::ButtonWindow cancel_;
};

}  // namespace qvx::backup
