// The statements that write a record of a table.
#pragma once

#include <optional>
#include <vector>

#include "common/text.h"
#include "samples/ado/sql/select_source.h"

namespace qvx::ado {

// A value as statements have it; `text` is a number for those forms, and hexadecimal digits for bytes.
struct SqlValue {
    enum class Form { null, text, whole, real, money, truth, bytes };
    Form form = Form::null;
    Text text;
};

// For each field of the select, its value; nullopt where it plays no part. Computed fields play none in any case.
using SqlValues = std::vector<std::optional<SqlValue>>;

Text Literal(const SqlValue& value);

// Compares a column with a value that was read from it. Real numbers arrive with fifteen digits and money with four
// decimals, so that a range stands for what was rounded; a truth is any number but 0.
Text Condition(TextView column, const SqlValue& value);

// " where ..." with a condition for every value; "" without any.
Text WhereClause(const SelectSource& source, const SqlValues& values);

// A record without values gets the table's defaults.
Text InsertStatement(const SelectSource& source, const SqlValues& values);
// `where` is as WhereClause returns it.
Text UpdateStatement(const SelectSource& source, const SqlValues& values, TextView where);
Text DeleteStatement(const SelectSource& source, TextView where);
Text CountStatement(const SelectSource& source, TextView where);
// Selects the same fields of other records.
Text ReadAgainStatement(const SelectSource& source, TextView where);

}  // namespace qvx::ado
