#include "samples/ado/database.h"

#include <windows.h>

// The distribution's driver knows the calls with one byte a character only, whose text is UTF-8 throughout.
#define SQL_NOUNICODEMAP
#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "common/utf8.h"
#include "host/form_value.h"
#include "host/text_encoding.h"
#include "samples/ado/connection_string.h"
#include "samples/ado/errors.h"

namespace qvx::ado {

namespace {

using host::SameName;

Text Decode(std::string_view bytes) {
    if (auto text = DecodeUtf8(bytes)) return std::move(*text);
    return host::DecodeFile(bytes).text;
}

SQLCHAR* Buffer(std::string& text) { return reinterpret_cast<SQLCHAR*>(text.data()); }

[[noreturn]] void ThrowDiagnostics(SQLSMALLINT type, SQLHANDLE handle, const char16_t* fallback) {
    Text message;
    for (SQLSMALLINT i = 1; handle; ++i) {
        SQLCHAR state[6] = "";
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        std::string text(1024, '\0');
        if (!SQL_SUCCEEDED(SQLGetDiagRec(type, handle, i, state, &native, Buffer(text), 1024, &length))) break;
        message += (message.empty() ? u"" : u" ") + Decode(text.c_str());
    }
    ThrowProviderFailed(message.empty() ? Text(fallback) : message);
}

class Statement {
  public:
    explicit Statement(SQLHDBC connection) {
        if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_STMT, connection, &handle_))) {
            ThrowDiagnostics(SQL_HANDLE_DBC, connection, u"No statement can be made.");
        }
    }
    ~Statement() { SQLFreeHandle(SQL_HANDLE_STMT, handle_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    SQLHSTMT get() const { return handle_; }
    // Whether it was more than "nothing there".
    bool Check(SQLRETURN result) const {
        if (result == SQL_NO_DATA) return false;
        if (!SQL_SUCCEEDED(result)) ThrowDiagnostics(SQL_HANDLE_STMT, handle_, u"The statement failed.");
        return true;
    }

  private:
    SQLHSTMT handle_ = nullptr;
};

std::vector<Column> DescribeColumns(const Statement& statement) {
    SQLSMALLINT count = 0;
    statement.Check(SQLNumResultCols(statement.get(), &count));
    std::vector<Column> columns;
    for (SQLUSMALLINT i = 1; i <= count; ++i) {
        std::string name(512, '\0');
        std::string declared(128, '\0');
        SQLSMALLINT length = 0;
        SQLSMALLINT type = 0;
        SQLULEN size = 0;
        SQLSMALLINT digits = 0;
        SQLSMALLINT nullable = 0;
        SQLLEN unused = 0;
        statement.Check(SQLDescribeCol(statement.get(), i, Buffer(name), static_cast<SQLSMALLINT>(name.size()), &length,
                                       &type, &size, &digits, &nullable));
        statement.Check(SQLColAttribute(statement.get(), i, SQL_DESC_TYPE_NAME, declared.data(),
                                        static_cast<SQLSMALLINT>(declared.size()), &length, &unused));
        columns.push_back({Decode(name.c_str()), KindOf(type, Decode(declared.c_str()))});
    }
    return columns;
}

// The bytes of a field of the current row, piece by piece; nothing for Null.
std::optional<std::string> ReadBytes(const Statement& statement, SQLUSMALLINT field, SQLSMALLINT type) {
    std::string bytes;
    std::string piece(4096, '\0');
    // Text is closed by a zero, which takes its place in every piece.
    const std::size_t room = piece.size() - (type == SQL_C_CHAR ? 1 : 0);
    for (;;) {
        SQLLEN length = 0;
        const SQLRETURN result =
            SQLGetData(statement.get(), field, type, piece.data(), static_cast<SQLLEN>(piece.size()), &length);
        if (!statement.Check(result)) return bytes;
        if (length == SQL_NULL_DATA) return std::nullopt;
        const bool last = length >= 0 && static_cast<std::size_t>(length) <= room;
        bytes.append(piece, 0, last ? static_cast<std::size_t>(length) : room);
        if (last) return bytes;
    }
}

void AddField(const Statement& statement, SQLUSMALLINT field, Kind kind, Table& table) {
    const bool binary = kind == Kind::binary;
    const auto bytes = ReadBytes(statement, field, static_cast<SQLSMALLINT>(binary ? SQL_C_BINARY : SQL_C_CHAR));
    if (!bytes || binary) {
        table.cells.push_back(bytes ? BinaryValue(*bytes) : NullValue());
        return;
    }
    Text text = Decode(*bytes);
    table.cells.push_back(ReadValue(kind, text));
    const Variant& value = table.cells.back();
    if (value.Type() == VT_DATE && StatementValue(kind, value).text != text)
        table.spelled.emplace(table.cells.size() - 1, std::move(text));
}

// The driver that goes by this name, or that describes itself so. Some driver managers keep the descriptions to
// themselves; the driver is then the one whose name the wanted one begins with.
Text DriverNamed(SQLHENV environment, const Text& wanted) {
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    Text described;
    Text begun;
    for (;; direction = SQL_FETCH_NEXT) {
        std::string name(256, '\0');
        std::string attributes(2048, '\0');
        SQLSMALLINT nameLength = 0;
        SQLSMALLINT attributesLength = 0;
        if (!SQL_SUCCEEDED(SQLDrivers(environment, direction, Buffer(name), static_cast<SQLSMALLINT>(name.size()),
                                      &nameLength, Buffer(attributes), static_cast<SQLSMALLINT>(attributes.size()),
                                      &attributesLength))) {
            if (!described.empty()) return described;
            return begun.empty() ? wanted : begun;
        }
        const Text driver = Decode(name.c_str());
        if (SameName(driver, wanted)) return wanted;
        if (SameName(driver + u' ', TextView(wanted).substr(0, driver.size() + 1))) begun = driver;
        const Text description = u"Description=" + wanted;
        for (const char* pair = attributes.c_str(); *pair; pair += std::strlen(pair) + 1) {
            if (SameName(Decode(pair), description)) described = driver;
        }
    }
}

// A file's name as the driver sees it, which is not a Windows program where Wine hands its calls on.
Text FileForDriver(const Text& file) {
    using UnixFileName = char*(CDECL*)(const wchar_t*);
    const auto translate = reinterpret_cast<UnixFileName>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    const bool windowsName = file.size() > 2 && file[1] == u':' && (file[2] == u'\\' || file[2] == u'/');
    if (!translate || !windowsName) return file;
    char* translated = translate(Wide(file));
    if (!translated) return file;
    const Text text = Decode(translated);
    HeapFree(GetProcessHeap(), 0, translated);
    return text;
}

std::string ForDriver(SQLHENV environment, TextView connectionString) {
    ConnectionSettings settings;
    for (auto& [key, value] : ParseConnectionString(connectionString)) {
        if (SameName(key, u"Provider")) {
            if (!SameName(value, u"MSDASQL") && !SameName(value, u"MSDASQL.1")) {
                throw RunTimeError(3706, u"Provider cannot be found. Only ODBC's is here (MSDASQL).");
            }
            continue;
        }
        if (SameName(key, u"Driver")) value = DriverNamed(environment, value);
        if (SameName(key, u"Database") || SameName(key, u"DBQ")) value = FileForDriver(value);
        settings.emplace_back(key, value);
    }
    // Some driver managers lose their place in a value with braces in it.
    std::ranges::stable_partition(
        settings, [](const auto& setting) { return setting.second.find_first_of(u";{}") == Text::npos; });
    return EncodeUtf8(WriteConnectionString(settings));
}

}  // namespace

