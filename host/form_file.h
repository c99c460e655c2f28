// A form as a text file: nested blocks of property lines.
//
//     Begin Form frmFirst
//        Caption         =   "First form"
//        Begin Qvx.Button cmdHello
//           Caption         =   "&Hello"
//           BeginProperty Font
//              Name            =   "Tahoma"
//           EndProperty
//        End
//     End
//
// Every line is kept as it was read. What is not changed is written back byte for byte, with its remarks, order,
// spacing and line ends. Lines above the form's "Begin" and below its "End" are kept unread.
#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/text.h"
#include "host/form_value.h"
#include "host/text_encoding.h"

namespace qvx::host {

namespace limits {
constexpr std::size_t fileBytes = 16u << 20;
constexpr std::size_t lineLength = 1u << 20;  // UTF-16 units
constexpr int nesting = 64;                   // blocks within blocks
}  // namespace limits

// What is wrong with a form file, and where. Lines count from 1; 0 is the file as a whole.
class FormFileError : public std::exception {
  public:
    FormFileError(int line, Text message) : line_(line), message_(std::move(message)) {}
    int Line() const noexcept { return line_; }
    const Text& Message() const noexcept { return message_; }
    const char* what() const noexcept override { return "form file error"; }

  private:
    int line_;
    Text message_;
};

struct SourceLine {
    Text text;
    Text lineEnd;  // CR LF, LF, or empty at the end of a file without one
};

class Block;

// One line of a block, or a whole block inside it.
struct Entry {
    enum class Kind { other, property, block };
    Kind kind = Kind::other;
    SourceLine line;                 // properties and others
    Text name;                       // properties
    std::optional<FormValue> value;  // properties; empty for a form of value this reader does not know
    Text source;                     // properties: the value as written, without its remark
    std::unique_ptr<Block> block;
    int lineNumber = 0;  // 0 for what was added since the file was read
};

class Block {
  public:
    enum class Kind { object, propertyGroup };

    Kind kind = Kind::object;
    Text className;  // of an object: "Form", "Label", "Qvx.Button"; of a property group: its class identifier or empty
    Text name;
    SourceLine begin;
    SourceLine end;
    std::vector<Entry> entries;
    int lineNumber = 0;

    // The property of that name, compared without case; nullptr when there is none. The last one wins when a file
    // repeats a name, as it does for a reader that assigns line by line.
    const Entry* FindProperty(TextView name) const;
    // The value, or nothing when the property is missing or of an unknown form.
    const FormValue* Find(TextView name) const;
    const Block* FindGroup(TextView name) const;

    Text TextOf(TextView name, TextView fallback = {}) const;
    bool BoolOf(TextView name, bool fallback) const;
    std::int32_t IntOf(TextView name, std::int32_t fallback) const;

    // The nested objects, in the order of the file.
    std::vector<const Block*> Objects() const;
    std::vector<Block*> Objects();

    // Changes a property's line in place, or adds one after the block's last property. A line that has the value
    // already is left alone. Throws RunTimeError 380 for a name or a value that a line cannot hold.
    void Set(TextView name, const FormValue& value);
    // The same for a value in a form that this reader does not know, such as a shortcut key.
    void SetSource(TextView name, TextView source);
    // The property group of that name, added after the last property when it is missing. `classId` may be empty.
    Block& Group(TextView name, TextView classId);
    // Removes the property or property group of that name; false when there is none.
    bool Remove(TextView name);

  private:
    Text ChildIndent() const;
    std::size_t InsertPosition() const;
    void SetLine(TextView name, const std::optional<FormValue>& value, TextView source, TextView remark);
};

struct Warning {
    int line = 0;
    Text message;
};

class FormFile {
  public:
    Encoding encoding = Encoding::utf8;
    std::vector<SourceLine> header;  // lines above the form
    Block form;
    std::vector<SourceLine> footer;  // lines below it
    std::vector<Warning> warnings;   // lines that were kept but not understood

    // Throws FormFileError.
    static FormFile Parse(std::string_view bytes);
    std::string Write() const;
};

// Throws FormFileError for the first object, control or menu, whose name is taken: names are global to the script.
// Elements of a control array share theirs, with different values of Index.
void CheckNames(const Block& form);

}  // namespace qvx::host
