// Changes written to records that can fail at any call.
#include "controls/grid/apply_changes.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "common/run_time_error.h"
#include "tests/support/error_of.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

// Deleted records are gone with the next move, and added ones are the last, as data objects have it.
class FakeRecords final : public RecordTarget {
  public:
    using Rows = std::vector<std::vector<Text>>;
    explicit FakeRecords(Rows all) : rows(std::move(all)) {}

    std::vector<Text> FieldNames() override { return {u"id", u"name", u"qty"}; }
    void MoveFirst() override {
        Count();
        Leave();
        at_ = 0;
    }
    bool AtEnd() override {
        Count();
        return at_ >= rows.size();
    }
    void MoveNext() override {
        Count();
        if (!Leave()) ++at_;
    }
    Text Value(int field) override {
        Count();
        return rows.at(at_).at(static_cast<std::size_t>(field));
    }
    void SetValue(int field, TextView text) override {
        Count();
        if (text == u"bad") throw RunTimeError(13, u"Type mismatch");
        if (pending_.empty()) pending_ = rows.at(at_);
        pending_[static_cast<std::size_t>(field)] = text;
        ++written;
    }
    void AddNew() override {
        Count();
        Leave();
        adding_ = true;
        pending_.assign(3, {});
    }
    void Update() override {
        Count();
        if (adding_) {
            if (pending_[0].empty()) pending_[0] = u"auto";
            rows.push_back({});
            at_ = rows.size() - 1;
        }
        rows.at(at_) = pending_;
        CancelUpdate();
    }
    void CancelUpdate() override {
        adding_ = false;
        pending_.clear();
    }
    void Delete() override {
        Count();
        deleted_ = true;
    }
    int Keep() override {
        Count();
        kept_.push_back(rows.at(at_));
        return static_cast<int>(kept_.size()) - 1;
    }
    void PutBack(int kept) override {
        Count();
        pending_ = kept_[static_cast<std::size_t>(kept)];
    }
    bool Begin() override {
        Count();
        before_ = rows;
        return transactions;
    }
    void Commit() override { Count(); }
    void Rollback() override {
        CancelUpdate();
        rows = before_;
        deleted_ = false;
    }

    Rows Sorted() {
        Leave();
        Rows sorted = rows;
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

    Rows rows;
    bool transactions = false;
    int failsAt = -1;  // this call
    int calls = 0;
    int written = 0;  // values

  private:
    void Count() {
        if (calls++ == failsAt) throw RunTimeError(3021, u"The disk is full.");
    }
    bool Leave() {
        if (!deleted_) return false;
        deleted_ = false;
        rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(at_));
        return true;
    }

    std::size_t at_ = 0;
    std::vector<Text> pending_;
    bool adding_ = false;
    bool deleted_ = false;
    Rows kept_;
    Rows before_;
};

class Apply : public EntryGridTest {
  protected:
    Apply() { Load(); }
    void Load() {
        Fill(grid, {u"No\tId\tName\tQty", u"\t1\ta\t10", u"\t2\tb\t20", u"\t3\tc\t30", u"\t4\td\t40", u"\t5\te\t50"});
        states.Start();
    }
    static FakeRecords Records() {
        return FakeRecords(
            {{u"1", u"a", u"10"}, {u"2", u"b", u"20"}, {u"3", u"c", u"30"}, {u"4", u"d", u"40"}, {u"5", u"e", u"50"}});
    }
    // One of each, in another order.
    void Change() {
        grid.SetTextMatrix(2, 2, u"B");
        grid.SetTextMatrix(4, 1, u"44");
        grid.RemoveItem(3);
        grid.AddItem(u"\t\tnew\t7", 1);
        grid.AddItem(u"");
        grid.SetRowPosition(5, 1);
        grid.SetTexts(1, 1, std::vector<TextView>(3));
    }
    int Write(FakeRecords& records, TextView keys, ConflictAnswer answer = ConflictAnswer::keep) {
        return ApplyChanges(grid, states, FieldMap(grid, state, records.FieldNames()), records, keys,
                            [&](const RecordConflict& conflict) {
                                asked += std::to_string(conflict.row) + "," + std::to_string(conflict.index) + " " +
                                         Narrow(conflict.field) + " " + Narrow(conflict.ours) + "<" +
                                         Narrow(conflict.theirs) + "; ";
                                return answer;
                            });
    }
    std::string Seen() const {
        std::string seen;
        for (int row = 1; row < grid.Rows(); ++row) seen += "unc"[static_cast<int>(states.Of(row))];
        return seen + std::string(static_cast<std::size_t>(states.DeletedCount()), '-');
    }

    RowStates states{grid, state};
    std::string asked;
};

const FakeRecords::Rows changed = {
    {u"1", u"a", u"10"}, {u"2", u"B", u"20"}, {u"44", u"d", u"40"}, {u"auto", u"new", u"7"}};

