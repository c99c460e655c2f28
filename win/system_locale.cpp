#include <windows.h>

#include <algorithm>

#include "common/locale.h"
#include "win/window_text.h"

namespace qvx {

namespace {

Text LocaleText(LCTYPE which) {
    Text text(80, u'\0');  // the length of the longest one that the system allows
    const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, which, WideBuffer(text), static_cast<int>(text.size()));
    text.resize(length > 0 ? static_cast<std::size_t>(length - 1) : 0);
    return text;
}

}  // namespace

NumberSigns SystemNumberSigns() { return {LocaleText(LOCALE_SDECIMAL), LocaleText(LOCALE_STHOUSAND)}; }

DateSettings SystemDateSettings() {
    const Text pattern = LocaleText(LOCALE_SSHORTDATE);
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return DateSettingsOf(pattern, now.wYear);
}

void AppendSystemSortKey(TextView text, std::string& key) {
    const int size = static_cast<int>(text.size());
    const auto map = [&](char* to, int room) {
        // For sort keys, the system's function writes bytes into what is declared as characters.
        return LCMapStringEx(LOCALE_NAME_USER_DEFAULT, LCMAP_SORTKEY, WideData(text), size,
                             reinterpret_cast<wchar_t*>(to), room, nullptr, nullptr, 0);
    };
    char buffer[256];
    int bytes = map(buffer, sizeof buffer);
    if (bytes > 0) {
        key.append(buffer, static_cast<std::size_t>(bytes));
        return;
    }
    bytes = map(nullptr, 0);
    const std::size_t start = key.size();
    key.resize(start + static_cast<std::size_t>(std::max(bytes, 0)));
    if (bytes > 0) map(key.data() + start, bytes);
}

bool SystemHasDotlessI() {
    constexpr wchar_t dotless = 0x131;
    wchar_t small = 0;
    LCMapStringEx(LOCALE_NAME_USER_DEFAULT, LCMAP_LOWERCASE | LCMAP_LINGUISTIC_CASING, L"I", 1, &small, 1, nullptr,
                  nullptr, 0);
    return small == dotless;
}

}  // namespace qvx
