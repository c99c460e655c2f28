#include "host/picture_names.h"

#include <algorithm>

#include "common/ascii.h"

namespace qvx::host {

Text PictureFileName(TextView list, TextView key) {
    constexpr std::size_t longest = 80;
    Text name;
    for (const char16_t c : Text(list) + (key.empty() ? u"" : u"-") + Text(key)) {
        const bool usable = IsAsciiLetter(c) || IsDigit(c) || c == u'-' || c == u'_' || c == u'(' || c == u')';
        name += usable ? c : u'_';
    }
    return name.substr(0, longest);
}

Text RelativeTo(TextView folder, TextView file) {
    const auto same = [](char16_t a, char16_t b) {
        const auto plain = [](char16_t c) { return c == u'/' ? u'\\' : LowerAscii(c); };
        return plain(a) == plain(b);
    };
    const bool below = file.size() > folder.size() + 1 && !folder.empty() &&
                       std::equal(folder.begin(), folder.end(), file.begin(), same) &&
                       (file[folder.size()] == u'\\' || file[folder.size()] == u'/');
    return Text(below ? file.substr(folder.size() + 1) : file);
}

}  // namespace qvx::host
