#include "host/host_object.h"

#include "com/module.h"
#include "com/safearray.h"
#include "common/run_time_error.h"
#include "host/form_parts_object.h"
#include "host/form_storage_win32.h"

namespace qvx::host {

namespace {

class HostObject final : public FormPart {
  public:
    HostObject(RunningForm& form, const Options& options) : FormPart(form), form_(form) {
        AddMethod(u"Log", [file = options.log](const Call& call) {
            AppendLine(file, call.String(0));
            return Variant();
        });
        AddMethod(u"SaveForm", [this, &options](const Call& call) {
            AtWork().Save(call.Has(0) ? call.String(0) : options.save.empty() ? options.form : options.save);
            return Variant();
        });
        AddMethod(u"Quit", [this](const Call& call) {
            AtWork().AskToClose(call.Has(0) ? static_cast<int>(call.Long(0)) : 0);
            return Variant();
        });
        AddReadOnly(u"Arguments", [arguments = options.arguments](const Call& call) {
            if (call.Has(0)) {
                const long index = call.Long(0);
                if (index < 0 || static_cast<std::size_t>(index) >= arguments.size()) {
                    throw RunTimeError(errors::subscriptOutOfRange, u"Subscript out of range");
                }
                return Variant(arguments[static_cast<std::size_t>(index)]);
            }
            return ArrayOf(arguments);
        });
        AddReadOnly(u"DesignMode", [this](const Call&) { return Variant(Form().DesignMode()); });
    }

  private:
    ~HostObject() override = default;

    RunningForm& AtWork() const {
        Form();  // throws when there is none any more
        return form_;
    }

    static Variant ArrayOf(const std::vector<Text>& texts) {
        SafeArray array = SafeArray::OfVariants({texts.begin(), texts.end()});
        Variant result;
        result.ptr()->vt = VT_ARRAY | VT_VARIANT;
        result.ptr()->parray = array.detach();
        return result;
    }

    RunningForm& form_;
};

class AppObject final : public NamedObject {
  public:
    AppObject() {
        const Text path = ModulePath(nullptr);
        const std::size_t slash = path.find_last_of(u"\\/");
        AddReadOnly(u"Title", [](const Call&) { return Variant(ProgramTitle()); });
        AddReadOnly(u"Path", [folder = path.substr(0, slash)](const Call&) { return Variant(folder); });
        AddReadOnly(u"EXEName",
                    [file = path.substr(slash + 1)](const Call&) { return Variant(file.substr(0, file.rfind(u'.'))); });
    }

  private:
    ~AppObject() override = default;
};

}  // namespace

ComPtr<IDispatch> MakeHostObject(RunningForm& form, const Options& options) {
    return MakeObject<HostObject>(form, options);
}

ComPtr<IDispatch> MakeAppObject() { return MakeObject<AppObject>(); }

}  // namespace qvx::host
