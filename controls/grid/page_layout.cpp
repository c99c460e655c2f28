#include "controls/grid/page_layout.h"

#include <algorithm>

namespace qvx::grid {
namespace {

// Items on every page that take most of a page leave at least this part of it to the others, which are then cut.
std::int64_t PageRoom(const flexgrid::Axis& axis) {
    return std::max<std::int64_t>({axis.ScrolledExtent(), axis.extent / 4, 1});
}

// Returns the pixels that a page needs along an axis.
int PageExtent(const flexgrid::Axis& axis, const std::vector<int>& starts, std::size_t page) {
    const auto place = [&](int index) { return axis.startOf(std::min(index, axis.count)); };
    const int next = page + 1 < starts.size() ? starts[page + 1] : axis.count;
    const std::int64_t items = std::min(PageRoom(axis), place(next) - place(starts[page]));
    return static_cast<int>(std::min<std::int64_t>(axis.extent, axis.StandingExtent() + items));
}

}  // namespace

std::vector<int> PageStarts(const flexgrid::Axis& axis) {
    std::vector<int> starts;
    const std::int64_t room = PageRoom(axis);
    for (int item = axis.shownAt(axis.StandingExtent()); item < axis.count;) {
        starts.push_back(item);
        // The item that the end of the page would cut begins the next one.
        const int cut = axis.shownAt(axis.startOf(item) + room);
        item = cut > item ? cut : axis.shownAt(axis.startOf(item + 1));
    }
    if (starts.empty()) starts.push_back(axis.standing);
    return starts;
}

PageLayout::PageLayout(const flexgrid::Grid& grid, Size paper, int lines, bool fitToWidth) : lines_(lines) {
    constexpr std::int64_t smallest = 40;
    const std::int64_t width = grid.ColLeft(grid.Cols());
    if (fitToWidth && width > paper.width)
        percent_ = static_cast<int>(std::max(smallest, std::int64_t{100} * paper.width / width));
    paper_ = {paper.width * 100 / percent_, paper.height * 100 / percent_};
    flexgrid::View view;
    view.client = {paper_.width, std::max(1, paper_.height - lines)};
    rows_ = PageStarts(RowAxis(grid, view));
    columns_ = PageStarts(ColumnAxis(grid, view));
}

flexgrid::View PageLayout::PageAt(const flexgrid::Grid& grid, int index) const {
    const std::size_t down = static_cast<std::size_t>(index) % rows_.size();
    const std::size_t across = static_cast<std::size_t>(index) / rows_.size();
    flexgrid::View view;
    view.client = {paper_.width, std::max(1, paper_.height - lines_)};
    view.onPaper = true;
    view.topRow = rows_[down];
    view.leftCol = columns_[across];
    view.client = {PageExtent(ColumnAxis(grid, view), columns_, across), PageExtent(RowAxis(grid, view), rows_, down)};
    return view;
}

}  // namespace qvx::grid
