#include "samples/ado/field_value.h"

#include <windows.h>

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <optional>

#include "common/dates.h"
#include "host/form_value.h"

namespace qvx::ado {

namespace {

// The whole text, or nothing.
template <class Number>
std::optional<Number> ReadNumber(TextView text) {
    const std::string narrow(text.begin(), text.end());
    Number number{};
    const auto [end, error] = std::from_chars(narrow.data(), narrow.data() + narrow.size(), number);
    if (error != std::errc() || end != narrow.data() + narrow.size() || narrow.empty()) return std::nullopt;
    return number;
}

Variant Integer(long long number, VARTYPE smallest) {
    Variant value;
    if (smallest == VT_I4 && number >= LONG_MIN && number <= LONG_MAX) return Variant(static_cast<long>(number));
    value.ptr()->llVal = number;
    value.ptr()->vt = VT_I8;
    return value;
}

std::optional<Variant> ReadDate(TextView text) {
    Text spelled(text);
    std::replace(spelled.begin(), spelled.end(), u'T', u' ');
    if (spelled.size() < 8 || spelled[4] != u'-') return std::nullopt;
    DateSettings settings;
    settings.order = ShortDateOrder::yearMonthDay;
    const auto date = ParseDate(spelled, settings);
    if (!date) return std::nullopt;
    const int second = date->secondOfDay;
    const auto word = [](int part) { return static_cast<WORD>(part); };
    SYSTEMTIME time{word(date->year),       word(date->month), 0, word(date->day), word(second / 3600),
                    word(second / 60 % 60), word(second % 60), 0};
    double days = 0;
    if (!SystemTimeToVariantTime(&time, &days)) return std::nullopt;
    Variant value(days);
    value.ptr()->vt = VT_DATE;
    return value;
}

std::optional<Variant> TypedValue(Kind kind, TextView text) {
    switch (kind) {
        case Kind::integer:
        case Kind::bigInteger:
            if (const auto number = ReadNumber<long long>(text)) {
                return Integer(*number, kind == Kind::integer ? VT_I4 : VT_I8);
            }
            return std::nullopt;
        case Kind::real:
            if (const auto number = ReadNumber<double>(text)) return Variant(*number);
            return std::nullopt;
        case Kind::boolean:
            if (const auto number = ReadNumber<long long>(text)) return Variant(*number != 0);
            return std::nullopt;
        case Kind::date:
        case Kind::timestamp:
            return ReadDate(text);
        case Kind::currency:
            return Variant(text).To(VT_CY);
        case Kind::decimal:
            return Variant(text).To(VT_DECIMAL);
        default:
            return std::nullopt;
    }
}

}  // namespace

Kind KindOf(int driverType, TextView declared) {
    const TextView name = declared.substr(0, declared.find_first_of(u"( "));
    for (const auto& [word, kind] : {std::pair(u"currency", Kind::currency), std::pair(u"money", Kind::currency),
                                     std::pair(u"decimal", Kind::decimal), std::pair(u"numeric", Kind::decimal)}) {
        if (host::SameName(name, word)) return kind;
    }
    switch (driverType) {
        case SQL_INTEGER:
        case SQL_SMALLINT:
        case SQL_TINYINT:
            return Kind::integer;
        case SQL_BIGINT:
            return Kind::bigInteger;
        case SQL_REAL:
        case SQL_FLOAT:
        case SQL_DOUBLE:
            return Kind::real;
        case SQL_BIT:
            return Kind::boolean;
        case SQL_DATE:
        case SQL_TYPE_DATE:
            return Kind::date;
        case SQL_TIMESTAMP:
        case SQL_TYPE_TIMESTAMP:
            return Kind::timestamp;
        case SQL_BINARY:
        case SQL_VARBINARY:
        case SQL_LONGVARBINARY:
            return Kind::binary;
        case SQL_LONGVARCHAR:
            return Kind::longText;
        default:
            return Kind::text;
    }
}

long TypeNumber(Kind kind) {
    switch (kind) {
        case Kind::text:
            return 202;
        case Kind::longText:
            return 203;
        case Kind::integer:
            return 3;
        case Kind::bigInteger:
            return 20;
        case Kind::real:
            return 5;
        case Kind::boolean:
            return 11;
        case Kind::date:
            return 133;
        case Kind::timestamp:
            return 135;
        case Kind::currency:
            return 6;
        case Kind::decimal:
            return 131;
        case Kind::binary:
            return 205;
    }
    return 0;
}

Variant ReadValue(Kind kind, TextView text) {
    if (auto typed = TypedValue(kind, text)) return std::move(*typed);
    return Variant(text);
}

Variant BinaryValue(std::string_view bytes) {
    SAFEARRAY* array = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
    if (!array) throw std::bad_alloc();
    Variant value;
    value.ptr()->vt = VT_ARRAY | VT_UI1;
    value.ptr()->parray = array;
    void* data = nullptr;
    if (SUCCEEDED(SafeArrayAccessData(array, &data))) {
        std::memcpy(data, bytes.data(), bytes.size());
        SafeArrayUnaccessData(array);
    }
    return value;
}

Variant NullValue() {
    Variant null;
    null.ptr()->vt = VT_NULL;
    return null;
}

}  // namespace qvx::ado
