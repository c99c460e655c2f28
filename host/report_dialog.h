// How the host reports errors to the user: always by a line on the error output, and by a message box unless it is
// quiet.
#pragma once

#include <windows.h>

#include "common/text.h"

namespace qvx::host {

class Reporter {
  public:
    explicit Reporter(bool quiet) : quiet_(quiet) {}
    void SetQuiet(bool quiet) { quiet_ = quiet; }
    void SetOwner(HWND window) { owner_ = window; }

    void Error(const Text& message);
    // On the error output only.
    void Note(const Text& message);
    int Errors() const { return errors_; }

  private:
    bool quiet_;
    HWND owner_ = nullptr;
    int errors_ = 0;
};

// The name of this program as message boxes show it: the product name of its version resource.
Text ProgramTitle();

// "error 0x80040154", with the system's message when there is one.
Text FailureText(HRESULT result);

// Inside a catch block only: the exception in flight in words.
Text FailureInFlightText();

}  // namespace qvx::host
