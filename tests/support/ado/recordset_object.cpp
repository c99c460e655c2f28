#include "tests/support/ado/recordset_object.h"

#include "com/safearray.h"
#include "tests/support/ado/connection_object.h"
#include "tests/support/ado/errors.h"

namespace qvx::ado {

namespace {

using host::Call;

enum CursorType { forwardOnlyCursor, keysetCursor, dynamicCursor, staticCursor };
enum Bookmark : long { currentBookmark, firstBookmark, lastBookmark };

// A property that is a number and may only be set while the record set is closed.
template <class Body>
auto NumberWhileClosed(long& number, const std::shared_ptr<Records>& records, Body&& check) {
    return [&number, records, check](const Call& call) {
        if (call.put) {
            if (records->IsOpen()) ThrowObjectOpen();
            const long value = call.LongValue();
            if (!check(value)) ThrowWrongArguments();
            number = value;
        }
        return Variant(number);
    };
}

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
        return Variant();
    });
    AddReadOnly(u"State", [this](const Call&) { return Variant(records_->IsOpen() ? 1 : 0); });
    AddProperty(u"Source", [this](const Call& call) {
        if (call.put) source_ = call.StringValue();
        return Variant(source_);
    });
    AddProperty(u"ActiveConnection", [this](const Call& call) {
        if (call.put) connection_ = call.Value();
        return connection_;
    });
    AddProperty(u"CursorType", NumberWhileClosed(cursorType_, records_, [](long type) {
                    return type >= forwardOnlyCursor && type <= staticCursor;
                }));
    AddProperty(u"CursorLocation", NumberWhileClosed(cursorLocation_, records_, [](long location) {
                    return location == serverCursor || location == clientCursor;
                }));
    AddProperty(u"LockType", NumberWhileClosed(lockType_, records_, [](long lock) { return lock >= 1 && lock <= 4; }));
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
    AddMethod(u"Move", [this](const Call& call) {
        if (call.Has(1)) ThrowWrongArguments();  // there are no bookmarks to start from
        records_->Move(call.Long(0));
        return Variant();
    });
    AddProperty(u"AbsolutePosition", [this](const Call& call) {
        if (call.put) records_->SetPosition(call.LongValue());
        return Variant(records_->Position());
    });
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
    AddMethod(u"GetRows", [this](const Call& call) { return GetRows(call); });
}

long RecordsetObject::Open(ConnectionObject& connection, TextView source, bool forwardOnly) {
    Answer answer = connection.OpenDatabase().Execute(source);
    source_ = source;
    connection_ = Variant(static_cast<IDispatch*>(&connection));
    fields_.reset();
    if (answer.table) {
        records_->Open(std::move(*answer.table), forwardOnly);
        connection.CloseWithMe(records_);
    }
    return answer.affected;
}

void RecordsetObject::OpenBy(const Call& call) {
    if (records_->IsOpen()) ThrowObjectOpen();
    const Text source = call.Has(0) ? call.String(0) : source_;
    const Variant given = call.Has(1) ? call.At(1) : connection_;
    if (call.Has(2)) cursorType_ = call.Long(2);
    if (call.Has(3)) lockType_ = call.Long(3);
    ComPtr<ConnectionObject> connection = ConnectionObject::From(given.ToObject<IDispatch>().get());
    if (!connection) {
        if (given.Type() != VT_BSTR) ThrowInvalidConnection();
        connection = MakeObject<ConnectionObject>();
        connection->Open(*given.ToText());
    }
    // Records kept by the client are a copy that goes both ways, whatever was asked for.
    const bool kept = cursorLocation_ == clientCursor || connection->CursorPlace() == clientCursor;
    if (kept) cursorType_ = staticCursor;
    Open(*connection, source, cursorType_ == forwardOnlyCursor || cursorType_ == dynamicCursor);
}

FieldsObject& RecordsetObject::Fields() {
    if (!records_->IsOpen()) ThrowObjectClosed();
    if (!fields_) fields_ = MakeObject<FieldsObject>(records_);
    return *fields_;
}

// Number of records, start, fields.
Variant RecordsetObject::GetRows(const Call& call) {
    const long count = call.Has(0) ? call.Long(0) : -1;
    const auto fields = ChosenFields(call);
    switch (call.Has(1) ? call.Long(1) : long{currentBookmark}) {
        case currentBookmark:
            break;
        case firstBookmark:
            records_->MoveFirst();
            break;
        case lastBookmark:
            records_->MoveLast();
            break;
        default:
            ThrowWrongArguments();
    }
    return records_->Take(count, fields);
}

std::vector<std::size_t> RecordsetObject::ChosenFields(const Call& call) {
    const FieldsObject& fields = Fields();
    std::vector<std::size_t> chosen;
    if (!call.Has(2)) {
        for (std::size_t i = 0; i < records_->Columns().size(); ++i) chosen.push_back(i);
    } else if (SAFEARRAY* several = ArrayOf(call.At(2).get())) {
        for (const Variant& one : ReadElements(several)) chosen.push_back(fields.Find(one));
    } else {
        chosen.push_back(fields.Find(call.At(2)));
    }
    return chosen;
}

}  // namespace qvx::ado
