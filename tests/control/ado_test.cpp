// The data objects that tests and demo put in the place of the system's where those cannot open a database.
#include <gtest/gtest.h>

#include <memory>

#include "com/safearray.h"
#include "tests/support/ado_server.h"
#include "tests/support/files.h"
#include "tests/support/narrow.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

// By the run-time error's number.
constexpr HRESULT Raised(int number) { return static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number)); }

using Object = ComPtr<IDispatch>;

Object Create(const wchar_t* name) {
    Object object;
    EXPECT_EQ(CoCreateInstance(ClassOf(name), nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, object.put_void()), S_OK);
    return object;
}

Object ObjectFrom(const Object& object, const wchar_t* member, const std::vector<Variant>& arguments = {}) {
    return Call(object.get(), member, arguments).ToObject<IDispatch>();
}

CallResult Try(const Object& object, const wchar_t* member, const std::vector<Variant>& arguments = {},
               WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET) {
    std::vector<VARIANT> borrowed;
    for (const Variant& argument : arguments) borrowed.push_back(argument.get());
    return Invoke(object.get(), member, flags, borrowed);
}

long Number(const Object& object, const wchar_t* member) { return Call(object.get(), member).ToLong().value_or(-99); }

Variant ValueOf(const Object& records, const Variant& field) {
    const Object found = ObjectFrom(records, L"Fields", {field});
    return found ? Call(found.get(), L"Value") : Variant();
}

Variant NullVariant() {
    Variant null;
    null.ptr()->vt = VT_NULL;
    return null;
}

// A fresh database file for each test. The tests are skipped where no driver for it is installed.
class Ado : public ::testing::Test {
  protected:
    void SetUp() override {
        file_ = NewTemporaryFile();
        server_ = std::make_unique<AdoServer>();
        connection_ = Create(L"ADODB.Connection");
        ASSERT_TRUE(connection_);
        const CallResult opened = Try(connection_, L"Open", {Variant(Settings())});
        if (MeansNoDriver(opened.description)) {
            GTEST_SKIP() << "NO ODBC DRIVER FOR SQLITE IS INSTALLED: " << Narrow(opened.description);
        }
        ASSERT_EQ(opened.result, S_OK) << Narrow(opened.description);
    }
    void TearDown() override {
        connection_.reset();
        server_.reset();
        DeleteFileW(Wide(file_));
    }

    Text Settings() const { return u"Driver={SQLite3 ODBC Driver};Database=" + file_ + u";"; }
    Object Execute(const char16_t* sql) { return ObjectFrom(connection_, L"Execute", {Variant(sql)}); }
    // Kept by the client unless another kind of cursor is asked for.
    Object Open(const char16_t* sql, int cursorType = 3) {
        Object records = Create(L"ADODB.Recordset");
        Call(records.get(), L"Open", {Variant(sql), Variant(connection_.get()), Variant(cursorType)});
        return records;
    }
    // What another program would find in the file.
    Text FromOutside(const char16_t* sql) {
        const Object other = Create(L"ADODB.Connection");
        Call(other.get(), L"Open", {Variant(Settings())});
        return ValueOf(ObjectFrom(other, L"Execute", {Variant(sql)}), Variant(0)).ToText().value_or(u"?");
    }
    long CountFromOutside() { return Variant(FromOutside(u"select count(*) from t")).ToLong().value_or(-1); }
    // Kept by the client, and writable.
    Object OpenToWrite(const char16_t* sql, int cursorType = 3) {
        Object records = Create(L"ADODB.Recordset");
        Call(records.get(), L"Open", {Variant(sql), Variant(connection_.get()), Variant(cursorType), Variant(3)});
        return records;
    }
    static CallResult Set(const Object& records, const char16_t* field, const Variant& value) {
        return Try(ObjectFrom(records, L"Fields", {Variant(field)}), L"Value", {value}, DISPATCH_PROPERTYPUT);
    }
    static CallResult Do(const Object& records, const wchar_t* method) { return Try(records, method); }

    Text file_;
    std::unique_ptr<AdoServer> server_;
    Object connection_;
};

