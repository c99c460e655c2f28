#include "designer/properties/property_list_window.h"

#include "designer/properties/property_list_view_window.h"
#include "win/gdi_surface.h"

namespace qvx::host::designer {

namespace {

const WindowClass listClass{L"QvxPropertyList", CS_DBLCLKS, 32512};

}  // namespace

PropertyListWindow::PropertyListWindow() = default;

PropertyListWindow::~PropertyListWindow() {
    view_.reset();
    Destroy();
}

bool PropertyListWindow::Create(HWND parent, const Rect& bounds) {
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
    if (!Window::Create(listClass, L"Properties", style, WS_EX_CONTROLPARENT, bounds, parent)) return false;
    view_ = std::make_unique<View>(*this);
    if (view_->Create()) return true;
    view_.reset();
    Destroy();
    return false;
}

void PropertyListWindow::Show(std::vector<Subject> subjects, std::vector<Text> allTitles) {
    if (view_ && Handle()) view_->Show(std::move(subjects), std::move(allTitles));
}

void PropertyListWindow::RefreshValues() {
    if (view_ && Handle()) view_->Refresh();
}

bool PropertyListWindow::SetValue(TextView name, const PropertyValue& value) {
    return view_ && Handle() && view_->SetValue(name, value);
}

bool PropertyListWindow::SetPicture(TextView name, const Text& path) {
    return view_ && Handle() && view_->SetPicture(name, path);
}

const ListedProperties* PropertyListWindow::Table() const { return view_ ? view_->Table() : nullptr; }

void PropertyListWindow::SetOrder(PropertyOrder order) {
    if (view_ && Handle()) view_->SetOrder(order);
}

Text PropertyListWindow::CurrentProperty() const {
    const PropertyRow* row = view_ && Handle() ? view_->Rows().CurrentRow() : nullptr;
    return row ? row->info.name : Text();
}

void PropertyListWindow::GoTo(TextView name) {
    if (view_ && Handle()) view_->GoTo(name);
}

HWND PropertyListWindow::RowsWindow() const { return view_ ? view_->Rows().Handle() : nullptr; }

LRESULT PropertyListWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (!view_) return Default(message, wParam, lParam);
    switch (message) {
        case WM_ERASEBKGND:
            return 1;
        case WM_PAINT: {
            const PaintScope paint(Handle());
            GdiSurface surface(paint.Dc(), WindowDpi(Handle()));
            view_->PaintHelp(surface);
            return 0;
        }
        case WM_PRINTCLIENT: {
            GdiSurface surface(reinterpret_cast<HDC>(wParam), WindowDpi(Handle()));
            view_->PaintHelp(surface);
            return 0;
        }
        case WM_SIZE:
            view_->Layout();
            return 0;
        case WM_DPICHANGED_AFTERPARENT:
            view_->AcquireFonts();
            view_->Layout();
            return 0;
        case WM_SETFOCUS:
            SetFocus(view_->Rows().Handle());
            return 0;
        case WM_COMMAND:
            if (LOWORD(wParam) == View::selectorId && HIWORD(wParam) == CBN_SELCHANGE) view_->OnSelect();
            return 0;
        case WM_NOTIFY:
            return view_->OnNotify(*reinterpret_cast<const NMHDR*>(lParam));
        case View::showRefusal:
            view_->ShowRefusal();
            return 0;
        case WM_SETCURSOR: {
            POINT at{};
            GetCursorPos(&at);
            ScreenToClient(Handle(), &at);
            const bool own = reinterpret_cast<HWND>(wParam) == Handle();
            if (own && view_->OnSplitter({static_cast<int>(at.x), static_cast<int>(at.y)})) {
                SetCursor(LoadCursorW(nullptr, IDC_SIZENS));
                return TRUE;
            }
            break;
        }
        case WM_LBUTTONDOWN:
            if (!view_->OnSplitter(MousePoint(lParam))) break;
            view_->dragging = true;
            SetCapture(Handle());
            return 0;
        case WM_MOUSEMOVE:
            if (view_->dragging) view_->DragSplitter(MousePoint(lParam).y);
            return 0;
        case WM_LBUTTONUP:
        case WM_CAPTURECHANGED:
            view_->dragging = false;
            if (message == WM_LBUTTONUP && GetCapture() == Handle()) ReleaseCapture();
            return 0;
        default:
            break;
    }
    return Default(message, wParam, lParam);
}

}  // namespace qvx::host::designer
