#include "host/options.h"

#include "common/run_time_error.h"

namespace qvx::host {

const TextView usage =
    u"qvxhost FORM.frm [SCRIPT.vbs|SCRIPT.js] [options] [-- ARGUMENTS...]\n"
    u"qvxhost --design [FORM.frm] [options]\n"
    u"\n"
    u"Shows a form and runs the script behind it.\n"
    u"\n"
    u"  --design      open the form in the designer; without one, a new form\n"
    u"  --save FILE   write the form to FILE when it closes\n"
    u"  --rewrite     when saving, write every property anew instead of only what changed\n"
    u"  --log FILE    append what the script hands to Host.Log to FILE\n"
    u"  --quiet       report errors on the error output only, without message boxes\n"
    u"  --ocx FILE    take classes that are not registered from this component file\n"
    u"  --help        show this text\n"
    u"\n"
    u"What stands behind -- is in Host.Arguments.\n";

Options ParseOptions(const std::vector<Text>& arguments) {
    Options options;
    const auto fail = [](Text message) { throw RunTimeError(errors::invalidProcedureCall, std::move(message)); };
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Text& argument = arguments[i];
        const auto value = [&]() -> const Text& {
            if (i + 1 >= arguments.size() || arguments[i + 1].empty()) fail(argument + u" needs a file name");
            return arguments[++i];
        };
        if (argument == u"--") {
            options.arguments.assign(arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1, arguments.end());
            break;
        }
        if (argument == u"--design") {
            options.design = true;
        } else if (argument == u"--save") {
            options.save = value();
        } else if (argument == u"--rewrite") {
            options.rewrite = true;
        } else if (argument == u"--log") {
            options.log = value();
        } else if (argument == u"--quiet") {
            options.quiet = true;
        } else if (argument == u"--ocx") {
            options.server = value();
        } else if (argument == u"--help" || argument == u"-h" || argument == u"/?") {
            options.help = true;
        } else if (argument.substr(0, 2) == u"--") {
            fail(u"unknown option " + argument);
        } else if (options.form.empty()) {
            options.form = argument;
        } else if (options.script.empty()) {
            options.script = argument;
        } else {
            fail(u"unexpected argument " + argument);
        }
    }
    if (options.form.empty() && !options.help && !options.design) fail(u"no form file is given");
    return options;
}

}  // namespace qvx::host
