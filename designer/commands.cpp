#include "designer/commands.h"

namespace qvx::host::designer {

namespace {

MenuItem Item(const CommandState& state, Command command, Text caption, Text shortcut = {}) {
    MenuItem item;
    item.id = static_cast<unsigned>(command);
    item.caption = std::move(caption);
    item.shortcut = std::move(shortcut);
    item.enabled = Available(command, state);
    return item;
}

MenuItem Line() {
    MenuItem item;
    item.caption = u"-";
    return item;
}

MenuItem Popup(Text caption, std::vector<MenuItem> items) {
    MenuItem item;
    item.caption = std::move(caption);
    item.items = std::move(items);
    return item;
}

MenuItem UndoItem(const CommandState& state) {
    return Item(state, Command::undo, u"&Undo" + (state.undo.empty() ? Text() : u" " + state.undo), u"^Z");
}

}  // namespace

bool Available(Command command, const CommandState& state) {
    switch (command) {
        case Command::undo:
            return !state.undo.empty();
        case Command::redo:
            return !state.redo.empty();
        case Command::cut:
        case Command::copy:
        case Command::duplicate:
        case Command::remove:
        case Command::bringToFront:
        case Command::sendToBack:
        case Command::alignToGrid:
            return state.selected > 0;
        case Command::paste:
        case Command::pasteArray:
            return state.canPaste;
        case Command::pages:
            return state.hasPages;
        case Command::images:
            return state.imageList;
        case Command::alignLefts:
        case Command::alignCenters:
        case Command::alignRights:
        case Command::alignTops:
        case Command::alignMiddles:
        case Command::alignBottoms:
        case Command::sameWidth:
        case Command::sameHeight:
        case Command::sameSize:
            return state.selected > 1;
        case Command::spaceAcross:
        case Command::spaceDown:
            return state.selected > 2;
        default:
            return true;
    }
}

std::vector<MenuItem> DesignerMenus(const CommandState& state) {
    const auto item = [&](Command command, Text caption, Text shortcut = {}) {
        return Item(state, command, std::move(caption), std::move(shortcut));
    };
    MenuItem tabOrder = item(Command::tabOrder, u"&Tab order");
    tabOrder.checked = state.tabOrder;
    return {
        Popup(u"&File", {item(Command::newForm, u"&New", u"^N"), item(Command::open, u"&Open...", u"^O"),
                         item(Command::save, u"&Save", u"^S"), item(Command::saveAs, u"Save &As..."), Line(),
                         item(Command::run, u"&Run", u"{F5}"), Line(), item(Command::close, u"E&xit")}),
        Popup(
            u"&Edit",
            {UndoItem(state), item(Command::redo, u"&Redo" + (state.redo.empty() ? Text() : u" " + state.redo), u"^Y"),
             Line(), item(Command::cut, u"Cu&t", u"^X"), item(Command::copy, u"&Copy", u"^C"),
             item(Command::paste, u"&Paste", u"^V"), item(Command::pasteArray, u"Paste as control a&rray", u"^+V"),
             item(Command::duplicate, u"Dup&licate", u"^D"), item(Command::remove, u"&Delete", u"{DEL}"), Line(),
             item(Command::selectAll, u"Select &All", u"^A")}),
        Popup(u"&View",
              {item(Command::properties, u"&Properties", u"{F4}"), item(Command::toolbox, u"Tool&box", u"^{F4}"),
               item(Command::pages, u"Property pa&ges...", u"+{F4}"), Line(), std::move(tabOrder)}),
        Popup(u"F&ormat",
              {Popup(u"&Align", {item(Command::alignLefts, u"&Lefts"), item(Command::alignCenters, u"&Centers"),
                                 item(Command::alignRights, u"&Rights"), Line(), item(Command::alignTops, u"&Tops"),
                                 item(Command::alignMiddles, u"&Middles"), item(Command::alignBottoms, u"&Bottoms"),
                                 Line(), item(Command::alignToGrid, u"to &Grid")}),
               Popup(u"&Make same size", {item(Command::sameWidth, u"&Width"), item(Command::sameHeight, u"&Height"),
                                          item(Command::sameSize, u"&Both")}),
               Popup(u"&Space evenly", {item(Command::spaceAcross, u"&Across"), item(Command::spaceDown, u"&Down")}),
               Line(), item(Command::bringToFront, u"Bring to &front", u"^J"),
               item(Command::sendToBack, u"Send to bac&k", u"^K")}),
        Popup(u"&Tools",
              {item(Command::menus, u"&Menu editor...", u"^E"), item(Command::images, u"&Image list editor...")}),
        Popup(u"&Help", {item(Command::documentation, u"&Documentation", u"{F1}"),
                         item(Command::keys, u"&Keys and mouse", u"+{F1}")}),
    };
}

std::vector<MenuItem> ContextMenu(const CommandState& state) {
    const auto item = [&](Command command, Text caption, Text shortcut = {}) {
        return Item(state, command, std::move(caption), std::move(shortcut));
    };
    std::vector<MenuItem> items = {
        item(Command::cut, u"Cu&t", u"^X"),          item(Command::copy, u"&Copy", u"^C"),
        item(Command::paste, u"&Paste", u"^V"),      item(Command::duplicate, u"Dup&licate", u"^D"),
        item(Command::remove, u"&Delete", u"{DEL}"), Line()};
    if (state.selected > 0) {
        items.push_back(item(Command::bringToFront, u"Bring to &front", u"^J"));
        items.push_back(item(Command::sendToBack, u"Send to bac&k", u"^K"));
        items.push_back(Line());
    } else {
        items.push_back(item(Command::menus, u"&Menu editor...", u"^E"));
        items.push_back(item(Command::tabOrder, u"&Tab order"));
        items.back().checked = state.tabOrder;
        items.push_back(Line());
    }
    if (state.imageList) items.push_back(item(Command::images, u"&Images..."));
    items.push_back(item(Command::pages, u"Propert&ies...", u"+{F4}"));
    return items;
}

bool IsEditing(Command command) {
    switch (command) {
        case Command::undo:
        case Command::redo:
        case Command::cut:
        case Command::copy:
        case Command::paste:
        case Command::pasteArray:
        case Command::remove:
        case Command::selectAll:
        case Command::duplicate:
        case Command::bringToFront:
        case Command::sendToBack:
            return true;
        default:
            return false;
    }
}

std::optional<Arrangement> ArrangementOf(Command command) {
    switch (command) {
        case Command::alignLefts:
            return Arrangement::lefts;
        case Command::alignCenters:
            return Arrangement::centers;
        case Command::alignRights:
            return Arrangement::rights;
        case Command::alignTops:
            return Arrangement::tops;
        case Command::alignMiddles:
            return Arrangement::middles;
        case Command::alignBottoms:
            return Arrangement::bottoms;
        case Command::alignToGrid:
            return Arrangement::toGrid;
        case Command::sameWidth:
            return Arrangement::widths;
        case Command::sameHeight:
            return Arrangement::heights;
        case Command::sameSize:
            return Arrangement::sizes;
        case Command::spaceAcross:
            return Arrangement::acrossEvenly;
        case Command::spaceDown:
            return Arrangement::downEvenly;
        default:
            return std::nullopt;
    }
}

}  // namespace qvx::host::designer
