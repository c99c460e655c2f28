#include "dialogs/about_dialog.h"

#include <shellapi.h>

#include "common/flag_scope.h"
#include "common/number_text.h"
#include "dialogs/about_box.h"
#include "dialogs/show_message_dialog.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/modal.h"
#include "win/thread_value.h"
#include "win/window.h"
#include "win/window_text.h"

namespace qvx {

namespace {

constexpr WindowClass aboutClass{L"QvxAbout"};
constexpr DWORD aboutStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
constexpr DWORD aboutExStyle = WS_EX_DLGMODALFRAME;

class AboutDialog final : public Window {
  public:
    ~AboutDialog() override { Destroy(); }
    void Run(HWND owner);

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnGone() override { PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0); }

  private:
    bool Open(HWND owner);
    // Returns the size of the whole window in pixels at its resolution.
    Size WindowSize() const;
    void Paint();
    void Execute(about::Answer answer);
    void OpenMail();
    void Close();
    bool OverLink() const;

    Dpi dpi_;
    Text mailTag_;
    about::Press press_;
    bool closed_ = false;
};

// The thread's single instance while it is visible.
[[gnu::section(".tls$")]] AboutDialog* shown = nullptr;

bool AboutDialog::Open(HWND owner) {
    dpi_ = WindowDpi(owner);
    const Size size = WindowSize();
    const Point at = PlaceDialog(owner, size);
    return Create(aboutClass, Wide(Text(about::title)), aboutStyle, aboutExStyle,
                  {at.x, at.y, at.x + size.width, at.y + size.height}, owner);
}

Size AboutDialog::WindowSize() const {
    const Size inside = TwipsToPixels(about::client, dpi_);
    const Size frame = FrameSize(aboutStyle, aboutExStyle, dpi_);
    return {inside.width + frame.width, inside.height + frame.height};
}

void AboutDialog::Run(HWND owner) {
    if (!Open(owner ? GetAncestor(owner, GA_ROOT) : GetActiveWindow())) {
        return;
    }
    ModalScope modal(Handle());
    ShowWindow(Handle(), SW_SHOW);
    RunModalLoop(
        modal, [this] { return !closed_ && Handle(); }, [](const MSG&) { return false; });
    modal.Close(*this);
}

void AboutDialog::Close() {
    closed_ = true;
    PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

void AboutDialog::Paint() {
    const PaintScope paint(Handle());
    GdiSurface surface(paint.Dc(), dpi_);
    about::Paint(surface, ClientArea());
}

bool AboutDialog::OverLink() const {
    POINT cursor{};
    GetCursorPos(&cursor);
    ScreenToClient(Handle(), &cursor);
    return about::LabelAt({static_cast<int>(cursor.x), static_cast<int>(cursor.y)}, dpi_) == about::Label::mail;
}

void AboutDialog::Execute(about::Answer answer) {
    if (answer == about::Answer::close) {
        Close();
    } else if (answer == about::Answer::mail) {
        OpenMail();
    }
}

void AboutDialog::OpenMail() {
    const Text link = about::MailLink();
    const auto answer =
        reinterpret_cast<INT_PTR>(ShellExecuteW(nullptr, nullptr, Wide(link), nullptr, L"C:\\", SW_SHOWNORMAL));
    mailTag_ = DoubleToText(static_cast<double>(answer));
    if (about::MailFailed(mailTag_)) {
        namespace messages = dialogs::messages;
        dialogs::ShowMessage(Handle(), messages::aboutMailFailedPrompt, messages::aboutMailFailed,
                             Text(messages::aboutMailFailedTitle));
    }
}

LRESULT AboutDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            Paint();
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_SETCURSOR:
            if (LOWORD(lParam) == HTCLIENT && OverLink()) {
                SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32649)));  // the hand cursor
                return TRUE;
            }
            break;
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
            SetCapture(Handle());
            press_.Down(MousePoint(lParam), dpi_);
            return 0;
        case WM_LBUTTONUP: {
            const about::Answer answer = press_.Up(MousePoint(lParam), dpi_);
            ReleaseCapture();
            Execute(answer);
            return 0;
        }
        case WM_CAPTURECHANGED:
            press_.CallOff();
            return 0;
        case WM_KEYDOWN:
            Execute(about::AnswerForKey(static_cast<int>(wParam)));
            return 0;
        case WM_DPICHANGED: {
            const DpiChange change(Handle(), wParam, lParam);
            dpi_ = change.dpi;
            change.Follow(WindowSize());
            Invalidate();
            return 0;
        }
        case WM_CLOSE:
            Close();
            return 0;
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

}  // namespace

void ShowAboutBox(HWND owner) {
    if (const AboutDialog* const other = OfThisThread(shown)) {
        SetForegroundWindow(other->Handle());
        return;
    }
    AboutDialog dialog;
    const ValueScope scope(OfThisThread(shown), &dialog);
    dialog.Run(owner);
}

}  // namespace qvx
