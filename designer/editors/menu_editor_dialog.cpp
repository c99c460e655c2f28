#include "designer/editors/menu_editor_dialog.h"

#include <algorithm>

#include "common/number_text.h"
#include "host/menu_model.h"
#include "host/report_dialog.h"
#include "win/window_text.h"

namespace qvx::host::designer {

MenuEditor::MenuEditor(const Block& form)
    : EditorDialog(u"Menu editor", {596, 400}), form_(form), lines_(ReadMenuLines(form)) {}

void MenuEditor::Build() {
    AddLabel(u"&Menus:", {12, 10, 300, 26});
    const HWND box =
        Add(L"LISTBOX", u"Menus", WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_USETABSTOPS | LBS_NOINTEGRALHEIGHT,
            {12, 28, 330, 318}, list, WS_EX_CLIENTEDGE);
    DWORD stops[] = {130};
    SendMessageW(box, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(stops));
    AddButton(u"&Insert", {12, 326, 62, 350}, insert);
    AddButton(u"De&lete", {65, 326, 115, 350}, remove);
    AddButton(u"&Outdent", {118, 326, 174, 350}, outdent);
    AddButton(u"In&dent", {177, 326, 229, 350}, indent);
    AddButton(u"&Up", {232, 326, 279, 350}, up);
    AddButton(u"Do&wn", {282, 326, 330, 350}, down);
    AddLabel(u"&Caption (\"-\" is a line):", {348, 10, 584, 26});
    AddEdit({348, 28, 584, 50}, caption);
    AddLabel(u"&Name:", {348, 60, 500, 76});
    AddEdit({348, 78, 500, 100}, name);
    AddLabel(u"Inde&x:", {512, 60, 584, 76});
    AddEdit({512, 78, 584, 100}, index, ES_NUMBER);
    AddLabel(u"&Shortcut:", {348, 110, 584, 126});
    Add(L"COMBOBOX", {}, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, {348, 128, 584, 428}, shortcut);
    AddButton(u"Chec&ked", {348, 166, 584, 184}, checked, BS_AUTOCHECKBOX);
    AddButton(u"&Enabled", {348, 190, 584, 208}, enabled, BS_AUTOCHECKBOX);
    AddButton(u"&Visible", {348, 214, 584, 232}, visible, BS_AUTOCHECKBOX);
    for (const ShortcutChoice& choice : ShortcutChoices()) {
        SendMessageW(Item(shortcut), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(choice.shown)));
    }
    ShowList(0);
}

// Without a menu, the caption of the first one is the field to begin with.
HWND MenuEditor::FirstField() const { return lines_.empty() ? Item(caption) : EditorDialog::FirstField(); }

Text MenuEditor::ItemText(const MenuLine& line) const {
    Text text;
    for (int level = 0; level < line.level; ++level) text += u"\u00B7\u00B7\u00B7\u00B7";
    text += line.caption.empty() ? line.name : line.caption;
    if (const Text keys = ShortcutText(ParseShortcut(line.shortcut)); !keys.empty()) text += u"\t" + keys;
    return text;
}

void MenuEditor::ShowList(std::size_t selected) {
    SendMessageW(Item(list), WM_SETREDRAW, FALSE, 0);
    SendMessageW(Item(list), LB_RESETCONTENT, 0, 0);
    for (const MenuLine& line : lines_) {
        SendMessageW(Item(list), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(ItemText(line))));
    }
    // The next menu goes into the empty line after the last one.
    SendMessageW(Item(list), LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L""));
    current_ = std::min(selected, lines_.size());
    SendMessageW(Item(list), LB_SETCURSEL, current_, 0);
    SendMessageW(Item(list), WM_SETREDRAW, TRUE, 0);
    InvalidateRect(Item(list), nullptr, TRUE);
    ShowLine();
}

std::size_t MenuEditor::Selected() const {
    const LRESULT at = SendMessageW(Item(list), LB_GETCURSEL, 0, 0);
    return at < 0 ? lines_.size() : static_cast<std::size_t>(at);
}

