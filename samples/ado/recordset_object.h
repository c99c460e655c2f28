// ADODB.Recordset.
#pragma once

#include <memory>

#include "host/named_object.h"
#include "samples/ado/connection_object.h"
#include "samples/ado/fields_object.h"
#include "samples/ado/records.h"

namespace qvx::ado {

class RecordsetObject final : public host::NamedObject {
  public:
    RecordsetObject();

    // Executes a statement; one without records leaves the set closed. Returns the number of records that it changed.
    long Open(ConnectionObject& connection, TextView source, bool forwardOnly);

  private:
    ~RecordsetObject() override = default;
    const wchar_t* ErrorSource() const override { return errorSource; }

    void AddOpening();
    void AddMoving();
    void AddReading();
    void AddWriting();
    // Takes statement, connection (or a connection string) and cursor type; further arguments are ignored.
    void OpenBy(const host::Call& call);
    FieldsObject& Fields();

    std::shared_ptr<Records> records_ = std::make_shared<Records>();
    ComPtr<FieldsObject> fields_;
    long cursorLocation_;
    long lockType_;
    ComPtr<ConnectionObject> connection_;  // while the set is open
    Text source_;                          // the statement
    bool forwardOnly_ = false;
};

}  // namespace qvx::ado
