// Records turned into rows, from a source that can fail anywhere.
#include "controls/grid/binding.h"

#include <gtest/gtest.h>

#include <cstring>

#include "common/run_time_error.h"
#include "controls/grid/column_order.h"
#include "tests/support/error_of.h"
#include "tests/unit/flexgrid/grid_texts.h"
#include "tests/unit/grid/grid_fixture.h"

namespace qvx::grid {
namespace {

class Records final : public RecordSource {
  public:
    explicit Records(std::vector<Text> rows) : rows_(std::move(rows)) {}
    std::int64_t Count() override { return static_cast<std::int64_t>(rows_.size()); }
    bool AtEnd() override { return at_ == rows_.size(); }
    std::int64_t Position() override { return firstPosition + static_cast<std::int64_t>(at_); }
    void AppendFields(Text& row) override {
        if (at_ == failsAt) throw RunTimeError(3021, u"Either BOF or EOF is True.");
        row += rows_[at_];
    }
    void MoveNext() override { ++at_; }
    void AppendField(int field, Text& text) override {
        TextView row = rows_[at_];
        for (; field > 0; --field) row.remove_prefix(row.find(u'|') + 1);
        text += row.substr(0, row.find(u'|'));
    }

    std::size_t failsAt = 99;
    std::int64_t firstPosition = 1;

  private:
    std::vector<Text> rows_;
    std::size_t at_ = 0;
};

bool always() { return true; }

class Binding : public EntryGridTest {
  protected:
    Binding() {
        Fill(grid, {u"No\tA\tB\tC", u"x\t\t\t"});
        grid.SetRows(1);
    }
    // The rows that are loaded, without the captions.
    std::string Loaded() const { return flexgrid::Shown(grid).substr(std::strlen("No,A,B,C")); }
    FieldMap Map() const { return FieldMap(grid, state, {u"id", u"Label", u"amount"}); }

    RowStates states{grid, state};
};

TEST_F(Binding, FieldsStandFromTheirColumnOn) {
    struct Case {
        int bindFrom;
        bool numbered;
        const char* shown;
    };
    for (const Case& c : {Case{1, false, "/,a,b,/,c,,"}, Case{2, true, "/4,,a,b/5,,c,"}, Case{0, true, "/4a,b,,/5c,,,"},
                          Case{3, false, "/,,,a/,,,c"}, Case{9, false, "/,,,/,,,"}}) {
        grid.SetRows(1);
        state.bindFrom = c.bindFrom;
        state.autoRecordNumber = c.numbered;
        Records records({u"a\tb\t", u"c\t\t"});
        records.firstPosition = 4;
        LoadRecords(grid, state, states, Map(), records, always, [](std::int64_t) { return true; });
        EXPECT_EQ(Loaded(), c.shown) << c.bindFrom;
        EXPECT_TRUE(records.AtEnd());
    }
}

TEST_F(Binding, FieldsFollowTheirColumnsWhereverTheUserHasMovedThem) {
    MoveColumn(grid, state, 1, 3);
    Records records({u"a\tb\tc\td\t", u"e\t"});
    LoadRecords(grid, state, states, FieldMap(), records, always, [](std::int64_t) { return true; });
    EXPECT_EQ("No,B,C,A/,b,c,a/,,,e", flexgrid::Shown(grid));
    EXPECT_EQ(0, Map().FieldOf(3));
    EXPECT_EQ(1, Map().FieldOf(1));
    EXPECT_FALSE(Map().FieldOf(0));
}

TEST_F(Binding, WhatFailsOrIsCalledOffKeepsTheRowsSoFar) {
    Records failing({u"a\t", u"b\t", u"c\t"});
    failing.failsAt = 2;
    EXPECT_THROW(LoadRecords(grid, state, states, Map(), failing, always, [](std::int64_t) { return true; }),
                 RunTimeError);
    EXPECT_EQ(Loaded(), "/,a,,/,b,,");
    grid.SetRows(1);
    Records records({u"a\t", u"b\t", u"c\t"});
    std::string told;
    LoadRecords(grid, state, states, Map(), records, always, [&](std::int64_t loaded) {
        told += std::to_string(loaded) + " ";
        return loaded < 2;
    });
    EXPECT_EQ(told, "1 2 ");
    EXPECT_EQ(Loaded(), "/,a,,/,b,,");
    state.bindFrom = -1;
    EXPECT_THROW(LoadRecords(grid, state, states, Map(), records, always, [](std::int64_t) { return true; }),
                 RunTimeError);
    EXPECT_EQ(grid.Rows(), 3);
}

// Once others are wanted, nothing is added to what they have made of the grid, and the records stay where they are.
TEST_F(Binding, WhatIsNotWantedAnyMoreTouchesNothing) {
    // How often they are wanted, the rows that there are then, and how many records the host was notified of.
    const std::tuple<int, const char*, int> cases[] = {
        {0, "", 0}, {1, "", 0}, {2, "/,a,,", 0}, {3, "/,a,,", 1}, {5, "/,a,,/,b,,", 1}};
    for (const auto& [times, shown, progress] : cases) {
        grid.SetRows(1);
        Records records({u"a\t", u"b\t", u"c\t"});
        int left = times;
        int told = 0;
        LoadRecords(
            grid, state, states, Map(), records, [&] { return left-- > 0; },
            [&](std::int64_t) { return ++told, true; });
        EXPECT_EQ(Loaded(), shown) << times;
        EXPECT_EQ(told, progress) << times;
        EXPECT_EQ(records.Position(), 1 + progress) << times;
    }
}

TEST_F(Binding, ColumnsHaveTheFieldsThatAreNamedForThem) {
    struct Case {
        TextView fields;
        const char* shown;
    };
    for (const auto& [fields, shown] : {Case{u"[C]id,[A]label", "/4,x,,1/5,y\tz,,2"}, Case{u"[b]AMOUNT", "/4,,9,/5,,,"},
                                        Case{u"[No]Label", "/x,,,/y\tz,,,"}, Case{u"[A]id,[B]id", "/4,1,1,/5,2,2,"}}) {
        grid.SetRows(1);
        state.autoRecordNumber = fields != u"[No]Label";
        state.bindFields = fields;
        Records records({u"1|x|9", u"2|y\tz|"});
        records.firstPosition = 4;
        LoadRecords(grid, state, states, Map(), records, always, [](std::int64_t) { return true; });
        EXPECT_EQ(Loaded(), shown);
    }
    for (const auto& [fields, words] : {std::pair<TextView, TextView>{u"id", u"is no list of [Caption]field."},
                                        {u"[A", u"is no list of [Caption]field."},
                                        {u"[A]id,B]id", u"names the unknown field \"id,B]id\"."},
                                        {u"[A]id,[D]id", u"names the unknown column \"D\"."},
                                        {u"[A]price", u"names the unknown field \"price\"."}}) {
        state.bindFields = fields;
        const auto raised = test::RaisedBy([&] { (void)Map(); });
        EXPECT_EQ(raised.number, errors::invalidPropertyValue);
        EXPECT_EQ(raised.words, Text(u"Invalid property value: BindFields ").append(words));
    }
}

TEST(ProgressClock, TenASecond) {
    ProgressClock clock(5'000);
    int told = 0;
    for (std::uint64_t now = 5'000; now <= 6'000; ++now) told += clock.Due(now) ? 1 : 0;
    EXPECT_EQ(told, 10);
    EXPECT_TRUE(clock.Due(90'000));
    EXPECT_FALSE(clock.Due(90'050)) << "no making up for a pause";
}

}  // namespace
}  // namespace qvx::grid
