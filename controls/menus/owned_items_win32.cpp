#include "controls/menus/owned_items_win32.h"

namespace qvx::menus {

namespace {

MENUITEMINFOW Asking(UINT mask) {
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = mask;
    return info;
}

ULONG_PTR DataAt(HMENU menu, int position) {
    MENUITEMINFOW info = Asking(MIIM_DATA);
    return GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info) ? info.dwItemData : 0;
}

ULONG_PTR DataOf(const OwnedItem& item) { return reinterpret_cast<ULONG_PTR>(&item.accessible); }

std::optional<int> PositionOf(const OwnedItem& item) {
    const int count = IsMenu(item.menu) ? GetMenuItemCount(item.menu) : 0;
    for (int i = 0; i < count; ++i) {
        if (DataAt(item.menu, i) == DataOf(item)) return i;
    }
    return std::nullopt;
}

std::optional<UINT> TypeAt(HMENU menu, int position) {
    MENUITEMINFOW info = Asking(MIIM_FTYPE);
    return GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info) ? std::optional(info.fType) : std::nullopt;
}

void SetType(HMENU menu, int position, UINT type, ULONG_PTR data) {
    MENUITEMINFOW info = Asking(MIIM_FTYPE | MIIM_DATA);
    info.fType = type;
    info.dwItemData = data;
    SetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info);
}

}  // namespace

std::optional<ItemState> ReadItem(HMENU menu, int position) {
    MENUITEMINFOW info = Asking(MIIM_FTYPE | MIIM_STATE | MIIM_SUBMENU | MIIM_DATA | MIIM_STRING);
    if (!GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info)) return std::nullopt;
    ItemState item{position, info.fType, info.fState, info.hSubMenu, info.dwItemData, {}};
    if (info.cch > 0) {
        item.text.resize(info.cch);
        info = Asking(MIIM_STRING);
        info.dwTypeData = item.text.data();
        info.cch = static_cast<UINT>(item.text.size()) + 1;  // the string has room for its terminator
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &info)) item.text.clear();
        item.text.resize(std::min<std::size_t>(item.text.size(), info.cch));
        item.text.resize(std::min(item.text.find(L'\0'), item.text.size()));
    }
    return item;
}

const OwnedItem* OwnedItems::Find(ULONG_PTR data) const {
    const auto found = items_.find(data);
    return found == items_.end() ? nullptr : found->second.get();
}

std::optional<ItemState> OwnedItems::Locate(const OwnedItem& item) {
    const auto position = PositionOf(item);
    return position ? ReadItem(item.menu, *position) : std::nullopt;
}

bool OwnedItems::Owns(const ItemState& state, HMENU menu) const {
    const OwnedItem* item = state.type & MFT_OWNERDRAW ? Find(state.data) : nullptr;
    return item && item->menu == menu;
}

bool OwnedItems::MayOwn(const ItemState& state, HMENU menu) const {
    if (state.Separator() || (state.type & MFT_BITMAP)) return false;
    return !(state.type & MFT_OWNERDRAW) || Owns(state, menu);
}

bool OwnedItems::Take(HWND form, HMENU menu, const ItemState& state, std::shared_ptr<const PictureList> pictures,
                      Text key) {
    const bool owned = Owns(state, menu);
    std::unique_ptr<OwnedItem> fresh = owned ? nullptr : std::make_unique<OwnedItem>();
    OwnedItem& item = owned ? *items_.at(state.data) : *fresh;
    item.form = form;
    item.menu = menu;
    item.pictures = std::move(pictures);
    item.key = std::move(key);
    if (!owned || item.text != state.text) {
        item.text = state.text;
        item.accessible = {MSAA_MENU_SIG, static_cast<DWORD>(item.text.size()), item.text.data()};
    }
    if (owned) return true;
    item.dataBefore = state.data;
    MENUITEMINFOW info = Asking(MIIM_FTYPE | MIIM_DATA);
    info.fType = state.type | MFT_OWNERDRAW;
    info.dwItemData = DataOf(item);
    items_.emplace(DataOf(item), std::move(fresh));
    if (SetMenuItemInfoW(menu, static_cast<UINT>(state.position), TRUE, &info)) return true;
    items_.erase(info.dwItemData);
    return false;
}

void OwnedItems::Sweep() {
    std::erase_if(items_, [](const auto& entry) { return !PositionOf(*entry.second); });
}

void OwnedItems::MeasureAgain(HWND form) {
    for (const auto& [data, item] : items_) {
        const auto position = item->form == form ? PositionOf(*item) : std::nullopt;
        const auto type = position ? TypeAt(item->menu, *position) : std::nullopt;
        if (type) SetType(item->menu, *position, *type, data);
    }
}

void OwnedItems::Restore(HWND form) {
    std::erase_if(items_, [&](const auto& entry) {
        OwnedItem& item = *entry.second;
        if (item.form != form) return false;
        const auto position = PositionOf(item);
        const auto type = position ? TypeAt(item.menu, *position) : std::nullopt;
        if (type) SetType(item.menu, *position, *type & ~static_cast<UINT>(MFT_OWNERDRAW), item.dataBefore);
        return true;
    });
}

}  // namespace qvx::menus
