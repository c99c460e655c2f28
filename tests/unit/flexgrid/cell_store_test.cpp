#include "widgets/flexgrid/cell_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "widgets/flexgrid/record.h"

namespace qvx::flexgrid {
namespace {

std::vector<Text> CellsOf(const RowView& row, int cols) {
    std::vector<Text> cells;
    for (int col = 0; col < cols; ++col) {
        cells.push_back(row[col].ToText());
    }
    return cells;
}

std::vector<CellView> Views(const std::vector<Text>& cells) {
    std::vector<CellView> views;
    for (const Text& cell : cells) {
        views.emplace_back(cell.data(), cell.size());
    }
    return views;
}

TEST(Record, RoundTripsEveryLayout) {
    const std::vector<std::vector<Text>> rows = {
        {u"Ann", u"", u"42"},
        {u"", u"", u"x"},
        {Text(255, u'a')},
        {Text(256, u'a'), u"b"},
        {u"\u00FF", u"\u0100"},
        {Text(300, u'\u20AC'), u"z"},
        {Text(70'000, u'm'), u"", u"n"},
        {Text(70'000, u'\u20AC'), u"\U0001F600"},
        std::vector<Text>(300, u"c"),
        std::vector<Text>(70'000, u"d"),
        {Text(1, u'\0'), u"a"},
    };
    RecordBuilder builder;
    for (const std::vector<Text>& cells : rows) {
        const int count = static_cast<int>(cells.size());
        const auto bytes = builder.FromCells(Views(cells));
        const RowView row(bytes.data());
        EXPECT_EQ(row.Count(), count);
        EXPECT_EQ(row.Size(), bytes.size());
        EXPECT_EQ(CellsOf(row, count), cells);
        EXPECT_TRUE(row[count].Empty());
        for (const int cols : {0, 1, count / 2, count - 1, count}) {
            auto copy = std::vector<std::uint32_t>(bytes.size() / 4 + 1);
            auto* start = reinterpret_cast<std::uint8_t*>(copy.data());
            std::copy(bytes.begin(), bytes.end(), start);
            const std::size_t size = TruncateRecord(start, cols);
            const RowView cut(size == 0 ? nullptr : start);
            EXPECT_EQ(cut.Size(), size);
            for (int col = 0; col < cols; ++col) {
                ASSERT_EQ(cut[col], TextView(cells[static_cast<std::size_t>(col)]));
            }
            EXPECT_LE(cut.Count(), cols);
        }
    }
    EXPECT_EQ(builder.FromCells(Views(rows[0])).size(), 10u);
    EXPECT_TRUE(builder.FromCells(Views({u"", u""})).empty());
}

TEST(Record, ItemsAsTheirCells) {
    struct Case {
        Text item;
        int cols;
        std::vector<Text> cells;
    };
    std::vector<Text> last(255);
    last[254] = u"z";
    const Case cases[] = {
        {u"\t\t", 3, {}},
        {u"a\tb\tc", 2, {u"a", u"b"}},
        {u"a\t\t", 3, {u"a"}},
        {u"\t\tc\td", 3, {u"", u"", u"c"}},
        {u"a", 0, {}},
        {u"a\t\u20AC", 1, {u"a"}},
        {Text(200, u'a') + u"\t" + Text(54, u'b'), 2, {Text(200, u'a'), Text(54, u'b')}},
        {Text(200, u'a') + u"\t" + Text(55, u'b'), 2, {Text(200, u'a'), Text(55, u'b')}},
        {Text(254, u'\t') + u"z", 300, last},
        {Text(63, u'a') + u"\t" + Text(64, u'b') + u"\tc", 9, {Text(63, u'a'), Text(64, u'b'), u"c"}},
        {Text(16, u'a') + u"\t" + Text(17, u'b') + u"\t\t", 2, {Text(16, u'a'), Text(17, u'b')}},
        {Text(15, u'a') + u"\u20AC", 1, {Text(15, u'a') + u"\u20AC"}},
    };
    RecordBuilder builder;
    RecordBuilder other;
    for (const Case& test : cases) {
        const auto bytes = builder.FromItem(test.item, test.cols);
        const RowView row(bytes);
        EXPECT_EQ(row.Size(), bytes.size());
        EXPECT_EQ(CellsOf(row, row.Count()), test.cells);
        const auto same = other.FromOtherItem(test.item, test.cols);
        EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), same.begin(), same.end()));
        EXPECT_EQ(builder.ItemCells(), other.ItemCells());
        // Memory of exactly this size, so that the address sanitizer sees what is written after it.
        const auto room = std::make_unique<std::uint8_t[]>(RoomForShortItem(test.item, test.cols));
        const auto packed = PackShortItem(test.item, test.cols, room.get());
        EXPECT_EQ(packed.has_value(), test.item.size() < 255 && test.item.find(u'\u20AC') == Text::npos);
        EXPECT_TRUE(!packed || std::equal(bytes.begin(), bytes.end(), room.get(), room.get() + packed->size));
    }
}

// Whatever is put into or taken out of a record leaves that of the same cells, byte for byte.
TEST(Record, JoinsAndPartsAreTheRecordsOfTheirCells) {
    std::mt19937 random(1);
    const auto below = [&](std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    };
    const auto cells = [&] {
        std::vector<Text> row(below(6));
        for (Text& cell : row) {
            cell = Text(below(3) == 0 ? below(140) : below(4), below(40) == 0 ? u'\u3042' : u'a');
        }
        return row;
    };
    const auto exact = [](std::span<const std::uint8_t> record) {
        return std::vector<std::uint8_t>(record.begin(), record.end());
    };
    RecordBuilder ofRow;
    RecordBuilder ofCells;
    RecordBuilder ofPart;
    RecordBuilder expected;
    std::size_t joined = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::vector<Text> row = cells();
        const std::vector<Text> fresh = cells();
        const std::size_t first = below(6);
        const std::size_t count = fresh.size() + below(3);
        const RowView old(ofRow.FromCells(Views(row)));
        const RowView given(ofCells.FromCells(Views(fresh)));
        std::uint8_t bytes[longestShortRecord];
        const auto size = JoinShort(old, static_cast<int>(first), static_cast<int>(first + count), given, bytes);
        row.resize(std::max(row.size(), first + count));
        const std::vector<Text> part(row.begin() + static_cast<std::ptrdiff_t>(first),
                                     row.begin() + static_cast<std::ptrdiff_t>(first + count));
        ASSERT_EQ(exact(expected.FromCells(Views(part))),
                  exact(ofPart.FromPart(old, static_cast<int>(first), static_cast<int>(count))));
        for (std::size_t i = 0; i < count; ++i) {
            row[first + i] = i < fresh.size() ? fresh[i] : Text();
        }
        const auto whole = expected.FromCells(Views(row));
        const RowView result(whole);
        const bool possible = (!old.Data() || old.IsShort()) && (!given.Data() || given.IsShort()) &&
                              (!result.Data() || result.IsShort());
        ASSERT_EQ(possible, size.has_value());
        if (size) {
            ++joined;
            ASSERT_EQ(exact(whole), exact({bytes, *size}));
        }
    }
    EXPECT_GT(joined, 5'000u);
}

// A store copies its records anew by what the arena counts as dead.
TEST(Arena, KeepsItsRecordsAndCountsThem) {
    struct Record {
        Arena::Address address;
        std::size_t size;
        std::uint8_t mark;
    };
    std::mt19937 random(1);
    const auto padded = [](std::size_t size) { return (size + 3) / 4 * 4; };
    Arena arena;
    std::vector<Record> records;
    std::size_t living = 0;
    for (int i = 0; i < 4000; ++i) {
        const std::size_t size = 1 + random() % (random() % 100 == 0 ? 400'000 : 3000);
        const auto mark = static_cast<std::uint8_t>(i);
        if (records.empty() || random() % 2 == 0) {
            // Half of the short records are given less room than was asked for.
            const bool reserves = size <= 2000 && random() % 2 == 0;
            if (reserves) std::memset(arena.Reserve(size + random() % 1000), 0xEE, size);
            records.push_back({reserves ? arena.Take(size) : arena.Allocate(size), size, mark});
        } else {
            // Mostly the last one, which may grow in its place.
            if (random() % 3 == 0) std::swap(records.back(), records[random() % records.size()]);
            Record& record = records.back();
            const std::uint8_t* bytes = arena.At(record.address);
            ASSERT_TRUE(std::all_of(bytes, bytes + record.size, [&](auto byte) { return byte == record.mark; })) << i;
            living -= padded(record.size);
            if (!arena.Resize(record.address, record.size, size)) {
                arena.Release(record.size);
                records.pop_back();
                continue;
            }
            record.size = size;
            record.mark = mark;
        }
        living += padded(size);
        std::fill_n(arena.At(records.back().address), size, mark);
        ASSERT_EQ(arena.Used() - arena.Dead(), living) << i;
        ASSERT_GE(arena.MemoryUsed(), arena.Used()) << i;
        ASSERT_LE(arena.MemoryUsed(), 4 * arena.Used() + 300'000) << i;
    }
}

TEST(CellStore, DeadRecordsAreCollected) {
    CellStore store;
    store.InsertEmptyRows(0, 1000);
    Text text(100, u'a');
    for (int round = 0; round < 200; ++round) {
        text[0] = static_cast<char16_t>(u'a' + round % 26);
        text.resize(static_cast<std::size_t>(50 + round % 3 * 25), u'b');
        for (int row = 0; row < 1000; ++row) {
            store.SetCell(row, 0, text);
        }
    }
    EXPECT_LT(store.MemoryUsed(), 1'000'000u);
    EXPECT_GE(store.MemoryUsed(), 1000 * text.size());
    EXPECT_EQ(store.Cell(999, 0), TextView(text));
    store.RemoveRows(0, 1000, [](RowId) {});
    for (int i = 0; i < 100; ++i) {
        store.InsertEmptyRows(0, 1000);
        store.RemoveRows(0, 1000, [](RowId) {});
    }
    EXPECT_LT(store.MemoryUsed(), 1'000'000u);
}

TEST(CellStore, BlocksOfTooManyRowsAreRefused) {
    CellStore store;
    EXPECT_EQ(store.InsertBlock(0, u"1\r2\r3", 2, 2), -1);
    EXPECT_EQ(store.RowCount(), 0);
}

}  // namespace
}  // namespace qvx::flexgrid
