#include "host/form_file.h"

#include <algorithm>
#include <map>
#include <set>

#include "common/ascii.h"
#include "common/number_text.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"

namespace qvx::host {

namespace {

// Cuts the first word off `text`.
TextView NextWord(TextView& text) {
    text = Trim(text);
    std::size_t end = 0;
    while (end < text.size() && !IsBlank(text[end])) ++end;
    const TextView word = text.substr(0, end);
    text = Trim(text.substr(end));
    return word;
}

TextView WithoutRemark(TextView text) { return Trim(text.substr(0, text.find(u'\''))); }

std::vector<SourceLine> SplitLines(TextView text) {
    std::vector<SourceLine> lines;
    while (!text.empty()) {
        const std::size_t feed = text.find(u'\n');
        const std::size_t next = feed == TextView::npos ? text.size() : feed + 1;
        std::size_t end = feed == TextView::npos ? text.size() : feed;
        if (feed != TextView::npos && end > 0 && text[end - 1] == u'\r') --end;
        lines.push_back({Text(text.substr(0, end)), Text(text.substr(end, next - end))});
        text.remove_prefix(next);
    }
    return lines;
}

Text Shown(TextView text) {
    constexpr std::size_t most = 40;
    const TextView trimmed = Trim(text);
    return u"\"" + Text(trimmed.substr(0, most)) + (trimmed.size() > most ? u"...\"" : u"\"");
}

class Parser {
  public:
    Parser(std::vector<SourceLine> lines, FormFile& file) : lines_(std::move(lines)), file_(file) {}

    void Run() {
        std::size_t first = 0;
        while (first < lines_.size() && !StartsWithWord(lines_[first].text, u"Begin")) ++first;
        if (first == lines_.size()) throw FormFileError(0, u"the file holds no form: no line begins with \"Begin\"");
        std::move(lines_.begin(), lines_.begin() + static_cast<std::ptrdiff_t>(first),
                  std::back_inserter(file_.header));
        at_ = first;
        ReadBegin(file_.form, Block::Kind::object);
        ReadBody(file_.form, 1);
        std::move(lines_.begin() + static_cast<std::ptrdiff_t>(at_), lines_.end(), std::back_inserter(file_.footer));
    }

  private:
    static bool StartsWithWord(TextView line, TextView word) { return SameName(NextWord(line), word); }

    int Number() const { return static_cast<int>(at_) + 1; }

    // Takes the line that opens a block.
    void ReadBegin(Block& block, Block::Kind kind) {
        SourceLine& line = lines_[at_];
        TextView rest = WithoutRemark(line.text);
        NextWord(rest);
        block.kind = kind;
        block.lineNumber = Number();
        if (kind == Block::Kind::object) block.className = NextWord(rest);
        block.name = NextWord(rest);
        if (kind == Block::Kind::propertyGroup) block.className = NextWord(rest);
        if (!rest.empty()) throw FormFileError(Number(), u"unexpected text " + Shown(rest));
        if (kind == Block::Kind::object && !IsPropertyName(block.className)) {
            throw FormFileError(Number(), u"\"Begin\" must name a class and an object");
        }
        if (!IsPropertyName(block.name)) {
            throw FormFileError(Number(), kind == Block::Kind::object ? u"\"Begin\" must name a class and an object"
                                                                      : u"\"BeginProperty\" must name a property");
        }
        block.begin = std::move(line);
        ++at_;
    }

    // Reads up to and including the line that closes `block`, which is `depth` blocks deep.
    void ReadBody(Block& block, int depth) {
        for (; at_ < lines_.size(); ++at_) {
            if (lines_[at_].text.size() > limits::lineLength) throw FormFileError(Number(), u"the line is too long");
            TextView rest = lines_[at_].text;
            const TextView word = NextWord(rest);
            if (word.empty() || word.front() == u'\'') {
                AddOther(block);
            } else if (ReadProperty(block)) {
                continue;
            } else if (SameName(word, u"Begin") || SameName(word, u"BeginProperty")) {
                if (depth >= limits::nesting) throw FormFileError(Number(), u"blocks are nested too deeply");
                const bool object = SameName(word, u"Begin");
                if (object && block.kind == Block::Kind::propertyGroup) {
                    throw FormFileError(Number(), u"an object cannot stand inside a property");
                }
                Entry& entry = block.entries.emplace_back();
                entry.kind = Entry::Kind::block;
                entry.lineNumber = Number();
                entry.block = std::make_unique<Block>();
                Block& inner = *entry.block;
                ReadBegin(inner, object ? Block::Kind::object : Block::Kind::propertyGroup);
                ReadBody(inner, depth + 1);
                --at_;  // the loop steps over the closing line again
            } else if (SameName(word, u"End") || SameName(word, u"EndProperty")) {
                const bool object = SameName(word, u"End");
                if (object != (block.kind == Block::Kind::object)) {
                    throw FormFileError(Number(), object ? u"\"EndProperty\" expected" : u"\"End\" expected");
                }
                if (!WithoutRemark(rest).empty()) throw FormFileError(Number(), u"unexpected text " + Shown(rest));
                block.end = std::move(lines_[at_]);
                ++at_;
                return;
            } else {
                file_.warnings.push_back({Number(), u"not understood: " + Shown(lines_[at_].text)});
                AddOther(block);
            }
        }
        throw FormFileError(Number(), u"the file ends inside \"" + block.name + u"\", which begins in line " +
                                          IntegerToText(block.lineNumber));
    }

