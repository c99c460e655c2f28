// Input as the system delivers it from a keyboard and a mouse: it goes to the foreground window, whichever that is.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <thread>

namespace qvx::test {

// Waits until `holds` returns true, and handles this thread's messages meanwhile if `pump` is set. Returns false after
// the time in milliseconds.
bool WaitFor(const std::function<bool()>& holds, int milliseconds = 5000, bool pump = true);
// Handles this thread's messages for a while, so that everything that was sent arrives.
void Settle(int milliseconds = 150);

// Removes the request to end this thread from its queue and returns its exit code; nothing when there is none.
std::optional<int> TakeQuit();

void KeyDown(int key);
void KeyUp(int key);
// Presses and releases a key while modifiers are held.
void TypeKey(int key, const std::initializer_list<int>& modifiers = {});
// Types characters by the keys that they have on this keyboard.
void TypeKeys(const char* characters);

// Returns the window with the focus in the thread of `window`.
HWND FocusOf(HWND window);

// Simulates a key that is already held: the keyboard repeats it for a while, then it is released. The messages are
// posted to the window with the focus, because under Wine a window that comes to the front releases keys that only
// software holds.
void RepeatAndRelease(HWND window, int key);

// Positions are in pixels of the screen.
RECT AreaOf(HWND window);
void MoveMouseTo(POINT place);
POINT CenterOf(HWND window);
void LeftButton(bool down);
void ClickOn(HWND window);

// Brings a top-level window to the front and waits up to five seconds for it; false if it is not there then.
bool BringToFront(HWND window);

// For somebody: a window of that class, once it takes keys; null after eight seconds without one, which is a failure.
HWND WaitForWindow(const wchar_t* windowClass);
inline constexpr wchar_t systemDialog[] = L"#32770";

// A person who acts while the test's own thread is in a modal loop.
class Person {
  public:
    explicit Person(std::function<void()> acts) : thread_(std::move(acts)) {}
    ~Person() { thread_.join(); }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

  private:
    std::thread thread_;
};

}  // namespace qvx::test
