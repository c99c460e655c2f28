#include "host/report_dialog.h"

#include <string>
#include <vector>

#include "com/guard.h"
#include "com/module.h"
#include "com/wide_text.h"
#include "common/run_time_error.h"
#include "host/text_encoding.h"

namespace qvx::host {

namespace {

void WriteErrorOutput(const Text& message) {
    const HANDLE output = GetStdHandle(STD_ERROR_HANDLE);
    if (!output || output == INVALID_HANDLE_VALUE) return;
    const std::string bytes = EncodeUtf8(u"qvxhost: " + message + u"\n");
    DWORD written = 0;
    WriteFile(output, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace

void Reporter::Error(const Text& message) {
    ++errors_;
    WriteErrorOutput(message);
    if (!quiet_) MessageBoxW(owner_, Wide(message), Wide(ProgramTitle()), MB_OK | MB_ICONEXCLAMATION);
}

void Reporter::Note(const Text& message) { WriteErrorOutput(message); }

Text ProgramTitle() {
    const Text path = ModulePath(nullptr);
    DWORD unused = 0;
    const DWORD size = GetFileVersionInfoSizeW(Wide(path), &unused);
    std::vector<BYTE> block(size);
    void* name = nullptr;
    UINT length = 0;
    if (size && GetFileVersionInfoW(Wide(path), 0, size, block.data()) &&
        VerQueryValueW(block.data(), L"\\StringFileInfo\\040904B0\\ProductName", &name, &length) && length > 1) {
        return Text(FromWide(static_cast<const wchar_t*>(name)));
    }
    return u"qvxhost";
}

Text FailureText(HRESULT result) {
    wchar_t code[32];
    wsprintfW(code, L"error 0x%08X", static_cast<unsigned>(result));
    Text text(FromWide(code));
    wchar_t words[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(result), 0, words, 512, nullptr);
    Text said(FromWide(std::wstring_view(words, length)));
    while (!said.empty() && (said.back() <= u' ' || said.back() == u'.')) said.pop_back();
    return said.empty() ? text : text + u" (" + said + u")";
}

Text FailureInFlightText() {
    try {
        throw;
    } catch (const RunTimeError& error) {
        return Text(error.Description());
    } catch (const ComError& error) {
        return FailureText(error.Result());
    } catch (const std::exception& error) {
        const std::string_view what = error.what();
        return Text(what.begin(), what.end());
    } catch (...) {
        return u"unknown failure";
    }
}

}  // namespace qvx::host