TEST_F(Ado, ValuesHaveTheTypesTheirColumnsWereDeclaredWith) {
    const struct {
        const char16_t* declared;
        const char16_t* literal;
        VARTYPE type;
        const char16_t* text;
        long number;
    } cases[] = {
        {u"integer", u"-7", VT_I4, u"-7", 3},
        {u"integer", u"5000000000", VT_I8, u"5000000000", 3},
        {u"double", u"0.25", VT_R8, u"0.25", 5},
        {u"boolean", u"1", VT_BOOL, u"True", 11},
        {u"currency", u"3.5", VT_CY, u"3.5", 6},
        {u"decimal(10,3)", u"12.345", VT_DECIMAL, u"12.345", 131},
        {u"date", u"'2024-03-01'", VT_DATE, u"03/01/2024", 133},
        {u"timestamp", u"'2024-03-01 12:30:45'", VT_DATE, u"03/01/2024 12:30:45", 135},
        {u"varchar(20)", u"'it''s'", VT_BSTR, u"it's", 202},
        {u"text", u"'Gr\u00fcn \u20ac \U0001F600'", VT_BSTR, u"Gr\u00fcn \u20ac \U0001F600", 203},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Narrow(Text(c.declared) + u" " + c.literal));
        Execute((Text(u"create table t(x ") + c.declared + u")").c_str());
        Execute((Text(u"insert into t values(") + c.literal + u")").c_str());
        Execute(u"insert into t values(null)");
        const Object records = Open(u"select x from t");
        const Object field = ObjectFrom(records, L"Fields", {Variant(u"X")});
        EXPECT_EQ(Number(field, L"Type"), c.number);
        const Variant value = Call(field.get(), L"Value");
        EXPECT_EQ(value.Type(), c.type);
        EXPECT_EQ(value.ToText(), c.text);
        Call(records.get(), L"MoveNext");
        EXPECT_EQ(Call(field.get(), L"Value").Type(), VT_NULL);
        Execute(u"drop table t");
    }
}

TEST_F(Ado, LongTextsAndBinaryValuesArriveWhole) {
    // Around the length of the pieces they are fetched in, with characters of several bytes across their borders.
    for (const int length : {4094, 4095, 4096, 10000}) {
        Text text(static_cast<std::size_t>(length), u'x');
        for (std::size_t i = 0; i < text.size(); i += 3) text[i] = u'\u20ac';
        const Object records = Open((u"select '" + text + u"' as t").c_str());
        EXPECT_EQ(ValueOf(records, Variant(u"t")).ToText(), text) << length;
    }
    Execute(u"create table t(b blob)");
    Execute(u"insert into t values(x'00FF10'), (zeroblob(5000))");
    const Object records = Open(u"select b from t");
    EXPECT_EQ(ReadElements(ArrayOf(ValueOf(records, Variant(0)).get()))[1].ToLong(), 255);
    Call(records.get(), L"MoveNext");
    EXPECT_EQ(ReadElements(ArrayOf(ValueOf(records, Variant(0)).get())).size(), 5000u);
}

TEST_F(Ado, OnlyKeptRecordsAreCountedAndGoBothWays) {
    Execute(u"create table t(i integer)");
    Execute(u"insert into t values(10), (20), (30)");
    const struct {
        int cursor;
        long count;
        long position;
        bool bothWays;
    } cases[] = {{0, -1, -1, false}, {1, 3, 2, true}, {2, -1, -1, false}, {3, 3, 2, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.cursor);
        const Object records = Open(u"select i from t order by i", c.cursor);
        EXPECT_EQ(Number(records, L"RecordCount"), c.count);
        Call(records.get(), L"MoveNext");
        EXPECT_EQ(Number(records, L"AbsolutePosition"), c.position);
        EXPECT_EQ(ValueOf(records, Variant(0)).ToLong(), 20);
        EXPECT_EQ(Try(records, L"MovePrevious").scode, c.bothWays ? S_OK : Raised(3219));
        Call(records.get(), L"MoveFirst");
        EXPECT_EQ(ValueOf(records, Variant(0)).ToLong(), 10);
        // A block is taken from here and moved past.
        LONG index[2] = {0, 1};
        Variant second;
        SafeArrayGetElement(ArrayOf(Call(records.get(), L"GetRows", {Variant(2)}).get()), index, second.put());
        EXPECT_EQ(second.ToLong(), 20);
        EXPECT_EQ(ValueOf(records, Variant(0)).ToLong(), 30);
    }
    Put(connection_.get(), L"CursorLocation", {Variant(3)});
    EXPECT_EQ(Number(Execute(u"select i from t"), L"RecordCount"), 3);
    EXPECT_EQ(Number(Open(u"select i from t", 0), L"RecordCount"), 3);
}

