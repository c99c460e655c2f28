#include "host/script_engine_object.h"

#include <memory>

#include "com/bstr.h"
#include "com/guard.h"
#include "com/object.h"
#include "common/run_time_error.h"
#include "host/form_value.h"

namespace qvx::host {

namespace {

// Named here because the script interfaces' identifiers are in no import library.
constexpr IID activeScriptId = {0xbb1a2ae1, 0xa4f9, 0x11cf, {0x8f, 0x20, 0x00, 0x80, 0x5f, 0x2c, 0xd0, 0x64}};
#ifdef _WIN64
constexpr IID activeScriptParseId = {0xc7ef7658, 0xe1ee, 0x480e, {0x97, 0xea, 0xd5, 0x2c, 0xb4, 0xd7, 0x6d, 0x17}};
#else
constexpr IID activeScriptParseId = {0xbb1a2ae2, 0xa4f9, 0x11cf, {0x8f, 0x20, 0x00, 0x80, 0x5f, 0x2c, 0xd0, 0x64}};
#endif

bool EndsWith(TextView text, TextView ending) {
    return text.size() >= ending.size() && SameName(text.substr(text.size() - ending.size()), ending);
}

// The error of a failed call, in its own words.
class ExceptionInfo {
  public:
    ExceptionInfo() = default;
    ExceptionInfo(const ExceptionInfo&) = delete;
    ExceptionInfo& operator=(const ExceptionInfo&) = delete;
    ~ExceptionInfo() {
        SysFreeString(info_.bstrDescription);
        SysFreeString(info_.bstrSource);
        SysFreeString(info_.bstrHelpFile);
    }
    EXCEPINFO* put() { return &info_; }
    // `result` is what the call answered, for exceptions without a number of their own. An exception has either of two
    // numbers.
    Text Description(HRESULT result) {
        if (info_.pfnDeferredFillIn) info_.pfnDeferredFillIn(&info_);
        if (SysStringLen(info_.bstrDescription)) return Text(FromBstr(info_.bstrDescription));
        if (info_.wCode) return u"error " + ValueAsText(FormValue(std::int32_t{info_.wCode}));
        wchar_t code[32];
        wsprintfW(code, L"error 0x%08X", static_cast<unsigned>(info_.scode ? info_.scode : result));
        return Text(FromWide(code));
    }

  private:
    EXCEPINFO info_{};
};

// An argument on its way to a script and back. Scripts assign to variants by reference only, while controls hand out
// typed ones: the script works on a local copy, whose value is converted back afterwards.
class Argument {
  public:
    explicit Argument(VARIANT* source) : source_(source) {
        if (!(source->vt & VT_BYREF)) {
            local_ = Variant(*source);
            passed_ = local_.get();
        } else if (source->vt == (VT_BYREF | VT_VARIANT)) {
            passed_ = *source;
        } else {
            local_ = Variant(*source);
            passed_.vt = VT_BYREF | VT_VARIANT;
            passed_.pvarVal = local_.ptr();
        }
    }
    Argument(Argument&&) = delete;

    bool ByReference() const { return (source_->vt & VT_BYREF) != 0; }
    // Without an owner: a view of the caller's value or of the local one.
    VARIANT Passed(bool byValue) {
        if (!byValue || !ByReference()) return passed_;
        if (source_->vt == (VT_BYREF | VT_VARIANT)) local_ = Variant(*source_);
        return local_.get();
    }
    void Assign(const Variant& value) {
        if (source_->vt == (VT_BYREF | VT_VARIANT)) {
            StoreThrough(*source_, value);
        } else {
            local_ = value;
        }
    }
    // Into the caller's variable; an answer of a type that cannot be converted leaves it as it was.
    void CopyBack() {
        if (source_->vt != (VT_BYREF | VT_VARIANT)) StoreThrough(*source_, local_);
    }

  private:
    VARIANT* source_;
    Variant local_;
    VARIANT passed_{};
};

}  // namespace

class ScriptEngine::Site final : public ComObject<IActiveScriptSite, IActiveScriptSiteWindow> {
  public:
    explicit Site(ScriptEngine* owner) : owner_(owner) {}
    void Forget() {
        owner_ = nullptr;
        objects.clear();
    }

    std::map<Text, ComPtr<IDispatch>> objects;
    bool reported = false;

    STDMETHODIMP GetLCID(LCID* locale) override {
        *locale = LOCALE_USER_DEFAULT;
        return S_OK;
    }
    STDMETHODIMP GetItemInfo(LPCOLESTR name, DWORD wanted, IUnknown** object, ITypeInfo** info) override {
        return Guard([&]() -> HRESULT {
            if (object) *object = nullptr;
            if (info) *info = nullptr;
            const auto found = objects.find(Text(FromWide(name)));
            if (found == objects.end()) return TYPE_E_ELEMENTNOTFOUND;
            if ((wanted & SCRIPTINFO_IUNKNOWN) && object) *object = found->second.copy();
            return S_OK;
        });
    }
    // A form's script has no version, and the engine does not need one.
    STDMETHODIMP GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
    STDMETHODIMP OnStateChange(SCRIPTSTATE) override { return S_OK; }
    STDMETHODIMP OnScriptError(IActiveScriptError* error) override {
        return Guard([&] {
            ScriptError found;
            ExceptionInfo exception;
            const HRESULT result = error->GetExceptionInfo(exception.put());
            found.message = exception.Description(result);
            DWORD context = 0;
            ULONG line = 0;
            LONG column = 0;
            if (SUCCEEDED(error->GetSourcePosition(&context, &line, &column))) {
                found.line = static_cast<long>(line) + 1;
                found.column = column + 1;
            }
            Bstr text;
            if (SUCCEEDED(error->GetSourceLineText(text.put()))) found.lineText = text.ToText();
            reported = true;
            if (owner_) owner_->report_(found);
        });
    }
    STDMETHODIMP OnEnterScript() override { return S_OK; }
    STDMETHODIMP OnLeaveScript() override { return S_OK; }
    STDMETHODIMP GetWindow(HWND* window) override {
        *window = owner_ ? owner_->window_ : nullptr;
        return S_OK;
    }
    STDMETHODIMP EnableModeless(WINBOOL) override { return S_OK; }

