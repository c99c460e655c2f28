// A form file without memory: each allocation of each call fails once, alone and with all behind it.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "host/form_file.h"
#include "tests/support/portable/failing_allocation.h"

namespace qvx::host {
namespace {

const std::string sample =
    "VERSION 5.00\r\n"
    "Begin Form frmWithALongName\r\n"
    "   Caption         =   \"A caption that is long\"   ' and a remark\r\n"
    "   BackColor       =   &H000000FF&\r\n"
    "   Shortcut        =   ^S\r\n"
    "   BeginProperty Font {0BE35203-8F91-11CE-9DE3-00AA004BB851}\r\n"
    "      Name            =   \"Tahoma\"\r\n"
    "   EndProperty\r\n"
    "   Begin Label lblWithALongName\r\n"
    "   End\r\n"
    "   not understood\r\n"
    "End\r\n"
    "Attribute Name = \"\xE4\"\r\n";

Text Described(const Block& block) {
    Text text;
    for (const Entry& entry : block.entries) {
        if (entry.block) text += Described(*entry.block);
        text += u'|' + entry.source + (entry.value ? u'=' + ValueAsText(*entry.value) : Text());
    }
    return text;
}

std::pair<std::string, Text> Describe(const FormFile& file) { return {file.Write(), Described(file.form)}; }

std::unique_ptr<FormFile> Parsed() { return std::make_unique<FormFile>(FormFile::Parse(sample)); }

TEST(FormFileAllocations, ChangeALineOrDoNot) {
    const Text text(80, u't');
    const std::pair<const char*, std::function<void(Block&)>> rows[] = {
        {"a text", [&](Block& form) { form.Set(u"Caption", text); }},
        {"a text for what was none", [&](Block& form) { form.Set(u"Shortcut", text); }},
        {"another form of value", [&](Block& form) { form.SetSource(u"Caption", text); }},
        {"a truth value", [](Block& form) { form.Set(u"Caption", true); }},
        {"a new line", [&](Block& form) { form.Set(u"APropertyWithALongName", text); }},
        {"a new group", [](Block& form) { form.Group(u"Mouse", u"{0BE35203-8F91-11CE-9DE3-00AA004BB852}"); }},
        {"a group's line", [&](Block& form) { form.Group(u"Font", {}).Set(u"Name", text); }},
        {"removing", [](Block& form) { form.Remove(u"Caption"); }},
    };
    for (const auto& [name, change] : rows) {
        test::ExpectAllOrNothing(
            name, Parsed, [&](FormFile& file) { change(file.form); }, Describe);
    }
}

TEST(FormFileAllocations, OfReadingAndWritingAreOnlyTheirs) {
    test::ExpectAllOrNothing("reading", [] { return FormFile::Parse(sample).warnings.size(); });
    const FormFile file = FormFile::Parse(sample);
    test::ExpectAllOrNothing("writing", [&] { return file.Write(); });
    test::ExpectAllOrNothing("the names", [&] { return CheckNames(file.form), true; });
    test::ExpectAllOrNothing("an error", [] {
        try {
            return FormFile::Parse("Begin Form a\nCaption = \"open\nEnd").form.lineNumber;
        } catch (const FormFileError& error) {
            return error.Line();
        }
    });
}

}  // namespace
}  // namespace qvx::host
