#include "backup/backup_dialog.h"

#include <commctrl.h>

#include "backup/dialog_layout.h"
#include "backup/names.h"
#include "common/file_dialogs.h"
#include "common/flag_scope.h"
#include "forms/msgbox/show_message.h"
#include "server/error_report.h"
#include "win/wide.h"

namespace qvx::backup {

namespace {

constexpr int locationId = 100;
constexpr int emailId = 101;

std::intptr_t Number(HWND window) { return reinterpret_cast<std::intptr_t>(window); }

void SetText(HWND control, TextView text) {
    if (WindowText(control) == text) return;
    const Text copy(text);
    SetWindowTextW(control, Wide(copy));
}

// A click that was meant for the dialog as it was before the work would press a button again. What was typed ahead
// stays.
void DropClicks(HWND dialog) {
    MSG message;
    while (PeekMessageW(&message, dialog, WM_LBUTTONDOWN, WM_MBUTTONDBLCLK, PM_REMOVE)) {
    }
}

}  // namespace

BackupDialog::BackupDialog(Settings settings, Mode mode) : mode_(mode), procedure_(*this, std::move(settings), mode) {}

LRESULT BackupDialog::NameTap::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CHAR && IsForbiddenInNames(static_cast<char16_t>(wParam))) {
        MessageBeep(MB_OK);
        return 0;
    }
    return Default(message, wParam, lParam);
}

bool BackupDialog::Build(HWND owner) {
    const dialog::Texts& texts = dialog::TextsOf(mode_);
    if (!Open(owner, texts.form, {dialog::clientWidth, 0})) return false;
    location_ = Add(L"EDIT", {}, WS_TABSTOP | ES_AUTOHSCROLL, dialog::location, locationId, WS_EX_CLIENTEDGE);
    const bool browse = Add(browse_, texts.browse, dialog::browse, 0);
    email_ = Add(L"BUTTON", texts.email, WS_TABSTOP | BS_AUTOCHECKBOX, dialog::email, emailId);
    groupLabel_ = Add(L"STATIC", texts.groupName, SS_LEFT, dialog::groupLabel);
    groupName_ = Add(L"EDIT", {}, ES_AUTOHSCROLL, dialog::groupName, 0, WS_EX_CLIENTEDGE);
    outcome_ = Add(L"STATIC", {}, SS_LEFT | SS_NOPREFIX | SS_NOTIFY, dialog::outcome);
    if (!browse || !Add(ok_, texts.ok, dialog::ok, IDOK) || !Add(cancel_, texts.cancel, dialog::cancel, IDCANCEL)) {
        return false;
    }
    // Below all others: the frame would cover what stands in it.
    Add(L"BUTTON", texts.frame, BS_GROUPBOX | WS_CLIPSIBLINGS, dialog::frame);
    locationName_.SetName(texts.frame);
    locationName_.Attach(location_);
    nameTap_.Attach(groupName_);
    browse_.Button().onClick = [this] { Work(&backup::Procedure::Browse); };
    ok_.Button().onClick = [this] { OnOk(); };
    cancel_.Button().onClick = [this] { OnCancel(); };
    EnableOk();
    EmailClicked();
    return true;
}

void BackupDialog::Run(HWND owner) {
    if (Build(owner ? GetAncestor(owner, GA_ROOT) : GetActiveWindow())) RunModal();
}

LRESULT BackupDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            if (LOWORD(wParam) == locationId && HIWORD(wParam) == EN_CHANGE) EnableOk();
            if (LOWORD(wParam) == emailId && HIWORD(wParam) == BN_CLICKED) EmailClicked();
            return 0;
        case WM_SETCURSOR:
            if (working_) {
                SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32514)));  // the hourglass
                return TRUE;
            }
            break;
        case WM_DESTROY:
            outcomeTip_.Destroy();
            break;
        default:
            break;
    }
    return FormWindow::OnMessage(message, wParam, lParam);
}

void BackupDialog::EnableOk() { ok_.Button().SetEnabled(dialog::MayRun(WindowText(location_))); }

bool BackupDialog::EmailChecked() const { return SendMessageW(email_, BM_GETCHECK, 0, 0) == BST_CHECKED; }

void BackupDialog::EmailClicked() {
    const bool group = dialog::HasGroupName(mode_, EmailChecked());
    const Size size = dialog::WindowSize(mode_, group, Resolution(), Border());
    SetWindowPos(Handle(), nullptr, 0, 0, size.width, size.height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    const LONG_PTR style = GetWindowLongPtrW(groupName_, GWL_STYLE) & ~static_cast<LONG_PTR>(WS_TABSTOP);
    SetWindowLongPtrW(groupName_, GWL_STYLE, group ? style | WS_TABSTOP : style);
    for (const HWND control : {groupLabel_, groupName_}) ShowWindow(control, group ? SW_SHOWNA : SW_HIDE);
}

void BackupDialog::OnOk() {
    if (ok_.Button().Look().enabled) Work(&backup::Procedure::Run);
}

void BackupDialog::OnCancel() {
    if (!working_) Close();
}

void BackupDialog::Work(void (backup::Procedure::*work)(FormState&)) {
    if (working_) return;
    {
        const FlagScope scope(working_);
        SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32514)));
        FormState form;
        form.location = WindowText(location_);
        form.email = EmailChecked();
        form.groupName = WindowText(groupName_);
        (procedure_.*work)(form);
        if (!Handle()) return;
        ShowOutcome(form);
    }
    SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)));
    DropClicks(nullptr);
}

void BackupDialog::ShowOutcome(const FormState& form) {
    SetText(location_, form.location);
    SetText(outcome_, form.outcome);
    outcomeTip_.Set(Handle(), outcome_, form.outcomeTip);
}

void BackupDialog::Refresh(const FormState& form) {
    ShowOutcome(form);
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

bool BackupDialog::ShowMessage(TextView prompt, const msgbox::MessageKind& kind, const std::optional<Text>& title) {
    return msgbox::ShowMessage(Handle(), prompt, kind, title);
}

void BackupDialog::ReportError(int number, TextView description) { ShowErrorReport(Handle(), number, description); }

Text BackupDialog::BrowseForFolder(TextView title) { return qvx::BrowseForFolder(Number(Handle()), title); }

Text BackupDialog::ShowOpenFile(TextView title) { return qvx::ShowOpenFile(Number(Handle()), title, {}); }

bool BackupDialog::RunPasswordPrompt(TextView connection) {
    prompt_ = std::make_unique<PasswordDialog>();
    return prompt_->Ask(Handle(), connection);
}

}  // namespace qvx::backup
