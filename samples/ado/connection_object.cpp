#include "samples/ado/connection_object.h"

#include <algorithm>

#include "samples/ado/connection_string.h"
#include "samples/ado/errors.h"
#include "samples/ado/recordset_object.h"

namespace qvx::ado {

namespace {

// Asks an object whether it is one of ours; the answer is the object itself.
constexpr IID ownConnectionId = {0x9d3b1f52, 0x6a0e, 0x4c7d, {0x8e, 0x55, 0x2b, 0x71, 0xd0, 0x93, 0x4a, 0x16}};

}  // namespace

long CheckedLocation(long location) {
    if (location != serverCursor && location != clientCursor) ThrowWrongArguments();
    return location;
}

ConnectionObject::ConnectionObject() {
    AddProperty(u"CursorLocation", [this](const host::Call& call) {
        if (call.put) cursorLocation_ = CheckedLocation(call.LongValue());
        return Variant(cursorLocation_);
    });
    AddReadOnly(u"State", [this](const host::Call&) { return Variant(database_ ? 1 : 0); });
    AddMethod(u"Open", [this](const host::Call& call) {
        OpenBy(call);
        return Variant();
    });
    AddMethod(u"Close", [this](const host::Call&) {
        Close();
        return Variant();
    });
    AddMethod(u"Execute", [this](const host::Call& call) { return Execute(call); });
    AddMethod(u"BeginTrans", [this](const host::Call&) {
        OpenDatabase().Begin();
        return Variant(1);  // how deep transactions are nested now
    });
    AddMethod(u"CommitTrans", [this](const host::Call&) {
        OpenDatabase().End(true);
        return Variant();
    });
    AddMethod(u"RollbackTrans", [this](const host::Call&) {
        OpenDatabase().End(false);
        return Variant();
    });
}

const wchar_t* ConnectionObject::ErrorSource() const { return errorSource; }

STDMETHODIMP ConnectionObject::QueryInterface(REFIID iid, void** object) {
    if (!object || iid != ownConnectionId) return NamedObject::QueryInterface(iid, object);
    *object = this;
    AddRef();
    return S_OK;
}

ComPtr<ConnectionObject> ConnectionObject::From(IDispatch* object) {
    void* own = nullptr;
    if (!object || FAILED(object->QueryInterface(ownConnectionId, &own))) return nullptr;
    return ComPtr<ConnectionObject>::Adopt(static_cast<ConnectionObject*>(own));
}

void ConnectionObject::OpenBy(const host::Call& call) {
    Text settings = call.String(0);
    const struct {
        std::size_t argument;
        const char16_t* key;
    } given[] = {{1, u"UID"}, {2, u"PWD"}};
    for (const auto& [argument, key] : given) {
        const Text value = call.Has(argument) ? call.String(argument) : Text();
        // What is in front counts where a string says something twice.
        if (!value.empty()) settings = WriteConnectionString({{key, value}}) + settings;
    }
    // Nothing else than opening at once.
    if (call.Has(3) && call.Long(3) != -1) ThrowWrongArguments();
    Open(settings);
}

void ConnectionObject::Open(const Text& connectionString) {
    if (database_) ThrowObjectOpen();
    database_ = std::make_unique<Database>(connectionString);
}

Database& ConnectionObject::OpenDatabase() const {
    if (!database_) ThrowInvalidConnection();
    return *database_;
}

void ConnectionObject::CloseWithMe(const std::shared_ptr<Records>& records) {
    std::erase_if(opened_, [](const auto& other) { return other.expired(); });
    opened_.push_back(records);
}

void ConnectionObject::Close() {
    if (!database_) ThrowObjectClosed();
    if (database_->InTransaction()) {
        throw RunTimeError(3246, u"The connection cannot be closed while a transaction is active.");
    }
    for (const auto& records : opened_) {
        const auto left = records.lock();
        if (left && left->IsOpen()) left->Close();
    }
    opened_.clear();
    database_.reset();
}

Variant ConnectionObject::Execute(const host::Call& call) {
    const auto recordset = MakeObject<RecordsetObject>();
    const long affected = recordset->Open(*this, call.String(0), cursorLocation_ != clientCursor);
    call.Assign(1, Variant(affected));
    return Variant(static_cast<IDispatch*>(recordset.get()));
}

}  // namespace qvx::ado
