#include "controls/menus/menu_page_window.h"

#include <algorithm>

#include "com/guard.h"
#include "common/keys.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "dialogs/file_dialogs.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/picture_file.h"

namespace qvx::menus {

namespace {

constexpr int headerRow = 0;
constexpr int keyColumn = 0;
constexpr int pictureColumn = 1;

// In pixels at 96 dots per inch.
constexpr int hintHeight = 30;
constexpr int smallestPicture = 16;
constexpr int largestPicture = 64;  // the limit up to which a row grows
constexpr int pictureMargin = 2;
constexpr int pictureColumnTwips = 1400;

constexpr UINT messageChoose = WM_APP + 1;

const WindowClass pageClass{L"QvxMenuPage"};

}  // namespace

MenuPageWindow::MenuPageWindow(PageOwner& owner) : PageWindow(pageClass, owner) {
    flexgrid::Grid& grid = grid_.Model();
    grid.SetFont(font);
    grid.SetFixedRows(0);
    grid.SetRows(1);
    grid.SetTextMatrix(headerRow, keyColumn, u"Menu");
    grid.SetTextMatrix(headerRow, pictureColumn, u"Picture");
    grid.SetColWidth(pictureColumn, pictureColumnTwips);
    grid.SetAllowUserResizing(flexgrid::GridResizing::columns);
    grid.SetBackColorBkg(colors::windowBackground);
    grid_.AddEvents(this);
}

MenuPageWindow::~MenuPageWindow() {
    grid_.RemoveEvents(this);
    grid_.Destroy();
    Destroy();
}

void MenuPageWindow::Fill(const std::vector<Text>& keys, const std::vector<KeyedPicture>& pictures) {
    flexgrid::Grid& grid = grid_.Model();
    keys_ = keys;
    if (keys_.empty()) return;
    grid.SetRows(static_cast<int>(keys_.size()) + 1);
    grid.SetFixedRows(1);
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        const int row = static_cast<int>(i) + 1;
        grid.SetTextMatrix(row, keyColumn, keys_[i]);
        const auto found = std::find_if(pictures.begin(), pictures.end(), [&](const KeyedPicture& picture) {
            return EqualNoCase(picture.key, keys_[i]);
        });
        SetPicture(row, found == pictures.end() ? nullptr : found->picture.get());
    }
    grid.MoveTo(1, pictureColumn);
}

std::vector<KeyedPicture> MenuPageWindow::Pictures() const {
    std::vector<KeyedPicture> pictures;
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        const auto* format = grid_.Model().FormatOf(static_cast<int>(i) + 1, pictureColumn);
        const Picture* shown = format ? format->picture.get() : nullptr;
        IPictureDisp* picture = shown ? GdiPicture::Of(*shown).Object() : nullptr;
        if (picture) pictures.push_back({keys_[i], ComPtr<IPictureDisp>::Adopt(picture)});
    }
    return pictures;
}

void MenuPageWindow::SetPicture(int row, IPictureDisp* picture) {
    flexgrid::Grid& grid = grid_.Model();
    auto shown = std::make_shared<PictureObject>(picture);
    if (shown->Empty()) shown = nullptr;
    grid.MoveTo(row, pictureColumn);
    grid.SetCellPicture(shown);
    grid.SetCellPictureAlignment(flexgrid::GridAlignment::centerCenter);
    FitRow(row, shown.get());
}

void MenuPageWindow::FitRow(int row, const Picture* picture) {
    const Dpi dpi = WindowDpi(Handle());
    const int wanted = picture ? picture->PixelSize(dpi).height : 0;
    const int height = std::clamp(wanted, Scaled(smallestPicture, dpi.y), Scaled(largestPicture, dpi.y));
    grid_.Model().SetRowHeight(row, PixelsToTwips(height + 2 * Scaled(pictureMargin, dpi.y), dpi.y));
}

bool MenuPageWindow::Build() {
    if (!grid_.CreateIn(Handle(), {0, 0, 10, 10})) return false;
    const HWND grid = grid_.Handle();
    SetWindowLongW(grid, GWL_STYLE, GetWindowLongW(grid, GWL_STYLE) | WS_TABSTOP);
    return true;
}

