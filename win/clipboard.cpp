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

class GlobalText {
  public:
    explicit GlobalText(TextView text) : memory_(GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t))) {
        void* bytes = memory_ ? GlobalLock(memory_) : nullptr;
        if (!bytes) throw RunTimeError(errors::outOfMemory, u"Out of memory");
        std::memcpy(bytes, text.data(), text.size() * sizeof(wchar_t));
        static_cast<wchar_t*>(bytes)[text.size()] = 0;
        GlobalUnlock(memory_);
    }
    ~GlobalText() {
        if (memory_) GlobalFree(memory_);
    }
    GlobalText(const GlobalText&) = delete;
    GlobalText& operator=(const GlobalText&) = delete;
    HGLOBAL Get() const { return memory_; }
    void GiveAway() { memory_ = nullptr; }

  private:
    HGLOBAL memory_;
};

}  // namespace

void PutOnClipboard(HWND owner, TextView text) {
    GlobalText memory(text);
    const OpenedClipboard clipboard(owner);
    if (!EmptyClipboard() || !SetClipboardData(CF_UNICODETEXT, memory.Get()))
        throw RunTimeError(clipboardUnavailable, u"Can't open Clipboard");
    memory.GiveAway();
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