TEST_F(Apply, WritesWhatDiffersByKeyAndByPosition) {
    for (const TextView keys : {u"", u"id", u" ID , name"}) {
        Load();
        Change();
        EXPECT_EQ("cnuccn-", Seen());
        FakeRecords records = Records();
        EXPECT_EQ(5, Write(records, keys));
        EXPECT_EQ(changed, records.Sorted());
        EXPECT_EQ(4, records.written) << "only what differs";
        EXPECT_EQ("uuuuuu", Seen());
        EXPECT_EQ(u"auto", grid.TextMatrix(2, 1)) << "what the record contains is shown";
        EXPECT_EQ(0, Write(records, keys)) << "nothing is left to write";
        grid.SetTextMatrix(2, 2, u"x");
        grid.RemoveItem(3);
        EXPECT_EQ(2, Write(records, keys)) << "the rows still find their records";
        EXPECT_EQ((FakeRecords::Rows{{u"2", u"B", u"20"}, {u"44", u"d", u"40"}, {u"auto", u"x", u"7"}}),
                  records.Sorted());
        EXPECT_EQ("", asked);
    }
}

TEST_F(Apply, LeavesEverythingAsItWasWhenAnyCallFails) {
    for (const bool transactions : {false, true}) {
        int failures = 0;
        for (int call = 0;; ++call) {
            Load();
            Change();
            FakeRecords records = Records();
            records.transactions = transactions;
            records.failsAt = call;
            const auto raised = test::RaisedBy([&] { Write(records, u"id"); });
            if (records.calls <= call) break;
            SCOPED_TRACE(call);
            if (raised.number == 0) {
                EXPECT_EQ(changed, records.Sorted()) << "reading back is no reason to fail";
                continue;
            }
            ++failures;
            EXPECT_EQ(3021, raised.number);
            EXPECT_EQ(u"The disk is full.", raised.words);
            EXPECT_EQ(Records().Sorted(), records.Sorted());
            EXPECT_EQ("cnuccn-", Seen());
            records.failsAt = -1;
            EXPECT_EQ(5, Write(records, u"id")) << "and can be tried again";
            EXPECT_EQ(changed, records.Sorted());
        }
        EXPECT_GT(failures, 50);
    }
}

TEST_F(Apply, AsksAboutEachDifference) {
    struct Case {
        ConflictAnswer answer;
        int number;  // of the error
        const char* asked;
        FakeRecords::Rows rows;
    };
    const FakeRecords::Rows theirs = {{u"2", u"b2", u"21"}, {u"4", u"d", u"41"}, {u"5", u"e", u"50"}};
    const char* all = "2,-1 name B<b2; 2,-1 qty 20<21; 3,-1  <; -1,0 qty <41; ";
    const Case cases[] = {
        {ConflictAnswer::keep, 30020, all, theirs},
        {ConflictAnswer::cancel, 0, "2,-1 name B<b2; ", theirs},
        {ConflictAnswer::overwrite, 0, all, {{u"2", u"B", u"20"}, {u"3", u"C", u"30"}, {u"5", u"e", u"50"}}},
    };
    for (const Case& c : cases) {
        Load();
        grid.SetTextMatrix(2, 2, u"B");
        grid.SetTextMatrix(3, 2, u"C");
        grid.RemoveItem(4);
        FakeRecords records(theirs);
        asked.clear();
        EXPECT_EQ(c.number, test::ErrorOf([&] {
                      EXPECT_EQ(c.answer == ConflictAnswer::cancel ? 0 : 3, Write(records, u"id", c.answer));
                  }));
        EXPECT_EQ(c.asked, asked);
        EXPECT_EQ(c.rows, records.Sorted());
        EXPECT_EQ(c.answer == ConflictAnswer::overwrite ? "uuuu" : "uccu-", Seen());
    }
}

TEST_F(Apply, RefusesWhatItCannotWrite) {
    FakeRecords records = Records();
    const auto words = [&](TextView keys) { return test::RaisedBy([&] { Write(records, keys); }).words; };
    EXPECT_EQ(words(u"id,price"), u"Invalid property value: KeyFields names the unknown field \"price\".");
    state.bindFields = u"[Name]name";
    EXPECT_EQ(words(u"id"), u"Invalid property value: KeyFields names a field without a column, \"id\".");
    state.bindFields.clear();
    state.bindFrom = 9;
    EXPECT_EQ(words(u""), u"No column has a field of the records.");
    state.bindFrom = 1;
    grid.SetTextMatrix(1, 2, u"A");
    grid.SetTextMatrix(2, 3, u"bad");
    EXPECT_EQ(words(u"id"), u"Type mismatch");
    EXPECT_EQ(Records().Sorted(), records.Sorted());
    EXPECT_EQ("ccuuu", Seen());
    // A handler may change texts, but not rows.
    records.rows[0][1] = u"A1";
    const auto write = [&](auto handler) {
        return ApplyChanges(grid, states, FieldMap(grid, state, records.FieldNames()), records, u"id",
                            [&](const RecordConflict& conflict) {
                                handler(conflict);
                                return ConflictAnswer::overwrite;
                            });
    };
    EXPECT_EQ(5, test::ErrorOf([&] { write([&](const auto&) { grid.RemoveItem(5); }); }));
    EXPECT_EQ(5, test::ErrorOf([&] { write([&](const auto&) { grid.SetTextMatrix(3, 2, u"C"); }); }));
    grid.SetTextMatrix(2, 3, u"21");
    EXPECT_EQ(4, write([&](const RecordConflict& conflict) { grid.SetTextMatrix(conflict.row, 2, u"both"); }))
        << "with the changes of the handlers";
    EXPECT_EQ(
        (FakeRecords::Rows{{u"1", u"both", u"10"}, {u"2", u"b", u"21"}, {u"3", u"C", u"30"}, {u"4", u"d", u"40"}}),
        records.Sorted());
}

}  // namespace
}  // namespace qvx::grid
