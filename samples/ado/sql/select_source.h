// What a select statement reads: the table, and the column of each field.
#pragma once

#include <optional>
#include <vector>

#include "common/text.h"

namespace qvx::ado {

struct SelectSource {
    Text table;                 // quoted, with its schema if the statement has one
    Text items;                 // what is selected, as it is written
    Text from;                  // the table and its alias, as they are written
    std::vector<Text> columns;  // of the fields, quoted; empty for a field that is computed
};

// Reads "select ITEMS from TABLE [[as] ALIAS] [where ...] [order by ...] [limit ...]", whose result has fields of these
// names. Returns nullopt for a statement whose records are not those of one table, and for one with nothing but
// computed fields.
std::optional<SelectSource> ReadSelect(TextView sql, const std::vector<Text>& fieldNames);

// Puts a name into the quotes of the standard.
Text QuotedName(TextView name);

}  // namespace qvx::ado
