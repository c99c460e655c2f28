#include "archivers/file_names.h"

#include <array>

#include "common/ascii.h"
#include "common/text_compare.h"

namespace qvx::archivers {

namespace {

// The upper half of code page 437.
constexpr TextView codePage437 =
    u"\u00C7\u00FC\u00E9\u00E2\u00E4\u00E0\u00E5\u00E7\u00EA\u00EB\u00E8\u00EF\u00EE\u00EC\u00C4\u00C5"
    u"\u00C9\u00E6\u00C6\u00F4\u00F6\u00F2\u00FB\u00F9\u00FF\u00D6\u00DC\u00A2\u00A3\u00A5\u20A7\u0192"
    u"\u00E1\u00ED\u00F3\u00FA\u00F1\u00D1\u00AA\u00BA\u00BF\u2310\u00AC\u00BD\u00BC\u00A1\u00AB\u00BB"
    u"\u2591\u2592\u2593\u2502\u2524\u2561\u2562\u2556\u2555\u2563\u2551\u2557\u255D\u255C\u255B\u2510"
    u"\u2514\u2534\u252C\u251C\u2500\u253C\u255E\u255F\u255A\u2554\u2569\u2566\u2560\u2550\u256C\u2567"
    u"\u2568\u2564\u2565\u2559\u2558\u2552\u2553\u256B\u256A\u2518\u250C\u2588\u2584\u258C\u2590\u2580"
    u"\u03B1\u00DF\u0393\u03C0\u03A3\u03C3\u00B5\u03C4\u03A6\u0398\u03A9\u03B4\u221E\u03C6\u03B5\u2229"
    u"\u2261\u00B1\u2265\u2264\u2320\u2321\u00F7\u2248\u00B0\u2219\u00B7\u221A\u207F\u00B2\u25A0\u00A0";
static_assert(codePage437.size() == 128);

constexpr std::size_t longestComponent = 255;
// The part of the final name in a temporary name; on other systems' disks, the length of a name counts bytes, three per
// character.
constexpr std::size_t longestStem = 70;

bool IsSeparator(char16_t c) { return c == u'\\' || c == u'/'; }

std::size_t NameStart(TextView path) {
    const std::size_t found = path.find_last_of(u"\\/:");
    return found == TextView::npos ? 0 : found + 1;
}

// Names of devices are reserved in every folder, with any extension.
bool IsDevice(TextView name) {
    const TextView stem = TrimRight(name.substr(0, name.find_first_of(u".:")));
    for (const TextView device : {u"CON", u"PRN", u"AUX", u"NUL", u"CONIN$", u"CONOUT$", u"CLOCK$"}) {
        if (EqualNoCase(stem, device)) return true;
    }
    if (stem.size() != 4) return false;
    const bool port = EqualNoCase(stem.substr(0, 3), u"COM") || EqualNoCase(stem.substr(0, 3), u"LPT");
    // The system treats superscript digits as digits here.
    return port && (IsDigit(stem[3]) || stem[3] == u'\u00B9' || stem[3] == u'\u00B2' || stem[3] == u'\u00B3');
}

bool IsControl(char16_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

// Characters that make a name look different from its spelling.
bool IsDirectionMark(char16_t c) {
    return c == 0x200E || c == 0x200F || (c >= 0x2028 && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0xFEFF;
}

bool HasLoneSurrogate(TextView name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] < 0xD800 || name[i] > 0xDFFF) continue;
        if (name[i] > 0xDBFF || i + 1 == name.size() || name[i + 1] < 0xDC00 || name[i + 1] > 0xDFFF) return true;
        ++i;
    }
    return false;
}

}  // namespace

TextView FileNameOf(TextView path) { return path.substr(NameStart(path)); }

TextView FolderOf(TextView path) { return path.substr(0, NameStart(path)); }

Text Joined(TextView folder, TextView name) {
    Text path(folder);
    if (!path.empty() && !IsSeparator(path.back()) && path.back() != u':') path += u'\\';
    return path.append(name);
}

Text TemporaryPath(const Text& path, TextView suffix) {
    TextView name = FileNameOf(path).substr(0, longestStem);
    if (!name.empty() && name.back() >= 0xD800 && name.back() <= 0xDBFF) name.remove_suffix(1);
    return Text(FolderOf(path)).append(name).append(suffix);
}

Text SplitPartPath(const Text& archive, std::uint32_t part) {
    const std::size_t start = NameStart(archive);
    const std::size_t dot = archive.find_last_of(u'.');
    Text path = archive.substr(0, dot == Text::npos || dot < start ? archive.size() : dot);
    path += u".z";
    const std::string digits = std::to_string(part + 1);
    if (digits.size() == 1) path += u'0';
    return path.append(digits.begin(), digits.end());
}

bool HasWildcard(TextView name) { return name.find_first_of(u"*?") != TextView::npos; }

bool MatchesWildcard(TextView pattern, TextView name) {
    if (pattern == u"*.*") return true;
    const Text wanted = FoldedText(pattern);
    const Text text = FoldedText(name);
    std::size_t star = Text::npos;  // the last * so far, and the end of what it matches
    std::size_t reach = 0;
    std::size_t p = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (p < wanted.size() && wanted[p] == u'*') {
            star = p++;
            reach = i;
        } else if (p < wanted.size() && (wanted[p] == u'?' || wanted[p] == text[i])) {
            ++p;
            ++i;
        } else if (star != Text::npos) {
            p = star + 1;
            i = ++reach;
        } else {
            return false;
        }
    }
    return wanted.find_first_not_of(u'*', p) == Text::npos;
}

bool IsSafeComponent(TextView name) {
    if (name.empty() || name.size() > longestComponent || name.back() == u'.' || name.back() == u' ') return false;
    if (name.front() == u' ' || IsDevice(name) || HasLoneSurrogate(name)) return false;
    for (const char16_t c : name) {
        if (IsControl(c) || IsDirectionMark(c) || TextView(u"\\/:*?\"<>|").find(c) != TextView::npos) return false;
    }
    return true;
}

bool IsSafeName(TextView name) {
    constexpr std::size_t longest = 4096;
    if (name.size() > longest) return false;
    if (name.ends_with(u'/')) name.remove_suffix(1);
    for (;;) {
        const std::size_t slash = name.find(u'/');
        if (!IsSafeComponent(name.substr(0, slash))) return false;
        if (slash == TextView::npos) return true;
        name.remove_prefix(slash + 1);
    }
}

Text Printable(TextView name) {
    Text text(name);
    for (char16_t& c : text) {
        if (IsControl(c) || IsDirectionMark(c)) c = u'?';
    }
    return text;
}

Text DecodeCodePage437(ByteView bytes) {
    Text text;
    text.reserve(bytes.size());
    for (const std::uint8_t byte : bytes) text += byte < 0x80 ? char16_t{byte} : codePage437[byte - 0x80u];
    return text;
}

}  // namespace qvx::archivers
