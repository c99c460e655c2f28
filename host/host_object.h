// What scripts see of the host itself, and of the program they run in.
#pragma once

#include "host/running_form_window.h"

namespace qvx::host {

// "Host": Log, SaveForm, Quit, Arguments, DesignMode.
ComPtr<IDispatch> MakeHostObject(RunningForm& form, const Options& options);
// "App": Title, Path, EXEName.
ComPtr<IDispatch> MakeAppObject();

}  // namespace qvx::host
