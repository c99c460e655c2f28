// The box with colours: a palette, the system's colours by name, and a button for the system's dialog.
#include <algorithm>

#include "com/wide_text.h"
#include "designer/properties/drop_down_window.h"
#include "designer/properties/system_colors.h"
#include "host/form_font.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/window_text.h"

namespace qvx::host::designer {

namespace {

constexpr int listId = 1;
constexpr int otherId = 2;

class ColorBox final : public DropDown {
  public:
    ColorBox(const PropertyValue& current, std::function<void()> other) : other_(std::move(other)) {
        const auto* color = std::get_if<std::int32_t>(&current);
        if (!color) return;
        current_ = static_cast<OleColor>(*color);
        const auto palette = Palette();
        const auto found = std::find(palette.begin(), palette.end(), *current_);
        if (found != palette.end()) cell_ = static_cast<int>(found - palette.begin());
    }
    ~ColorBox() override { Destroy(); }

  protected:
    Size WantedSize(int cellWidth) override {
        const int least = Scaled(8 + paletteColumns * cellSize);
        return {std::max(std::min(cellWidth, Scaled(280)), least), ListTop() + ListHeight() + Scaled(30)};
    }
    void MakeContents() override {
        const Rect client = ClientArea();
        const int listBottom = ListTop() + ListHeight();
        list_ = AddChild(L"LISTBOX", L"",
                         LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_OWNERDRAWFIXED | LBS_HASSTRINGS | WS_VSCROLL,
                         {0, ListTop(), client.right, listBottom}, listId);
        SendMessageW(list_, LB_SETITEMHEIGHT, 0, LineHeight());
        for (const SystemColor& color : SystemColors())
            SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(Text(color.name))));
        for (std::size_t i = 0; i < SystemColors().size(); ++i)
            if (current_ == SystemColors()[i].color) SendMessageW(list_, LB_SETCURSEL, i, 0);
        button_ =
            AddChild(L"BUTTON", L"&Other...", BS_PUSHBUTTON,
                     {Scaled(4), listBottom + Scaled(4), client.right - Scaled(4), client.bottom - Scaled(4)}, otherId);
        Subclass(list_);
        Subclass(button_);
    }
    void FocusContents() override { SetFocus(SendMessageW(list_, LB_GETCURSEL, 0, 0) >= 0 ? list_ : Handle()); }

