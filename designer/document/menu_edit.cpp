#include "designer/document/menu_edit.h"

#include <algorithm>
#include <map>
#include <set>

#include "common/number_text.h"
#include "common/text_compare.h"
#include "designer/document/document.h"
#include "designer/document/form_text.h"
#include "host/menu_model.h"
#include "host/text_encoding.h"

namespace qvx::host::designer {

namespace {

Text ShortcutOf(const Block& block) {
    const Entry* shortcut = block.FindProperty(u"Shortcut");
    if (!shortcut) return {};
    return shortcut->value ? ValueAsText(*shortcut->value) : shortcut->source;
}

MenuLine LineOf(const Block& block, int level) {
    MenuLine line;
    line.level = level;
    line.caption = block.TextOf(u"Caption");
    line.name = block.name;
    line.index = std::max(block.IntOf(u"Index", -1), -1);
    line.shortcut = ShortcutOf(block);
    line.checked = block.BoolOf(u"Checked", false);
    line.enabled = block.BoolOf(u"Enabled", true);
    line.visible = block.BoolOf(u"Visible", true);
    return line;
}

void Read(const Block& container, int level, std::vector<MenuLine>& lines) {
    for (const Block* block : container.Objects()) {
        if (!IsMenu(*block)) continue;
        lines.push_back(LineOf(*block, level));
        lines.back().origin = lines.size() - 1;
        Read(*block, level + 1, lines);
    }
}

// The line after an item and everything below it.
std::size_t EndOf(const std::vector<MenuLine>& lines, std::size_t at) {
    std::size_t end = at + 1;
    while (end < lines.size() && lines[end].level > lines[at].level) ++end;
    return end;
}

// Removes the menus from a container and returns them as they are read, each before its contents.
void TakeOut(Block& container, std::vector<std::unique_ptr<Block>>& taken) {
    auto& entries = container.entries;
    for (Entry& entry : entries) {
        if (!entry.block || !IsMenu(*entry.block)) continue;
        taken.push_back(std::move(entry.block));
        TakeOut(*taken.back(), taken);
    }
    std::erase_if(entries, [](const Entry& entry) { return entry.kind == Entry::Kind::block && !entry.block; });
}

void SetFlag(Block& block, TextView name, bool value, bool usual) {
    if (block.BoolOf(name, usual) == value) return;
    if (value == usual) {
        block.Remove(name);
    } else {
        block.Set(name, value);
    }
}

void Store(Block& block, const MenuLine& line) {
    if (block.name != line.name) Rename(block, line.name);
    if (block.TextOf(u"Caption") != line.caption) block.Set(u"Caption", line.caption);
    if (std::max(block.IntOf(u"Index", -1), -1) != line.index) {
        if (line.index < 0) {
            block.Remove(u"Index");
        } else {
            block.Set(u"Index", std::int32_t{line.index});
        }
    }
    if (ShortcutOf(block) != line.shortcut) {
        if (line.shortcut.empty()) {
            block.Remove(u"Shortcut");
        } else {
            block.SetSource(u"Shortcut", line.shortcut);
        }
    }
    SetFlag(block, u"Checked", line.checked, false);
    SetFlag(block, u"Enabled", line.enabled, true);
    SetFlag(block, u"Visible", line.visible, true);
}

}  // namespace

std::vector<MenuLine> ReadMenuLines(const Block& form) {
    std::vector<MenuLine> lines;
    Read(form, 0, lines);
    return lines;
}

void InsertMenuLine(std::vector<MenuLine>& lines, std::size_t at, MenuLine line) {
    at = std::min(at, lines.size());
    const int deepest = at == 0 ? 0 : std::min(lines[at - 1].level + 1, deepestMenu);
    // The lines that follow must still be below one of their own level.
    const int shallowest = at < lines.size() ? std::max(lines[at].level - 1, 0) : 0;
    line.level = std::clamp(line.level, std::min(shallowest, deepest), deepest);
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), std::move(line));
}

void RemoveMenuLine(std::vector<MenuLine>& lines, std::size_t at) {
    if (at >= lines.size()) return;
    const auto begin = lines.begin() + static_cast<std::ptrdiff_t>(at);
    lines.erase(begin, lines.begin() + static_cast<std::ptrdiff_t>(EndOf(lines, at)));
}

bool IndentMenuLine(std::vector<MenuLine>& lines, std::size_t at, bool inwards) {
    if (at >= lines.size()) return false;
    const std::size_t end = EndOf(lines, at);
    if (inwards) {
        int deepest = 0;
        for (std::size_t i = at; i < end; ++i) deepest = std::max(deepest, lines[i].level);
        if (at == 0 || lines[at].level > lines[at - 1].level || deepest >= deepestMenu) return false;
    } else if (lines[at].level == 0) {
        return false;
    }
    for (std::size_t i = at; i < end; ++i) lines[i].level += inwards ? 1 : -1;
    return true;
}

std::size_t MoveMenuLine(std::vector<MenuLine>& lines, std::size_t at, bool up) {
    if (at >= lines.size()) return at;
    const auto begin = lines.begin();
    const std::size_t end = EndOf(lines, at);
    const auto offset = [](std::size_t position) { return static_cast<std::ptrdiff_t>(position); };
    if (up) {
        std::size_t before = at;
        while (before > 0 && lines[before - 1].level > lines[at].level) --before;
        if (before == 0 || lines[before - 1].level != lines[at].level) return at;
        --before;
        std::rotate(begin + offset(before), begin + offset(at), begin + offset(end));
        return before;
    }
    if (end >= lines.size() || lines[end].level != lines[at].level) return at;
    const std::size_t behind = EndOf(lines, end);
    std::rotate(begin + offset(at), begin + offset(end), begin + offset(behind));
    return at + behind - end;
}