TEST_F(Ado, MovingEndsOneBehindTheRecords) {
    Execute(u"create table t(i integer)");
    const Object none = Open(u"select i from t");
    EXPECT_EQ(Call(none.get(), L"BOF").ToBool(), true);
    EXPECT_EQ(Call(none.get(), L"EOF").ToBool(), true);
    EXPECT_EQ(Number(none, L"RecordCount"), 0);
    for (const wchar_t* member : {L"MoveFirst", L"MoveLast", L"MoveNext", L"MovePrevious", L"GetRows"}) {
        EXPECT_EQ(Try(none, member).scode, Raised(3021)) << Narrow(Text(FromWide(member)));
    }
    Execute(u"insert into t values(1), (2)");
    const Object records = Open(u"select i from t order by i");
    const struct {
        const wchar_t* member;
        long position;  // -2 before, -3 behind
        HRESULT result;
    } steps[] = {
        {L"MoveLast", 2, S_OK},
        {L"MoveNext", -3, S_OK},
        {L"MoveNext", -3, Raised(3021)},
        {L"MovePrevious", 2, S_OK},
        {L"MoveFirst", 1, S_OK},
        {L"MovePrevious", -2, S_OK},
        {L"MovePrevious", -2, Raised(3021)},
        {L"MoveNext", 1, S_OK},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.position);
        EXPECT_EQ(Try(records, step.member).scode, step.result);
        EXPECT_EQ(Number(records, L"AbsolutePosition"), step.position);
        EXPECT_EQ(Call(records.get(), L"BOF").ToBool(), step.position == -2);
        EXPECT_EQ(Call(records.get(), L"EOF").ToBool(), step.position == -3);
        if (step.position > 0) {
            EXPECT_EQ(ValueOf(records, Variant(u"i")).ToLong(), step.position);
        }
    }
}

TEST_F(Ado, FailuresSayWhy) {
    Execute(u"create table t(i integer)");
    Execute(u"insert into t values(1)");
    const Object records = Open(u"select i from t");
    const Object closed = Create(L"ADODB.Recordset");
    const Object unopened = Create(L"ADODB.Connection");
    const struct {
        const Object& object;
        const wchar_t* member;
        std::vector<Variant> arguments;
        int number;
        const char16_t* words;
    } cases[] = {
        {connection_, L"Execute", {Variant(u"selct 1")}, 3000, u"syntax error"},
        {connection_, L"Execute", {}, 449, u""},
        {connection_, L"Open", {Variant(Settings())}, 3705, u"open"},
        {connection_, L"CommitTrans", {}, 3000, u"No transaction"},
        {unopened, L"Execute", {Variant(u"select 1")}, 3709, u"closed"},
        {unopened, L"Open", {Variant(u"Provider=Elsewhere;")}, 3706, u"Provider"},
        {unopened, L"Open", {Variant(u"Driver=SQLite3;Database=/no/such/folder/x.db")}, 3000, u"connect failed"},
        {closed, L"RecordCount", {}, 3704, u"closed"},
        {records, L"Fields", {Variant(u"j")}, 3265, u"name or number"},
        {records, L"GetRows", {Variant(-2)}, 3001, u"wrong type"},
    };
    for (const auto& c : cases) {
        const CallResult call = Try(c.object, c.member, c.arguments);
        SCOPED_TRACE(Narrow(Text(FromWide(c.member))) + ": " + Narrow(call.description));
        EXPECT_EQ(call.scode, Raised(c.number));
        EXPECT_NE(call.description.find(c.words), Text::npos);
        EXPECT_EQ(call.source, u"QvxAdo");
    }
    EXPECT_EQ(Number(unopened, L"State"), 0);
    EXPECT_EQ(CountFromOutside(), 1);
}

