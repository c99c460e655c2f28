#include "controls/menus/menu_images_win32.h"

#include <algorithm>
#include <memory>

#include "com/module.h"
#include "com/thread_shared.h"
#include "com/wide_text.h"
#include "controls/menus/menu_item.h"
#include "controls/menus/menu_look_win32.h"
#include "controls/menus/menu_text.h"
#include "controls/menus/owned_items_win32.h"
#include "win/dpi.h"
#include "win/gdi_surface.h"
#include "win/replaced_procedure.h"

namespace qvx::menus {

namespace {

// The greatest depth of nested menus; the system draws no more levels than that.
constexpr int deepestMenu = 64;

LRESULT CALLBACK MenuProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

struct FoundItem {
    HMENU menu;
    bool onBar;
    ItemState state;
};

void CollectItems(HMENU menu, bool onBar, int depth, std::vector<FoundItem>& items) {
    if (!IsMenu(menu) || depth > deepestMenu) return;
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        auto state = ReadItem(menu, i);
        if (!state) continue;
        const HMENU submenu = state->submenu;
        items.push_back({menu, onBar, std::move(*state)});
        if (submenu) CollectItems(submenu, false, depth + 1, items);
    }
}

HMENU BarOf(HWND form) {
    // A child window's "menu" is its number.
    return GetWindowLongW(form, GWL_STYLE) & WS_CHILD ? nullptr : GetMenu(form);
}

std::vector<MenuEntry> EntriesOf(std::span<const FoundItem> items) {
    std::vector<MenuEntry> entries;
    for (const FoundItem& item : items) {
        entries.push_back({Text(FromWide(item.state.text)), item.state.Separator()});
    }
    return entries;
}

std::vector<MenuObject> ObjectsOf(const MenuSource& source) {
    std::vector<MenuObject> objects;
    for (const MenuControl& control : source.controls) objects.push_back(control.object);
    return objects;
}

// Copies the pictures under their own keys, then those of menus under the menus' numbers.
std::shared_ptr<const PictureList> CopyPictures(const MenuSource& source) {
    PictureList copied;
    for (const KeyedPicture& picture : source.pictures) {
        auto plain = std::make_shared<MenuPicture>(picture.picture.get());
        if (plain->Empty() || picture.key.empty() || copied.Contains(picture.key)) continue;
        auto disabled = std::make_shared<DisabledMenuPicture>(plain);
        copied.Add({std::move(plain), std::move(disabled)}, picture.key);
    }
    auto keyed = std::make_shared<PictureList>();
    for (std::size_t i = 0; i < source.controls.size(); ++i) {
        if (const MenuPictures* found = copied.Find(source.controls[i].key)) {
            keyed->Add(*found, NumberKey(static_cast<int>(i) + 1));
        }
    }
    return keyed;
}

// The procedure of all forms, on any thread.
ReplacedProcedure& ReplacedProcedures() {
    struct Replaced : ReplacedProcedure {
        Replaced() : ReplacedProcedure(MenuProcedure) {}
    };
    return OfModule<Replaced>();
}

}  // namespace

// The forms of one thread whose menus the library draws.
class MenuWindows {
  public:
    void Add(MenuImages& images, HWND form) {
        images_.push_back(&images);
        images.form_ = form;
        images.setUp_ = false;
        try {
            if (!ReplacedProcedures().Start(form)) Remove(images);
        } catch (...) {
            Remove(images);
            throw;
        }
    }
    void Remove(MenuImages& images) {
        std::erase(images_, &images);
        const HWND form = std::exchange(images.form_, nullptr);
        images.setUp_ = false;
        if (MenuImages* other = ImagesOf(form)) {
            other->setUp_ = false;
            return;
        }
        items_.Restore(form);
        ReplacedProcedures().End(form);
        if (form == form_) ReleaseForm();
    }
    LRESULT OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  private:
    // Of several on one form, the last one.
    MenuImages* ImagesOf(HWND form) const {
        const auto found = std::find_if(images_.rbegin(), images_.rend(),
                                        [&](const MenuImages* images) { return images->form_ == form; });
        return found == images_.rend() ? nullptr : *found;
    }
    void FormGone(HWND form) {
        items_.Restore(form);
        ReplacedProcedures().Forget(form);
        std::erase_if(images_, [&](MenuImages* images) {
            if (images->form_ != form) return false;
            images->form_ = nullptr;
            return true;
        });
        if (form == form_) ReleaseForm();
    }
    void ReleaseForm() {
        form_ = nullptr;
        menu_ = nullptr;
        dc_.Reset();
    }
    void SetUp(HWND form, HMENU opening);
    void Prepare(HWND form, HMENU opening);
    void TakeItems(HWND form, std::span<const FoundItem> items, const std::vector<MenuObject>& objects,
                   const std::shared_ptr<const PictureList>& pictures, bool onlyKnown);
    void SettingsChanged(HWND form);
    bool Measure(HWND form, MEASUREITEMSTRUCT& request);
    bool Draw(HWND form, const DRAWITEMSTRUCT& request);
    std::optional<LRESULT> Choose(HMENU menu, WPARAM wParam) const;
    std::optional<MenuItemLook> LookOf(const OwnedItem& item);

