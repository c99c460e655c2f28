#include "designer/browser_win32.h"

#include <shellapi.h>
#include <shlwapi.h>

#include "com/wide_text.h"

namespace qvx::host::designer {

namespace {

// The program that shows web pages; empty when the system knows none.
Text BrowserProgram() {
    for (const wchar_t* kind : {L".html", L"http"}) {
        wchar_t path[MAX_PATH];
        DWORD size = MAX_PATH;
        if (AssocQueryStringW(ASSOCF_NONE, ASSOCSTR_EXECUTABLE, kind, L"open", path, &size) == S_OK)
            return Text(FromWide(path));
    }
    return {};
}

}  // namespace

bool OpenInBrowser(HWND owner, const Text& page, const Text& address) {
    const auto execute = [&](const Text& file, const wchar_t* arguments) {
        return reinterpret_cast<INT_PTR>(ShellExecuteW(owner, L"open", Wide(file), arguments, nullptr, SW_SHOWNORMAL)) >
               32;
    };
    // The shell drops the part after the # from a file's address, so the browser gets the address as its argument.
    const Text browser = BrowserProgram();
    const Text argument = u"\"" + address + u"\"";
    if (!browser.empty() && execute(browser, Wide(argument))) return true;
    return execute(page, nullptr);
}

}  // namespace qvx::host::designer
