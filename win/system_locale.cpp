#include <windows.h>

#include "common/locale.h"
#include "win/window_text.h"

namespace qvx {

DateSettings SystemDateSettings() {
    Text pattern(80, u'\0');  // the length of the longest short date pattern that the system allows
    const int length =
        GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SSHORTDATE, WideBuffer(pattern), static_cast<int>(pattern.size()));
    pattern.resize(length > 0 ? static_cast<std::size_t>(length - 1) : 0);
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return DateSettingsOf(pattern, now.wYear);
}

}  // namespace qvx
