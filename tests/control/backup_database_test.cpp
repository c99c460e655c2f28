// The database of a backup: whether it opens, and its administrator's password.
#include "tests/control/backup_database.h"

#include "com/ado.h"
#include "controls/backup/password_source_win32.h"
#include "controls/backup/system_services_win32.h"
#include "tests/support/error_of.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

using Services = backup::SystemServices;

class BackupDatabase : public DatabaseTest {
  protected:
    Text Connection() const { return connection_ + file_; }

    // An error with this number, in words that give nothing away.
    static void ExpectNoPassword(const Text& connection, int number) {
        const Raised raised = RaisedBy([&] { backup::AdministratorPassword(connection); });
        EXPECT_EQ(raised.number, number) << Narrow(raised.words);
        EXPECT_FALSE(raised.words.empty());
        for (const TextView told : {u"SQL", u"hush", u"secret", u"Users", u"\\", u"Driver", u"UCode", u"x.db"}) {
            EXPECT_EQ(raised.words.find(told), Text::npos) << Narrow(raised.words);
        }
    }
};

TEST_F(BackupDatabase, OpensOrNot) {
    EXPECT_TRUE(Services().DatabaseOpens(Connection()));
    EXPECT_FALSE(Services().DatabaseOpens(Connection() + u"x"));
    EXPECT_FALSE(Services().DatabaseOpens(connection_ + u"C:\\no\\such.db"));
    EXPECT_FALSE(Services().DatabaseOpens(u"Driver={No such driver};Database=" + file_));
    EXPECT_FALSE(Services().DatabaseOpens(u"nonsense"));
    EXPECT_FALSE(Services().DatabaseOpens(u""));
    Write(file_, std::string(4096, '?'));
    EXPECT_FALSE(Services().DatabaseOpens(Connection()));
}

TEST_F(BackupDatabase, ThatSomebodyElseWritesDoesNotOpenUntilHeIsDone) {
    Execute(u"create table Users(UCode integer, Password text)");
    Execute(u"insert into Users values(1, 'Sesame')");
    const Text impatient = u"Timeout=20;" + Connection();
    {
        const auto other = Opened();
        Execute(other, u"begin exclusive");
        EXPECT_FALSE(Services().DatabaseOpens(impatient));
        ExpectNoPassword(impatient, 3000);
    }
    EXPECT_TRUE(Services().DatabaseOpens(impatient));
    EXPECT_EQ(backup::AdministratorPassword(impatient), u"Sesame");
}

TEST_F(BackupDatabase, ThePasswordIsTheAdministratorsAsText) {
    const struct {
        const char16_t* type;
        const char16_t* literal;
        std::optional<Text> password;
    } cases[] = {
        {u"text", u"'Sesame'", u"Sesame"},
        {u"text", u"' a b '", u" a b "},
        {u"text", u"'\u0416\u20ac\U0001F600'", u"\u0416\u20ac\U0001F600"},
        {u"text", u"''", u""},
        {u"text", u"null", std::nullopt},
        {u"integer", u"1234", u"1234"},
        {u"double", u"1e20", u"1E+20"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Narrow(Text(c.type) + u' ' + c.literal));
        Execute(Text(u"create table Users(UCode integer, Password ") + c.type + u")");
        Execute(u"insert into Users values(2, 'not this one')");
        Execute(Text(u"insert into Users values(1, ") + c.literal + u")");
        EXPECT_EQ(backup::AdministratorPassword(Connection()), c.password);
        Execute(u"drop table Users");
    }
}

TEST_F(BackupDatabase, WithoutAPasswordThereIsAnErrorThatGivesNothingAway) {
    const struct {
        const char16_t* sql;
        int number;
    } cases[] = {
        {u"select 1", 3000},  // no such table
        {u"create table Users(UCode integer, Password text)", 3021},
        {u"insert into Users values(2, 'other')", 3021},
        {u"drop table Users", 3000},
        {u"create table Users(UCode integer, Secret text)", 3000},  // no such column
        {u"drop table Users", 3000},
        {u"create table Users(UCode integer, Password blob)", 3021},
        {u"insert into Users values(1, x'00ff')", errors::typeMismatch},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Narrow(c.sql));
        Execute(c.sql);
        ExpectNoPassword(Connection(), c.number);
    }
    ExpectNoPassword(Connection() + u"x.db", 3000);
    ExpectNoPassword(u"Provider=Elsewhere;PWD=secret", 3706);
}

// The system's own objects are called through their interfaces. They open no database here, but a closed one of theirs
// says that it is closed, so each call comes to its own place.
TEST(SystemDataObjects, AreCalledThroughTheirOwnInterfaces) {
    constexpr auto closed = static_cast<HRESULT>(0x800A0E78);
    ComPtr<IUnknown> connection;
    ComPtr<IUnknown> records;
    const auto create = [](const wchar_t* name, ComPtr<IUnknown>& object) {
        return CoCreateInstance(ClassOf(name), nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.put_void());
    };
    if (FAILED(create(L"ADODB.Connection", connection)) || FAILED(create(L"ADODB.Recordset", records))) {
        GTEST_SKIP() << "THE SYSTEM HAS NO DATA OBJECTS";
    }
    const AdoInterface<AdoConnection> direct(connection.get());
    const AdoInterface<AdoRecordset> set(records.get());
    ASSERT_TRUE(direct);
    ASSERT_TRUE(set);
    EXPECT_EQ(direct->Close(), closed);
    EXPECT_EQ(set->Close(), closed);
    EXPECT_FALSE(Services().DatabaseOpens(u"Provider=NoSuchProvider;PWD=secret;Data Source=C:\\a.db"));
    EXPECT_EQ(RaisedBy([] {
                  backup::AdministratorPassword(u"Provider=NoSuchProvider;PWD=secret;Data Source=C:\\a.db");
              }).words,
              u"The administrator's password cannot be read from the database.");
}

}  // namespace
}  // namespace qvx::test
