// The grid beside a naive one of plain vectors, under random calls, some of which run out of memory on the way. Large
// ones have rows enough for several leaves and blocks of memory, and are compared now and then only.
#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <optional>
#include <random>
#include <set>
#include <vector>

#include "tests/support/portable/failing_allocation.h"
#include "widgets/flexgrid/grid.h"

namespace qvx::flexgrid {
namespace {

struct NaiveRow {
    std::vector<Text> cells;
    std::vector<OleColor> colors;
    int height = 240;
    std::int32_t data = 0;
    bool merged = false;
    bool filtered = false;
};

struct Naive {
    std::vector<NaiveRow> rows;
    int cols = 0;
    int fixedRows = 0;
    int fixedCols = 0;

    int Rows() const { return static_cast<int>(rows.size()); }
    NaiveRow Fresh() const {
        return {std::vector<Text>(static_cast<std::size_t>(cols)),
                std::vector<OleColor>(static_cast<std::size_t>(cols))};
    }
    Text& At(int row, int col) { return rows[static_cast<std::size_t>(row)].cells[static_cast<std::size_t>(col)]; }
    void SetCols(int count) {
        cols = count;
        for (NaiveRow& row : rows) {
            row.cells.resize(static_cast<std::size_t>(count));
            row.colors.resize(static_cast<std::size_t>(count));
        }
    }
};

template <class T>
void MoveWithin(std::vector<T>& list, int from, int to) {
    T moved = list[static_cast<std::size_t>(from)];
    list.erase(list.begin() + from);
    list.insert(list.begin() + to, moved);
}

class Work {
  public:
    Work(unsigned seed, int rows, bool large) : random_(seed), large_(large) {
        grid_.SetRows(rows);
        naive_.cols = 2;
        naive_.rows.assign(static_cast<std::size_t>(rows), naive_.Fresh());
        naive_.fixedRows = naive_.fixedCols = 1;
    }

