// One run of the forms host under random input.
#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "soak/action.h"
#include "soak/growth.h"
#include "soak/input_win32.h"
#include "soak/program_win32.h"
#include "soak/scene.h"
#include "soak/watch/watch.h"

namespace qvx::soak {

// The memory that the watching part in the program under test shares with this program, and its hook.
class Watch {
  public:
    // `library` is the file of the watching part.
    explicit Watch(const std::filesystem::path& library);
    // Hooks a thread that has a message queue, for the rest of the thread's life.
    bool Hook(DWORD thread) const;

    Shared* shared = nullptr;
    Kernel idle;
    UINT ask = 0;

  private:
    Kernel mapping_;
    HMODULE library_ = nullptr;
};

// The folders of a run; all of them are its own.
struct Places {
    std::filesystem::path programs;  // qvxhost.exe
    std::filesystem::path pristine;  // the unchanged samples with their databases
    std::filesystem::path work;      // copied from there anew for every session
    std::filesystem::path output;    // the file for the host's error output
};

struct Failure {
    std::string kind;    // equal for equal faults, as far as can be seen from outside
    std::string report;  // everything that is known
};

class Session {
  public:
    // `subject` as in Replay. Throws std::runtime_error when the program does not even show its form.
    Session(Watch& watch, const Places& places, const std::string& subject);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    // Ends all processes that the session has started.
    ~Session();

    // Returns what is on the screen.
    Scene Look();
    // Performs the action, and waits until the program has nothing left to do.
    void Do(const Action& action);
    // Counts the program's resources. Returns nullopt when the program does not answer.
    std::optional<Counts> Count();
    // Checks whether the library has reported an error of its own, which a form's script may have written to its log.
    void LookIntoLog();
    // Returns false when the form has been closed, and when something went wrong.
    bool Runs() const;
    const std::optional<Failure>& Failed() const { return failure_; }
    // The number of events that were sent to the program.
    long Inputs() const { return input_.Sent(); }

  private:
    void Start(const std::string& subject);
    void End();
    // The designer runs a form in a process of its own: waits until a process that it has started shows its window, or
    // the process of the present window has ended. Returns true when there is a new window.
    bool FollowRun();
    HWND Active() const;
    bool IsRun(HWND window) const;
    // While a button is held down, the system's own loops may process nothing but the mouse.
    enum class Wait { forAnswer, aMoment };
    void Settle(Wait wait = Wait::forAnswer, bool count = false);
    void LookForEnd();
    // Records a crash as a failure.
    bool HasEnded(const Program& program);
    void Fail(std::string kind, const std::string& report);
    std::string FaultText() const;

    Watch& watch_;
    const Places& places_;
    bool design_ = false;
    Kernel job_;
    Program host_;
    Program run_;  // the form that the designer started last, while it runs
    Input input_;
    int answers_ = 0;
    LONG request_ = 0;
    bool ended_ = false;
    std::set<DWORD> hooked_;
    std::optional<Failure> failure_;
};

}  // namespace qvx::soak
