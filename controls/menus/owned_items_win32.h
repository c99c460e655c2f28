// Menu items that are drawn by the library instead of the system.
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

// The library's copies of an image list's pictures, by the numbers of the menu objects that they are for.
struct MenuPictures {
    std::shared_ptr<const MenuPicture> plain;
    std::shared_ptr<const DisabledMenuPicture> disabled;
};
using PictureList = KeyedCollection<MenuPictures>;

// What an owner-drawn item carries as its data: screen readers know the structure at its beginning, from which they
// read the text that nobody draws for them.
struct OwnedItem {
    MSAAMENUINFO accessible{};
    std::wstring text;  // as it was when the item was last looked at
    HWND form = nullptr;
    HMENU menu = nullptr;
    std::shared_ptr<const PictureList> pictures;
    Text key;                // of its picture in `pictures`; empty for none
    ULONG_PTR dataBefore{};  // what the item carried as its own

    const MenuPictures* Picture() const { return key.empty() || !pictures ? nullptr : pictures->Find(key); }
};

// An item as the system has it now.
struct ItemState {
    int position = 0;
    UINT type = 0;
    UINT state = 0;
    HMENU submenu = nullptr;
    ULONG_PTR data = 0;
    std::wstring text;

    bool Separator() const { return (type & MFT_SEPARATOR) != 0; }
};

// Nothing for a position that is not there. Texts of any length.
std::optional<ItemState> ReadItem(HMENU menu, int position);

// All of them, whatever form they are on.
class OwnedItems {
  public:
    // Null for data that is none of ours.
    const OwnedItem* Find(ULONG_PTR data) const;
    // Where an item is now; nothing for one that has been taken out of its menu.
    static std::optional<ItemState> Locate(const OwnedItem& item);
    bool Owns(const ItemState& state, HMENU menu) const;
    // Whether the library may draw it: not what draws itself already, or shows a bitmap.
    bool MayOwn(const ItemState& state, HMENU menu) const;

    // Makes an item owner-drawn, or brings one up to date that is. False when the system refuses.
    bool Take(HWND form, HMENU menu, const ItemState& state, std::shared_ptr<const PictureList> pictures, Text key);
    // Forgets items of menus and positions that are gone.
    void Sweep();
    // Has the system ask for the sizes of a form's items again.
    void MeasureAgain(HWND form);
    // Gives a form's items back to the system.
    void Restore(HWND form);

  private:
    std::unordered_map<ULONG_PTR, std::unique_ptr<OwnedItem>> items_;
};

}  // namespace qvx::menus