    std::vector<MenuImages*> images_;
    OwnedItems items_;
    HWND form_ = nullptr;  // the one that was set up last, and the objects created for it
    HMENU menu_ = nullptr;
    UniqueMemoryDc dc_;
    std::optional<FontSpec> font_;
};

void MenuWindows::TakeItems(HWND form, std::span<const FoundItem> items, const std::vector<MenuObject>& objects,
                            const std::shared_ptr<const PictureList>& pictures, bool onlyKnown) {
    const std::vector<int> numbers = MatchMenus(objects, EntriesOf(items));
    if (onlyKnown && std::none_of(numbers.begin(), numbers.end(), [](int number) { return number > 0; })) return;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const FoundItem& item = items[i];
        if (item.onBar || !items_.MayOwn(item.state, item.menu)) continue;
        items_.Take(form, item.menu, item.state, pictures, numbers[i] ? NumberKey(numbers[i]) : Text());
    }
}

// `opening` is a menu that is about to be shown, which need not be on the form's menu bar: a pop-up menu is the form's
// when its items match some of the form's menu objects.
void MenuWindows::SetUp(HWND form, HMENU opening) {
    MenuImages* images = ImagesOf(form);
    if (!images) return;
    const auto read = images->read_;
    const MenuSource source = read();
    // Reading calls the host, which may have ended everything.
    images = ImagesOf(form);
    if (!images) return;
    const auto pictures = CopyPictures(source);
    form_ = form;
    menu_ = BarOf(form);
    const std::vector<MenuObject> objects = ObjectsOf(source);
    std::vector<FoundItem> items;
    CollectItems(menu_, true, 0, items);
    items_.Sweep();
    TakeItems(form, items, objects, pictures, false);
    const bool elsewhere =
        std::none_of(items.begin(), items.end(), [&](const FoundItem& item) { return item.menu == opening; });
    if (opening && elsewhere) {
        std::vector<FoundItem> popped;
        CollectItems(opening, false, 0, popped);
        TakeItems(form, popped, objects, pictures, true);
    }
    const WindowDc dc(form);
    dc_.Reset(CreateCompatibleDC(dc.Get()));
    images->setUp_ = true;
}

// Called before a menu opens: programs change menus whenever they like, and the system draws the items that they add.
void MenuWindows::Prepare(HWND form, HMENU opening) {
    const MenuImages* images = ImagesOf(form);
    if (!images) return;
    bool ready = images->setUp_ && form_ == form && menu_ == BarOf(form);
    const int count = GetMenuItemCount(opening);
    for (int i = 0; ready && i < count; ++i) {
        const auto item = ReadItem(opening, i);
        ready = item && (!items_.MayOwn(*item, opening) || items_.Owns(*item, opening));
    }
    if (!ready) SetUp(form, opening);
}

void MenuWindows::SettingsChanged(HWND form) {
    font_.reset();
    items_.MeasureAgain(form);
}

std::optional<MenuItemLook> MenuWindows::LookOf(const OwnedItem& item) {
    const auto state = OwnedItems::Locate(item);
    if (!state) return std::nullopt;
    if (!font_) font_ = SystemMenuFont();
    MenuItemLook look;
    // Systems that store no text for items that they do not draw get it from this object.
    look.text = FromWide(state->text.empty() ? item.text : state->text);
    look.font = *font_;
    look.colors = SystemMenuColors();
    if (const MenuPictures* picture = item.Picture()) {
        look.picture = picture->plain.get();
        look.disabledPicture = picture->disabled.get();
    }
    look.disabled = (state->state & MFS_GRAYED) != 0;
    look.checked = (state->state & MFS_CHECKED) != 0;
    look.radio = (state->type & MFT_RADIOCHECK) != 0;
    look.isDefault = (state->state & MFS_DEFAULT) != 0;
    look.rightToLeft = (state->type & MFT_RIGHTORDER) != 0;
    return look;
}

bool MenuWindows::Measure(HWND form, MEASUREITEMSTRUCT& request) {
    const OwnedItem* item = items_.Find(request.itemData);
    const auto look = item ? LookOf(*item) : std::nullopt;
    if (!look) return false;
    if (!dc_) dc_.Reset(CreateCompatibleDC(nullptr));
    GdiSurface surface(dc_.Get(), WindowDpi(form));
    const Size size = MeasureMenuItem(surface, *look);
    request.itemWidth = static_cast<UINT>(size.width);
    request.itemHeight = static_cast<UINT>(size.height);
    return true;
}

