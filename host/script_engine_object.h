// The system's script engine, which runs the script of a form.
#pragma once

#include <windows.h>

#include <activscp.h>

#include <functional>
#include <map>
#include <vector>

#include "com/pointer.h"
#include "com/variant.h"
#include "common/text.h"

namespace qvx::host {

struct ScriptError {
    long line = 0;    // from 1; 0 when unknown
    long column = 0;  // from 1
    Text message;
    Text lineText;
};

class ScriptEngine {
  public:
    using Report = std::function<void(const ScriptError&)>;

    // `window` owns the engine's own dialogs; errors of the script are handed to `report` once each.
    ScriptEngine(HWND window, Report report);
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;
    ~ScriptEngine();

    // The engine for a file by its extension, .vbs or .js. Throws RunTimeError 5 for another, and ComError when the
    // system lacks the engine.
    void Open(TextView file);
    void AddObject(TextView name, IDispatch* object);
    // Makes the members of an object known without its name. `name` is the object's own and shows nowhere.
    void AddGlobals(TextView name, IDispatch* object);
    // Runs the code outside procedures. False after an error, which has been reported.
    bool Run(TextView source);
    void Close();

    bool Has(TextView procedure) const;
    // Calls a procedure with arguments in the order of declaration; a by-reference argument of any type comes back.
    // JScript knows no by-reference arguments: there, a value returned from the procedure goes to the last one. False
    // after an error, which has been reported.
    bool Call(TextView procedure, const std::vector<VARIANT*>& arguments);

  private:
    class Site;
    DISPID Find(TextView procedure) const;
    void Add(TextView name, IDispatch* object, DWORD flags);

    HWND window_;
    Report report_;
    bool answersByReturning_ = false;
    ComPtr<Site> site_;
    ComPtr<IActiveScript> engine_;
    ComPtr<IActiveScriptParse> parser_;
    ComPtr<IDispatch> code_;
};

}  // namespace qvx::host
