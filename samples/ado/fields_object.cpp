#include "samples/ado/fields_object.h"

#include "host/form_value.h"
#include "samples/ado/errors.h"

namespace qvx::ado {

FieldObject::FieldObject(std::shared_ptr<Records> records, std::size_t column)
    : records_(std::move(records)), column_(column) {
    AddProperty(u"Value", [this](const host::Call& call) {
        if (call.put) records_->SetValue(column_, call.Value());
        return call.put ? Variant() : records_->Value(column_);
    });
    SetDefaultMember(u"Value");
    AddReadOnly(u"Name", [this](const host::Call&) { return Variant(Described().name); });
    AddReadOnly(u"Type", [this](const host::Call&) { return Variant(TypeNumber(Described().kind)); });
}

const Column& FieldObject::Described() const {
    // The record set may have been opened anew with other fields.
    const auto& columns = records_->Columns();
    if (column_ >= columns.size()) ThrowItemNotFound();
    return columns[column_];
}

FieldsObject::FieldsObject(std::shared_ptr<Records> records) : records_(std::move(records)) {
    for (std::size_t i = 0; i < records_->Columns().size(); ++i) {
        fields_.emplace_back(MakeObject<FieldObject>(records_, i).get());
    }
    AddReadOnly(u"Count", [this](const host::Call&) { return Variant(static_cast<long>(fields_.size())); });
    AddProperty(u"Item", [this](const host::Call& call) { return Item(call); });
    SetDefaultMember(u"Item");
    AddEnumerator([this] { return fields_; });
}

Variant FieldsObject::Item(const host::Call& call) const {
    const std::size_t field = Find(call.At(0));
    if (call.put) records_->SetValue(field, call.Value());
    return Variant(fields_[field].get());
}

std::size_t FieldsObject::Find(const Variant& nameOrNumber) const {
    const auto& columns = records_->Columns();
    if (nameOrNumber.Type() == VT_BSTR) {
        const Text name = *nameOrNumber.ToText();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (host::SameName(columns[i].name, name)) return i;
        }
        ThrowItemNotFound();
    }
    const auto number = nameOrNumber.ToLong();
    if (!number || *number < 0 || static_cast<std::size_t>(*number) >= fields_.size()) ThrowItemNotFound();
    return static_cast<std::size_t>(*number);
}

}  // namespace qvx::ado
