// Running the form under design: the program itself, started once more with the form as it is now.
#pragma once

#include <windows.h>

#include "designer/design_session_window.h"
#include "win/handles.h"

namespace qvx::host::designer {

class FormRun {
  public:
    // Identifies the timer of the designer's window that calls Follow.
    static constexpr UINT_PTR timer = 1;

    // Both outlive it.
    FormRun(const DesignerEnvironment& environment, DesignSession& session)
        : environment_(environment), session_(session) {}
    FormRun(const FormRun&) = delete;
    FormRun& operator=(const FormRun&) = delete;
    ~FormRun() { RemoveCopy(); }

    // Starts the form unless it is running already. An unsaved form runs from a copy beside its file.
    void Start();
    // Cleans up after the form once it has ended.
    void Follow();

  private:
    // The path of a copy of the form as it is now. Throws RunTimeError 75.
    Text WriteCopy();
    // The script to run with the form; empty for none.
    Text Script() const;
    void RemoveCopy();

    const DesignerEnvironment& environment_;
    DesignSession& session_;
    UniqueKernelObject process_;
    Text copy_;
};

}  // namespace qvx::host::designer
