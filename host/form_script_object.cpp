#include "host/form_script_object.h"

#include "com/variant.h"
#include "host/form_parts_object.h"
#include "host/host_object.h"
#include "host/running_form_window.h"

namespace qvx::host {

bool FormScript::Start(TextView name, TextView source, const Options& options) {
    name_ = name;
    engine_ = std::make_unique<ScriptEngine>(form_.Handle(), [this](const ScriptError& error) { Report(error); });
    engine_->Open(name);
    engine_->AddObject(u"Host", MakeHostObject(form_, options).get());
    engine_->AddObject(u"App", MakeAppObject().get());
    engine_->AddObject(form_.Name(), form_.Automation());
    if (!SameName(form_.Name(), u"Form")) engine_->AddObject(u"Form", form_.Automation());
    for (const auto& control : form_.Controls()) {
        if (control->Index() < 0) engine_->AddObject(control->Name(), control->Extended());
    }
    engine_->AddGlobals(u"ControlArrays", MakeControlArrays(form_).get());
    MenuBar& menus = form_.Menus();
    for (const MenuItem* menu : menus.All()) {
        if (menu->index < 0) engine_->AddObject(menu->name, menus.Automation(*menu));
    }
    running_ = true;
    return engine_->Run(source);
}

void FormScript::Close() {
    running_ = false;
    if (engine_) engine_->Close();
}

void FormScript::Fire(const Text& object, int index, TextView event, std::vector<VARIANT*> arguments) {
    if (!running_) return;
    Variant first(index);
    if (index >= 0) arguments.insert(arguments.begin(), first.ptr());
    engine_->Call(object + u"_" + Text(event), arguments);
}

void FormScript::Fire(const FormControl& control, TextView event, const std::vector<VARIANT*>& arguments) {
    Fire(control.Name(), control.Index(), event, arguments);
}

void FormScript::FireMenu(const MenuItem& item) { Fire(item.name, item.index, u"Click", {}); }

void FormScript::FireForm(TextView event, const std::vector<VARIANT*>& arguments) {
    Fire(u"Form", -1, event, arguments);
}

void FormScript::Report(const ScriptError& error) const {
    Text message = name_.substr(name_.find_last_of(u"\\/") + 1);
    if (error.line > 0) message += u"(" + ValueAsText(FormValue(static_cast<std::int32_t>(error.line))) + u")";
    message += u": " + error.message;
    if (!error.lineText.empty()) message += u"\n    " + error.lineText;
    onError_(message);
}

}  // namespace qvx::host
