// The command line of the forms host.
#pragma once

#include <vector>

#include "common/text.h"

namespace qvx::host {

struct Options {
    Text form;             // the form file
    Text script;           // the script beside it, or empty
    bool design = false;   // show the form as a designer does, without running it
    Text save;             // where the form is written at the end, or empty
    bool rewrite = false;  // save every property anew instead of only what changed
    Text log;              // where Host.Log appends, or empty
    bool quiet = false;    // errors go to the error output only, no message boxes
    Text server;           // a component file to take classes from when they are not registered, or empty
    bool help = false;
    std::vector<Text> arguments;  // what follows "--", for the script
};

// What every start without arguments or with --help shows.
extern const TextView usage;

// Reads the arguments (without the program's own name). Throws RunTimeError 5 with a sentence for the user when they
// make no sense.
Options ParseOptions(const std::vector<Text>& arguments);

}  // namespace qvx::host
