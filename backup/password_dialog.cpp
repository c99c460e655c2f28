#include "backup/password_dialog.h"

#include "backup/dialog_layout.h"
#include "backup/password.h"
#include "backup/password_source_win32.h"
#include "common/run_time_error.h"
#include "forms/msgbox/show_message.h"
#include "server/error_report.h"
#include "win/wide.h"

namespace qvx::backup {

bool PasswordDialog::Ask(HWND owner, TextView connection) {
    connection_ = connection;
    accepted_ = false;
    if (!Open(owner, prompt::form, prompt::client)) return false;
    Add(L"STATIC", prompt::explanation, SS_LEFT | SS_NOPREFIX, prompt::explanationPlace);
    Add(L"STATIC", prompt::label, SS_LEFT, prompt::labelPlace);
    field_ = Add(L"EDIT", {}, WS_TABSTOP | ES_PASSWORD | ES_AUTOHSCROLL, prompt::password, 0, WS_EX_CLIENTEDGE);
    if (!Add(ok_, prompt::ok, prompt::okPlace, IDOK) || !Add(cancel_, prompt::cancel, prompt::cancelPlace, IDCANCEL)) {
        return false;
    }
    ok_.Button().onClick = [this] { OnOk(); };
    cancel_.Button().onClick = [this] { OnCancel(); };
    RunModal();
    if (Handle()) SetWindowTextW(field_, L"");
    Wipe(connection_);
    return accepted_;
}

void PasswordDialog::OnOk() {
    Text typed = WindowText(field_);
    try {
        accepted_ = AcceptsPassword(AdministratorPassword(connection_), typed);
        Wipe(typed);
        if (accepted_) {
            Close();
            return;
        }
        namespace messages = msgbox::messages;
        msgbox::ShowMessage(Handle(), messages::invalidPasswordPrompt, messages::invalidPassword,
                            Text(messages::invalidPasswordTitle));
    } catch (...) {
        Wipe(typed);
        const RunTimeError error = CurrentError();
        ShowErrorReport(Handle(), error.Number(), error.Description());
    }
    SetFocus(field_);
    SendMessageW(field_, EM_SETSEL, 0, -1);
}

}  // namespace qvx::backup
