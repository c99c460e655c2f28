#include "designer/run_command.h"

#include "common/number_text.h"

namespace qvx::host::designer {

namespace {

Text Quoted(const Text& argument) { return u"\"" + argument + u"\""; }

}  // namespace

Text RunCopyName(const Text& name, int attempt) {
    return u"~" + (attempt == 0 ? Text() : IntegerToText(attempt)) + name;
}

std::vector<Text> ScriptsBeside(const Text& form) {
    const Text stem = form.substr(0, form.find_last_of(u'.'));
    return {stem + u".vbs", stem + u".js"};
}

Text RunCommandLine(const Text& program, const Text& form, const Text& script, const Options& options) {
    Text line = Quoted(program) + u" " + Quoted(form);
    if (!script.empty()) line += u" " + Quoted(script);
    if (!options.server.empty()) line += u" --ocx " + Quoted(options.server);
    if (!options.log.empty()) line += u" --log " + Quoted(options.log);
    if (options.quiet) line += u" --quiet";
    if (!options.arguments.empty()) line += u" --";
    for (const Text& argument : options.arguments) line += u" " + Quoted(argument);
    return line;
}

}  // namespace qvx::host::designer
