// Printing of a grid for data entry: the pages, what is above and below their cells, and the event before each.
#include "common/number_text.h"
#include "controls/grid/entry_grid_window.h"
#include "controls/grid/escape_wait_window.h"
#include "controls/grid/page_layout.h"
#include "controls/grid/page_target_win32.h"
#include "dialogs/page_preview_window.h"
#include "widgets/flexgrid/footer.h"
#include "widgets/flexgrid/paint.h"

namespace qvx::grid {
namespace {

Text Today() {
    wchar_t date[80];
    const int length = GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, date, 80);
    return Text(FromWide(date)).substr(0, static_cast<std::size_t>(std::max(0, length - 1)));
}

// The pages of one grid as it is when printing begins. Between two pages it may change in any way except that rows and
// columns come, go or move.
class GridPages {
  public:
    GridPages(flexgrid::Grid& grid, const flexgrid::CellFooter* footer, const PageTarget& target, const Text& title,
              bool fitToWidth)
        : grid_(grid),
          footer_(footer),
          dpi_(grid.Metrics().Resolution()),
          resolution_(target.Resolution()),
          room_(target.Room()),
          line_(grid.Metrics().LineHeight(grid.Font())),
          title_(title),
          date_(Today()),
          structure_(grid.StructureVersion()),
          layout_(
              grid,
              {ScaleRounded(room_.Width(), dpi_.x, resolution_.x), ScaleRounded(room_.Height(), dpi_.y, resolution_.y)},
              4 * line_ + FooterLine(), fitToWidth) {}

    int Count() const { return layout_.Count(); }
    bool Changed() const { return grid_.StructureVersion() != structure_; }
    void Draw(HDC dc, int index) const {
        const SavedDc saved(dc);
        // The window's pixels are scaled to those of the target, so that everything is laid out as on the screen.
        SetMapMode(dc, MM_ANISOTROPIC);
        SetWindowExtEx(dc, 100 * dpi_.x, 100 * dpi_.y, nullptr);
        SetViewportExtEx(dc, layout_.Percent() * resolution_.x, layout_.Percent() * resolution_.y, nullptr);
        SetViewportOrgEx(dc, room_.left, room_.top, nullptr);
        GdiSurface surface(dc, dpi_, true);
        DrawLines(surface, index);
        flexgrid::View view = layout_.PageAt(grid_, index);
        const int left = grid_.RightToLeft() ? layout_.Paper().width - view.client.width : 0;
        SetWindowOrgEx(dc, -left, -2 * line_, nullptr);
        const Rect cells{0, 0, view.client.width, view.client.height};
        const bool ends = footer_ && layout_.EndsRows(index);
        // The edge of the window that the cells have on the screen is a line.
        if (grid_.BorderStyle() != flexgrid::GridBorder::none)
            surface.FrameRect({-1, -1, cells.right + 1, cells.bottom + (ends ? FooterLine() : 0) + 1}, Rgb(0, 0, 0));
        Paint(grid_, view, surface, cells);
        if (ends)
            PaintFooter(grid_, view, *footer_, surface, {0, cells.bottom, cells.right, cells.bottom + FooterLine()});
    }

  private:
    int FooterLine() const { return footer_ ? FooterHeight(grid_) : 0; }
    void DrawLines(GdiSurface& surface, int index) const {
        constexpr unsigned line = text_format::singleLine | text_format::noPrefix;
        const bool mirrored = grid_.RightToLeft();
        const unsigned direction = line | (mirrored ? text_format::rightToLeft : 0U);
        const auto draw = [&](TextView text, int y, unsigned format) {
            surface.DrawLabel(text, {0, y, layout_.Paper().width, y + line_}, grid_.Font(), Rgb(0, 0, 0), format);
        };
        const unsigned atStart = direction | (mirrored ? text_format::right : text_format::left);
        const unsigned atEnd = line | (mirrored ? text_format::left : text_format::right);
        draw(title_, 0, atStart);
        draw(date_, 0, atEnd);
        Text page(dialogs::messages::page);
        page.append(IntegerToText(index + 1)).append(dialogs::messages::pageOf).append(IntegerToText(Count()));
        draw(page, layout_.Paper().height - line_, line | text_format::center);
    }

    flexgrid::Grid& grid_;
    const flexgrid::CellFooter* footer_;
    Dpi dpi_;
    Dpi resolution_;
    Rect room_;
    int line_;
    const Text& title_;
    Text date_;
    std::uint64_t structure_;
    PageLayout layout_;
};

}  // namespace

int EntryGrid::PrintPages(PageTarget& target, const Text& title, bool fitToWidth) {
    const auto keep = events_.KeepAlive();
    CommitOpenEdit();
    const GridPages pages(Model(), PrintedFooter(), target, title, fitToWidth);
    const int count = pages.Count();
    EscapeWait wait;
    for (int page = 0; page < count; ++page) {
        bool cancel = false;
        events_.PrintProgress(page + 1, count, cancel);
        AnswerPaints();
        if (cancel || !wait.GoOn()) return 0;
        if (pages.Changed())
            throw RunTimeError(errors::invalidProcedureCall, u"The grid's rows or columns have changed meanwhile");
        {
            const Projection::Held held(projection_);
            pages.Draw(target.Begin(), page);
        }
        target.End();
    }
    target.Finish();
    return count;
}

bool EntryGrid::PreviewPages(HWND owner, const Text& title, bool fitToWidth) {
    const auto keep = events_.KeepAlive();
    CommitOpenEdit();
    MetafilePages target;
    // The host may change the grid while the preview is shown.
    const auto draw = [&](int& page, int& count) {
        const GridPages pages(Model(), PrintedFooter(), target, title, fitToWidth);
        count = pages.Count();
        page = std::min(page, count - 1);
        const Projection::Held held(projection_);
        pages.Draw(target.Begin(), page);
        target.End();
        return target.Page();
    };
    dialogs::PagePreviewWindow preview(draw, Model().RightToLeft());
    return preview.Run(owner, title);
}

}  // namespace qvx::grid