bool MenuWindows::Draw(HWND form, const DRAWITEMSTRUCT& request) {
    const OwnedItem* item = items_.Find(request.itemData);
    auto look = item ? LookOf(*item) : std::nullopt;
    if (!look) return false;
    look->selected = (request.itemState & ODS_SELECTED) != 0;
    look->disabled = (request.itemState & (ODS_GRAYED | ODS_DISABLED)) != 0;
    look->checked = (request.itemState & ODS_CHECKED) != 0;
    look->hideAccessKeys = (request.itemState & ODS_NOACCEL) != 0;
    const SavedDc saved(request.hDC);
    // A mirrored device context already draws menus from right to left; only pictures must not be mirrored.
    if (const DWORD layout = GetLayout(request.hDC); layout != GDI_ERROR && (layout & LAYOUT_RTL)) {
        SetLayout(request.hDC, layout | LAYOUT_BITMAPORIENTATIONPRESERVED);
        look->rightToLeft = false;
    }
    GdiSurface surface(request.hDC, WindowDpi(form));
    DrawMenuItem(surface, FromRECT(request.rcItem), *look);
    return true;
}

std::optional<LRESULT> MenuWindows::Choose(HMENU menu, WPARAM wParam) const {
    if (HIWORD(wParam) & MF_SYSMENU) return std::nullopt;
    std::vector<MenuChoice> choices;
    bool ours = false;
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        const auto item = ReadItem(menu, i);
        if (!item) return std::nullopt;
        const OwnedItem* owned = items_.Owns(*item, menu) ? items_.Find(item->data) : nullptr;
        ours = ours || owned;
        const std::wstring& text = item->text.empty() && owned ? owned->text : item->text;
        choices.push_back({item->Separator() ? Text() : Text(FromWide(text)), (item->state & MFS_HILITE) != 0,
                           (item->state & MFS_GRAYED) != 0});
    }
    if (!ours) return std::nullopt;
    const MenuAnswer answer = ChooseByKey(choices, static_cast<char16_t>(LOWORD(wParam)));
    if (answer.kind == MenuAnswer::Kind::none) return std::nullopt;
    return MAKELRESULT(answer.position, answer.kind == MenuAnswer::Kind::execute ? MNC_EXECUTE : MNC_SELECT);
}

LRESULT MenuWindows::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const auto passOn = [&] { return ReplacedProcedures().PassOn(window, message, wParam, lParam); };
    // The procedure is still called because other code that subclassed the window later keeps it in use.
    if (!ImagesOf(window)) {
        const LRESULT result = passOn();
        if (message == WM_NCDESTROY) FormGone(window);
        return result;
    }
    try {
        switch (message) {
            case WM_MEASUREITEM: {
                auto* request = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
                if (request && request->CtlType == ODT_MENU && Measure(window, *request)) return TRUE;
                break;
            }
            case WM_DRAWITEM: {
                const auto* request = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
                if (wParam == 0 && request && request->CtlType == ODT_MENU && Draw(window, *request)) return TRUE;
                break;
            }
            case WM_MENUCHAR:
                if (const auto chosen = Choose(reinterpret_cast<HMENU>(lParam), wParam)) return *chosen;
                break;
            default:
                break;
        }
    } catch (...) {
        // Without memory, the form gets the message unchanged.
    }
    const LRESULT result = passOn();
    try {
        switch (message) {
            case WM_PAINT: {
                const MenuImages* images = ImagesOf(window);
                if (images && !images->setUp_) SetUp(window, nullptr);
                break;
            }
            case WM_INITMENUPOPUP:
                // The system menu is left to the system.
                if (!HIWORD(lParam)) Prepare(window, reinterpret_cast<HMENU>(wParam));
                break;
            case WM_SETTINGCHANGE:
            case WM_THEMECHANGED:
            case WM_DPICHANGED:
                SettingsChanged(window);
                break;
            case WM_NCDESTROY:
                FormGone(window);
                break;
            default:
                break;
        }
    } catch (...) {
        // Items that could not be set up stay the system's.
    }
    return result;
}

namespace {

LRESULT CALLBACK MenuProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    // A handler of the host may release the library's last object during this call.
    CountObject(1);
    LRESULT result = 0;
    if (const auto windows = ThreadShared<MenuWindows>::Find()) {
        result = windows->OnMessage(window, message, wParam, lParam);
    } else {
        result = ReplacedProcedures().PassOn(window, message, wParam, lParam);
        if (message == WM_NCDESTROY) ReplacedProcedures().Forget(window);
    }
    CountObject(-1);
    return result;
}

}  // namespace

void MenuImages::Start(HWND form) {
    End();
    if (GetWindowThreadProcessId(form, nullptr) != GetCurrentThreadId()) return;
    windows_ = ThreadShared<MenuWindows>::Get();
    windows_->Add(*this, form);
}

void MenuImages::End() {
    if (form_) windows_->Remove(*this);
    windows_.reset();
}

}  // namespace qvx::menus
