// Menu items that the library draws instead of the system.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "common/keyed_collection.h"
#include "controls/menus/menu_match.h"
#include "controls/menus/menu_picture_gdi.h"

namespace qvx::menus {

// The library's copies of an image list's pictures, by the numbers of the menu objects that they belong to.
struct MenuPictures {
    std::shared_ptr<const MenuPicture> plain;
    std::shared_ptr<const DisabledMenuPicture> disabled;
};
using PictureList = KeyedCollection<MenuPictures>;

// The data of an owner-drawn item: screen readers know the structure at its beginning, from which they read the text
// that the system does not draw.
struct OwnedItem {
    MSAAMENUINFO accessible{};
    std::wstring text;  // as it was when the item was last examined
    HWND form = nullptr;
    HMENU menu = nullptr;
    std::shared_ptr<const PictureList> pictures;
    Text key;                // of its picture in `pictures`; empty for none
    ULONG_PTR dataBefore{};  // the item's own previous data

    const MenuPictures* Picture() const { return key.empty() || !pictures ? nullptr : pictures->Find(key); }
};

// The present state of an item in the system.
struct ItemState {
    int position = 0;
    UINT type = 0;
    UINT state = 0;
    HMENU submenu = nullptr;
    ULONG_PTR data = 0;
    std::wstring text;

    bool Separator() const { return (type & MFT_SEPARATOR) != 0; }
};

// Returns nullopt for a position that does not exist. Texts may be of any length.
std::optional<ItemState> ReadItem(HMENU menu, int position);

// All items that the library draws, on any form.
class OwnedItems {
  public:
    // Returns null for data that is not the library's.
    const OwnedItem* Find(ULONG_PTR data) const;
    // Returns the present state of an item; nullopt for one that has been removed from its menu.
    static std::optional<ItemState> Locate(const OwnedItem& item);
    // Whether the library already draws the item in that menu.
    bool Owns(const ItemState& state, HMENU menu) const;
    // Whether the library may draw the item: not a separator, a bitmap item, or one that other code draws.
    bool MayOwn(const ItemState& state, HMENU menu) const;

    // Makes an item owner-drawn, or updates one that already is. Returns false when the system refuses.
    bool Take(HWND form, HMENU menu, const ItemState& state, std::shared_ptr<const PictureList> pictures, Text key);
    // Drops items of menus and positions that no longer exist.
    void Sweep();
    // Makes the system request the sizes of a form's items again.
    void MeasureAgain(HWND form);
    // Restores a form's items, so that the system draws them.
    void Restore(HWND form);

  private:
    std::unordered_map<ULONG_PTR, std::unique_ptr<OwnedItem>> items_;
};

}  // namespace qvx::menus