    bool ReadProperty(Block& block) {
        const TextView line = lines_[at_].text;
        const std::size_t equals = line.find(u'=');
        if (equals == TextView::npos) return false;
        const TextView name = Trim(line.substr(0, equals));
        if (!IsPropertyName(name)) return false;
        bool malformed = false;
        ValueLine read = ParseValue(line.substr(equals + 1), malformed);
        if (malformed) {
            throw FormFileError(Number(), read.source.empty()
                                              ? u"the value of \"" + Text(name) + u"\" is missing"
                                              : Shown(read.source) + u" is no value for \"" + Text(name) + u"\"");
        }
        Entry entry;
        entry.kind = Entry::Kind::property;
        entry.lineNumber = Number();
        entry.name = name;
        entry.value = std::move(read.value);
        entry.source = read.source;
        entry.line = std::move(lines_[at_]);
        block.entries.push_back(std::move(entry));
        return true;
    }

    void AddOther(Block& block) {
        Entry& entry = block.entries.emplace_back();
        entry.lineNumber = Number();
        entry.line = std::move(lines_[at_]);
    }

    std::vector<SourceLine> lines_;
    FormFile& file_;
    std::size_t at_ = 0;
};

void WriteBlock(const Block& block, Text& text) {
    text += block.begin.text + block.begin.lineEnd;
    for (const Entry& entry : block.entries) {
        if (entry.block) {
            WriteBlock(*entry.block, text);
        } else {
            text += entry.line.text + entry.line.lineEnd;
        }
    }
    text += block.end.text + block.end.lineEnd;
}

Text IndentOf(TextView line) {
    std::size_t end = 0;
    while (end < line.size() && IsBlank(line[end])) ++end;
    return Text(line.substr(0, end));
}

// The values of Index that each name is used with; -1 for an object that is no element of an array.
using UsedNames = std::map<Text, std::set<int>>;

void CheckNamesIn(const Block& block, UsedNames& used) {
    for (const Block* object : block.Objects()) {
        const int index = std::max(object->IntOf(u"Index", -1), -1);
        std::set<int>& indexes = used[FoldedText(object->name)];
        const bool taken = index < 0 ? !indexes.empty() : indexes.contains(-1);
        if (taken || !indexes.insert(index).second) {
            throw FormFileError(object->lineNumber, u"the name \"" + object->name + u"\" is used already");
        }
        CheckNamesIn(*object, used);
    }
}

}  // namespace

void CheckNames(const Block& form) {
    UsedNames used;
    used[FoldedText(form.name)] = {-1};
    CheckNamesIn(form, used);
}

FormFile FormFile::Parse(std::string_view bytes) {
    if (bytes.size() > limits::fileBytes) throw FormFileError(0, u"the file is too large for a form");
    DecodedText decoded = DecodeFile(bytes);
    FormFile file;
    file.encoding = decoded.encoding;
    Parser(SplitLines(decoded.text), file).Run();
    return file;
}

std::string FormFile::Write() const {
    Text text;
    for (const SourceLine& line : header) text += line.text + line.lineEnd;
    WriteBlock(form, text);
    for (const SourceLine& line : footer) text += line.text + line.lineEnd;
    return EncodeFile(encoding, text);
}

const Entry* Block::FindProperty(TextView wanted) const {
    const auto found = std::find_if(entries.rbegin(), entries.rend(), [&](const Entry& entry) {
        return entry.kind == Entry::Kind::property && SameName(entry.name, wanted);
    });
    return found == entries.rend() ? nullptr : &*found;
}

const FormValue* Block::Find(TextView wanted) const {
    const Entry* entry = FindProperty(wanted);
    return entry && entry->value ? &*entry->value : nullptr;
}

const Block* Block::FindGroup(TextView wanted) const {
    for (const Entry& entry : entries) {
        if (entry.block && entry.block->kind == Kind::propertyGroup && SameName(entry.block->name, wanted)) {
            return entry.block.get();
        }
    }
    return nullptr;
}

Text Block::TextOf(TextView wanted, TextView fallback) const {
    const FormValue* value = Find(wanted);
    return value ? ValueAsText(*value) : Text(fallback);
}

bool Block::BoolOf(TextView wanted, bool fallback) const {
    const FormValue* value = Find(wanted);
    return value ? ValueAsBool(*value) : fallback;
}

std::int32_t Block::IntOf(TextView wanted, std::int32_t fallback) const {
    const FormValue* value = Find(wanted);
    return value ? ValueAsInt(*value, fallback) : fallback;
}

std::vector<const Block*> Block::Objects() const {
    std::vector<const Block*> objects;
    for (const Entry& entry : entries) {
        if (entry.block && entry.block->kind == Kind::object) objects.push_back(entry.block.get());
    }
    return objects;
}

std::vector<Block*> Block::Objects() {
    std::vector<Block*> objects;
    for (Entry& entry : entries) {
        if (entry.block && entry.block->kind == Kind::object) objects.push_back(entry.block.get());
    }
    return objects;
}

Text Block::ChildIndent() const {
    for (const Entry& entry : entries) {
        if (entry.kind == Entry::Kind::property) return IndentOf(entry.line.text);
        if (entry.block) return IndentOf(entry.block->begin.text);
    }
    return IndentOf(begin.text) + u"   ";
}

std::size_t Block::InsertPosition() const {
    std::size_t position = 0;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const Entry& entry = entries[i];
        if (entry.kind == Entry::Kind::property || (entry.block && entry.block->kind == Kind::propertyGroup)) {
            position = i + 1;
        }
    }
    return position;
}

