// A database that the system's ODBC accesses.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "com/variant.h"
#include "common/text.h"
#include "samples/ado/field_value.h"

namespace qvx::ado {

struct Column {
    Text name;
    Kind kind = Kind::text;
};

// A complete result in memory, row after row.
struct Table {
    std::vector<Column> columns;
    std::vector<Variant> cells;
    // The texts of dates that the database has in another form than statements write them, by the number of the cell.
    std::map<std::size_t, Text> spelled;

    std::size_t Rows() const { return columns.empty() ? 0 : cells.size() / columns.size(); }
};

// The result of a statement: records, or the number of records that it changed.
struct Answer {
    std::optional<Table> table;
    long affected = 0;
};

// An open database. Every failure is run-time error 3000 with the driver's own description.
class Database {
  public:
    // The settings are those of ODBC. A driver may also be named by its description, which is its name on other
    // systems, and a file by its name for Windows programs.
    explicit Database(TextView connectionString);
    // An open transaction is rolled back.
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    Answer Execute(TextView sql);

    bool IsSqlite() const { return isSqlite_; }

    bool InTransaction() const { return inTransaction_; }
    void Begin();
    void End(bool commit);

  private:
    struct Handles;
    std::unique_ptr<Handles> handles_;
    bool isSqlite_ = false;
    bool inTransaction_ = false;
};

}  // namespace qvx::ado
