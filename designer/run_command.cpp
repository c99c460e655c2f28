#include "designer/run_command.h"

#include "common/number_text.h"
#include "designer/document/named_pictures.h"

namespace qvx::host::designer {

namespace {

// An argument as a program reads it again: backslashes count only before a quote, where each is written twice.
Text Quoted(const Text& argument) {
    Text quoted = u"\"";
    std::size_t backslashes = 0;
    for (const char16_t c : argument) {
        if (c == u'"') quoted.append(backslashes + 1, u'\\');
        backslashes = c == u'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(backslashes, u'\\') + u"\"";
}

}  // namespace

Text RunCopyName(const Text& name, int attempt) {
    return u"~" + (attempt == 0 ? Text() : IntegerToText(attempt)) + name;
}

std::vector<Text> ScriptsBeside(const Text& form) {
    const std::size_t name = form.size() - FileNameOf(form).size();
    const std::size_t dot = form.find_last_of(u'.');
    // A dot in the name of the folder begins no suffix.
    const Text stem = dot != Text::npos && dot >= name ? form.substr(0, dot) : form;
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
