// Form files: an accepted file is written back byte for byte, and reads the same after a change. The input: the length
// of a text, the text, then the file.
#include <cstdint>
#include <string>

#include "fuzz/fuzz_input.h"
#include "host/form_file.h"
#include "host/menu_model.h"
#include "host/saved_properties.h"

void qvx::CheckInput(FuzzInput& input) {
    using namespace host;
    Text text;
    for (std::size_t length = input.Byte() % 16; length > 0 && input.Left() >= 2; --length) {
        text += static_cast<char16_t>(input.Word());
    }
    const std::vector<std::uint8_t> rest = input.RestBytes();
    const std::string bytes(rest.begin(), rest.end());
    FormFile file;
    try {
        file = FormFile::Parse(bytes);
    } catch (const FormFileError& error) {
        Require(error.Line() >= 0 && !error.Message().empty(), "an error says what and where");
        return;
    }
    Require(file.Write() == bytes, "an unchanged file is the same bytes");
    ReadMenus(file.form);

    SavedProperties loaded;
    loaded.Add(u"Caption", file.form.TextOf(u"Caption"));
    SavedProperties now;
    now.Add(u"Caption", text);
    now.Add(u"TestFlag", text.size() % 2 == 0);
    now.Add(u"TestColor", static_cast<std::int32_t>(0x80000000u | text.size()));
    for (const MergeMode mode : {MergeMode::changes, MergeMode::everything}) {
        MergeSaved(file.form, loaded, now, {}, mode);
        const std::string written = file.Write();
        const FormFile again = FormFile::Parse(written);
        Require(again.Write() == written, "a changed file is stable");
        Require(again.form.TextOf(u"Caption") == text || loaded.Find(u"Caption")->value == now.Find(u"Caption")->value,
                "a text comes back");
        Require(again.form.BoolOf(u"TestFlag", false) == (text.size() % 2 == 0), "a Boolean comes back");
        Require(again.form.IntOf(u"TestColor", 0) == static_cast<std::int32_t>(0x80000000u | text.size()),
                "a colour comes back");
    }
}
