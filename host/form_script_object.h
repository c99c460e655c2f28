// The script behind a form, and the events that it hears of.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>
#include <memory>
#include <vector>

#include "host/menu_model.h"
#include "host/options.h"
#include "host/script_engine_object.h"

namespace qvx::host {

class FormControl;
class RunningForm;

class FormScript {
  public:
    // The form outlives its script. `onError` gets each error of the script as a sentence for the user.
    FormScript(RunningForm& form, std::function<void(const Text& message)> onError)
        : form_(form), onError_(std::move(onError)) {}

    // Runs the script's own code. False when it does not even compile.
    bool Start(TextView name, TextView source, const Options& options);
    // The script hears of nothing any more, but what it is doing at present goes on.
    void Stop() { running_ = false; }
    // Ends it.
    void Close();

    // Runs Name_Event of the script, if it has one. Elements of a control array pass their index first.
    void Fire(const FormControl& control, TextView event, const std::vector<VARIANT*>& arguments);
    void FireMenu(const MenuItem& item);
    // Runs Form_Event.
    void FireForm(TextView event, const std::vector<VARIANT*>& arguments = {});

  private:
    void Fire(const Text& object, int index, TextView event, std::vector<VARIANT*> arguments);
    void Report(const ScriptError& error) const;

    RunningForm& form_;
    std::function<void(const Text& message)> onError_;
    std::unique_ptr<ScriptEngine> engine_;
    Text name_;
    bool running_ = false;  // the script has been loaded and the form is not closing
};

}  // namespace qvx::host