namespace {

// The folded names of the form and its controls.
std::set<Text> OtherNames(const Block& form) {
    std::set<Text> names{FoldedText(form.name)};
    const auto add = [&](const auto& self, const Block& container) -> void {
        for (const Block* block : container.Objects()) {
            if (IsMenu(*block)) continue;
            names.insert(FoldedText(block->name));
            self(self, *block);
        }
    };
    add(add, form);
    return names;
}

}  // namespace

Text FreshMenuName(const std::vector<MenuLine>& lines, const Block& form) {
    std::set<Text> used = OtherNames(form);
    for (const MenuLine& line : lines) used.insert(FoldedText(line.name));
    for (int number = 1;; ++number) {
        Text name = u"mnuItem" + IntegerToText(number);
        if (!used.contains(FoldedText(name))) return name;
    }
}

std::optional<MenuFault> CheckMenuLines(const std::vector<MenuLine>& lines, const Block& form) {
    const std::set<Text> others = OtherNames(form);
    std::map<Text, std::set<int>> used;
    std::map<std::pair<int, int>, Text> shortcuts;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const MenuLine& line = lines[i];
        const auto fault = [&](Text sentence) { return MenuFault{i, std::move(sentence)}; };
        const bool holdsOthers = i + 1 < lines.size() && lines[i + 1].level > line.level;
        if (!IsObjectName(line.name)) {
            return fault(line.name.empty() ? Text(u"Every menu needs a name.")
                                           : u"\"" + line.name + u"\" is no name for a menu.");
        }
        std::set<int>& indexes = used[FoldedText(line.name)];
        const bool taken = line.index < 0 ? !indexes.empty() : indexes.contains(-1);
        if (others.contains(FoldedText(line.name)) || taken || !indexes.insert(line.index).second) {
            return fault(u"The name \"" + line.name + u"\" is used already.");
        }
        if (line.caption.empty()) return fault(u"\"" + line.name + u"\" needs a caption.");
        if (line.caption == u"-" && line.level == 0) return fault(u"A dividing line cannot stand in the bar itself.");
        if (line.caption == u"-" && holdsOthers) return fault(u"A dividing line cannot hold other menus.");
        if (line.shortcut.empty()) continue;
        const Shortcut shortcut = ParseShortcut(line.shortcut);
        if (shortcut.key == 0) return fault(u"\"" + line.shortcut + u"\" is no shortcut.");
        if (line.level == 0) return fault(u"A menu in the bar cannot have a shortcut.");
        if (holdsOthers) return fault(u"A menu that opens another one cannot have a shortcut.");
        const auto [other, isNew] = shortcuts.try_emplace({shortcut.key, shortcut.shift}, line.name);
        if (!isNew) {
            return fault(u"The shortcut " + ShortcutText(shortcut) + u" belongs to \"" + other->second +
                         u"\" already.");
        }
    }
    return std::nullopt;
}

void WriteMenuLines(Block& form, const std::vector<MenuLine>& lines) {
    const std::vector<MenuLine> before = ReadMenuLines(form);
    if (lines == before) return;
    std::vector<std::unique_ptr<Block>> taken;
    TakeOut(form, taken);
    // The last block of each level.
    std::vector<Block*> into{&form};
    for (const MenuLine& line : lines) {
        const auto level = static_cast<std::size_t>(line.level);
        into.resize(level + 1);
        Block& container = *into[level];
        const Text indent = InnerIndent(container);
        std::unique_ptr<Block> block;
        if (line.origin && *line.origin < taken.size() && taken[*line.origin]) {
            block = std::move(taken[*line.origin]);
        } else {
            Text text = u"Begin Form f\r\n";
            for (const TextView part : {TextView(indent), TextView(u"Begin Menu "), TextView(line.name),
                                        TextView(u"\r\n"), TextView(indent), TextView(u"End\r\nEnd\r\n")}) {
                text += part;
            }
            FormFile made = FormFile::Parse(EncodeUtf8(text));
            block = std::move(made.form.entries.front().block);
            block->begin.lineEnd = block->end.lineEnd = form.begin.lineEnd;
        }
        if (line.origin && before[*line.origin].level != line.level) {
            const Text text = u"Begin Form f\r\n" + BlockText(*block, indent, form.begin.lineEnd) + u"End\r\n";
            FormFile made = FormFile::Parse(EncodeUtf8(text));
            block = std::move(made.form.entries.front().block);
        }
        Store(*block, line);
        Entry entry;
        entry.kind = Entry::Kind::block;
        entry.block = std::move(block);
        into.push_back(entry.block.get());
        container.entries.push_back(std::move(entry));
    }
}

const std::vector<ShortcutChoice>& ShortcutChoices() {
    static const std::vector<ShortcutChoice> choices = [] {
        std::vector<ShortcutChoice> all{{u"", u"(none)"}};
        const auto add = [&](const Text& source) { all.push_back({source, ShortcutText(ParseShortcut(source))}); };
        for (const char16_t* shift : {u"^", u"^+"}) {
            for (char16_t letter = u'A'; letter <= u'Z'; ++letter) add(Text(shift) + letter);
        }
        for (const char16_t* shift : {u"", u"^", u"+", u"^+"}) {
            for (int number = 1; number <= 12; ++number) add(Text(shift) + u"{F" + IntegerToText(number) + u"}");
        }
        for (const char16_t* source : {u"{DEL}", u"^{DEL}", u"+{DEL}", u"{INSERT}", u"^{INSERT}", u"+{INSERT}"}) {
            add(source);
        }
        return all;
    }();
    return choices;
}

}  // namespace qvx::host::designer