void MenuEditor::ShowLine() {
    showing_ = true;
    const bool there = current_ < lines_.size();
    const MenuLine line = there ? lines_[current_] : MenuLine{};
    SetText(caption, line.caption);
    SetText(name, line.name);
    SetText(index, line.index < 0 ? Text() : IntegerToText(line.index));
    WPARAM choice = 0;
    const Shortcut keys = ParseShortcut(line.shortcut);
    for (std::size_t i = 1; i < ShortcutChoices().size(); ++i) {
        if (keys.key && ParseShortcut(ShortcutChoices()[i].source) == keys) choice = i;
    }
    SendMessageW(Item(shortcut), CB_SETCURSEL, choice, 0);
    const std::pair<int, bool> flags[] = {{checked, line.checked}, {enabled, line.enabled}, {visible, line.visible}};
    for (const auto& [id, value] : flags) SendMessageW(Item(id), BM_SETCHECK, value ? BST_CHECKED : BST_UNCHECKED, 0);
    for (const int id : {name, index, shortcut, checked, enabled, visible}) EnableWindow(Item(id), there);
    std::vector<MenuLine> copy = lines_;
    EnableWindow(Item(remove), there);
    EnableWindow(Item(indent), there && IndentMenuLine(copy, current_, true));
    copy = lines_;
    EnableWindow(Item(outdent), there && IndentMenuLine(copy, current_, false));
    copy = lines_;
    EnableWindow(Item(up), there && MoveMenuLine(copy, current_, true) != current_);
    EnableWindow(Item(down), there && MoveMenuLine(copy, current_, false) != current_);
    showing_ = false;
}

void MenuEditor::TakeFields() {
    if (showing_) return;
    if (current_ >= lines_.size()) {
        // Typing a caption into the empty line makes a menu.
        if (TextOf(caption).empty()) return;
        MenuLine line;
        line.caption = TextOf(caption);
        line.name = FreshMenuName(lines_, form_);
        line.level = lines_.empty() ? 0 : lines_.back().level;
        InsertMenuLine(lines_, lines_.size(), line);
        ShowList(lines_.size() - 1);
        return;
    }
    MenuLine& line = lines_[current_];
    line.caption = TextOf(caption);
    line.name = TextOf(name);
    const Text number = TextOf(index);
    line.index = -1;
    if (!number.empty()) line.index = ValueAsInt(FormValue(number), -1);
    const LRESULT choice = SendMessageW(Item(shortcut), CB_GETCURSEL, 0, 0);
    const auto& choices = ShortcutChoices();
    if (choice >= 0 && static_cast<std::size_t>(choice) < choices.size()) {
        const Text& source = choices[static_cast<std::size_t>(choice)].source;
        // The same keys stay as the file writes them.
        if (!(ParseShortcut(source) == ParseShortcut(line.shortcut))) line.shortcut = source;
    }
    line.checked = SendMessageW(Item(checked), BM_GETCHECK, 0, 0) == BST_CHECKED;
    line.enabled = SendMessageW(Item(enabled), BM_GETCHECK, 0, 0) == BST_CHECKED;
    line.visible = SendMessageW(Item(visible), BM_GETCHECK, 0, 0) == BST_CHECKED;
    const Text shown = ItemText(line);
    SendMessageW(Item(list), WM_SETREDRAW, FALSE, 0);
    SendMessageW(Item(list), LB_DELETESTRING, current_, 0);
    SendMessageW(Item(list), LB_INSERTSTRING, current_, reinterpret_cast<LPARAM>(Wide(shown)));
    SendMessageW(Item(list), LB_SETCURSEL, current_, 0);
    SendMessageW(Item(list), WM_SETREDRAW, TRUE, 0);
    InvalidateRect(Item(list), nullptr, TRUE);
}

void MenuEditor::OnCommand(int id, int notification) {
    switch (id) {
        case list:
            if (notification != LBN_SELCHANGE) return;
            current_ = Selected();
            ShowLine();
            return;
        case caption:
        case name:
        case index:
            if (notification == EN_CHANGE) TakeFields();
            return;
        case shortcut:
            if (notification == CBN_SELCHANGE) TakeFields();
            return;
        case checked:
        case enabled:
        case visible:
            TakeFields();
            return;
        case insert: {
            MenuLine line;
            line.name = FreshMenuName(lines_, form_);
            line.caption = line.name.substr(3);
            line.level = current_ < lines_.size() ? lines_[current_].level : lines_.empty() ? 0 : lines_.back().level;
            InsertMenuLine(lines_, current_, line);
            ShowList(current_);
            SetFocus(Item(caption));
            SendMessageW(Item(caption), EM_SETSEL, 0, -1);
            return;
        }
        case remove:
            RemoveMenuLine(lines_, current_);
            ShowList(current_);
            return;
        case indent:
        case outdent:
            IndentMenuLine(lines_, current_, id == indent);
            ShowList(current_);
            return;
        case up:
        case down:
            ShowList(MoveMenuLine(lines_, current_, id == up));
            return;
        default:
            return;
    }
}

bool MenuEditor::Accept() {
    const auto fault = CheckMenuLines(lines_, form_);
    if (!fault) return true;
    current_ = fault->line;
    SendMessageW(Item(list), LB_SETCURSEL, current_, 0);
    ShowLine();
    MessageBoxW(Handle(), Wide(fault->sentence), Wide(ProgramTitle()), MB_OK | MB_ICONEXCLAMATION);
    return false;
}

}  // namespace qvx::host::designer
