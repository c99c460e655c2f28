// Which table and columns a select statement reads, and the statements that write them.
#include "samples/ado/sql/select_source.h"

#include <gtest/gtest.h>

#include "samples/ado/sql/statements.h"
#include "tests/support/narrow.h"

namespace qvx::ado {
namespace {

using test::Narrow;
using Form = SqlValue::Form;

// "TABLE: COLUMN COLUMN", with "-" for a computed one; "" for what cannot be written.
std::string Read(const char16_t* sql, const std::vector<Text>& fields) {
    const auto source = ReadSelect(sql, fields);
    if (!source) return "";
    std::string read = Narrow(source->table) + ":";
    for (const Text& column : source->columns) read += column.empty() ? " -" : " " + Narrow(column);
    return read;
}

TEST(SelectSource, IsOneTableAndItsColumns) {
    const struct {
        const char16_t* sql;
        std::vector<Text> fields;
        const char* read;
    } cases[] = {
        {u"select id, name from t", {u"id", u"name"}, R"("t": "id" "name")"},
        {u"SELECT ALL * FROM main.[my table] ;", {u"a", u"b\"c"}, R"("main"."my table": "a" "b""c")"},
        {u"select x.*, 1 as one from t as x where a = ')' order by b limit 5",
         {u"a", u"b", u"one"},
         R"("t": "a" "b" -)"},
        {u"select max(a, b), * from t", {u"m", u"a"}, ""},
        {u"select 2, t.a aa, `b` as 'bb', \"c\"\"d\" from t offset 1",
         {u"2", u"aa", u"bb", u"c\"d"},
         R"("t": - "a" "b" "c""d")"},
        {u"select-- all of it\n a /* , b */ , a+b, f(a, b), 'a', null, (select max(x) from u where y) from t",
         {u"a", u"s", u"f", u"a", u"n", u"m"},
         R"("t": "a" - - - - -)"},
        {u"select a from t where x in (select y from u group by y)", {u"a"}, R"("t": "a")"},
        {u"select \"from\" from t", {u"from"}, R"("t": "from")"},
        {u"select a + 1 from t", {u"a"}, ""},
        {u"select current_date, true from t", {u"d", u"t"}, ""},
        {u"select distinct a from t", {u"a"}, ""},
        {u"select a from t, u", {u"a"}, ""},
        {u"select a from t join u", {u"a"}, ""},
        {u"select a from t natural join u", {u"a"}, ""},
        {u"select a from t as join u", {u"a"}, ""},
        {u"select a from (select a from t)", {u"a"}, ""},
        {u"select a from f(1)", {u"a"}, ""},
        {u"select a from t where b group by a", {u"a"}, ""},
        {u"select a from t where b union select a from u", {u"a"}, ""},
        {u"select count(*), a from t", {u"c", u"a"}, ""},
        {u"select coalesce(max(a), 0), a from t", {u"m", u"a"}, ""},
        {u"select a, (select max(b) from u), max(b) from t", {u"a", u"b", u"c"}, ""},
        {u"select a, x'00' from t", {u"a", u"x"}, R"("t": "a" -)"},
        {u"select a from t; delete from t", {u"a"}, ""},
        {u"select a, b from t", {u"a"}, ""},
        {u"select *, * from t", {u"a", u"a"}, ""},
        {u"select a, from t", {u"a", u"b"}, ""},
        {u"select 'a from t", {u"a"}, ""},
        {u"with u as (select 1) select a from u", {u"a"}, ""},
        {u"insert into t values(1)", {}, ""},
        {u"select", {}, ""},
        {u"select a from", {u"a"}, ""},
        {u"", {}, ""},
    };
    for (const auto& c : cases) EXPECT_EQ(c.read, Read(c.sql, c.fields)) << Narrow(c.sql);
}

TEST(Statements, WriteWhatTheSelectHasRead) {
    const auto source = ReadSelect(u"select a as x, b, a + b as sum from t y where a > 0", {u"x", u"b", u"sum"});
    ASSERT_TRUE(source);
    const SqlValues values = {SqlValue{Form::text, u"it's"}, SqlValue{}, SqlValue{Form::whole, u"3"}};
    const Text where = WhereClause(*source, values);
    EXPECT_EQ(R"( where "a" = 'it''s' and "b" is null)", Narrow(where));
    EXPECT_EQ(R"(insert into "t" ("a", "b") values ('it''s', null))", Narrow(InsertStatement(*source, values)));
    EXPECT_EQ(R"(insert into "t" default values)", Narrow(InsertStatement(*source, SqlValues(3))));
    EXPECT_EQ(R"(update "t" set "b" = 2 where x)",
              Narrow(UpdateStatement(*source, {std::nullopt, SqlValue{Form::whole, u"2"}}, u" where x")));
    EXPECT_EQ(R"(delete from "t" where x)", Narrow(DeleteStatement(*source, u" where x")));
    EXPECT_EQ(R"(select count(*) from "t" where x)", Narrow(CountStatement(*source, u" where x")));
    EXPECT_EQ("select a as x, b, a + b as sum from t y where x", Narrow(ReadAgainStatement(*source, u" where x")));

    const struct {
        SqlValue value;
        const char* condition;
    } cases[] = {
        {{Form::whole, u"-7"}, "c = -7"},
        {{Form::truth, u"1"}, "c <> 0"},
        {{Form::truth, u"0"}, "c = 0"},
        {{Form::bytes, u"00FF"}, "c = x'00FF'"},
        {{Form::real, u"0"}, "c between 0 and 0"},
        {{Form::real, u"-100"}, "c between -100.000000000001 and -99.999999999999"},
        {{Form::money, u"0.5"}, "c between 0.499949999999995 and 0.500050000000005"},
        {{Form::real, u"abc"}, "c = abc"},
    };
    for (const auto& c : cases) EXPECT_EQ(c.condition, Narrow(Condition(u"c", c.value)));
}

}  // namespace
}  // namespace qvx::ado
