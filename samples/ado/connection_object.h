// ADODB.Connection.
#pragma once

#include <memory>
#include <vector>

#include "host/named_object.h"
#include "samples/ado/database.h"
#include "samples/ado/records.h"

namespace qvx::ado {

// Where records are kept; the client counts them and can move in both directions.
enum CursorLocation { serverCursor = 2, clientCursor = 3 };
// Returns a valid location; raises error 3001 for any other.
long CheckedLocation(long location);

class ConnectionObject final : public host::NamedObject {
  public:
    ConnectionObject();

    STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
    // Returns an object as a connection; null for an object of another program.
    static ComPtr<ConnectionObject> From(IDispatch* object);

    void Open(const Text& connectionString);
    void Close();
    // Returns the open database; raises error 3709 while the connection is closed.
    Database& OpenDatabase() const;
    long CursorPlace() const { return cursorLocation_; }
    // Closes the records together with the connection.
    void CloseWithMe(const std::shared_ptr<Records>& records);

  private:
    ~ConnectionObject() override = default;
    const wchar_t* ErrorSource() const override;

    // Takes connection string, user, password and options.
    void OpenBy(const host::Call& call);
    Variant Execute(const host::Call& call);

    std::unique_ptr<Database> database_;
    long cursorLocation_ = serverCursor;
    std::vector<std::weak_ptr<Records>> opened_;
};

}  // namespace qvx::ado
