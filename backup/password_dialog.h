// The password prompt in front of a restore that would replace a database. Windows only.
#pragma once

#include "backup/backup_form.h"
#include "common/text.h"

namespace qvx::backup {

class PasswordDialog final : public FormWindow {
  public:
    ~PasswordDialog() override { Destroy(); }

    // Asks for the administrator's password of the database behind `connection` until it is given (true) or the user
    // gives up (false). The form is hidden then, and goes with the object.
    bool Ask(HWND owner, TextView connection);

  private:
    void OnOk() override;
    void OnCancel() override { Close(); }

    Text connection_;
    bool accepted_ = false;
    HWND field_ = nullptr;
    buttons::ButtonWindow ok_;
    buttons::ButtonWindow cancel_;
};

}  // namespace qvx::backup
