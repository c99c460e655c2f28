// Changes of a grid written to a database that others write to as well.
#include <gtest/gtest.h>

#include <functional>

#include "com/late_bound.h"
#include "tests/control/backup_database.h"
#include "tests/control/combogrid_form.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

class ApplyToDatabase : public DatabaseTest {
  protected:
    void SetUp() override {
        DatabaseTest::SetUp();
        if (IsSkipped()) return;
        Execute(
            u"create table lines(id integer primary key, name varchar(20) not null, qty integer check(qty < 100), "
            u"rate double, month date)");
        Execute(
            u"insert into lines values(1, 'Ann', 1, 0.5, '2024-03-01'), (2, 'Bob', 2, 0.1, null), "
            u"(3, 'Cid', 3, null, '2024-05-01'), (4, 'Dan', null, 1e-7, null), (5, 'Eve''s', 5, 5, '2023-12-31')");
        form_ = std::make_unique<F>(std::vector<std::pair<std::wstring, Variant>>{
            {L"TrackRows", Variant(true)},
            {L"BindFields", Variant(u"[Key]id,[Name]name,[Qty]qty,[Rate]rate,[Month]month")}});
        records_ = CreateNamedObject(L"ADODB.Recordset");
        LateMember(records_.get(), L"Open")
            .Get(records_.get(),
                 {Variant(u"select * from lines order by id"), Variant(Opened().get()), Variant(3), Variant(3)});
        Load();
    }
    void TearDown() override {
        records_.reset();
        form_.reset();
        DatabaseTest::TearDown();
    }

    void Load() {
        Call(records_.get(), L"Requery");
        Call(form_->grid.get(), L"Bind", {Variant(records_.get())});
        form_->Log();
    }
    // The number of written records, or that of the error less than 0.
    long Apply(const char16_t* keys = u"id") {
        const Variant set(records_.get());
        const Variant key(keys);
        const CallResult call = Invoke(form_->grid.get(), L"Apply", DISPATCH_METHOD, {set.get(), key.get()});
        error_ = Narrow(call.description);
        return FAILED(call.result) ? -(call.scode & 0xFFFF) : call.value.ToLong().value_or(-1);
    }
    // The records as another connection sees them, a line each.
    std::string Stored() const {
        const auto connection = Opened();
        const auto all = LateMember(connection.get(), L"Execute")
                             .Get(connection.get(), {Variant(u"select group_concat(id || name || ' ' || "
                                                             u"coalesce(qty, '-') || ' ' || coalesce(rate, '-') || ' ' "
                                                             u"|| coalesce(month, '-'), '/') from lines")})
                             .ToObject<IDispatch>();
        const auto field = LateMember(all.get(), L"Fields").Get(all.get(), {Variant(0)}).ToObject<IDispatch>();
        return Narrow(Call(field.get(), L"Value").ToText().value_or(u"?"));
    }
    std::string States() const {
        std::string states;
        for (long row = 1; row < form_->Number(L"Rows"); ++row)
            states += "unc"[Call(form_->grid.get(), L"RowState", {Variant(row)}).ToLong().value_or(0)];
        return states + std::string(static_cast<std::size_t>(form_->Number(L"DeletedRows")), '-');
    }
    void Remove(int row) { Call(form_->Inner().get(), L"RemoveItem", {Variant(row)}); }
    void Add(const char16_t* cells) { Call(form_->Inner().get(), L"AddItem", {Variant(cells)}); }
    // One of each: Bob is changed, Cid deleted, Fay new.
    void Change() {
        form_->SetCell(2, F::qty, u"22");
        form_->SetCell(2, F::rate, u"0.3");
        form_->SetCell(2, F::month, u"06/01/2024");
        Remove(3);
        Add(u"\tFay's\t\t2.5");
    }