TEST_F(Ado, WrittenValuesHaveTheTypesOfTheirColumns) {
    Variant day(45352.5213541667);  // 2024-03-01 12:30:45
    day.ptr()->vt = VT_DATE;
    const struct {
        const char16_t* declared;
        const char16_t* before;  // as literals
        Variant value;
        const char16_t* stored;  // as SQLite quotes it; nullptr: the value is refused
    } cases[] = {
        {u"integer", u"1", Variant(u"-7"), u"-7"},
        {u"integer", u"null", Variant(u"x"), nullptr},
        {u"bigint", u"5000000000", Variant(u"5000000001"), u"5000000001"},
        {u"double", u"0.1 + 0.2", Variant(-0.25), u"-0.25"},
        {u"double", u"1e300 / 3", Variant(u"1e2"), u"100.0"},
        {u"boolean", u"7", Variant(false), u"0"},
        {u"currency", u"1.23456", Variant(u"3.5"), u"3.5"},
        {u"decimal(10,3)", u"2.0 / 3", Variant(u"12.345"), u"12.345"},
        {u"date", u"'2024-3-1'", day, u"'2024-03-01'"},
        {u"timestamp", u"'2024-03-01T12:30:45'", day, u"'2024-03-01 12:30:45'"},
        {u"varchar(20)", u"'it''s'", Variant(u"\"it's\" \u20ac"), u"'\"it''s\" \u20ac'"},
        {u"varchar(20)", u"''", NullVariant(), u"NULL"},
        {u"blob", u"x'00FF'", NullVariant(), u"NULL"},
        {u"blob", u"x'00FF'", Variant(u"x"), nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Narrow(Text(c.declared) + u" " + c.before));
        Execute((Text(u"create table \"t\"\"1\"(id integer primary key, \"x y\" ") + c.declared + u")").c_str());
        Execute((Text(u"insert into \"t\"\"1\" values(1, 'other'), (2, ") + c.before + u")").c_str());
        const Object records = OpenToWrite(u"select \"x y\" as value, id from \"t\"\"1\" order by id");
        Call(records.get(), L"MoveLast");
        const CallResult put = Set(records, u"value", c.value);
        EXPECT_EQ(put.scode, c.stored ? S_OK : Raised(3421));
        const CallResult updated = Do(records, L"Update");
        EXPECT_EQ(updated.scode, S_OK) << Narrow(updated.description);
        if (c.stored) {
            EXPECT_EQ(Narrow(FromOutside(u"select group_concat(quote(\"x y\")) from \"t\"\"1\"")),
                      "'other'," + Narrow(c.stored));
        }
        Execute(u"drop table \"t\"\"1\"");
    }
}

TEST_F(Ado, RecordsAreAddedChangedAndDeleted) {
    Execute(u"create table t(id integer primary key, name text default 'new', qty integer check(qty > 0))");
    Execute(u"insert into t values(1, 'a', 1), (2, 'b', 2), (3, 'c', 3)");
    for (const int cursor : {0, 3}) {
        SCOPED_TRACE(cursor);
        const Object records = OpenToWrite(u"select t.*, qty * 2 as twice from t order by id", cursor);
        EXPECT_EQ(Do(records, L"Delete").scode, S_OK);
        EXPECT_EQ(Try(records, L"Fields", {Variant(u"id")}).result, S_OK);
        EXPECT_EQ(Do(records, L"Delete").scode, Raised(3021));
        Call(records.get(), L"MoveNext");
        EXPECT_EQ(ValueOf(records, Variant(u"id")).ToLong(), 2);
        EXPECT_EQ(Set(records, u"qty", Variant(20)).scode, S_OK);
        EXPECT_EQ(Set(records, u"twice", Variant(1)).scode, Raised(3251));
        EXPECT_EQ(FromOutside(u"select qty from t where id = 2"), u"2") << "not before Update";
        EXPECT_EQ(ValueOf(records, Variant(u"qty")).ToLong(), 20);
        // Moving on writes what was changed.
        Call(records.get(), L"MoveNext");
        EXPECT_EQ(FromOutside(u"select qty from t where id = 2"), u"20");
        EXPECT_EQ(Set(records, u"qty", Variant(0)).scode, S_OK);
        EXPECT_EQ(Do(records, L"Update").scode, Raised(3000)) << "the table's rule";
        EXPECT_EQ(Do(records, L"Close").scode, Raised(3219));
        EXPECT_EQ(Do(records, L"Requery").scode, Raised(3219));
        Call(records.get(), L"CancelUpdate");
        EXPECT_EQ(ValueOf(records, Variant(u"qty")).ToLong(), 3);
        Call(records.get(), L"AddNew");
        EXPECT_EQ(ValueOf(records, Variant(u"name")).Type(), VT_NULL);
        Put(records.get(), L"Fields", {Variant(u"qty"), Variant(5)});
        Call(records.get(), L"Update");
        EXPECT_EQ(ValueOf(records, Variant(u"id")).ToLong(), 4) << "from the database";
        EXPECT_EQ(ValueOf(records, Variant(u"name")).ToText(), u"new");
        EXPECT_EQ(ValueOf(records, Variant(u"twice")).ToLong(), 10);
        Call(records.get(), L"MoveNext");
        EXPECT_EQ(Call(records.get(), L"EOF").ToBool(), true);
        EXPECT_EQ(FromOutside(u"select group_concat(id || name || qty) from t"), u"2b20,3c3,4new5");
        Call(records.get(), L"MoveFirst");
        EXPECT_EQ(ValueOf(records, Variant(u"id")).ToLong(), 2) << "without the deleted one";
        Execute(u"delete from t");
        Call(records.get(), L"Requery");
        EXPECT_EQ(Call(records.get(), L"EOF").ToBool(), true);
        EXPECT_EQ(Call(records.get(), L"ActiveConnection").ToObject<IDispatch>(), connection_);
        Execute(u"insert into t values(1, 'a', 1), (2, 'b', 2), (3, 'c', 3)");
    }
}

