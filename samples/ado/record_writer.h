// The records of a select statement, written to the table that they are from.
#pragma once

#include <optional>
#include <vector>

#include "com/variant.h"
#include "samples/ado/database.h"
#include "samples/ado/sql/statements.h"

namespace qvx::ado {

// The values of a record, by field; in a change, nullopt for a field that is not written.
using Values = std::vector<std::optional<Variant>>;

class RecordWriter {
  public:
    RecordWriter(Database& database, SelectSource source, std::vector<Column> columns)
        : database_(database), source_(std::move(source)), columns_(std::move(columns)) {}

    bool CanWrite(std::size_t field) const { return !source_.columns[field].empty(); }

    // Each finds the record by all of its values and raises error 3197 if the table does not have it, or has it several
    // times. Insert and Update return the values that the table has then, nullopt where the record cannot be found.
    std::optional<Values> Insert(const Values& values);
    std::optional<Values> Update(const Values& before, const Values& values);
    void Delete(const Values& before);

  private:
    SqlValues Written(const Values& values) const;
    // Returns the condition for the only record with these values.
    Text Locate(const Values& before) const;
    // Executes a statement that has to change one record.
    void Execute(const Text& sql) const;
    std::optional<Values> ReadAgain(const Text& where) const;

    Database& database_;
    SelectSource source_;
    std::vector<Column> columns_;
};

}  // namespace qvx::ado