struct Database::Handles {
    SQLHENV environment = nullptr;
    SQLHDBC connection = nullptr;
    bool connected = false;

    Handles() {
        if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_ENV, nullptr, &environment)) || !environment) {
            environment = nullptr;
            ThrowProviderFailed(u"There is no ODBC driver manager.");
        }
        SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
        if (!SQL_SUCCEEDED(SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection))) {
            connection = nullptr;
            SQLFreeHandle(SQL_HANDLE_ENV, environment);
            ThrowProviderFailed(u"No connection can be made.");
        }
    }
    ~Handles() {
        if (connected) SQLDisconnect(connection);
        SQLFreeHandle(SQL_HANDLE_DBC, connection);
        SQLFreeHandle(SQL_HANDLE_ENV, environment);
    }
    Handles(const Handles&) = delete;
    Handles& operator=(const Handles&) = delete;

    void Check(SQLRETURN result) const {
        if (!SQL_SUCCEEDED(result)) ThrowDiagnostics(SQL_HANDLE_DBC, connection, u"The database cannot be opened.");
    }
};

Database::Database(TextView connectionString) : handles_(std::make_unique<Handles>()) {
    std::string settings = ForDriver(handles_->environment, connectionString);
    std::string completed(2048, '\0');
    SQLSMALLINT length = 0;
    handles_->Check(SQLDriverConnect(handles_->connection, nullptr, Buffer(settings), SQL_NTS, Buffer(completed),
                                     static_cast<SQLSMALLINT>(completed.size()), &length, SQL_DRIVER_NOPROMPT));
    handles_->connected = true;
    // SQLite opens any file and looks at it only when it is asked for something.
    std::string product(64, '\0');
    isSqlite_ = SQL_SUCCEEDED(SQLGetInfo(handles_->connection, SQL_DBMS_NAME, product.data(), 64, &length)) &&
                SameName(Decode(product.c_str()), u"SQLite");
    if (isSqlite_) Execute(u"select count(*) from sqlite_master");
}

