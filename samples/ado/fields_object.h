// The fields of a record set, as scripts see them.
#pragma once

#include <memory>
#include <vector>

#include "host/named_object.h"
#include "samples/ado/records.h"

namespace qvx::ado {

constexpr const wchar_t* errorSource = L"QvxAdo";

class FieldObject final : public host::NamedObject {
  public:
    FieldObject(std::shared_ptr<Records> records, std::size_t column);

  private:
    ~FieldObject() override = default;
    const wchar_t* ErrorSource() const override { return errorSource; }
    const Column& Described() const;

    std::shared_ptr<Records> records_;
    std::size_t column_;
};

class FieldsObject final : public host::NamedObject {
  public:
    // The records must be open.
    explicit FieldsObject(std::shared_ptr<Records> records);

    // Returns the number of the field with that name or number; raises error 3265 when there is none.
    std::size_t Find(const Variant& nameOrNumber) const;
    // Returns the field with that name or number; sets its value first where the property is being set.
    Variant Item(const host::Call& call) const;

  private:
    ~FieldsObject() override = default;
    const wchar_t* ErrorSource() const override { return errorSource; }

    std::shared_ptr<Records> records_;
    std::vector<ComPtr<IDispatch>> fields_;
};

}  // namespace qvx::ado
