// Input as the system delivers it from a keyboard and a mouse: it goes to the window in front, whoever that is.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <thread>

namespace qvx::test {

// Waits until something holds, handling this thread's messages meanwhile when `pump` is set. False after the time in
// milliseconds.
bool WaitFor(const std::function<bool()>& holds, int milliseconds = 5000, bool pump = true);

// Takes the request to end this thread out of its queue and returns with its exit code; nothing when there is none.
std::optional<int> TakeQuit();

void KeyDown(int key);
void KeyUp(int key);
// Down and up, with modifiers held around it.
void TypeKey(int key, const std::initializer_list<int>& modifiers = {});

// The window with the focus among those of another window's thread.
HWND FocusOf(HWND window);

// A key that somebody has been holding down: the keyboard repeats it for a while, then it comes up. Posted to the
// window with the focus, because under Wine a window that comes to the front lets go of keys that only software holds.
void RepeatAndRelease(HWND window, int key);

// Screen pixels.
void MoveMouseTo(POINT place);
POINT CenterOf(HWND window);
void LeftButton(bool down);
void ClickOn(HWND window);

// Brings a top-level window to the front and waits until it is there.
bool BringToFront(HWND window);

// For somebody: a window of that class, once it is in front; null after eight seconds without one, which is a failure.
HWND WaitForWindow(const wchar_t* windowClass);

// For somebody: waits until one of the system's dialogs has come to the front. False after eight seconds.
bool WaitForDialog();

// Somebody who acts while the test's own thread is in a modal loop.
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