    std::unique_ptr<F> form_;
    ComPtr<IDispatch> records_;
    std::string error_;
    const std::string before_ =
        "1Ann 1 0.5 2024-03-01/2Bob 2 0.1 -/3Cid 3 - 2024-05-01/4Dan - 1.0e-07 -/5Eve's 5 5.0 2023-12-31";
    const std::string after_ =
        "1Ann 1 0.5 2024-03-01/2Bob 22 0.3 2024-06-01/4Dan - 1.0e-07 -/5Eve's 5 5.0 2023-12-31/6Fay's - 2.5 -";
};

TEST_F(ApplyToDatabase, WritesWhatWasChangedAndShowsWhatTheDatabaseMadeOfIt) {
    for (const char16_t* keys : {u"id", u""}) {
        SCOPED_TRACE(Narrow(keys));
        ASSERT_EQ(before_, Stored());
        Change();
        EXPECT_EQ("ucuun-", States());
        EXPECT_EQ(3, Apply(keys)) << error_;
        EXPECT_EQ(after_, Stored());
        EXPECT_EQ("uuuuu", States());
        EXPECT_EQ(u"6", form_->Cell(5, F::key)) << "the number that the database has given";
        EXPECT_EQ(0, Apply(keys));
        // Back again, with a key that is written, too, and a row that is emptied.
        form_->SetCell(2, F::qty, u"2");
        form_->SetCell(2, F::rate, u"0.1");
        form_->SetCell(2, F::month, u"");
        form_->SetCell(5, F::key, u"3");
        form_->SetCell(5, F::name, u"Cid");
        form_->SetCell(5, F::qty, u"3");
        form_->SetCell(5, F::rate, u"");
        form_->SetCell(5, F::month, u"5/1/2024");
        EXPECT_EQ("ucuuc", States());
        EXPECT_EQ(2, Apply(keys)) << error_;
        Load();
    }
    ASSERT_EQ(before_, Stored());
    for (const int col : {F::name, F::qty, F::month, F::key}) form_->SetCell(1, col, u"");
    form_->SetCell(1, F::rate, u"");
    EXPECT_EQ(1, Apply()) << error_;
    EXPECT_EQ(before_.substr(before_.find('2' /* Bob */, 20)), Stored());
}

TEST_F(ApplyToDatabase, LeavesNothingHalfWritten) {
    const struct {
        const char* what;
        std::function<void()> spoil;
        int error;
        const char* words;
        const char* states;
    } cases[] = {
        {"a rule of the table", [&] { form_->SetCell(4, F::qty, u"100"); }, 3000, "CHECK", "ucucn-"},
        {"a name that is missing", [&] { Add(u"\t\t7"); }, 3000, "NOT NULL", "ucuunn-"},
        {"a value of another type", [&] { form_->SetCell(1, F::rate, u"x"); }, 13, "", "ccuun-"},
        {"a key that exists", [&] { form_->SetCell(5, F::key, u"1"); }, 3000, "UNIQUE", "ucuun-"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Change();
        c.spoil();
        EXPECT_EQ(-c.error, Apply());
        EXPECT_NE(error_.find(c.words), std::string::npos) << error_;
        EXPECT_EQ(error_.find("undone"), std::string::npos) << error_;
        EXPECT_EQ(before_, Stored());
        EXPECT_EQ(c.states, States());
        // Mended, everything is written: nothing of the first attempt is taken for somebody else's change.
        form_->SetCell(4, F::qty, u"5");
        form_->SetCell(1, F::rate, u"0.5");
        form_->SetCell(5, F::key, u"");
        if (form_->Number(L"Rows") == 7) Remove(6);
        form_->Log();
        EXPECT_EQ(3, Apply()) << error_;
        EXPECT_EQ("", form_->Log()) << "no conflicts";
        EXPECT_EQ(after_, Stored());
        Execute(u"delete from lines where id = 6");
        Execute(u"update lines set qty = 2, rate = 0.1, month = null where id = 2");
        Execute(u"insert into lines values(3, 'Cid', 3, null, '2024-05-01')");
        Load();
    }
}

}  // namespace
}  // namespace qvx::test