    void Step() {
        ++steps_;
        const int rows = grid_.Rows();
        const int cols = grid_.Cols();
        mostRows = std::max(mostRows, rows);
        const int row = Below(rows + 2) - 1;
        const int col = Below(cols + 2) - 1;
        const bool rowFits = row >= 0 && row < rows;
        const bool colFits = col >= 0 && col < cols;
        const Text text = RandomText();
        switch (Below(18)) {
            case 0: {
                const int reach = large_ ? 1500 : 5;
                const int count = !large_ && Below(4) == 0 ? Below(40) : rows + Below(reach) - reach / 2;
                if (Try([&] { grid_.SetRows(count); }, count < 0 ? 380 : naive_.fixedRows > count ? 30001 : 0)) {
                    naive_.rows.resize(static_cast<std::size_t>(count), naive_.Fresh());
                }
                break;
            }
            case 1: {
                const int count = Below(9);
                if (Try([&] { grid_.SetCols(count); }, Holds(naive_.fixedCols, count) ? 0 : 30001)) {
                    naive_.SetCols(count);
                }
                break;
            }
            case 2: {
                const int count = Below(4);
                // A count of 1 without any row or column would wait for them, which has a test of its own.
                if (rows > 0 && Try([&] { grid_.SetFixedRows(count); },
                                    Holds(count, rows) || count == naive_.fixedRows ? 0 : 30001)) {
                    if (std::exchange(naive_.fixedRows, count) != count) {
                        ShowAll();
                    }
                }
                if (cols > 0 && Try([&] { grid_.SetFixedCols(count); }, Holds(count, cols) ? 0 : 30001)) {
                    naive_.fixedCols = count;
                }
                break;
            }
            case 3: {
                const int index = Below(rows + 3) - 1;
                const int error = index > rows ? 30009 : index >= 0 && index < naive_.fixedRows ? 30002 : 0;
                const std::vector<Text> cells = RandomCells();
                if (Try([&] { grid_.AddItem(Joined(cells), index); }, error)) {
                    Insert(index < 0 ? rows : index, cells);
                }
                break;
            }
            case 4: {
                const int at = naive_.fixedRows + Below(rows - naive_.fixedRows + 1);
                std::vector<std::vector<Text>> items(static_cast<std::size_t>(Below(large_ ? 1200 : 3)));
                Text block;
                for (std::size_t i = 0; i < items.size(); ++i) {
                    items[i] = RandomCells();
                    block += Joined(items[i]);
                    block += i % 3 == 0 ? u"\r" : i % 3 == 1 ? u"\n" : u"\r\n";
                }
                if (Try([&] { grid_.AddItems(block, at); }, 0)) {
                    for (std::size_t i = 0; i < items.size(); ++i) {
                        Insert(at + static_cast<int>(i), items[i]);
                    }
                }
                break;
            }
            case 5: {
                const int error = !rowFits                       ? 30009
                                  : row < naive_.fixedRows       ? 30011
                                  : rows - naive_.fixedRows <= 1 ? 30015
                                                                 : 0;
                if (Try([&] { grid_.RemoveItem(row); }, error)) {
                    naive_.rows.erase(naive_.rows.begin() + row);
                }
                break;
            }
            case 6: {
                const std::set<int> wanted{Below(40), Below(40), Below(40)};
                if (rows > 20 && Try([&] { grid_.RemoveRowsIf([&](int r) { return wanted.contains(r % 40); }); }, 0)) {
                    std::vector<NaiveRow> kept;
                    for (int r = 0; r < rows; ++r) {
                        if (r < naive_.fixedRows || !wanted.contains(r % 40)) {
                            kept.push_back(naive_.rows[static_cast<std::size_t>(r)]);
                        }
                    }
                    naive_.rows = kept;
                }
                break;
            }
            case 7:
            case 8:
                if (Try([&] { grid_.SetTextMatrix(row, col, text); }, rowFits && colFits ? 0 : 381)) {
                    naive_.At(row, col) = text;
                }
                break;
            case 9:
                if (Try([&] { grid_.Select(row, col, row, col); }, !rowFits ? 30009 : !colFits ? 30010 : 0)) {
                    EXPECT_EQ(grid_.Row(), row);
                    EXPECT_EQ(grid_.Col(), col);
                }
                break;
            case 10:
                PasteAndFill(text);
                break;
            case 11:
                if (rowFits && Try([&] { grid_.SetRowPosition(row, rows - 1 - row); }, 0)) {
                    MoveWithin(naive_.rows, row, rows - 1 - row);
                    if ((row < naive_.fixedRows) != (rows - 1 - row < naive_.fixedRows)) {
                        ShowAll();
                    }
                }
                if (colFits && Try([&] { grid_.SetColPosition(col, cols - 1 - col); }, 0)) {
                    for (NaiveRow& each : naive_.rows) {
                        MoveWithin(each.cells, col, cols - 1 - col);
                        MoveWithin(each.colors, col, cols - 1 - col);
                    }
                }
                break;
            case 12: {
                const int height = Below(3) * 300;
                if (Try([&] { grid_.SetRowHeight(row, height); }, row == -1 || rowFits ? 0 : 30009)) {
                    for (int r = row == -1 ? 0 : row; r < (row == -1 ? rows : row + 1); ++r) {
                        naive_.rows[static_cast<std::size_t>(r)].height = height;
                    }
                    if (row == -1 && Try([&] { grid_.SetRowHeight(-1, -1); }, 0)) {
                        for (NaiveRow& each : naive_.rows) {
                            each.height = 240;
                        }
                    }
                }
                break;
            }
            case 13:
                if (rowFits && Try([&] { grid_.SetRowData(row, col); }, 0)) {
                    naive_.rows[static_cast<std::size_t>(row)].data = col;
                }
                if (rowFits && Try([&] { grid_.SetMergeRow(row, col > 1); }, 0)) {
                    naive_.rows[static_cast<std::size_t>(row)].merged = col > 1;
                }
                break;
            case 14:
                WriteColumn(col, row, row + Below(rows + 2 - row));
                break;
            case 15:
                if (cols > 0 && rows > 0) {
                    ASSERT_TRUE(Try([&] { grid_.Select(grid_.Row(), 0, grid_.Row(), 0); }, 0));
                    if (Try([&] { grid_.Sort(GridSort::stringDescending); }, 0)) {
                        std::stable_sort(naive_.rows.begin() + naive_.fixedRows, naive_.rows.end(),
                                         [](const NaiveRow& a, const NaiveRow& b) { return a.cells[0] > b.cells[0]; });
                    }
                }
                break;
            case 16:
                Filter(row, col);
                break;
            default:
                if (Below(12) == 0 && Try([&] { grid_.Clear(); }, 0)) {
                    for (NaiveRow& each : naive_.rows) {
                        each.cells.assign(each.cells.size(), {});
                        each.colors.assign(each.colors.size(), 0);
                    }
                }
                break;
        }
        ExpectSame();
    }

  private:
    int Below(int n) { return n <= 0 ? 0 : static_cast<int>(random_() % static_cast<unsigned>(n)); }
    Text RandomText() {
        Text text(static_cast<std::size_t>(Below(40) == 0 ? 300 : Below(5)), u' ');
        for (char16_t& unit : text) {
            unit = static_cast<char16_t>(u'a' + Below(5));
        }
        if (Below(9) == 0) {
            text += u'\u03A9';
        }
        return text;
    }
    // Of an item. The first is never empty: after a CR, the LF of an empty row would be the second half of a pair.
    std::vector<Text> RandomCells() {
        std::vector<Text> cells{u"x"};
        for (int more = Below(naive_.cols + 2); more > 0; --more) {
            cells.push_back(RandomText());
        }
        return cells;
    }
    static Text Joined(const std::vector<Text>& cells) {
        Text item;
        for (const Text& cell : cells) {
            item += cell + u"\t";
        }
        item.pop_back();
        return item;
    }
    static bool Holds(int fixed, int count) { return fixed == 0 || fixed < count; }

