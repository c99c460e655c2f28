#include "samples/ado/recordset_object.h"

#include "samples/ado/errors.h"

namespace qvx::ado {

namespace {

using host::Call;

enum CursorType { forwardOnlyCursor, dynamicCursor = 2 };
// Each record is written by itself; a record is locked from its first change on, or not at all.
enum LockType { readOnlyLock = 1, pessimisticLock, optimisticLock };

long CheckedLock(long lock) {
    if (lock < readOnlyLock || lock > optimisticLock) ThrowWrongArguments();
    return lock;
}

}  // namespace

RecordsetObject::RecordsetObject() : cursorLocation_(serverCursor), lockType_(readOnlyLock) {
    AddOpening();
    AddMoving();
    AddReading();
    AddWriting();
}

void RecordsetObject::AddOpening() {
    AddMethod(u"Open", [this](const Call& call) {
        OpenBy(call);
        return Variant();
    });
    AddMethod(u"Close", [this](const Call&) {
        records_->Close();
        fields_.reset();
        connection_.reset();
        return Variant();
    });
    AddMethod(u"Requery", [this](const Call&) {
        if (!records_->IsOpen()) ThrowObjectClosed();
        if (records_->IsEdited()) ThrowNotAllowedHere(u"A record is being changed.");
        Open(*connection_, Text(source_), forwardOnly_);
        return Variant();
    });
    AddReadOnly(u"ActiveConnection", [this](const Call&) {
        return records_->IsOpen() ? Variant(static_cast<IDispatch*>(connection_.get())) : Variant();
    });
    AddProperty(u"LockType", [this](const Call& call) {
        if (call.put) {
            if (records_->IsOpen()) ThrowObjectOpen();
            lockType_ = CheckedLock(call.LongValue());
        }
        return Variant(lockType_);
    });
    AddReadOnly(u"State", [this](const Call&) { return Variant(records_->IsOpen() ? 1 : 0); });
    AddProperty(u"CursorLocation", [this](const Call& call) {
        if (call.put) {
            if (records_->IsOpen()) ThrowObjectOpen();
            cursorLocation_ = CheckedLocation(call.LongValue());
        }
        return Variant(cursorLocation_);
    });
}

void RecordsetObject::AddMoving() {
    AddMethod(u"MoveFirst", [this](const Call&) {
        records_->MoveFirst();
        return Variant();
    });
    AddMethod(u"MoveLast", [this](const Call&) {
        records_->MoveLast();
        return Variant();
    });
    AddMethod(u"MoveNext", [this](const Call&) {
        records_->Move(1);
        return Variant();
    });
    AddMethod(u"MovePrevious", [this](const Call&) {
        records_->Move(-1);
        return Variant();
    });
    AddReadOnly(u"AbsolutePosition", [this](const Call&) { return Variant(records_->Position()); });
}

void RecordsetObject::AddReading() {
    AddReadOnly(u"BOF", [this](const Call&) { return Variant(records_->Bof()); });
    AddReadOnly(u"EOF", [this](const Call&) { return Variant(records_->Eof()); });
    AddReadOnly(u"RecordCount", [this](const Call&) { return Variant(records_->Count()); });
    // With an argument it is the field, as `Fields("name")` and `records("name")` call it.
    AddProperty(u"Fields", [this](const Call& call) {
        FieldsObject& fields = Fields();
        return call.put || call.Has(0) ? fields.Item(call) : Variant(static_cast<IDispatch*>(&fields));
    });
    SetDefaultMember(u"Fields");
    AddMethod(u"GetRows", [this](const Call& call) { return records_->Take(call.Has(0) ? call.Long(0) : -1); });
}

void RecordsetObject::AddWriting() {
    const std::pair<const char16_t*, void (Records::*)()> methods[] = {{u"AddNew", &Records::AddNew},
                                                                       {u"Update", &Records::Update},
                                                                       {u"CancelUpdate", &Records::CancelUpdate},
                                                                       {u"Delete", &Records::Delete}};
    for (const auto& [name, method] : methods)
        AddMethod(name, [this, method = method](const Call& call) {
            // Lists of fields and several records at once are not supported.
            if (call.Has(0)) ThrowWrongArguments();
            (*records_.*method)();
            return Variant();
        });
}

long RecordsetObject::Open(ConnectionObject& connection, TextView source, bool forwardOnly) {
    Database& database = connection.OpenDatabase();
    Answer answer = database.Execute(source);
    fields_.reset();
    if (!answer.table) return answer.affected;
    std::vector<Text> names;
    for (const Column& column : answer.table->columns) names.push_back(column.name);
    auto columns = answer.table->columns;
    records_->Open(std::move(*answer.table), forwardOnly);
    auto table = ReadSelect(source, names);
    if (lockType_ == readOnlyLock) {
        records_->StayAsTheyAre(u"it was opened read-only.");
    } else if (!table) {
        records_->StayAsTheyAre(u"its statement does not select columns of one table.");
    } else {
        records_->WriteThrough(std::make_unique<RecordWriter>(database, std::move(*table), std::move(columns)));
    }
    connection.CloseWithMe(records_);
    connection_ = ComPtr<ConnectionObject>(&connection);
    source_ = source;
    forwardOnly_ = forwardOnly;
    return answer.affected;
}

void RecordsetObject::OpenBy(const Call& call) {
    if (records_->IsOpen()) ThrowObjectOpen();
    const Variant given = call.Has(1) ? call.At(1) : Variant();
    connection_.reset();
    auto connection = ConnectionObject::From(given.ToObject<IDispatch>().get());
    if (given.Type() == VT_BSTR) {
        connection = MakeObject<ConnectionObject>();
        connection->Open(call.String(1));
    }
    if (!connection) ThrowInvalidConnection();
    if (call.Has(3)) lockType_ = CheckedLock(call.Long(3));
    // Records kept by the client are a copy that goes both ways, whatever was asked for.
    const bool kept = cursorLocation_ == clientCursor || connection->CursorPlace() == clientCursor;
    const long cursorType = call.Has(2) ? call.Long(2) : long{forwardOnlyCursor};
    Open(*connection, call.String(0), !kept && (cursorType == forwardOnlyCursor || cursorType == dynamicCursor));
}

FieldsObject& RecordsetObject::Fields() {
    if (!records_->IsOpen()) ThrowObjectClosed();
    if (!fields_) fields_ = MakeObject<FieldsObject>(records_);
    return *fields_;
}

}  // namespace qvx::ado