TEST_F(Ado, RecordsOfOthersAndReadOnlyOnesAreNotWritten) {
    Execute(u"create table t(a text, b double)");
    Execute(u"insert into t values('x', 1), ('y', 0.1), ('z', 3), ('z', 3), (null, null)");
    const Object records = OpenToWrite(u"select a, b from t");
    Execute(u"update t set b = 2 where a = 'x'");
    Execute(u"delete from t where a = 'y'");
    const HRESULT expected[] = {Raised(3197), Raised(3197), Raised(3197), Raised(3197), S_OK};
    for (const HRESULT result : expected) {
        EXPECT_EQ(Set(records, u"b", Variant(9)).scode, S_OK);
        EXPECT_EQ(Do(records, L"Update").scode, result);
        Call(records.get(), L"CancelUpdate");
        EXPECT_EQ(Do(records, L"Delete").scode, result);
        Call(records.get(), L"MoveNext");
    }
    EXPECT_EQ(FromOutside(u"select group_concat(a || b) from t"), u"x2.0,z3.0,z3.0");
    const Object elsewhere = OpenToWrite(u"select a from t union select 'u'");
    const Object locked = Open(u"select a from t");
    for (const Object& set : {elsewhere, locked}) {
        for (const wchar_t* method : {L"AddNew", L"Delete"}) {
            const CallResult call = Do(set, method);
            EXPECT_EQ(call.scode, Raised(3251));
            EXPECT_NE(call.description.find(set == locked ? u"read-only" : u"one table"), Text::npos);
        }
        EXPECT_EQ(Set(set, u"a", Variant(u"w")).scode, Raised(3251));
    }
    EXPECT_EQ(Try(locked, L"LockType", {Variant(3)}, DISPATCH_PROPERTYPUT).scode, Raised(3705));
    EXPECT_EQ(Try(Create(L"ADODB.Recordset"), L"LockType", {Variant(4)}, DISPATCH_PROPERTYPUT).scode, Raised(3001));
}

TEST_F(Ado, ATransactionThatNobodyEndsLeavesNothing) {
    Execute(u"create table t(i integer)");
    Execute(u"insert into t values(1)");
    EXPECT_EQ(Call(connection_.get(), L"BeginTrans").ToLong(), 1);
    Execute(u"delete from t");
    EXPECT_EQ(Try(connection_, L"BeginTrans").scode, Raised(3000));
    EXPECT_EQ(Try(connection_, L"Close").scode, Raised(3246));
    connection_.reset();
    EXPECT_EQ(CountFromOutside(), 1);
}

TEST_F(Ado, RecordSetsCloseWithTheirConnection) {
    const Object records = Open(u"select 1 as one");
    const Object field = ObjectFrom(records, L"Fields", {Variant(0)});
    Call(connection_.get(), L"Close");
    EXPECT_EQ(Number(records, L"State"), 0);
    EXPECT_EQ(Try(field, L"Value").scode, Raised(3704));
    // With a user and a password, too.
    Call(connection_.get(), L"Open",
         {Variant(u" provider = MSDASQL ; " + Settings()), Variant(u"Anna;{x}"), Variant(u"Anna;{x}"), Variant(-1)});
    Call(records.get(), L"Open", {Variant(u"select 2 as two"), Variant(connection_.get())});
    EXPECT_EQ(ValueOf(records, Variant(u"TWO")).ToLong(), 2);
    EXPECT_EQ(Try(field, L"Name").value.ToText(), u"two");
    Call(connection_.get(), L"Close");
    // A record set that opens a connection of its own closes it.
    Call(records.get(), L"Open", {Variant(u"select 3"), Variant(Settings()), Variant(1), Variant(3), Variant(-1)});
    EXPECT_EQ(ValueOf(records, Variant(0)).ToLong(), 3);
    Call(records.get(), L"Close");
    EXPECT_TRUE(MoveFileW(Wide(file_), Wide(file_ + u"x"))) << GetLastError();
    EXPECT_TRUE(MoveFileW(Wide(file_ + u"x"), Wide(file_)));
    Write(file_, std::string(4096, '?'));
    const CallResult opened = Try(connection_, L"Open", {Variant(Settings())});
    EXPECT_NE(opened.description.find(u"not a database"), Text::npos) << Narrow(opened.description);
    EXPECT_EQ(Number(connection_, L"State"), 0);
}

}  // namespace
}  // namespace qvx::test
