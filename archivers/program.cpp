#include "archivers/program.h"

#include <new>

#include "archivers/names.h"
#include "archivers/pack.h"
#include "archivers/unpack.h"

namespace qvx::archivers {

namespace {

ExitCode RunPack(const std::vector<Text>& words, Files& files, Console& console, unsigned threads) {
    const PackOptions options = ParsePackOptions(words);
    if (options.help) {
        console.Say(Text(packUsage));
        return words.empty() ? ExitCode::usage : ExitCode::done;
    }
    Pack(options, files, console, threads);
    console.Say(Printable(FileNameOf(options.archive)) + u": " + Text(TextOf(ExitCode::done)));
    return ExitCode::done;
}

ExitCode RunUnpack(const std::vector<Text>& words, Files& files, Console& console) {
    const UnpackOptions options = ParseUnpackOptions(words);
    if (options.help) {
        console.Say(Text(unpackUsage));
        return words.empty() ? ExitCode::usage : ExitCode::done;
    }
    const ExitCode result = Unpack(options, files, console);
    if (result == ExitCode::done) {
        console.Say(Printable(FileNameOf(options.archive)) + u": " + Text(TextOf(ExitCode::done)));
    }
    return result;
}

ExitCode RunGuarded(Program program, TextView commandLine, Files& files, Console& console, unsigned threads) {
    Text message;
    ExitCode code = ExitCode::internal;
    try {
        const std::vector<Text> words = SplitCommandLine(commandLine);
        return program == Program::pack ? RunPack(words, files, console, threads) : RunUnpack(words, files, console);
    } catch (const ArchiveError& error) {
        code = error.Code();
        if (!error.Name().empty()) message = Printable(error.Name()) + u": ";
    } catch (const std::bad_alloc&) {
        code = ExitCode::outOfMemory;
    } catch (const std::exception&) {
        code = ExitCode::internal;
    }
    console.Complain(message + Text(TextOf(code)));
    if (code == ExitCode::usage) console.Say(Text(program == Program::pack ? packUsage : unpackUsage));
    return code;
}

}  // namespace

ExitCode RunProgram(Program program, TextView commandLine, Files& files, Console& console, unsigned threads) noexcept {
    try {
        return RunGuarded(program, commandLine, files, console, threads);
    } catch (...) {
        return ExitCode::internal;
    }
}

}  // namespace qvx::archivers