    void Insert(int at, std::vector<Text> cells) {
        NaiveRow row = naive_.Fresh();
        cells.resize(static_cast<std::size_t>(naive_.cols));
        row.cells = cells;
        naive_.rows.insert(naive_.rows.begin() + at, row);
    }

    void PasteAndFill(const Text& text) {
        if (grid_.Rows() == 0 || grid_.Cols() == 0) {
            return;
        }
        const int top = Below(grid_.Rows());
        const int left = Below(grid_.Cols());
        const int bottom = std::min(grid_.Rows() - 1, top + Below(6));
        const int right = std::min(grid_.Cols() - 1, left + Below(4));
        ASSERT_TRUE(Try([&] { grid_.Select(bottom, left, top, right); }, 0));
        grid_.SetFillStyle(GridFillStyle::repeat);
        const int kind = Below(3);
        const OleColor color = static_cast<OleColor>(Below(3));
        const Text clip = text + u"\t" + text + u"\r" + text;
        // A text out of the grid's own memory, at times.
        const auto inside = [&] { return grid_.Cell(top, left); };
        const bool own = !inside().IsLatin1();
        const Text filled = own ? inside().ToText() : text;
        const auto fill = [&](auto change) {
            for (int row = top; row <= bottom; ++row) {
                for (int col = left; col <= right; ++col) {
                    change(naive_.rows[static_cast<std::size_t>(row)], static_cast<std::size_t>(col));
                }
            }
        };
        if (kind == 0 && Try([&] { grid_.SetText(own ? inside().Wide() : TextView(text)); }, 0)) {
            fill([&](NaiveRow& row, std::size_t col) { row.cells[col] = filled; });
        } else if (kind == 1 && Try([&] { grid_.SetClip(clip); }, 0)) {
            for (const auto& [row, col] : {std::pair{top, left}, {top, left + 1}, {top + 1, left}}) {
                if (row <= bottom && col <= right) {
                    naive_.At(row, col) = text;
                }
            }
        } else if (kind == 2 && Try([&] { grid_.SetCellBackColor(color); }, 0)) {
            fill([&](NaiveRow& row, std::size_t col) { row.colors[col] = color; });
        }
        grid_.SetFillStyle(GridFillStyle::single);
    }

    void ShowAll() {
        for (NaiveRow& row : naive_.rows) {
            row.filtered = false;
        }
    }
    // Filters nearly all rows out, or few, or one.
    void Filter(int row, int col) {
        const int sort = Below(8);
        if (sort == 0) {
            grid_.ShowAllRows();
            ShowAll();
        } else if (sort < 3) {
            std::vector<bool> marked;
            for (int r = 0; r < grid_.Rows(); ++r) {
                marked.push_back(Below(10) > (sort == 1 ? 0 : 8));
            }
            if (Try([&] { grid_.SetFilteredRows(marked); }, 0)) {
                for (int r = 0; r < grid_.Rows(); ++r) {
                    const auto at = static_cast<std::size_t>(r);
                    naive_.rows[at].filtered = marked[at] && r >= naive_.fixedRows;
                }
            }
        } else {
            const bool fits = row >= 0 && row < grid_.Rows();
            const bool filtered = col > 0 && row >= naive_.fixedRows;
            if (Try([&] { grid_.SetRowFiltered(row, filtered); }, fits ? 0 : 30009)) {
                naive_.rows[static_cast<std::size_t>(row)].filtered = filtered;
            }
        }
    }

    // Where memory runs out the rows before have their text.
    void WriteColumn(int col, int first, int last) {
        std::vector<Text> texts;
        for (int row = first; row <= last; ++row) {
            texts.push_back(RandomText());
        }
        const bool colFits = col >= 0 && col < grid_.Cols();
        const bool rowsFit = first >= 0 && last < grid_.Rows();
        std::size_t asked = 0;
        const auto write = [&](std::size_t count) {
            for (std::size_t i = 0; i < count; ++i) {
                naive_.At(first + static_cast<int>(i), col) = texts[i];
            }
        };
        const auto call = [&] {
            asked = 0;
            try {
                grid_.SetColumn(col, first, last, [&](const RowView& cells) -> TextView {
                    EXPECT_EQ(cells[col], TextView(naive_.At(first + static_cast<int>(asked), col)));
                    return texts[asked++];
                });
            } catch (const std::bad_alloc&) {
                write(asked == 0 ? 0 : asked - 1);  // the refusal may run out of memory as well
                throw;
            }
        };
        if (Try(call, !colFits ? 30010 : !rowsFit && last >= first ? 30009 : 0)) {
            write(texts.size());
        }
    }

