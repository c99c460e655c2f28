#include "host/design/property_list_window.h"

namespace qvx::host {

namespace {
const WindowClass listClass{L"QvxPropertyList", CS_DBLCLKS, 32512};
}

class PropertyListWindow::View {};

PropertyListWindow::PropertyListWindow() = default;

PropertyListWindow::~PropertyListWindow() { Destroy(); }

bool PropertyListWindow::Create(HWND parent, const Rect& bounds) {
    return Window::Create(listClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, bounds, parent);
}

void PropertyListWindow::Show(std::vector<Subject>, std::vector<Text>) {}

void PropertyListWindow::RefreshValues() {}

LRESULT PropertyListWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return Default(message, wParam, lParam);
}

}  // namespace qvx::host
