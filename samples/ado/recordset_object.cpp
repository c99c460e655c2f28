#include "samples/ado/recordset_object.h"

#include "samples/ado/errors.h"

namespace qvx::ado {

namespace {

using host::Call;

enum CursorType { forwardOnlyCursor, dynamicCursor = 2 };

}  // namespace

RecordsetObject::RecordsetObject() : cursorLocation_(serverCursor) {
    AddOpening();
    AddMoving();
    AddReading();
}

void RecordsetObject::AddOpening() {
    AddMethod(u"Open", [this](const Call& call) {
        OpenBy(call);
        return Variant();
    });
    AddMethod(u"Close", [this](const Call&) {
        records_->Close();
        fields_.reset();
        own_.reset();
        return Variant();
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
    AddReadOnly(u"Fields", [this](const Call& call) {
        FieldsObject& fields = Fields();
        return Variant(call.Has(0) ? fields.Item(fields.Find(call.At(0))) : static_cast<IDispatch*>(&fields));
    });
    SetDefaultMember(u"Fields");
    AddMethod(u"GetRows", [this](const Call& call) { return records_->Take(call.Has(0) ? call.Long(0) : -1); });
}

long RecordsetObject::Open(ConnectionObject& connection, TextView source, bool forwardOnly) {
    Answer answer = connection.OpenDatabase().Execute(source);
    fields_.reset();
    if (answer.table) {
        records_->Open(std::move(*answer.table), forwardOnly);
        connection.CloseWithMe(records_);
    }
    return answer.affected;
}

void RecordsetObject::OpenBy(const Call& call) {
    if (records_->IsOpen()) ThrowObjectOpen();
    const Variant given = call.Has(1) ? call.At(1) : Variant();
    own_.reset();
    auto connection = ConnectionObject::From(given.ToObject<IDispatch>().get());
    if (given.Type() == VT_BSTR) {
        connection = MakeObject<ConnectionObject>();
        connection->Open(call.String(1));
    }
    if (!connection) ThrowInvalidConnection();
    // Records kept by the client are a copy that goes both ways, whatever was asked for.
    const bool kept = cursorLocation_ == clientCursor || connection->CursorPlace() == clientCursor;
    const long cursorType = call.Has(2) ? call.Long(2) : long{forwardOnlyCursor};
    Open(*connection, call.String(0), !kept && (cursorType == forwardOnlyCursor || cursorType == dynamicCursor));
    if (given.Type() == VT_BSTR) own_ = connection;
}

FieldsObject& RecordsetObject::Fields() {
    if (!records_->IsOpen()) ThrowObjectClosed();
    if (!fields_) fields_ = MakeObject<FieldsObject>(records_);
    return *fields_;
}

}  // namespace qvx::ado
