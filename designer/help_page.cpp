#include "designer/help_page.h"

#include <algorithm>

#include "common/ascii.h"
#include "common/utf8.h"
#include "host/form_value.h"

namespace qvx::host::designer {

namespace {

constexpr TextView library = u"Qvx.";

// What the form keeps for every control; (Custom) opens property pages.
bool BelongsToForm(TextView property) {
    constexpr TextView names[] = {u"Name",    u"Left", u"Top",         u"Width", u"Height",  u"TabIndex", u"TabStop",
                                  u"Visible", u"Tag",  u"ToolTipText", u"Index", u"Default", u"Cancel"};
    return std::any_of(std::begin(names), std::end(names), [&](TextView name) { return SameName(name, property); });
}

bool IsPlainInAddress(char c) {
    const auto wide = static_cast<unsigned char>(c);
    return IsAsciiLetter(wide) || IsDigit(wide) ||
           TextView(u"-._~/:").find(static_cast<char16_t>(wide)) != TextView::npos;
}

}  // namespace

HelpPage HelpPageOf(TextView className, TextView property) {
    HelpPage form{u"hosting.html", u"the-form-file"};
    if (className.empty() && property.empty()) return {u"designer.html"};
    if (className.size() <= library.size() || !SameName(className.substr(0, library.size()), library)) return form;
    if (BelongsToForm(property)) return form;
    HelpPage page{Text(className.substr(library.size())) + u".html"};
    std::transform(page.file.begin(), page.file.end(), page.file.begin(), LowerAscii);
    if (!SameName(property, u"Custom")) page.anchor = property;
    return page;
}

std::vector<Text> DocumentationFolders(const Text& program) {
    std::vector<Text> folders;
    std::size_t end = program.size();
    for (int level = 0; level < 2 && end > 0 && end != Text::npos; ++level) {
        end = program.find_last_of(u"\\/", end - 1);
        if (end != Text::npos) folders.push_back(program.substr(0, end + 1) + u"docs");
    }
    return folders;
}

Text FileAddress(const Text& path, const Text& anchor) {
    constexpr TextView digits = u"0123456789ABCDEF";
    Text slashes = path;
    std::replace(slashes.begin(), slashes.end(), u'\\', u'/');
    // The name of another machine takes the place of the host.
    Text address = slashes.starts_with(u"//") ? u"file:" : u"file:///";
    for (const char byte : EncodeUtf8(slashes)) {
        const auto value = static_cast<unsigned char>(byte);
        if (IsPlainInAddress(byte)) {
            address += static_cast<char16_t>(value);
        } else {
            address.append({u'%', digits[value >> 4], digits[value & 15]});
        }
    }
    return anchor.empty() ? address : address + u"#" + anchor;
}

}  // namespace qvx::host::designer