  private:
    ~Site() override = default;
    ScriptEngine* owner_;
};

ScriptEngine::ScriptEngine(HWND window, Report report)
    : window_(window), report_(std::move(report)), site_(MakeObject<Site>(this)) {}

ScriptEngine::~ScriptEngine() { Close(); }

void ScriptEngine::Open(TextView file) {
    const wchar_t* language = nullptr;
    if (EndsWith(file, u".vbs")) language = L"VBScript";
    if (EndsWith(file, u".js")) language = L"JScript";
    if (!language) {
        throw RunTimeError(errors::invalidProcedureCall,
                           u"a script is a .vbs or a .js file, not \"" + Text(file) + u"\"");
    }
    answersByReturning_ = EndsWith(file, u".js");
    CLSID id;
    Check(CLSIDFromProgID(language, &id));
    Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, activeScriptId, engine_.put_void()));
    Check(engine_->QueryInterface(activeScriptParseId, parser_.put_void()));
    Check(engine_->SetScriptSite(site_.get()));
    Check(parser_->InitNew());
}

void ScriptEngine::AddObject(TextView name, IDispatch* object) { Add(name, object, SCRIPTITEM_ISVISIBLE); }

void ScriptEngine::AddGlobals(TextView name, IDispatch* object) {
    Add(name, object, SCRIPTITEM_ISVISIBLE | SCRIPTITEM_GLOBALMEMBERS);
}

void ScriptEngine::Add(TextView name, IDispatch* object, DWORD flags) {
    const Text copy(name);
    site_->objects.insert_or_assign(copy, ComPtr<IDispatch>(object));
    Check(engine_->AddNamedItem(Wide(copy), flags));
}

bool ScriptEngine::Run(TextView source) {
    const Text copy(source);
    site_->reported = false;
    ExceptionInfo exception;
    HRESULT result = parser_->ParseScriptText(Wide(copy), nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE,
                                              nullptr, exception.put());
    if (SUCCEEDED(result)) result = engine_->SetScriptState(SCRIPTSTATE_CONNECTED);
    if (FAILED(result) && !site_->reported) report_({0, 0, exception.Description(result), {}});
    if (FAILED(result) || site_->reported) return false;
    Check(engine_->GetScriptDispatch(nullptr, code_.put()));
    return true;
}

void ScriptEngine::Close() {
    code_.reset();
    parser_.reset();
    if (engine_) engine_->Close();
    engine_.reset();
    site_->Forget();
}

DISPID ScriptEngine::Find(TextView procedure) const {
    if (!code_) return DISPID_UNKNOWN;
    Text copy(procedure);
    wchar_t* name = WideBuffer(copy);
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(code_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id))) return DISPID_UNKNOWN;
    return id;
}

bool ScriptEngine::Has(TextView procedure) const { return Find(procedure) != DISPID_UNKNOWN; }

bool ScriptEngine::Call(TextView procedure, const std::vector<VARIANT*>& arguments) {
    const DISPID id = Find(procedure);
    if (id == DISPID_UNKNOWN) return true;
    std::vector<std::unique_ptr<Argument>> passing;
    for (VARIANT* argument : arguments) passing.push_back(std::make_unique<Argument>(argument));
    std::vector<VARIANT> reversed;
    for (auto it = passing.rbegin(); it != passing.rend(); ++it) reversed.push_back((*it)->Passed(answersByReturning_));
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    // The script may close the form, and with it this engine.
    const ComPtr<IDispatch> code = code_;
    const ComPtr<Site> site = site_;
    const Report report = report_;
    const bool answersByReturning = answersByReturning_;
    site->reported = false;
    ExceptionInfo exception;
    Variant answer;
    const HRESULT result = code->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, answer.put(),
                                        exception.put(), nullptr);
    if (SUCCEEDED(result) && answersByReturning && answer.Type() != VT_EMPTY && answer.Type() != VT_NULL) {
        for (auto it = passing.rbegin(); it != passing.rend(); ++it) {
            if (!(*it)->ByReference()) continue;
            (*it)->Assign(answer);
            break;
        }
    }
    // A procedure that fails keeps what it has assigned before, so that the veto of a handler that fails later counts.
    for (const auto& argument : passing) argument->CopyBack();
    if (SUCCEEDED(result)) return true;
    if (!site->reported) report({0, 0, Text(procedure) + u": " + exception.Description(result), {}});
    return false;
}

}  // namespace qvx::host
