#include "win/clipboard.h"

#include <cstring>

#include "common/run_time_error.h"
#include "win/handles.h"
#include "win/window_text.h"

namespace qvx {
namespace {

class OpenedClipboard {
  public:
    explicit OpenedClipboard(HWND owner) {
        // Programs that examine the clipboard whenever it changes have it open for a moment.
        constexpr int attempts = 10;
        constexpr DWORD pause = 25;
        for (int attempt = 1; !OpenClipboard(owner); ++attempt) {
            if (attempt == attempts) throw RunTimeError(clipboardUnavailable, u"Can't open Clipboard");
            Sleep(pause);
        }
    }
    ~OpenedClipboard() { CloseClipboard(); }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
};

class GlobalBytes {
  public:
    // Copies bytes, and adds as many zeros.
    GlobalBytes(const void* bytes, std::size_t size, std::size_t zeros)
        : memory_(GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size + zeros)) {
        void* to = memory_ ? GlobalLock(memory_) : nullptr;
        if (!to) throw RunTimeError(errors::outOfMemory, u"Out of memory");
        std::memcpy(to, bytes, size);
        GlobalUnlock(memory_);
    }
    ~GlobalBytes() {
        if (memory_) GlobalFree(memory_);
    }
    GlobalBytes(const GlobalBytes&) = delete;
    GlobalBytes& operator=(const GlobalBytes&) = delete;
    // Gives the memory to the clipboard, which is open; false when it is refused.
    bool Put(UINT format) {
        if (!SetClipboardData(format, memory_)) return false;
        memory_ = nullptr;
        return true;
    }

  private:
    HGLOBAL memory_;
};

}  // namespace

void PutOnClipboard(HWND owner, TextView text, const std::optional<std::string>& html) {
    GlobalBytes plain(text.data(), text.size() * sizeof(wchar_t), sizeof(wchar_t));
    std::optional<GlobalBytes> table;
    if (html) table.emplace(html->data(), html->size(), 1);
    const OpenedClipboard clipboard(owner);
    if (!EmptyClipboard() || !plain.Put(CF_UNICODETEXT))
        throw RunTimeError(clipboardUnavailable, u"Can't open Clipboard");
    // Programs take the first form that they know, and those that know HTML mostly prefer it themselves.
    if (table) table->Put(RegisterClipboardFormatW(L"HTML Format"));
}

std::optional<Text> TextOnClipboard(HWND owner) {
    const OpenedClipboard clipboard(owner);
    const HANDLE memory = GetClipboardData(CF_UNICODETEXT);
    const GlobalLockScope<const char16_t> units(memory);
    if (!units.Get()) return std::nullopt;
    const TextView all(units.Get(), GlobalSize(memory) / sizeof(char16_t));
    return Text(all.substr(0, all.find(u'\0')));
}

}  // namespace qvx
