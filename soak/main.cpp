// soak.exe: uses the forms host at random until something goes wrong, and writes a short list of actions that shows it;
// or plays such lists again.
//
//   soak.exe run SECONDS SEED SHORTEN RESULTS SUBJECT...   SHORTEN: seconds that may be spent on shortening one list
//   soak.exe replay FILE...
//
// It is in a folder with qvxhost.exe and SoakWatch.dll; beside that folder, "pristine" contains the samples, and the
// folders of the sessions are created there. The exit code is 0 when nothing went wrong.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "soak/action.h"
#include "soak/generator.h"
#include "soak/growth.h"
#include "soak/session_win32.h"
#include "soak/shorten.h"

namespace {

using namespace qvx::soak;
namespace fs = std::filesystem;

constexpr std::size_t countEvery = 25;  // actions
constexpr std::size_t longestSession = 600;
constexpr ULONGLONG shortestTurn = 6'000;  // milliseconds that every subject gets per turn
constexpr ULONGLONG longestTurn = 60'000;
constexpr int turnsForGrowth = 12;
constexpr const char* growthKind = "growth";
constexpr const char* startKind = "start";
constexpr std::size_t findsToShorten = 12;  // per run; others are only reported

// Every line is flushed before the next failure can happen.
void Say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

struct Totals {
    long sessions = 0;
    long actions = 0;
    long inputs = 0;
};

class Soak {
  public:
    explicit Soak(const fs::path& folder)
        : places_{folder, folder.parent_path() / "pristine", folder.parent_path() / "work",
                  folder.parent_path() / "output"},
          watch_(folder / "SoakWatch.dll") {}

    const Totals& Sums() const { return totals_; }

    std::optional<Failure> Play(const Replay& replay) {
        Session session(watch_, places_, replay.subject);
        std::vector<Counts> counts;
        for (int turn = 0; turn < replay.repeats && session.Runs(); ++turn) {
            for (const Action& action : replay.actions) {
                if (!session.Runs()) break;
                session.Do(action);
            }
            if (replay.repeats == 1) continue;
            if (const auto count = session.Count()) counts.push_back(*count);
        }
        Sum(session, static_cast<std::size_t>(replay.repeats) * replay.actions.size());
        session.LookIntoLog();
        if (session.Failed()) return session.Failed();
        if (const auto growth = GrowthByTurns(counts, replay.subject.starts_with("design ")))
            return Failure{growthKind, growth->what};
        return std::nullopt;
    }

    // Plays one session until the form is closed, something goes wrong, or it has lasted long enough. `replay` receives
    // the actions.
    std::optional<Failure> Explore(Replay& replay, std::uint64_t seed, const std::function<bool()>& inTime) {
        Generator generator(seed);
        Session session(watch_, places_, replay.subject);
        std::vector<Counts> counts;
        std::vector<std::size_t> counted;
        while (session.Runs() && replay.actions.size() < longestSession && inTime()) {
            const Scene scene = session.Look();
            if (replay.actions.size() >= counted.size() * countEvery && scene.main) {
                if (const auto count = session.Count()) {
                    counts.push_back(*count);
                    counted.push_back(replay.actions.size());
                }
            }
            replay.actions.push_back(generator.Next(scene));
            session.Do(replay.actions.back());
        }
        Sum(session, replay.actions.size());
        session.LookIntoLog();
        if (session.Failed()) return session.Failed();
        if (const auto growth = Growth(counts)) {
            replay.repeats = turnsForGrowth;
            const auto begin = replay.actions.begin();
            replay.actions = {begin + static_cast<std::ptrdiff_t>(counted[growth->from]),
                              begin + static_cast<std::ptrdiff_t>(counted[growth->to])};
            return Failure{growthKind, growth->what};
        }
        return std::nullopt;
    }

  private:
    void Sum(const Session& session, std::size_t actions) {
        ++totals_.sessions;
        totals_.actions += static_cast<long>(actions);
        totals_.inputs += session.Inputs();
    }

    Places places_;
    Watch watch_;
    Totals totals_;
};

std::string FileName(const std::string& subject, std::size_t number) {
    std::string name = subject;
    for (char& character : name) {
        if (character == ' ') character = '-';
    }
    return name + "-" + std::to_string(number) + ".replay";
}

std::function<bool()> Until(ULONGLONG time) {
    return [time] { return GetTickCount64() < time; };
}

// The failures that a run has found so far: each is reported, written down, and shortened within `shorten`
// milliseconds.
class Finds {
  public:
    Finds(Soak& soak, fs::path folder, ULONGLONG shorten)
        : soak_(soak), folder_(std::move(folder)), shorten_(shorten) {}

