#include "designer/toolbox_window.h"

#include <array>
#include <utility>

#include "common/number_text.h"
#include "designer/designer_keys.h"
#include "host/form_font.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/module_instance.h"
#include "win/window_text.h"

namespace qvx::host::designer {

namespace {

constexpr int listId = 1;
constexpr int pictureSize = 16;  // pixels at 96 dots per inch
constexpr int itemHeight = 24;

// Simple pictures of the host's own classes.
void DrawGlyph(HDC dc, const Text& className, const Rect& box, COLORREF ink, HFONT font) {
    const SavedDc saved(dc);
    SetTextColor(dc, ink);
    SetBkMode(dc, TRANSPARENT);
    const HPEN pen = CreatePen(PS_SOLID, 1, ink);
    SelectObject(dc, pen);
    SelectObject(dc, GetStockObject(NULL_BRUSH));
    SelectObject(dc, font);
    RECT area = ToRECT(box);
    const int unit = box.Width() / 16 > 0 ? box.Width() / 16 : 1;
    if (className.empty()) {
        const std::array<POINT, 7> arrow = {{{4, 2}, {4, 13}, {7, 10}, {9, 14}, {11, 13}, {9, 9}, {12, 9}}};
        std::array<POINT, 7> points{};
        for (std::size_t i = 0; i < arrow.size(); ++i) {
            points[i] = {area.left + arrow[i].x * unit, area.top + arrow[i].y * unit};
        }
        SelectObject(dc, GetStockObject(DC_BRUSH));
        SetDCBrushColor(dc, ink);
        Polygon(dc, points.data(), static_cast<int>(points.size()));
    } else if (className == u"Label") {
        DrawTextW(dc, L"A", 1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    } else if (className == u"TextBox") {
        Rectangle(dc, area.left, area.top + 2 * unit, area.right, area.bottom - 2 * unit);
        DrawTextW(dc, L"ab", 2, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    } else if (className == u"Frame") {
        Rectangle(dc, area.left + unit, area.top + 4 * unit, area.right - unit, area.bottom - unit);
        MoveToEx(dc, area.left + 3 * unit, area.top + 2 * unit, nullptr);
        LineTo(dc, area.left + 9 * unit, area.top + 2 * unit);
    } else if (className == u"ImageList") {
        Rectangle(dc, area.left + 4 * unit, area.top + unit, area.right - unit, area.bottom - 5 * unit);
        SelectObject(dc, GetStockObject(DC_BRUSH));
        SetDCBrushColor(dc, GetSysColor(COLOR_WINDOW));
        Rectangle(dc, area.left + unit, area.top + 4 * unit, area.right - 4 * unit, area.bottom - unit);
    } else if (className == u"Menu") {
        for (int line = 0; line < 3; ++line) {
            const int y = area.top + (4 + 4 * line) * unit;
            MoveToEx(dc, area.left + 3 * unit, y, nullptr);
            LineTo(dc, area.right - 3 * unit, y);
        }
    } else {
        Rectangle(dc, area.left, area.top, area.right, area.bottom);
        const std::size_t dot = className.rfind(u'.');
        const Text initial = className.substr(dot == Text::npos ? 0 : dot + 1, 1);
        DrawTextW(dc, Wide(initial), 1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    }
    SelectObject(dc, GetStockObject(BLACK_PEN));
    DeleteObject(pen);
}

}  // namespace

class ToolboxWindow::ListKeys final : public WindowSubclass {
  public:
    explicit ListKeys(ToolboxWindow& toolbox) : toolbox_(toolbox) {}

  protected:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        const bool down = message == WM_KEYDOWN;
        const bool typed = message == WM_CHAR;
        // The character of such a key has the code of the key.
        const ToolboxAction action = down || typed ? ToolboxActionOf(static_cast<int>(wParam)) : ToolboxAction::none;
        if (action == ToolboxAction::none) return Default(message, wParam, lParam);
        if (typed) return 0;
        if (action == ToolboxAction::disarm) {
            toolbox_.Disarm();
        } else if (const Text chosen = toolbox_.Armed(); toolbox_.onPlace) {
            toolbox_.onPlace(chosen);
        }
        return 0;
    }

  private:
    ToolboxWindow& toolbox_;
};

ToolboxWindow::ToolboxWindow() = default;

ToolboxWindow::~ToolboxWindow() {
    keys_.reset();
    Destroy();
    if (pictures_) ImageList_Destroy(pictures_);
}

bool ToolboxWindow::Create(HWND parent, const Rect& bounds) {
    static const WindowClass windowClass = {L"QvxDesignToolbox", 0};
    if (!Window::Create(windowClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, bounds,
                        parent)) {
        return false;
    }
    list_ =
        CreateWindowExW(WS_EX_CLIENTEDGE, L"LISTBOX", L"Toolbox",
                        WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_OWNERDRAWFIXED |
                            LBS_HASSTRINGS | LBS_NOINTEGRALHEIGHT,
                        0, 0, 10, 10, Handle(), reinterpret_cast<HMENU>(INT_PTR{listId}), ModuleInstance(), nullptr);
    if (!list_) return false;
    keys_ = std::make_unique<ListKeys>(*this);
    keys_->Attach(list_);
    FollowResolution();
    return true;
}

void ToolboxWindow::FollowResolution() {
    const SharedFont before = std::exchange(font_, AcquireFont(FontSpec{}, WindowDpi(Handle())));
    SendMessageW(list_, WM_SETFONT, reinterpret_cast<WPARAM>(font_->Get()), FALSE);
    SendMessageW(list_, LB_SETITEMHEIGHT, 0, Scaled(itemHeight, Handle()));
    DrawPictures();
    InvalidateRect(list_, nullptr, TRUE);
}

void ToolboxWindow::DrawPictures() {
    if (pictures_) ImageList_Destroy(std::exchange(pictures_, nullptr));
    for (Tool& tool : tools_) {
        if (tool.id != CLSID_NULL) tool.picture = AddPicture(tool.id);
    }
}

int ToolboxWindow::AddPicture(const CLSID& id) {
    wchar_t* spelled = nullptr;
    if (FAILED(StringFromCLSID(id, &spelled))) return -1;
    const std::wstring key = std::wstring(L"CLSID\\") + spelled + L"\\ToolboxBitmap32";
    CoTaskMemFree(spelled);
    wchar_t value[1024]{};
    LONG size = sizeof value - sizeof(wchar_t);
    if (RegQueryValueW(HKEY_CLASSES_ROOT, key.c_str(), value, &size) != ERROR_SUCCESS) return -1;
    const std::wstring place(value);
    const std::size_t comma = place.rfind(L',');
    if (comma == std::wstring::npos) return -1;
    const int number = static_cast<int>(wcstol(place.c_str() + comma + 1, nullptr, 10));
    const HMODULE module = LoadLibraryExW(place.substr(0, comma).c_str(), nullptr,
                                          LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
    if (!module) return -1;
    const int side = Scaled(pictureSize, Handle());
    // The picture is about 16 by 15 pixels; it is centred in the square, on its transparent colour.
    const UniqueBitmap bitmap(
        static_cast<HBITMAP>(LoadImageW(module, MAKEINTRESOURCEW(number), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
    FreeLibrary(module);
    BITMAP shape{};
    if (!bitmap || !GetObjectW(bitmap.Get(), sizeof shape, &shape)) return -1;
    const WindowDc screen(Handle());
    const UniqueMemoryDc from(CreateCompatibleDC(screen.Get()));
    const UniqueMemoryDc to(CreateCompatibleDC(screen.Get()));
    const UniqueBitmap square(CreateCompatibleBitmap(screen.Get(), side, side));
    COLORREF nothing{};
    {
        const SelectedObject source(from.Get(), bitmap.Get());
        const SelectedObject target(to.Get(), square.Get());
        nothing = GetPixel(from.Get(), 0, 0);
        const UniqueBrush back(CreateSolidBrush(nothing));
        const RECT all{0, 0, side, side};
        FillRect(to.Get(), &all, back.Get());
        const int width = std::min(side, ScaleRounded(shape.bmWidth, side, pictureSize));
        const int height = std::min(side, ScaleRounded(shape.bmHeight, side, pictureSize));
        SetStretchBltMode(to.Get(), COLORONCOLOR);
        StretchBlt(to.Get(), (side - width) / 2, (side - height) / 2, width, height, from.Get(), 0, 0, shape.bmWidth,
                   shape.bmHeight, SRCCOPY);
    }
    if (!pictures_) pictures_ = ImageList_Create(side, side, ILC_COLOR24 | ILC_MASK, 8, 8);
    return ImageList_AddMasked(pictures_, square.Get(), nothing);
}

void ToolboxWindow::Fill(const ClassSource& classes, const Text& registeredClass) {
    tools_ = {{u"", u"Pointer", u"Select, move and size controls"},
              {u"Label", u"Label", u"A text that the user cannot change"},
              {u"TextBox", u"TextBox", u"A plain text box"},
              {u"Frame", u"Frame", u"A titled frame that holds other controls"},
              {u"ImageList", u"ImageList", u"Pictures for other controls and menus"},
              {u"Menu", u"Menu", u"Opens the menu editor"}};
    for (const ClassSource::Known& known : classes.ClassesWith(registeredClass)) {
        const std::size_t dot = known.className.rfind(u'.');
        const Text caption = known.className.substr(dot == Text::npos ? 0 : dot + 1);
        const Text tip = known.className + (known.description.empty() ? u"" : u": " + known.description);
        tools_.push_back({known.className, caption, tip, known.id});
    }
    DrawPictures();
    SendMessageW(list_, LB_RESETCONTENT, 0, 0);
    for (const Tool& tool : tools_) {
        SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(tool.caption)));
    }
    SendMessageW(list_, LB_SETCURSEL, 0, 0);
}

Text ToolboxWindow::Armed() const {
    const auto at = static_cast<std::size_t>(SendMessageW(list_, LB_GETCURSEL, 0, 0));
    return at < tools_.size() ? tools_[at].className : Text();
}

void ToolboxWindow::Disarm() {
    SendMessageW(list_, LB_SETCURSEL, 0, 0);
    if (onArmed) onArmed();
}

void ToolboxWindow::DrawItem(const DRAWITEMSTRUCT& draw) {
    if (draw.itemID >= tools_.size()) return;
    const Tool& tool = tools_[draw.itemID];
    const bool selected = (draw.itemState & ODS_SELECTED) != 0;
    const COLORREF ink = GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT);
    FillRect(draw.hDC, &draw.rcItem, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    const int side = Scaled(pictureSize, Handle());
    const int gap = Scaled(4, Handle());
    const int top = static_cast<int>(draw.rcItem.top + (draw.rcItem.bottom - draw.rcItem.top - side) / 2);
    const int left = static_cast<int>(draw.rcItem.left) + gap;
    const Rect box{left, top, left + side, top + side};
    const auto font = static_cast<HFONT>(font_->Get());
    if (tool.picture >= 0) {
        ImageList_Draw(pictures_, tool.picture, draw.hDC, box.left, box.top, ILD_TRANSPARENT);
    } else {
        DrawGlyph(draw.hDC, tool.className, box, ink, font);
    }
    RECT text{box.right + 2 * gap, draw.rcItem.top, draw.rcItem.right, draw.rcItem.bottom};
    const SelectedObject used(draw.hDC, font);
    SetTextColor(draw.hDC, ink);
    SetBkMode(draw.hDC, TRANSPARENT);
    DrawTextW(draw.hDC, Wide(tool.caption), -1, &text, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    if (draw.itemState & ODS_FOCUS) DrawFocusRect(draw.hDC, &draw.rcItem);
}

LRESULT ToolboxWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            MoveWindow(list_, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
            return 0;
        case WM_DPICHANGED_AFTERPARENT:
            FollowResolution();
            return 0;
        case WM_SETFOCUS:
            SetFocus(list_);
            return 0;
        case WM_MEASUREITEM:
            reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)->itemHeight = static_cast<UINT>(Scaled(itemHeight, Handle()));
            return TRUE;
        case WM_DRAWITEM:
            DrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == listId && HIWORD(wParam) == LBN_SELCHANGE && onArmed) onArmed();
            if (LOWORD(wParam) == listId && HIWORD(wParam) == LBN_DBLCLK && onPlace) onPlace(Armed());
            return 0;
        default:
            return Default(message, wParam, lParam);
    }
}

}  // namespace qvx::host::designer