Database::~Database() {
    if (inTransaction_) SQLEndTran(SQL_HANDLE_DBC, handles_->connection, SQL_ROLLBACK);
}

Answer Database::Execute(TextView sql) {
    const Statement statement(handles_->connection);
    std::string bytes = EncodeUtf8(sql);
    Answer answer;
    statement.Check(SQLExecDirect(statement.get(), Buffer(bytes), SQL_NTS));
    Table table;
    table.columns = DescribeColumns(statement);
    if (table.columns.empty()) {
        SQLLEN affected = 0;
        statement.Check(SQLRowCount(statement.get(), &affected));
        answer.affected = static_cast<long>(affected);
        return answer;
    }
    while (statement.Check(SQLFetch(statement.get()))) {
        SQLUSMALLINT field = 0;
        for (const Column& column : table.columns) AddField(statement, ++field, column.kind, table);
    }
    answer.table = std::move(table);
    return answer;
}

void Database::Begin() {
    if (inTransaction_) ThrowProviderFailed(u"Only one transaction can be active in this session.");
    handles_->Check(SQLSetConnectAttr(handles_->connection, SQL_ATTR_AUTOCOMMIT,
                                      reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER));
    inTransaction_ = true;
}

void Database::End(bool commit) {
    if (!inTransaction_) ThrowProviderFailed(u"No transaction is active.");
    // One that cannot be committed stays open, so that it can be taken back.
    handles_->Check(
        SQLEndTran(SQL_HANDLE_DBC, handles_->connection, static_cast<SQLSMALLINT>(commit ? SQL_COMMIT : SQL_ROLLBACK)));
    inTransaction_ = false;
    handles_->Check(SQLSetConnectAttr(handles_->connection, SQL_ATTR_AUTOCOMMIT,
                                      reinterpret_cast<SQLPOINTER>(SQL_AUTOCOMMIT_ON), SQL_IS_UINTEGER));
}

}  // namespace qvx::ado