void MenuPageWindow::Layout() {
    if (!grid_.Handle()) return;
    const Dpi dpi = WindowDpi(Handle());
    Rect area = ClientArea().Inflated(-Scaled(margin, dpi.x), -Scaled(margin, dpi.y));
    area.bottom = std::max(area.top, area.bottom - Scaled(hintHeight, dpi.y));
    grid_.MoveTo(area);
    // The keys' column gets all the room that pictures, lines and a scroll bar leave.
    const int bar = GetSystemMetrics(SM_CXVSCROLL) + Scaled(6, dpi.x);
    const int keys = PixelsToTwips(area.Width() - bar, dpi.x) - pictureColumnTwips;
    constexpr int narrowest = 600;  // twips
    grid_.Model().SetColWidth(keyColumn, std::max(narrowest, keys));
}

void MenuPageWindow::TakeFocus() const { SetFocus(grid_.Handle()); }

bool MenuPageWindow::TranslateKey(MSG& message) {
    if (message.message < WM_KEYFIRST || message.message > WM_KEYLAST || GetFocus() != grid_.Handle()) return false;
    constexpr int used[] = {keys::enter, keys::space,  keys::deleteKey, keys::up,       keys::down, keys::left,
                            keys::right, keys::pageUp, keys::home,      keys::pageDown, keys::end};
    const int key = static_cast<int>(message.wParam);
    const bool down = message.message == WM_KEYDOWN || message.message == WM_KEYUP;
    const bool character = message.message == WM_CHAR && (key == keys::enter || key == keys::space);
    if (!character && (!down || std::find(std::begin(used), std::end(used), key) == std::end(used))) return false;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    return true;
}

void MenuPageWindow::Draw(Surface& surface, Dpi dpi) const {
    Rect area = ClientArea().Inflated(-Scaled(margin, dpi.x), -Scaled(margin, dpi.y));
    area.top = std::max(area.top, area.bottom - Scaled(hintHeight - margin / 2, dpi.y));
    surface.DrawLabel(u"A click, Enter or the space bar chooses the picture of a menu, Delete takes it away.", area,
                      font, colors::buttonText, text_format::wordBreak | text_format::noPrefix);
}

LRESULT MenuPageWindow::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != messageChoose) return PageWindow::OnMessage(message, wParam, lParam);
    // The page may be destroyed while the dialog is open.
    const auto keep = Owner().Hold();
    ChooseFile();
    return 0;
}

int MenuPageWindow::CurrentRow() const {
    const int row = grid_.Model().Row();
    return row > headerRow && static_cast<std::size_t>(row) <= keys_.size() ? row : 0;
}

void MenuPageWindow::MouseUp(short, short, float, float y) { releasedAt_ = y; }

// The dialog opens when the grid has finished with the click or key that opens it.
void MenuPageWindow::Click() {
    const int row = grid_.MouseRow();
    if (row <= headerRow || static_cast<std::size_t>(row) > keys_.size()) return;
    // A click below the last row chooses nothing.
    if (releasedAt_ >= static_cast<float>(grid_.RowPos(row) + grid_.Model().RowHeight(row))) return;
    grid_.Model().MoveTo(row, pictureColumn);
    PostMessageW(Handle(), messageChoose, 0, 0);
}

void MenuPageWindow::KeyDown(short& keyCode, short& shift) {
    if (shift != 0 || CurrentRow() == 0) return;
    if (keyCode == keys::enter || keyCode == keys::space) {
        keyCode = 0;
        PostMessageW(Handle(), messageChoose, 0, 0);
    } else if (keyCode == keys::deleteKey) {
        keyCode = 0;
        SetPicture(CurrentRow(), nullptr);
        Owner().Changed();
    }
}

// If no file is chosen, the picture is empty: this is how a click removes one.
void MenuPageWindow::ChooseFile() {
    const int row = CurrentRow();
    if (row == 0) return;
    const HWND owner = GetAncestor(Handle(), GA_ROOT);
    const LifeWatch alive = Watch();
    const Text file = ShowOpenPicture(reinterpret_cast<std::intptr_t>(owner));
    if (!alive.Alive()) return;
    ComPtr<IPictureDisp> picture;
    if (!file.empty()) {
        try {
            picture = LoadPictureFile(file);
        } catch (const RunTimeError&) {
            return;
        } catch (const ComError&) {
            return;
        }
    }
    SetPicture(row, picture.get());
    Owner().Changed();
}

}  // namespace qvx::menus
