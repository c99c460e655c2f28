// The prompt for the administrator's password of a database that is about to be replaced.
#pragma once

#include <windows.h>

#include "controls/backup/dialog_layout.h"
#include "controls/backup/modal_form_window.h"
#include "controls/backup/password.h"

namespace qvx::backup {

class PasswordDialog final : public ModalForm {
  public:
    // `stored` is called for every attempt.
    explicit PasswordDialog(PasswordSource stored) : stored_(std::move(stored)) {}
    ~PasswordDialog() override;

    // Shows the prompt over `owner` and returns whether the password was given; the window stays, hidden, until the
    // object is destroyed. An error from `stored` closes the prompt and is thrown on.
    bool Run(HWND owner);

  protected:
    void LayOut() override;
    void OnCloseBox() override { Finish(); }
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    bool Fill(HWND owner);
    HWND WindowOf(prompt::Item item) const;
    void Try();
    void Refuse();
    void ClearPassword() const;

    PasswordSource stored_;
    bool result_ = false;
    bool busy_ = false;
    std::exception_ptr error_;
    HWND notice_ = nullptr;
    HWND label_ = nullptr;
    HWND password_ = nullptr;
    buttons::ButtonWindow ok_;
    buttons::ButtonWindow cancel_;
};

}  // namespace qvx::backup