    void Add(Replay replay, Failure failure) {
        // The system's own dialogs allocate much at first use; only growth that repeats with every turn is a fault.
        if (failure.kind == growthKind) {
            const auto again = soak_.Play(replay);
            if (!again) return;
            failure = *again;
        }
        // The same failure again is only counted.
        const std::string kind = replay.subject + ": " + failure.kind;
        if (++times_[kind] > 1) return;
        Say("FAILED " + kind + " after " + std::to_string(replay.actions.size()) + " actions\n" + failure.report);
        const fs::path file = folder_ / FileName(replay.subject, times_.size());
        const auto write = [&](const char* how) {
            std::ofstream(file, std::ios::binary)
                << TextOf(replay, std::string(how) + ": " + failure.kind + "\n" + failure.report);
        };
        write("As it was found");
        const auto goesWrong = [&](const std::vector<Action>& actions) {
            const auto again = soak_.Play({replay.subject, replay.repeats, actions});
            if (!again || again->kind != failure.kind) return false;
            failure = *again;
            return true;
        };
        if (failure.kind == startKind || times_.size() > findsToShorten) return;
        if (!goesWrong(replay.actions)) {
            Say("  it did not happen again: " + file.filename().string());
            return;
        }
        replay.actions = Shortened(replay.actions, goesWrong, Until(GetTickCount64() + shorten_));
        write("Shortened");
        Say("  shortened to " + std::to_string(replay.actions.size()) + " actions: " + file.filename().string());
    }
    const std::map<std::string, int>& Times() const { return times_; }

  private:
    Soak& soak_;
    fs::path folder_;
    ULONGLONG shorten_;
    std::map<std::string, int> times_;
};

int Run(Soak& soak, const std::vector<std::string>& arguments) {
    const ULONGLONG begin = GetTickCount64();
    ULONGLONG end = begin + std::stoull(arguments[0]) * 1000;
    const std::uint64_t seed = std::stoull(arguments[1]);
    Finds finds(soak, arguments[3], std::stoull(arguments[2]) * 1000);
    const std::vector<std::string> subjects(arguments.begin() + 4, arguments.end());
    const ULONGLONG turn = std::clamp((end - begin) / subjects.size(), shortestTurn, longestTurn);
    for (std::uint64_t number = 0; GetTickCount64() < end; ++number) {
        Replay replay{subjects[static_cast<std::size_t>(number) % subjects.size()], 1, {}};
        std::optional<Failure> failure;
        try {
            failure = soak.Explore(replay, seed * 1'000'003 + number, Until(std::min(end, GetTickCount64() + turn)));
        } catch (const std::exception& error) {
            failure = Failure{startKind, error.what()};
        }
        const ULONGLONG before = GetTickCount64();
        if (failure) finds.Add(std::move(replay), std::move(*failure));
        end += GetTickCount64() - before;
    }
    for (const auto& [kind, times] : finds.Times()) Say("FAILED " + std::to_string(times) + " times: " + kind);
    const Totals& sums = soak.Sums();
    Say(std::to_string(sums.inputs) + " inputs in " + std::to_string(sums.actions) + " actions and " +
        std::to_string(sums.sessions) + " sessions, " + std::to_string((GetTickCount64() - begin) / 1000) + " s, " +
        std::to_string(finds.Times().size()) + " faults");
    return finds.Times().empty() ? 0 : 1;
}

int PlayFiles(Soak& soak, const std::vector<std::string>& files) {
    int failed = 0;
    for (const std::string& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        int line = 0;
        const auto replay = ReplayOf(text, line);
        if (!replay) {
            Say("FAILED " + file + ": line " + std::to_string(line) + " makes no sense");
            ++failed;
        } else if (const auto failure = soak.Play(*replay)) {
            Say("FAILED " + file + ": " + failure->kind + "\n" + failure->report);
            ++failed;
        } else {
            Say("passed " + file);
        }
    }
    return failed ? 1 : 0;
}

}  // namespace

int main(int count, char** values) {
    const std::vector<std::string> arguments(values + std::min(count, 2), values + count);
    const std::string what = count > 1 ? values[1] : "";
    try {
        Soak soak(fs::absolute(values[0]).parent_path());
        if (what == "run" && arguments.size() > 4) return Run(soak, arguments);
        if (what == "replay" && !arguments.empty()) return PlayFiles(soak, arguments);
        Say("soak.exe run SECONDS SEED SHORTEN RESULTS SUBJECT... | replay FILE...");
    } catch (const std::exception& error) {
        Say(std::string("FAILED: ") + error.what());
    }
    return 2;
}
