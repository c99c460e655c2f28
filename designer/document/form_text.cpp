#include "designer/document/form_text.h"

#include <algorithm>

#include "common/ascii.h"
#include "common/run_time_error.h"
#include "host/text_encoding.h"

namespace qvx::host::designer {

namespace {

Text IndentOf(TextView line) {
    std::size_t end = 0;
    while (end < line.size() && IsBlank(line[end])) ++end;
    return Text(line.substr(0, end));
}

// A line that is indented less than its block is indented like the block.
void AddLine(Text& text, TextView line, std::size_t taken, TextView indent, TextView lineEnd) {
    std::size_t blanks = 0;
    while (blanks < line.size() && IsBlank(line[blanks])) ++blanks;
    const TextView rest = line.substr(std::min(blanks, taken));
    if (!rest.empty()) text.append(indent).append(rest);
    text += lineEnd;
}

void AddBlock(Text& text, const Block& block, std::size_t taken, TextView indent, TextView lineEnd) {
    AddLine(text, block.begin.text, taken, indent, lineEnd);
    for (const Entry& entry : block.entries) {
        if (entry.block) {
            AddBlock(text, *entry.block, taken, indent, lineEnd);
        } else {
            AddLine(text, entry.line.text, taken, indent, lineEnd);
        }
    }
    AddLine(text, block.end.text, taken, indent, lineEnd);
}

std::size_t CountObjects(const Block& block) {
    std::size_t count = 1;
    for (const Block* inner : block.Objects()) {
        if (SameName(inner->className, u"Menu")) Refuse(u"Menus are edited in the menu editor, not pasted.");
        count += CountObjects(*inner);
    }
    return count;
}

}  // namespace

void Refuse(Text sentence) { throw RunTimeError(errors::invalidPropertyValue, std::move(sentence)); }

Text BlockText(const Block& block, TextView indent, TextView lineEnd) {
    Text text;
    AddBlock(text, block, IndentOf(block.begin.text).size(), indent, lineEnd);
    return text;
}

Text InnerIndent(const Block& container) {
    for (const Entry& entry : container.entries) {
        if (entry.block) return IndentOf(entry.block->begin.text);
        if (entry.kind == Entry::Kind::property) return IndentOf(entry.line.text);
    }
    return IndentOf(container.begin.text) + u"   ";
}

std::vector<std::unique_ptr<Block>> ObjectsIn(TextView text) {
    static const Text nothing = u"There are no controls on the clipboard.";
    if (text.find(u"Begin") == TextView::npos && text.find(u"begin") == TextView::npos) Refuse(nothing);
    if (text.size() > limits::fileBytes / 4) Refuse(u"The clipboard holds too much text for a form.");
    FormFile file;
    bool wholeForm = false;
    try {
        file = FormFile::Parse(EncodeUtf8(text));
        wholeForm = SameName(file.form.className, u"Form");
    } catch (const FormFileError&) {
        // The fault is reported below.
    }
    if (!wholeForm) {
        try {
            file = FormFile::Parse(EncodeUtf8(u"Begin Form Clipboard\r\n" + Text(text) + u"\r\nEnd\r\n"));
        } catch (const FormFileError& error) {
            Refuse(u"The text on the clipboard is no part of a form: " + error.Message() + u".");
        }
        if (!file.warnings.empty()) {
            Refuse(u"The text on the clipboard is no part of a form: " + file.warnings.front().message + u".");
        }
        for (const SourceLine& line : file.footer) {
            if (!Trim(line.text).empty()) Refuse(u"The text on the clipboard is no part of a form: it ends too early.");
        }
        for (const Entry& entry : file.form.entries) {
            const bool other =
                entry.kind == Entry::Kind::property || (entry.block && entry.block->kind == Block::Kind::propertyGroup);
            if (other) Refuse(u"The text on the clipboard is no part of a form: a property stands alone.");
        }
    }
    std::size_t count = 0;
    std::vector<std::unique_ptr<Block>> objects;
    for (Entry& entry : file.form.entries) {
        if (!entry.block || entry.block->kind != Block::Kind::object) continue;
        // A whole form gives its controls.
        if (wholeForm && SameName(entry.block->className, u"Menu")) continue;
        if (SameName(entry.block->className, u"Menu")) Refuse(u"Menus are edited in the menu editor, not pasted.");
        if (SameName(entry.block->className, u"Form")) Refuse(u"A form cannot be pasted into a form.");
        count += CountObjects(*entry.block);
        objects.push_back(std::move(entry.block));
    }
    if (objects.empty()) Refuse(nothing);
    if (count > pastedControls) Refuse(u"The clipboard holds too many controls.");
    return objects;
}

std::unique_ptr<Block> Reindented(const Block& block, TextView indent, TextView lineEnd) {
    auto objects = ObjectsIn(BlockText(block, indent, lineEnd));
    return std::move(objects.front());
}

void Insert(Block& container, std::unique_ptr<Block> object, bool front) {
    std::size_t position = 0;
    bool controls = false;
    for (std::size_t i = 0; i < container.entries.size(); ++i) {
        const Entry& entry = container.entries[i];
        const bool control =
            entry.block && entry.block->kind == Block::Kind::object && !SameName(entry.block->className, u"Menu");
        const bool property =
            entry.kind == Entry::Kind::property || (entry.block && entry.block->kind == Block::Kind::propertyGroup);
        if (control && front) {
            position = i;
            break;
        }
        if (control || (property && !controls)) position = i + 1;
        controls = controls || control;
    }
    Entry entry;
    entry.kind = Entry::Kind::block;
    entry.block = std::move(object);
    container.entries.insert(container.entries.begin() + static_cast<std::ptrdiff_t>(position), std::move(entry));
}

void Rename(Block& block, TextView name) {
    Text& line = block.begin.text;
    // The name is the third word of "Begin CLASS NAME".
    std::size_t at = 0;
    for (int word = 0; word < 2; ++word) {
        while (at < line.size() && IsBlank(line[at])) ++at;
        while (at < line.size() && !IsBlank(line[at])) ++at;
    }
    while (at < line.size() && IsBlank(line[at])) ++at;
    line.replace(at, block.name.size(), name);
    block.name = name;
}

Text NewBlockText(TextView className, TextView name, const TwipsRect& bounds, int tabIndex) {
    Block block;
    block.className = className;
    block.name = name;
    block.begin = {u"Begin " + Text(className) + u" " + Text(name), u"\r\n"};
    block.end = {u"End", u"\r\n"};
    if (SameName(className, u"Label") || SameName(className, u"Frame")) block.Set(u"Caption", Text(name));
    if (SameName(className, u"TextBox")) block.Set(u"Text", Text(name));
    block.Set(u"Left", std::int32_t{bounds.left});
    block.Set(u"Top", std::int32_t{bounds.top});
    block.Set(u"Width", std::int32_t{bounds.width});
    block.Set(u"Height", std::int32_t{bounds.height});
    block.Set(u"TabIndex", std::int32_t{tabIndex});
    return BlockText(block, {}, u"\r\n");
}

UsualSize UsualSizeOf(TextView className) {
    static const struct {
        TextView className;
        UsualSize size;
    } table[] = {
        {u"Label", {1200, 240}},         {u"TextBox", {1920, 315}},        {u"Frame", {2880, 1920}},
        {u"ImageList", {480, 480}},      {u"Qvx.ComboGrid", {4800, 2400}}, {u"Qvx.TextEdit", {1920, 315}},
        {u"Qvx.Button", {1320, 405}},    {u"Qvx.RButton", {1320, 405}},    {u"Qvx.Backup", {480, 480}},
        {u"Qvx.FlatBorder", {180, 225}}, {u"Qvx.CMenus", {220, 220}},
    };
    for (const auto& row : table) {
        if (SameName(row.className, className)) return row.size;
    }
    return {1320, 480};
}

bool IsObjectName(TextView name) {
    constexpr std::size_t longest = 40;
    if (name.empty() || name.size() > longest || !IsAsciiLetter(name.front())) return false;
    return std::all_of(name.begin(), name.end(),
                       [](char16_t c) { return IsAsciiLetter(c) || IsDigit(c) || c == u'_'; });
}

}  // namespace qvx::host::designer