    BoxPart PartOf(HWND window) const override {
        return window == list_ ? BoxPart::colors : window == button_ ? BoxPart::otherColor : BoxPart::palette;
    }
    bool Act(BoxPart part, BoxAction action) override {
        if (action != BoxAction::accept) {
            FocusNext(part, action == BoxAction::nextPart);
        } else if (part == BoxPart::colors) {
            PickListed();
        } else if (part == BoxPart::otherColor) {
            AskForOther();
        } else {
            if (cell_ < 0) return false;
            Pick(Palette()[static_cast<std::size_t>(cell_)]);
        }
        return true;
    }
    bool OnChildMessage(HWND child, UINT message, WPARAM, LPARAM lParam) override {
        const bool onList = child == list_ && message == WM_LBUTTONUP;
        if (onList && HIWORD(SendMessageW(list_, LB_ITEMFROMPOINT, 0, lParam)) == 0) PickListed();
        return false;
    }

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        switch (message) {
            case WM_COMMAND:
                if (LOWORD(wParam) == otherId && HIWORD(wParam) == BN_CLICKED) AskForOther();
                return 0;
            case WM_DRAWITEM:
                DrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
                return TRUE;
            case WM_ERASEBKGND:
                return 1;
            case WM_PAINT: {
                const PaintScope paint(Handle());
                DrawPalette(paint.Dc());
                return 0;
            }
            case WM_PRINTCLIENT:
                DrawPalette(reinterpret_cast<HDC>(wParam));
                return 0;
            case WM_GETDLGCODE:
                return DLGC_WANTALLKEYS;
            case WM_SETFOCUS:
            case WM_KILLFOCUS:
                if (message == WM_SETFOCUS && cell_ < 0) cell_ = 0;
                Invalidate();
                break;
            case WM_LBUTTONUP: {
                const int cell = CellAt(MousePoint(lParam));
                if (cell >= 0) Pick(Palette()[static_cast<std::size_t>(cell)]);
                return 0;
            }
            case WM_SYSKEYDOWN:
            case WM_KEYDOWN:
                if (OnPaletteKey(PressedKey(message, wParam))) return 0;
                break;
            default:
                break;
        }
        return DropDown::OnMessage(message, wParam, lParam);
    }

  private:
    static constexpr int cellSize = 20;
    static constexpr int linesShown = 8;

    int LineHeight() const { return AcquireFont(DefaultFont(), WindowDpi(Handle()))->LineHeight() + Scaled(3); }
    int ListTop() const { return Scaled(8 + paletteRows * cellSize); }
    int ListHeight() const { return linesShown * LineHeight(); }

    Rect CellArea(int cell) const {
        const int size = Scaled(cellSize);
        const int left = Scaled(4) + cell % paletteColumns * size;
        const int top = Scaled(4) + cell / paletteColumns * size;
        return {left, top, left + size, top + size};
    }
    int CellAt(Point at) const {
        for (int cell = 0; cell < paletteColumns * paletteRows; ++cell)
            if (CellArea(cell).Contains(at)) return cell;
        return -1;
    }

    void DrawPalette(HDC dc) {
        GdiSurface surface(dc, WindowDpi(Handle()));
        surface.FillRect(ClientArea(), colors::buttonFace);
        for (int cell = 0; cell < paletteColumns * paletteRows; ++cell) {
            const Rect area = CellArea(cell);
            const Rect inside = area.Inflated(-Scaled(3), -Scaled(3));
            surface.FillRect(inside, Palette()[static_cast<std::size_t>(cell)]);
            surface.FrameRect(inside, colors::buttonShadow);
            if (cell != cell_) continue;
            surface.FrameRect(area.Inflated(-1, -1), colors::buttonText);
            if (GetFocus() == Handle()) surface.FrameRect(area, colors::buttonText);
        }
    }

    void DrawItem(const DRAWITEMSTRUCT& item) {
        if (item.itemID >= SystemColors().size()) return;
        const SystemColor& color = SystemColors()[item.itemID];
        const bool marked = (item.itemState & ODS_SELECTED) != 0;
        GdiSurface surface(item.hDC, WindowDpi(Handle()));
        const Rect area = FromRECT(item.rcItem);
        surface.FillRect(area, marked ? colors::highlight : colors::windowBackground);
        const Rect swatch{area.left + Scaled(3), area.top + Scaled(2), area.left + Scaled(21), area.bottom - Scaled(2)};
        surface.FillRect(swatch, color.color);
        surface.FrameRect(swatch, marked ? colors::highlightText : colors::windowText);
        surface.DrawLabel(color.name, {swatch.right + Scaled(5), area.top, area.right, area.bottom}, DefaultFont(),
                          marked ? colors::highlightText : colors::windowText,
                          text_format::singleLine | text_format::middle | text_format::noPrefix);
    }

    bool OnPaletteKey(const ListKey& key) {
        if (OnKey(Handle(), key)) return true;
        const auto cell = key.system ? std::nullopt : PaletteCellAfter(key.key, cell_);
        if (!cell) return false;
        cell_ = *cell;
        Invalidate();
        return true;
    }

    void FocusNext(BoxPart from, bool forward) {
        const HWND ring[] = {Handle(), list_, button_};
        const std::size_t at = from == BoxPart::palette ? 0 : from == BoxPart::colors ? 1 : 2;
        SetFocus(ring[(at + (forward ? 1 : 2)) % std::size(ring)]);
    }

    void Pick(OleColor color) { Close(PropertyValue(static_cast<std::int32_t>(color))); }
    void PickListed() {
        const LRESULT chosen = SendMessageW(list_, LB_GETCURSEL, 0, 0);
        if (chosen >= 0) Pick(SystemColors()[static_cast<std::size_t>(chosen)].color);
    }
    void AskForOther() {
        // Closing may destroy the box.
        const std::function<void()> other = other_;
        Close(std::nullopt);
        other();
    }

    std::optional<OleColor> current_;
    int cell_ = -1;
    std::function<void()> other_;
    HWND list_ = nullptr;
    HWND button_ = nullptr;
};

}  // namespace

std::unique_ptr<DropDown> MakeColorBox(const PropertyValue& current, std::function<void()> other) {
    return std::make_unique<ColorBox>(current, std::move(other));
}

}  // namespace qvx::host::designer
