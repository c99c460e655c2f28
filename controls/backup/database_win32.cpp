// The database: whether it can be opened, and its administrator's password.
#include <windows.h>

#include <memory>
#include <utility>

#include "com/ado.h"
#include "com/bstr.h"
#include "com/variant.h"
#include "controls/backup/password_source_win32.h"
#include "controls/backup/system_services_win32.h"

namespace qvx::backup {

namespace {

// Arguments that select the defaults of the data objects.
constexpr LONG optionsUnspecified = -1;
constexpr int keysetCursor = 1;
constexpr int optimisticLock = 3;

constexpr TextView passwordQuery = u"SELECT Password FROM Users WHERE UCode=1";
constexpr TextView passwordField = u"Password";

Variant CallNamed(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments = {}) {
    return LateMember(object, member).Get(object, arguments);
}

ComPtr<IDispatch> ObjectNamed(IDispatch* object, const wchar_t* member, std::initializer_list<Variant> arguments = {}) {
    return CallNamed(object, member, arguments).ToObject<IDispatch>();
}

void OpenAndClose(TextView connection) {
    const auto object = CreateNamedObject(L"ADODB.Connection");
    if (const AdoInterface<AdoConnection> direct(object.get()); direct) {
        const Bstr none{TextView()};
        direct.Check(direct->Open(Bstr(connection).get(), none.get(), none.get(), optionsUnspecified));
        direct.Check(direct->Close());
    } else {
        CallNamed(object.get(), L"Open",
                  {Variant(connection), Variant(u""), Variant(u""), Variant(optionsUnspecified)});
        CallNamed(object.get(), L"Close");
    }
}

// The records of a query on a connection string, open for as long as this object exists.
class PasswordRecords {
  public:
    explicit PasswordRecords(TextView connection)
        : object_(CreateNamedObject(L"ADODB.Recordset")), direct_(object_.get()) {
        const Variant query(passwordQuery);
        const Variant source(connection);
        if (direct_) {
            direct_.Check(direct_->Open(query.get(), source.get(), keysetCursor, optimisticLock, optionsUnspecified));
        } else {
            CallNamed(object_.get(), L"Open",
                      {query, source, Variant(keysetCursor), Variant(optimisticLock), Variant(optionsUnspecified)});
        }
    }
    ~PasswordRecords() {
        try {
            if (direct_) {
                direct_->Close();
            } else {
                CallNamed(object_.get(), L"Close");
            }
        } catch (const std::exception&) {
            // The records are closed with their object at the latest.
        }
    }
    PasswordRecords(const PasswordRecords&) = delete;
    PasswordRecords& operator=(const PasswordRecords&) = delete;

    // Returns the value of the current record.
    Variant Value() const {
        if (!direct_) {
            const auto fields = ObjectNamed(object_.get(), L"Fields");
            return CallNamed(ObjectNamed(fields.get(), L"Item", {Variant(passwordField)}).get(), L"Value");
        }
        ComPtr<AdoFields> fields;
        ComPtr<AdoField> field;
        Variant value;
        direct_.Check(direct_->get_Fields(fields.put()));
        direct_.Check(fields ? fields->get_Item(Variant(passwordField).get(), field.put()) : E_POINTER);
        direct_.Check(field ? field->get_Value(value.put()) : E_POINTER);
        return value;
    }

  private:
    ComPtr<IDispatch> object_;
    AdoInterface<AdoRecordset> direct_;
};

// Replaces an error's description with one of our own: those of data objects contain connection strings and files.
template <typename Work>
auto Reworded(TextView words, Work work) {
    try {
        return work();
    } catch (const std::exception&) {
        throw RunTimeError(CurrentError().Number(), Text(words));
    }
}

}  // namespace

bool SystemServices::DatabaseOpens(TextView connection) {
    try {
        OpenAndClose(connection);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::optional<Text> AdministratorPassword(TextView connection) {
    const auto records = Reworded(u"The administrator's password cannot be read from the database.",
                                  [&] { return std::make_unique<PasswordRecords>(connection); });
    Variant value = Reworded(u"The database has no administrator.", [&] { return records->Value(); });
    if (value.Type() == VT_NULL) return std::nullopt;
    Text password;
    Reworded(u"The administrator's password in the database is no text.",
             [&] { AppendFieldText(value.get(), password); });
    // The system does not clear the value's memory when it is freed.
    if (value.Type() == VT_BSTR) SecureZeroMemory(value.ptr()->bstrVal, SysStringByteLen(value.get().bstrVal));
    return password;
}

}  // namespace qvx::backup
