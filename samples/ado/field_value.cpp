#include "samples/ado/field_value.h"

#include <windows.h>

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <new>
#include <optional>

#include "com/safearray.h"
#include "common/dates.h"
#include "host/form_value.h"
#include "samples/ado/errors.h"

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

Variant ValueOfKind(Kind kind, const Variant& value) {
    if (value.Empty() || value.Type() == VT_NULL) return NullValue();
    const auto checked = [](std::optional<Variant> converted) {
        if (!converted) ThrowWrongType();
        return std::move(*converted);
    };
    switch (kind) {
        case Kind::integer:
        case Kind::bigInteger:
            return Integer(checked(value.To(VT_I8)).get().llVal, kind == Kind::integer ? VT_I4 : VT_I8);
        case Kind::real:
            return checked(value.To(VT_R8));
        case Kind::boolean:
            return checked(value.To(VT_BOOL));
        case Kind::date:
        case Kind::timestamp:
            return checked(value.To(VT_DATE));
        case Kind::currency:
            return checked(value.To(VT_CY));
        case Kind::decimal:
            return checked(value.To(VT_DECIMAL));
        case Kind::binary:
            if (value.Type() != (VT_ARRAY | VT_UI1)) ThrowWrongType();
            return value;
        default:
            return checked(value.To(VT_BSTR));
    }
}

namespace {

Text HexadecimalOf(const Variant& bytes) {
    Text digits;
    for (const Variant& byte : ReadElements(ArrayOf(bytes.get()))) {
        const long number = byte.ToLong().value_or(0);
        for (const long digit : {number / 16, number % 16}) digits += u"0123456789ABCDEF"[digit];
    }
    return digits;
}

// In the standard's form, which sorts as the dates do.
Text DateOf(const Variant& value, bool withTime) {
    SYSTEMTIME time{};
    VariantTimeToSystemTime(value.get().date, &time);
    const Date date{time.wYear, time.wMonth, time.wDay, (time.wHour * 60 + time.wMinute) * 60 + time.wSecond};
    return FormatDate(date, withTime ? u"yyyy-mm-dd hh:nn:ss" : u"yyyy-mm-dd");
}

}  // namespace

SqlValue StatementValue(Kind kind, const Variant& value) {
    using Form = SqlValue::Form;
    switch (value.Type()) {
        case VT_NULL:
            return {};
        case VT_I4:
        case VT_I8:
            return {Form::whole, *value.ToText()};
        case VT_R8: {
            char digits[40];
            const auto end = std::to_chars(digits, digits + sizeof(digits), value.get().dblVal).ptr;
            return {Form::real, Text(digits, end)};
        }
        case VT_BOOL:
            return {Form::truth, value.get().boolVal ? u"1" : u"0"};
        case VT_CY:
        case VT_DECIMAL:
            return {value.Type() == VT_CY ? Form::money : Form::real, *value.ToText()};
        case VT_DATE:
            return {Form::text, DateOf(value, kind == Kind::timestamp)};
        case VT_ARRAY | VT_UI1:
            return {Form::bytes, HexadecimalOf(value)};
        default:
            return {Form::text, *value.ToText()};
    }
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
