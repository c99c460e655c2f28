// One run of the forms host under somebody's hands.
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

// What the watching part in the program under test shares with this one, and its hook.
class Watch {
  public:
    // `library` is the file of that part.
    explicit Watch(const std::filesystem::path& library);
    // For a thread that has a queue; for its life.
    bool Hook(DWORD thread) const;

    Shared* shared = nullptr;
    Kernel idle;
    UINT ask = 0;

  private:
    Kernel mapping_;
    HMODULE library_ = nullptr;
};

// Where things are. All in folders of the run's own.
struct Places {
    std::filesystem::path programs;  // qvxhost.exe
    std::filesystem::path pristine;  // the samples as they are, with their databases
    std::filesystem::path work;      // made from that anew for every session
    std::filesystem::path output;    // what the host writes to its error output
};

struct Failure {
    std::string kind;    // the same for the same fault, as far as can be seen from outside
    std::string report;  // all that is known
};

class Session {
  public:
    // `subject` as in Replay. Throws std::runtime_error when the program does not even show its form.
    Session(Watch& watch, const Places& places, const std::string& subject);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    // Ends everything that the session has started.
    ~Session();

    // What is on the screen.
    Scene Look();
    // Does it, and waits until the program has nothing left to do.
    void Do(const Action& action);
    // Counts what the program holds. Nothing when it cannot be asked.
    std::optional<Counts> Count();
    // Whether the library has reported an error of its own, which a form's script may have written to its log.
    void LookIntoLog();
    // False when the form has been closed, as well as when something went wrong.
    bool Runs() const;
    const std::optional<Failure>& Failed() const { return failure_; }
    // Events that were sent to the program.
    long Inputs() const { return input_.Sent(); }

  private:
    void Start(const std::string& subject);
    void End();
    // The designer runs a form in a program of its own: waits until one that it has started shows, or is gone where its
    // window has. True when there is a new window.
    bool FollowRun();
    HWND Active() const;
    bool IsRun(HWND window) const;
    // While a button is held down, the system's own loops may look at nothing but the mouse.
    enum class Wait { forAnswer, aMoment };
    void Settle(Wait wait = Wait::forAnswer, bool count = false);
    void LookForEnd();
    // A crash is a failure.
    bool HasEnded(const Program& program);
    void Fail(std::string kind, const std::string& report);
    std::string FaultText() const;

    Watch& watch_;
    const Places& places_;
    bool design_ = false;
    Kernel job_;
    Program host_;
    Program run_;  // the form that the designer has started last, while it runs
    Input input_;
    int answers_ = 0;
    LONG request_ = 0;
    bool ended_ = false;
    std::set<DWORD> hooked_;
    std::optional<Failure> failure_;
};

}  // namespace qvx::soak
