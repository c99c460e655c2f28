// How rows and columns are divided into pages.
#include <gtest/gtest.h>

#include "controls/grid/page_layout.h"
#include "tests/unit/flexgrid/axis_of.h"

namespace qvx::grid {
namespace {

TEST(PageLayoutTest, DividesAnAxis) {
    const struct {
        const char* what;
        std::vector<int> sizes;
        int fixed;
        int room;
        std::vector<int> starts;
    } cases[] = {
        {"nothing at all", {}, 0, 100, {0}},
        {"only fixed ones", {20, 20}, 2, 100, {2}},
        {"all on one page, which is full", {20, 40, 40}, 1, 100, {1}},
        {"one pixel less", {20, 40, 40}, 1, 99, {1, 2}},
        {"fixed ones take room on each page", {60, 20, 20, 20, 20, 20}, 1, 100, {1, 3, 5}},
        {"hidden ones are nowhere", {0, 20, 0, 40, 0, 0, 50, 0}, 2, 80, {3, 6}},
        {"one that is too large", {20, 10, 200, 10, 10}, 1, 100, {1, 2, 3}},
        {"the last is too large", {10, 200}, 0, 100, {0, 1}},
        {"fixed ones take all room", {200, 10, 20, 10}, 1, 100, {1, 2, 3}},
    };
    for (const auto& c : cases) {
        const auto axis = flexgrid::AxisOf(static_cast<int>(c.sizes.size()), c.fixed, 0, c.room,
                                           [&](int i) { return c.sizes.at(static_cast<std::size_t>(i)); });
        EXPECT_EQ(c.starts, PageStarts(axis)) << c.what;
    }
}

class PageLayoutOfGrid : public ::testing::Test {
  protected:
    // Ten columns of 100 pixels, the first fixed; rows of 20 pixels, of which one is fixed.
    PageLayoutOfGrid() {
        grid.SetRows(101);
        grid.SetCols(10);
        grid.SetFixedRows(1);
        grid.SetFixedCols(1);
        for (int col = 0; col < 10; ++col) grid.SetColWidth(col, 1500);
        grid.SetRowHeight(-1, 300);
    }
    // "percent: row,column widthxheight" for each page.
    std::string Pages(Size paper, bool fit) const {
        const PageLayout layout(grid, paper, 40, fit);
        std::string pages = std::to_string(layout.Percent()) + ":";
        for (int i = 0; i < layout.Count(); ++i) {
            const flexgrid::View view = layout.PageAt(grid, i);
            pages += " " + std::to_string(view.topRow) + "," + std::to_string(view.leftCol) + " " +
                     std::to_string(view.client.width) + "x" + std::to_string(view.client.height) +
                     (layout.EndsRows(i) ? "." : "");
        }
        return pages;
    }

    flexgrid::Grid grid;
};

TEST_F(PageLayoutOfGrid, FitsTheWidthOrGoesOn) {
    EXPECT_EQ("100: 1,1 1000x2020.", Pages({1000, 2060}, true));
    EXPECT_EQ("50: 1,1 1000x1020 51,1 1000x1020.", Pages({500, 530}, true));
    // Less than 40 % would be unreadable.
    EXPECT_EQ("40: 1,1 500x2020. 1,5 500x2020. 1,9 200x2020.", Pages({200, 830}, true));
    EXPECT_EQ("100: 1,1 500x1020 51,1 500x1020. 1,5 500x1020 51,5 500x1020. 1,9 200x1020 51,9 200x1020.",
              Pages({500, 1060}, false));
}

TEST_F(PageLayoutOfGrid, IsOfWhatIsShownAndNotOfWhereTheGridIsScrolledTo) {
    std::vector<bool> filtered(101, true);
    for (const int row : {0, 10, 60, 61}) filtered[static_cast<std::size_t>(row)] = false;
    grid.SetFilteredRows(filtered);
    grid.SetColWidth(3, 0);
    grid.SetRowHeight(61, 6000);
    grid.SetTopRow(60);
    grid.SetLeftCol(5);
    EXPECT_EQ("100: 10,1 900x60 61,1 900x260.", Pages({900, 300}, true));
}

}  // namespace
}  // namespace qvx::grid
