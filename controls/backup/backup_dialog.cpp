#include "controls/backup/backup_dialog.h"

#include "common/caption.h"
#include "common/flag_scope.h"
#include "controls/backup/backup_names.h"
#include "win/queued_messages.h"
#include "win/window_text.h"

namespace qvx::backup {

namespace {

constexpr int browseId = 3;

void SetStyle(HWND window, LONG bit, bool on) {
    const LONG style = GetWindowLongW(window, GWL_STYLE);
    SetWindowLongW(window, GWL_STYLE, on ? style | bit : style & ~bit);
}

// Shows the wait cursor for the duration of a scope.
class WaitCursor {
  public:
    WaitCursor() : before_(SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32514)))) {}
    ~WaitCursor() { SetCursor(before_); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

  private:
    HCURSOR before_;
};

}  // namespace

// ---- Making and placing --------------------------------------------------------------------------------------------

bool BackupDialog::AddField(TextBoxWindow& field, TextView name) {
    if (!field.Create(Handle())) return false;
    field.SetAccessibleName(name);
    SetStyle(field.Window(), WS_TABSTOP, true);
    return true;
}

bool BackupDialog::Fill(HWND owner) {
    if (!Open(owner, form::Caption(mode_))) return false;
    const auto caption = [this](form::Item item) { return form::Caption(item, mode_); };
    frame_ = AddControl(L"BUTTON", caption(form::Item::frame), BS_GROUPBOX | WS_GROUP | WS_CLIPSIBLINGS);
    if (!frame_ || !AddField(location_, caption(form::Item::frame)) ||
        !AddButton(browse_, browseId, caption(form::Item::browse), [this] { Operate(onBrowse); })) {
        return false;
    }
    email_ = AddControl(L"BUTTON", caption(form::Item::email), BS_AUTOCHECKBOX | WS_TABSTOP | WS_GROUP);
    const TextView group = caption(form::Item::groupLabel);
    groupLabel_ = AddControl(L"STATIC", group, SS_LEFT);
    if (!email_ || !groupLabel_ || !AddField(groupName_, WithoutAccessMark(group))) return false;
    outcome_ = AddControl(L"STATIC", {}, SS_LEFTNOWORDWRAP | SS_NOPREFIX | SS_NOTIFY);
    if (!outcome_ || !AddButton(ok_, IDOK, caption(form::Item::ok), [this] { Operate(onRun); }) ||
        !AddButton(cancel_, IDCANCEL, caption(form::Item::cancel), [this] { OnCloseBox(); })) {
        return false;
    }
    // The frame is below its contents in the z-order, which would otherwise be cut out of it.
    SetWindowPos(frame_, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    ShowGroupName(false);
    EnableOk();
    return true;
}

HWND BackupDialog::WindowOf(form::Item item) const {
    switch (item) {
        case form::Item::frame:
            return frame_;
        case form::Item::location:
            return location_.Window();
        case form::Item::browse:
            return browse_.Handle();
        case form::Item::email:
            return email_;
        case form::Item::groupLabel:
            return groupLabel_;
        case form::Item::groupName:
            return groupName_.Window();
        case form::Item::outcome:
            return outcome_;
        case form::Item::ok:
            return ok_.Handle();
        case form::Item::cancel:
            return cancel_.Handle();
    }
    return nullptr;
}

void BackupDialog::LayOut() {
    const Dpi dpi = Resolution();
    const Size frame = FrameSize();
    const int frameHeight = PixelsToTwips(frame.height, dpi.y);
    for (const form::Item item : form::items) Place(WindowOf(item), form::Place(item, frameHeight));
    for (TextBoxWindow* field : {&location_, &groupName_}) field->SetFont(field->Font());
    const bool groupNameShown = mode_ == Mode::restore && EmailChecked();
    SetWindowSize({TwipsToPixels(form::width, dpi.x) + frame.width,
                   TwipsToPixels(form::Height(groupNameShown, frameHeight), dpi.y)});
}

void BackupDialog::ShowGroupName(bool shown) {
    SetStyle(groupName_.Window(), WS_TABSTOP, shown);
    for (const HWND window : {groupLabel_, groupName_.Window()}) ShowWindow(window, shown ? SW_SHOWNA : SW_HIDE);
}

// ---- Contents ------------------------------------------------------------------------------------------------------

bool BackupDialog::EmailChecked() const { return SendMessageW(email_, BM_GETCHECK, 0, 0) == BST_CHECKED; }

FormState BackupDialog::Contents() const {
    FormState state;
    state.location = location_.GetText();
    state.email = EmailChecked();
    state.groupName = groupName_.GetText();
    state.outcome = WindowText(outcome_);
    state.outcomeTip = outcomeTip_.Text();
    return state;
}

void BackupDialog::Refresh(const FormState& form) {
    if (!Handle()) return;
    if (location_.GetText() != form.location) {
        location_.SetText(form.location);
        // The end of a long path says more than its beginning.
        location_.SetSelStart(static_cast<int>(form.location.size()));
    }
    if (WindowText(outcome_) != form.outcome) SetWindowTextW(outcome_, Wide(form.outcome));
    if (outcomeTip_.Text() != form.outcomeTip) outcomeTip_.Set(Handle(), outcome_, form.outcomeTip);
    Repaint();
}

void BackupDialog::Repaint() const {
    if (Handle()) RedrawWindow(Handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void BackupDialog::EnableOk() {
    const bool enabled = form::MayRun(location_.GetText());
    if (enabled == ok_.Button().Look().enabled) return;
    if (!enabled && GetFocus() == ok_.Handle()) location_.Focus();
    ok_.Button().SetEnabled(enabled);
}

void BackupDialog::TextBoxChange() {
    FollowDirection(location_.Window());
    FollowDirection(groupName_.Window());
    EnableOk();
}

void BackupDialog::TextBoxKeyPress(int& character) {
    if (!groupName_.HasFocus() || !IsForbiddenInNames(static_cast<char16_t>(character))) return;
    character = 0;
    MessageBeep(MB_OK);
}

// ---- Running -------------------------------------------------------------------------------------------------------

void BackupDialog::Run(HWND owner) {
    if (Fill(owner)) RunModal(location_.Window());
    Destroy();
}

void BackupDialog::Operate(const std::function<void(FormState&)>& work) {
    if (busy_ || !work) return;
    const FlagScope busy(busy_);
    const WaitCursor cursor;
    FormState state = Contents();
    work(state);
    DropInput();
}

// Drops keys and clicks that were meant for the dialog as it looked before: they could close a dialog that has just
// begun to show the result.
void BackupDialog::DropInput() const {
    if (!Handle()) return;
    QueuedMessages queue;
    MSG message{};
    const auto drop = [&](UINT first, UINT last) {
        while (queue.Take(message, Handle(), first, last)) {
        }
    };
    drop(WM_KEYFIRST, WM_KEYLAST);
    drop(WM_MOUSEFIRST, WM_MOUSELAST);
    drop(WM_NCMOUSEMOVE, WM_NCXBUTTONDBLCLK);
}

void BackupDialog::OnCloseBox() {
    if (!busy_) Finish();
}

LRESULT BackupDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND child = reinterpret_cast<HWND>(lParam);
    switch (message) {
        case WM_COMMAND:
            if (child && child == email_ && HIWORD(wParam) == BN_CLICKED && mode_ == Mode::restore) {
                ShowGroupName(EmailChecked());
                LayOut();
            } else if (child) {
                for (TextBoxWindow* field : {&location_, &groupName_}) {
                    if (field->Window() == child) field->OnCommand(HIWORD(wParam));
                }
            }
            return 0;
        case WM_CTLCOLOREDIT:
            return (child == groupName_.Window() ? groupName_ : location_).OnColors(wParam);
        case WM_SETCURSOR:
            if (busy_) {
                SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32514)));
                return TRUE;
            }
            break;
        case WM_DESTROY:
            outcomeTip_.Destroy();
            break;
        default:
            break;
    }
    return ModalForm::OnMessage(message, wParam, lParam);
}

}  // namespace qvx::backup
