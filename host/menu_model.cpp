#include "host/menu_model.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/ascii.h"
#include "common/keys.h"
#include "common/number_text.h"

namespace qvx::host {

namespace {

struct NamedKey {
    TextView word;   // in the file, between braces
    TextView shown;  // in the menu
    int key;
};

constexpr std::array<NamedKey, 8> namedKeys = {{
    {u"DEL", u"Del", keys::deleteKey},
    {u"DELETE", u"Del", keys::deleteKey},
    {u"INSERT", u"Ins", keys::insert},
    {u"BKSP", u"Bksp", keys::backspace},
    {u"HOME", u"Home", keys::home},
    {u"END", u"End", keys::end},
    {u"PGUP", u"PgUp", keys::pageUp},
    {u"PGDN", u"PgDn", keys::pageDown},
}};

constexpr int functionKey1 = keys::f2 - 1;

MenuItem ReadItem(const Block& block, unsigned& nextId) {
    MenuItem item;
    item.name = block.name;
    item.index = std::max(block.IntOf(u"Index", -1), -1);
    item.caption = block.TextOf(u"Caption");
    item.enabled = block.BoolOf(u"Enabled", true);
    item.visible = block.BoolOf(u"Visible", true);
    item.checked = block.BoolOf(u"Checked", false);
    if (const Entry* shortcut = block.FindProperty(u"Shortcut")) {
        item.shortcut = shortcut->value ? ValueAsText(*shortcut->value) : shortcut->source;
    }
    item.id = nextId++;
    for (const Block* inner : block.Objects()) {
        if (SameName(inner->className, u"Menu")) item.items.push_back(ReadItem(*inner, nextId));
    }
    return item;
}

}  // namespace

std::vector<MenuItem> ReadMenus(const Block& form) {
    std::vector<MenuItem> menus;
    unsigned nextId = firstMenuId;
    for (const Block* block : form.Objects()) {
        if (SameName(block->className, u"Menu")) menus.push_back(ReadItem(*block, nextId));
    }
    return menus;
}

Shortcut ParseShortcut(TextView text) {
    Shortcut shortcut;
    for (; !text.empty(); text.remove_prefix(1)) {
        if (text.front() == u'^') {
            shortcut.shift |= keys::controlMask;
        } else if (text.front() == u'+') {
            shortcut.shift |= keys::shiftMask;
        } else if (text.front() == u'%') {
            shortcut.shift |= keys::altMask;
        } else {
            break;
        }
    }
    if (text.size() == 1) {
        // A letter or digit alone could no longer be typed into any text box.
        const char16_t c = UpperAscii(text.front());
        const bool usable = IsAsciiLetter(c) || IsDigit(c);
        if (usable && (shortcut.shift & keys::controlMask)) {
            shortcut.key = c;
            return shortcut;
        }
        return {};
    }
    if (text.size() < 3 || text.front() != u'{' || text.back() != u'}') return {};
    const TextView word = text.substr(1, text.size() - 2);
    for (const NamedKey& named : namedKeys) {
        if (SameName(word, named.word)) {
            shortcut.key = named.key;
            return shortcut;
        }
    }
    for (int number = 1; number <= 12; ++number) {
        if (SameName(word, u"F" + IntegerToText(number))) {
            shortcut.key = functionKey1 + number - 1;
            return shortcut;
        }
    }
    return {};
}

Text ShortcutText(Shortcut shortcut) {
    if (shortcut.key == 0) return {};
    Text text;
    if (shortcut.shift & keys::controlMask) text += u"Ctrl+";
    if (shortcut.shift & keys::altMask) text += u"Alt+";
    if (shortcut.shift & keys::shiftMask) text += u"Shift+";
    for (const NamedKey& named : namedKeys) {
        if (named.key == shortcut.key) return text + Text(named.shown);
    }
    if (shortcut.key >= functionKey1) return text + u"F" + IntegerToText(shortcut.key - functionKey1 + 1);
    return text + static_cast<char16_t>(shortcut.key);
}

const MenuItem* FindShortcut(const std::vector<MenuItem>& items, Shortcut pressed) {
    if (pressed.key == 0) return nullptr;
    for (const MenuItem& item : items) {
        if (!item.enabled) continue;
        if (item.items.empty() && ParseShortcut(item.shortcut) == pressed) return &item;
        if (const MenuItem* inner = FindShortcut(item.items, pressed)) return inner;
    }
    return nullptr;
}

std::vector<const MenuItem*> AllMenuItems(const std::vector<MenuItem>& items) {
    std::vector<const MenuItem*> all;
    for (const MenuItem& item : items) {
        all.push_back(&item);
        const std::vector<const MenuItem*> inner = AllMenuItems(item.items);
        all.insert(all.end(), inner.begin(), inner.end());
    }
    return all;
}

MenuItem* FindMenuItem(std::vector<MenuItem>& items, const std::function<bool(const MenuItem&)>& matches) {
    for (MenuItem& item : items) {
        if (matches(item)) return &item;
        if (MenuItem* inner = FindMenuItem(item.items, matches)) return inner;
    }
    return nullptr;
}

}  // namespace qvx::host
