#include "archivers/program.h"

#include <new>

#include "archivers/file_names.h"
#include "archivers/pack.h"
#include "archivers/unpack.h"

namespace qvx::archivers {

namespace {

// The exit code reports the result even when there is no memory for a message on the console.
template <class Action>
void Report(Action&& action) noexcept {
    try {
        action();
    } catch (const std::exception&) {
    }
}

void SayDone(const Text& archive, Console& console) {
    Report([&] { console.Say(Printable(FileNameOf(archive)) + u": " + Text(TextOf(ExitCode::done))); });
}

ExitCode RunPack(const std::vector<Text>& words, Files& files, Console& console, unsigned threads) {
    const PackOptions options = ParsePackOptions(words);
    if (options.help) {
        console.Say(Text(packUsage));
        return words.empty() ? ExitCode::usage : ExitCode::done;
    }
    Pack(options, files, console, threads);
    SayDone(options.archive, console);
    return ExitCode::done;
}

ExitCode RunUnpack(const std::vector<Text>& words, Files& files, Console& console) {
    const UnpackOptions options = ParseUnpackOptions(words);
    if (options.help) {
        console.Say(Text(unpackUsage));
        return words.empty() ? ExitCode::usage : ExitCode::done;
    }
    const ExitCode result = Unpack(options, files, console);
    if (result == ExitCode::done) SayDone(options.archive, console);
    return result;
}

}  // namespace

ExitCode RunProgram(Program program, TextView commandLine, Files& files, Console& console, unsigned threads) noexcept {
    const auto complain = [&](ExitCode code, TextView name = {}) {
        Report([&] {
            console.Complain((name.empty() ? Text() : Printable(name) + u": ") + Text(TextOf(code)));
            if (code == ExitCode::usage) console.Say(Text(program == Program::pack ? packUsage : unpackUsage));
        });
        return code;
    };
    try {
        const std::vector<Text> words = SplitCommandLine(commandLine);
        return program == Program::pack ? RunPack(words, files, console, threads) : RunUnpack(words, files, console);
    } catch (const ArchiveError& error) {
        return complain(error.Code(), error.Name());
    } catch (const std::bad_alloc&) {
        return complain(ExitCode::outOfMemory);
    } catch (...) {
        return complain(ExitCode::internal);
    }
}

}  // namespace qvx::archivers
