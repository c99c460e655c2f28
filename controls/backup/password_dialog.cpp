#include "controls/backup/password_dialog.h"

#include <exception>
#include <utility>

#include "common/flag_scope.h"
#include "dialogs/show_message_dialog.h"
#include "win/window_text.h"

namespace qvx::backup {

PasswordDialog::~PasswordDialog() { Destroy(); }

bool PasswordDialog::Fill(HWND owner) {
    if (!Open(owner, prompt::caption)) return false;
    notice_ = AddControl(L"STATIC", prompt::Caption(prompt::Item::notice), SS_LEFT | SS_NOPREFIX);
    // The label is directly before the field, which it names and whose access key it shows.
    label_ = AddControl(L"STATIC", prompt::Caption(prompt::Item::label), SS_LEFT);
    password_ = AddControl(L"EDIT", {}, ES_PASSWORD | ES_AUTOHSCROLL | WS_TABSTOP, WS_EX_CLIENTEDGE);
    return notice_ && label_ && password_ &&
           AddButton(ok_, IDOK, prompt::Caption(prompt::Item::ok), [this] { Try(); }) &&
           AddButton(cancel_, IDCANCEL, prompt::Caption(prompt::Item::cancel), [this] { OnCloseBox(); });
}

HWND PasswordDialog::WindowOf(prompt::Item item) const {
    switch (item) {
        case prompt::Item::notice:
            return notice_;
        case prompt::Item::label:
            return label_;
        case prompt::Item::password:
            return password_;
        case prompt::Item::ok:
            return ok_.Handle();
        case prompt::Item::cancel:
            return cancel_.Handle();
    }
    return nullptr;
}

void PasswordDialog::LayOut() {
    for (const prompt::Item item : prompt::items) Place(WindowOf(item), prompt::Place(item));
    const Size client = TwipsToPixels(prompt::client, Resolution());
    const Size frame = FrameSize();
    SetWindowSize({client.width + frame.width, client.height + frame.height});
}

bool PasswordDialog::Run(HWND owner) {
    result_ = false;
    if (!Handle() && !Fill(owner)) return false;
    RunModal(password_);
    ClearPassword();
    if (error_) std::rethrow_exception(std::exchange(error_, nullptr));
    return result_;
}

void PasswordDialog::Try() {
    if (busy_) return;
    const FlagScope busy(busy_);
    try {
        std::optional<SecretText> stored;
        if (auto text = stored_()) stored.emplace(std::move(*text));
        const SecretText typed(WindowText(password_));
        result_ = PasswordAccepted(stored, typed.View());
    } catch (...) {
        error_ = std::current_exception();
    }
    if (result_ || error_) {
        Finish();
    } else {
        Refuse();
    }
}

void PasswordDialog::Refuse() {
    namespace messages = dialogs::messages;
    dialogs::ShowMessage(Handle(), messages::invalidPasswordPrompt, messages::invalidPassword,
                         Text(messages::invalidPasswordTitle));
    if (Handle()) EnterField(password_);
}

// The field overwrites the text in its own memory; a shorter text would leave the rest there.
void PasswordDialog::ClearPassword() const {
    if (!Handle()) return;
    const Text blanks(static_cast<std::size_t>(GetWindowTextLengthW(password_)), u' ');
    SetWindowTextW(password_, Wide(blanks));
    SetWindowTextW(password_, L"");
    SendMessageW(password_, EM_EMPTYUNDOBUFFER, 0, 0);
}

LRESULT PasswordDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    // The window may be destroyed without an answer, for instance together with its owner.
    if (message == WM_DESTROY) ClearPassword();
    return ModalForm::OnMessage(message, wParam, lParam);
}

}  // namespace qvx::backup
