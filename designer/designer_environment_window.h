// What every part of the designer works with: the command line, the component classes, and the way to the user.
#pragma once

#include <windows.h>

#include <functional>

#include "host/class_source_object.h"
#include "host/options.h"
#include "host/report_dialog.h"

namespace qvx::host::designer {

// The questions that the designer asks its user. Tests answer them themselves.
struct Questions {
    // The system's message box; the answer is IDYES and so on.
    std::function<int(HWND owner, const Text& question, UINT kind)> ask;
    // The name of a file to open or to write; empty when the user cancels. `initial` is what is offered: a path, of
    // which a folder with a separator at its end is enough.
    std::function<Text(HWND owner, bool save, const Text& initial, const Text& filter)> file;
    // Shows a page of the documentation; false when nothing does. `address` is that of the file with its place.
    std::function<bool(HWND owner, const Text& file, const Text& address)> browse;
};
Questions SystemQuestions();

struct DesignerEnvironment {
    Options options;
    // Both outlive the designer.
    const ClassSource& classes;
    Reporter& reporter;
    Questions questions;
    HWND window = nullptr;  // the designer's own, as soon as there is one; it owns every question

    int Ask(const Text& question, UINT kind) const { return questions.ask(window, question, kind); }
    Text AskForFile(bool save, const Text& initial, const Text& filter) const {
        return questions.file(window, save, initial, filter);
    }
    // The log shows a program that sends keys from outside when something is done.
    void Log(const Text& line) const;
    // Reports the exception that is being handled.
    void ReportFailure() const;
};

}  // namespace qvx::host::designer
