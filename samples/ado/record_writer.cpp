#include "samples/ado/record_writer.h"

#include "common/number_text.h"
#include "samples/ado/errors.h"

namespace qvx::ado {

std::optional<Values> RecordWriter::Insert(const Values& values) {
    Execute(InsertStatement(source_, Written(values)));
    // Other databases have other ways to say what a record has become.
    if (!database_.IsSqlite()) return std::nullopt;
    return ReadAgain(u" where rowid = last_insert_rowid()");
}

std::optional<Values> RecordWriter::Update(const Values& before, const Values& values) {
    const Text where = Locate(before);
    const SqlValues written = Written(values);
    Execute(UpdateStatement(source_, written, where));
    Values after = before;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i]) after[i] = values[i];
    return ReadAgain(WhereClause(source_, Written(after)));
}

void RecordWriter::Delete(const Values& before) { Execute(DeleteStatement(source_, Locate(before))); }

SqlValues RecordWriter::Written(const Values& values) const {
    SqlValues written(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i] && CanWrite(i)) written[i] = StatementValue(columns_[i].kind, *values[i]);
    return written;
}

Text RecordWriter::Locate(const Values& before) const {
    Text where = WhereClause(source_, Written(before));
    const Answer counted = database_.Execute(CountStatement(source_, where));
    const long count = counted.table->cells[0].ToLong().value_or(0);
    if (count == 0) ThrowRecordChanged(u"it has been changed or deleted since it was read.");
    if (count > 1) ThrowRecordChanged(u"the table has several records with these values.");
    return where;
}

void RecordWriter::Execute(const Text& sql) const {
    if (database_.Execute(sql).affected != 1) ThrowRecordChanged(u"it has been changed or deleted meanwhile.");
}

std::optional<Values> RecordWriter::ReadAgain(const Text& where) const {
    const Answer answer = database_.Execute(ReadAgainStatement(source_, where));
    const auto& cells = answer.table->cells;
    if (cells.size() != columns_.size()) return std::nullopt;
    return Values(cells.begin(), cells.end());
}

}  // namespace qvx::ado