void Block::Set(TextView wanted, const FormValue& value) {
    const Entry* found = FindProperty(wanted);
    if (found && found->value == value) return;
    // A colour stays hexadecimal when its line was, and is so by its name when there is no line yet.
    bool asHex = wanted.find(u"Color") != TextView::npos;
    if (found) asHex = found->source.substr(0, 2) == u"&H" || found->source.substr(0, 2) == u"&h";
    Text source = FormatValue(value, asHex);
    if (std::holds_alternative<bool>(value)) {
        // FormatValue adds the remark, which is part of the line and not of the value as written.
        const std::size_t quote = source.find(u'\'');
        const Text remark = source.substr(quote);
        source.resize(quote);
        SetLine(wanted, value, source, remark);
        return;
    }
    SetLine(wanted, value, source, {});
}

void Block::SetSource(TextView wanted, TextView source) {
    const Entry* found = FindProperty(wanted);
    if (found && found->source == source) return;
    SetLine(wanted, std::nullopt, source, {});
}

void Block::SetLine(TextView wanted, const std::optional<FormValue>& value, TextView source, TextView remark) {
    if (!IsPropertyName(wanted) || source.size() + wanted.size() + 1024 > limits::lineLength) {
        throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    }
    if (const Entry* found = FindProperty(wanted)) {
        Entry& entry = const_cast<Entry&>(*found);
        const std::size_t equals = entry.line.text.find(u'=');
        std::size_t start = equals + 1;
        while (start < entry.line.text.size() && IsBlank(entry.line.text[start])) ++start;
        Text line = entry.line.text.substr(0, start).append(source).append(remark);
        std::optional<FormValue> newValue = value;
        Text newSource(Trim(source));
        entry.line.text = std::move(line);
        entry.value = std::move(newValue);
        entry.source = std::move(newSource);
        return;
    }
    Entry entry;
    entry.kind = Entry::Kind::property;
    entry.name = wanted;
    entry.value = value;
    Text padded(wanted);
    if (padded.size() < 16) padded.resize(16, u' ');
    entry.line = {ChildIndent() + padded + u"=   " + Text(source) + Text(remark), begin.lineEnd};
    entry.source = Trim(source);
    entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(InsertPosition()), std::move(entry));
}

Block& Block::Group(TextView wanted, TextView classId) {
    if (const Block* found = FindGroup(wanted)) return const_cast<Block&>(*found);
    if (!IsPropertyName(wanted)) throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value");
    auto group = std::make_unique<Block>();
    const Text indent = ChildIndent();
    group->kind = Kind::propertyGroup;
    group->name = wanted;
    group->className = classId;
    group->begin = {indent + u"BeginProperty " + Text(wanted) + (classId.empty() ? u"" : u" ") + Text(classId),
                    begin.lineEnd};
    group->end = {indent + u"EndProperty", begin.lineEnd};
    Entry entry;
    entry.kind = Entry::Kind::block;
    entry.block = std::move(group);
    Block& result = *entry.block;
    entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(InsertPosition()), std::move(entry));
    return result;
}

bool Block::Remove(TextView wanted) {
    const auto removed = std::remove_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        if (entry.kind == Entry::Kind::property) return SameName(entry.name, wanted);
        return entry.block && entry.block->kind == Kind::propertyGroup && SameName(entry.block->name, wanted);
    });
    const bool any = removed != entries.end();
    entries.erase(removed, entries.end());
    return any;
}

}  // namespace qvx::host