    // Makes a call that may run out of memory, and then must have changed nothing, until it gets through; true when
    // that was without an error, which must be as foretold.
    template <class Call>
    bool Try(Call call, int expectedError) {
        int error = 0;
        for (int attempt = 0;; ++attempt) {
            std::optional<test::FailingAllocation> failing;
            if (attempt < 3) {
                failing.emplace(Below(7), test::Starvation::once);
            }
            bool starved = false;
            try {
                call();
            } catch (const std::bad_alloc&) {
                starved = true;
            } catch (const RunTimeError& raised) {
                error = raised.Number();
            }
            failing.reset();
            if (!starved) {
                break;
            }
            ++starvedCalls;
            ExpectSame();
        }
        EXPECT_EQ(error, expectedError);
        return error == 0;
    }

    void ExpectSame() const {
        if (large_ && steps_ % 20 != 0) {
            return;
        }
        ASSERT_EQ(grid_.Rows(), naive_.Rows());
        ASSERT_EQ(grid_.Cols(), naive_.cols);
        ASSERT_EQ(grid_.FixedRows(), naive_.fixedRows);
        ASSERT_EQ(grid_.FixedCols(), naive_.fixedCols);
        std::int64_t top = 0;
        int filtered = 0;
        for (int row = 0; row < grid_.Rows(); ++row) {
            const NaiveRow& expected = naive_.rows[static_cast<std::size_t>(row)];
            ASSERT_EQ(grid_.RowTop(row), top);
            top += expected.filtered ? 0 : expected.height / 15;
            filtered += expected.filtered;
            ASSERT_EQ(grid_.RowFiltered(row), expected.filtered);
            ASSERT_EQ(grid_.RowPixels(row), expected.filtered ? 0 : expected.height / 15);
            if (grid_.RowPixels(row) > 0) {
                ASSERT_EQ(grid_.RowAt(grid_.RowTop(row)), row);
            }
            ASSERT_EQ(grid_.RowHeight(row), expected.height);
            ASSERT_EQ(grid_.RowData(row), expected.data);
            ASSERT_EQ(grid_.MergeRow(row), expected.merged);
            for (int col = 0; col < grid_.Cols(); ++col) {
                const auto c = static_cast<std::size_t>(col);
                ASSERT_EQ(grid_.Cell(row, col), TextView(expected.cells[c])) << row << " " << col;
                const CellFormat* format = grid_.FormatOf(row, col);
                ASSERT_EQ(format ? format->backColor : 0, expected.colors[c]) << row << " " << col;
            }
        }
        ASSERT_EQ(grid_.RowTop(grid_.Rows()), top);
        ASSERT_EQ(grid_.FilteredRows(), filtered);
        const auto within = [](int value, int count) { return value >= 0 && value < std::max(count, 1); };
        ASSERT_TRUE(within(grid_.Row(), grid_.Rows()) && within(grid_.RowSel(), grid_.Rows()));
        ASSERT_TRUE(within(grid_.Col(), grid_.Cols()) && within(grid_.ColSel(), grid_.Cols()));
        ASSERT_TRUE(grid_.Rows() == grid_.FixedRows()
                        ? grid_.TopRow() == grid_.FixedRows()  // nothing scrolls
                        : within(grid_.TopRow(), grid_.Rows()) && grid_.TopRow() >= grid_.FixedRows());
        ASSERT_TRUE(within(grid_.LeftCol(), grid_.Cols()) && grid_.LeftCol() >= grid_.FixedCols());
    }

    std::mt19937 random_;
    bool large_;
    int steps_ = 0;
    Grid grid_;
    Naive naive_;

  public:
    int starvedCalls = 0;
    int mostRows = 0;
};

TEST(GridModel, AgreesWithANaiveGridAlsoWhenMemoryRunsOut) {
    for (unsigned seed = 1; seed <= 14; ++seed) {
        // Some grids are about to need another leaf of their row index.
        const bool large = seed > 12;
        Work work(seed, seed % 4 == 0 ? 510 : 2, large);
        const int steps = seed % 4 == 0 ? 100 : large ? 300 : 500;
        for (int i = 0; i < steps && !::testing::Test::HasFatalFailure(); ++i) {
            work.Step();
        }
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
        EXPECT_GT(work.starvedCalls, 10);
        EXPECT_GT(work.mostRows, large ? 3000 : 0);
    }
}

}  // namespace
}  // namespace qvx::flexgrid
