// Typing in a grid of a million rows: the time from a key of the keyboard until what it changes is on the screen.
#include <array>

#include "bench/support/workload.h"
#include "bench/windows/host_form.h"
#include "bench/windows/list_view.h"

namespace qvx::bench {
namespace {

constexpr std::size_t rowCount = 1'000'000;

void SendKey(WORD key, bool down) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    const bool extended = key >= VK_PRIOR && key <= VK_DOWN;
    input.ki.dwFlags = (extended ? KEYEVENTF_EXTENDEDKEY : 0U) | (down ? 0U : KEYEVENTF_KEYUP);
    Require(SendInput(1, &input, sizeof input) == 1, "SendInput");
}

// What can be seen of the window, from the display itself.
class Picture {
  public:
    explicit Picture(HWND window) {
        RECT area{};
        GetWindowRect(window, &area);
        const int width = area.right - area.left;
        const int height = area.bottom - area.top;
        BITMAPINFO info{};
        info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        const HDC screen = GetDC(nullptr);
        const HDC memory = CreateCompatibleDC(screen);
        const HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        const HGDIOBJ former = SelectObject(memory, bitmap);
        BitBlt(memory, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
        GdiFlush();
        const auto* first = static_cast<const DWORD*>(bits);
        pixels_.assign(first, first + static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        SelectObject(memory, former);
        DeleteObject(bitmap);
        DeleteDC(memory);
        ReleaseDC(nullptr, screen);
    }
    bool operator==(const Picture& other) const { return pixels_ == other.pixels_; }

  private:
    std::vector<DWORD> pixels_;
};

class Typist {
  public:
    explicit Typist(GridForm& form) : form_(form) {
        ShowWindow(form_.Window(), SW_SHOW);
        SetForegroundWindow(form_.Window());
        const ULONGLONG end = GetTickCount64() + 5000;
        while (GetForegroundWindow() != form_.Window() && GetTickCount64() < end) {
            HandleMessages();
            Sleep(5);
        }
        Require(GetForegroundWindow() == form_.Window(), "bringing the form to the front");
        form_.Site().Focus();
        HandleMessages();
        area_ = GetFocus();
        Require(IsChild(form_.Window(), area_), "focusing the grid");
    }

    // Presses and releases a key, or with `hold` leaves it down, and returns the seconds until everything is drawn.
    double Press(WORD key, bool hold = false) {
        const Picture before(area_);
        const Stopwatch watch;
        SendKey(key, true);
        bool arrived = false;
        while (!arrived || PeekMessageW(&message_, nullptr, 0, 0, PM_NOREMOVE)) {
            if (!PeekMessageW(&message_, nullptr, 0, 0, PM_REMOVE)) {
                Require(watch.Seconds() < 2, "the key's arrival");
                MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
                continue;
            }
            arrived = arrived || (message_.message == WM_KEYDOWN && message_.wParam == key);
            const bool typed = message_.message >= WM_KEYFIRST && message_.message <= WM_KEYLAST;
            if (typed && form_.Site().OfferKey(message_)) continue;
            TranslateMessage(&message_);
            DispatchMessageW(&message_);
        }
        GdiFlush();
        const double seconds = watch.Seconds();
        CheckSameWork(!GetUpdateRect(area_, nullptr, FALSE) && !GetUpdateRect(form_.Window(), nullptr, FALSE), "Typing",
                      "drawing everything");
        CheckSameWork(!(Picture(area_) == before), "Typing", "drawing what the key has changed");
        if (!hold) SendKey(key, false);
        HandleMessages(&form_.Site());
        return seconds;
    }

  private:
    GridForm& form_;
    HWND area_ = nullptr;
    MSG message_{};
};

void GoTo(GridForm& form, long row, long col) {
    Require(form->put_Row(row) == S_OK && form->put_Col(col) == S_OK && form.Inner()->put_TopRow(row) == S_OK,
            "moving");
    HandleMessages(&form.Site());
}

long Row(GridForm& form) {
    long row = 0;
    form->get_Row(&row);
    return row;
}

// Two characters and Enter in one cell after the other, then the arrows.
void TypeWorks(GridForm& form, Typist& typist, std::size_t times) {
    std::array<std::vector<double>, 5> samples;
    GoTo(form, rowCount / 2, 1);
    for (std::size_t i = 0; i < times; ++i) {
        const long row = Row(form);
        long col = 0;
        form->get_Col(&col);
        samples[0].push_back(typist.Press('A'));
        samples[1].push_back(typist.Press(static_cast<WORD>('B' + i % 20)));
        samples[2].push_back(typist.Press(VK_RETURN));
        const std::wstring typed{L'a', static_cast<wchar_t>(L'b' + i % 20)};
        CheckSameWork(form.Cell(row, col) == typed, "Typing", "committing what was typed");
    }
    for (std::size_t i = 0; i < times; ++i) {
        const long row = Row(form);
        samples[3].push_back(typist.Press(i % 8 < 4 ? VK_RIGHT : VK_LEFT));
        samples[4].push_back(typist.Press(VK_DOWN));
        CheckSameWork(Row(form) == row + 1, "Typing", "going down");
    }
    const char* const works[] = {"key_first", "key_next", "key_enter", "key_right", "key_down"};
    for (std::size_t i = 0; i < samples.size(); ++i) Report(works[i], rowCount, "ComboGrid", samples[i]);
}

// A key that is held down, near the first row, the middle and the last row.
void HoldWork(GridForm& form, Typist& typist, const char* work, WORD key, std::size_t times) {
    std::vector<double> samples;
    for (const double part : {0.0, 0.5, 0.9}) {
        GoTo(form, 1 + static_cast<long>(part * rowCount), 1);
        for (std::size_t i = 0; i < times; ++i) {
            const long row = Row(form);
            samples.push_back(typist.Press(key, true));
            CheckSameWork(Row(form) > row, "Typing", work);
        }
        SendKey(key, false);
        HandleMessages(&form.Site());
    }
    Report(work, rowCount, "ComboGrid", samples);
}

}  // namespace

void RunTypingWorks(const HostOptions& options) {
    GridForm form(columnCount);
    form.Fill(rowCount);
    Typist typist(form);
    TypeWorks(form, typist, options.quick ? 70 : 200);
    HoldWork(form, typist, "hold_down", VK_DOWN, options.quick ? 30 : 100);
    HoldWork(form, typist, "hold_page_down", VK_NEXT, options.quick ? 30 : 100);
}

}  // namespace qvx::bench
