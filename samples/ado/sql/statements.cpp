#include "samples/ado/sql/statements.h"

#include <charconv>
#include <cmath>
#include <string>

namespace qvx::ado {

namespace {

// The rounding of fifteen digits, and of a value with four decimals.
constexpr double realTolerance = 1e-14;
constexpr double moneyTolerance = 0.00005;

Text Spelled(double number) {
    char digits[40];
    const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
    return Text(digits, end);
}

// `each` is called with the column and the value of every field that has both.
template <class Each>
void ForEachValue(const SelectSource& source, const SqlValues& values, Each each) {
    for (std::size_t i = 0; i < values.size() && i < source.columns.size(); ++i)
        if (values[i] && !source.columns[i].empty()) each(source.columns[i], *values[i]);
}

void AppendPart(Text& list, TextView separator, TextView part) {
    if (!list.empty()) list += separator;
    list += part;
}

}  // namespace

Text Literal(const SqlValue& value) {
    Text literal;
    switch (value.form) {
        case SqlValue::Form::null:
            return u"null";
        case SqlValue::Form::text:
            for (const char16_t c : value.text) literal.append(c == u'\'' ? 2 : 1, c);
            return u'\'' + literal + u'\'';
        case SqlValue::Form::bytes:
            return u"x'" + value.text + u'\'';
        default:
            return value.text;
    }
}

Text Condition(TextView column, const SqlValue& value) {
    Text condition(column);
    const std::string narrow(value.text.begin(), value.text.end());
    double number = 0;
    switch (value.form) {
        case SqlValue::Form::null:
            return condition + u" is null";
        case SqlValue::Form::truth:
            return condition + (value.text == u"0" ? u" = 0" : u" <> 0");
        case SqlValue::Form::real:
        case SqlValue::Form::money: {
            if (std::from_chars(narrow.data(), narrow.data() + narrow.size(), number).ec != std::errc()) break;
            const double about =
                std::fabs(number) * realTolerance + (value.form == SqlValue::Form::money ? moneyTolerance : 0);
            return condition + u" between " + Spelled(number - about) + u" and " + Spelled(number + about);
        }
        default:
            break;
    }
    return condition + u" = " + Literal(value);
}

Text WhereClause(const SelectSource& source, const SqlValues& values) {
    Text conditions;
    ForEachValue(source, values, [&](const Text& column, const SqlValue& value) {
        AppendPart(conditions, u" and ", Condition(column, value));
    });
    return conditions.empty() ? Text() : u" where " + conditions;
}

Text InsertStatement(const SelectSource& source, const SqlValues& values) {
    Text columns;
    Text literals;
    ForEachValue(source, values, [&](const Text& column, const SqlValue& value) {
        AppendPart(columns, u", ", column);
        AppendPart(literals, u", ", Literal(value));
    });
    const Text into = u"insert into " + source.table;
    return columns.empty() ? into + u" default values" : into + u" (" + columns + u") values (" + literals + u')';
}

Text UpdateStatement(const SelectSource& source, const SqlValues& values, TextView where) {
    Text settings;
    ForEachValue(source, values, [&](const Text& column, const SqlValue& value) {
        AppendPart(settings, u", ", column + u" = " + Literal(value));
    });
    return u"update " + source.table + u" set " + settings + Text(where);
}

Text DeleteStatement(const SelectSource& source, TextView where) {
    return u"delete from " + source.table + Text(where);
}

Text CountStatement(const SelectSource& source, TextView where) {
    return u"select count(*) from " + source.table + Text(where);
}

Text ReadAgainStatement(const SelectSource& source, TextView where) {
    return u"select " + source.items + u" from " + source.from + Text(where);
}

}  // namespace qvx::ado
