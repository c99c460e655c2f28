#include "controls/grid/column_draft.h"

#include <algorithm>

#include "common/ascii.h"
#include "common/number_text.h"
#include "common/text_compare.h"
#include "controls/grid/caption_list.h"
#include "controls/grid/column_lists.h"
#include "widgets/flexgrid/column_drag.h"

namespace qvx::grid {

using flexgrid::GridAlignment;

namespace {

constexpr TextView sideMarkers = u"<^>";
constexpr int exampleRow = 1;

ColumnSide SideOf(GridAlignment alignment) {
    return alignment == GridAlignment::general ? ColumnSide::general
                                               : static_cast<ColumnSide>(static_cast<int>(alignment) / 3 + 1);
}

GridAlignment AlignmentOf(ColumnSide side) {
    return side == ColumnSide::general ? GridAlignment::general
                                       : static_cast<GridAlignment>(static_cast<int>(side) * 3 - 2);
}

Text Writable(TextView caption) {
    Text text;
    for (const char16_t c : caption)
        if (c != u'|' && c != u';') text += c;
    return text;
}

}  // namespace

ColumnDraft::ColumnDraft(flexgrid::Grid& grid) : grid_(grid) {
    grid_.SetFixedCols(0);
    grid_.SetCols(0);
    grid_.ShowTexts(&formats_);
}

void ColumnDraft::Start(TextView formatString, int fixedCols, int firstWidth, int frozenCols) {
    formatString_ = formatString;
    rowCaptions_ = formatString.substr(std::min(formatString.find(u';'), formatString.size()));
    fixedCols_ = fixedCols;
    frozenCols_ = frozenCols;
    if (Count() == 0) return;
    for (int col = 0; col < Count(); ++col) grid_.SetTextMatrix(0, col, Writable(Caption(col)));
    const std::size_t side = formatString.empty() ? TextView::npos : sideMarkers.find(formatString[0]);
    first_ = {grid_.IdOfCol(0), firstWidth, grid_.ColAlignment(0),
              side == TextView::npos ? GridAlignment::general : AlignmentOf(static_cast<ColumnSide>(side + 1))};
    Refresh();
}

Text ColumnDraft::Caption(int col) const { return CaptionOf(grid_, col); }

int ColumnDraft::NaturalWidth(int col) const {
    const Text caption = Caption(col);
    return caption.empty() ? flexgrid::defaultColWidth : grid_.WidthFor(caption);
}

int ColumnDraft::Width(int col) const { return col == 0 ? first_.width : NaturalWidth(col); }

Text ColumnDraft::Field(int col) const { return Text(TextForCaption(state_.bindFields, Caption(col))); }

ColumnSide ColumnDraft::Side(int col) const { return SideOf(grid_.ColAlignment(col)); }

Text ColumnDraft::FreshCaption(TextView stem, int number) const {
    for (;; ++number) {
        Text caption(stem);
        caption.append(u" ").append(IntegerToText(number));
        int col = 0;
        while (col < Count() && !EqualNoCase(Caption(col), caption)) ++col;
        if (col == Count()) return caption;
    }
}

void ColumnDraft::Insert(int col) { Add(col, {}, 1); }

void ColumnDraft::Duplicate(int col) {
    const Text caption = Caption(col);
    const GridAlignment alignment = grid_.ColAlignment(col);
    const int last = Count();
    Add(last, TrimRight(caption), 2);
    grid_.SetColAlignment(last, alignment);
    // A column that gives a shared caption up keeps its settings.
    const Text fresh = Caption(last);
    grid_.SetTextMatrix(0, last, caption);
    Apply(RenamedColumn(grid_, state_, last, fresh));
    grid_.SetTextMatrix(0, last, fresh);
    Move(last, col + 1);
}

void ColumnDraft::Add(int col, TextView stem, int number) {
    const int last = Count();
    const Text caption = FreshCaption(stem.empty() ? u"Column" : stem, number);
    grid_.SetCols(last + 1);
    grid_.SetTextMatrix(0, last, caption);
    Move(last, col);
}

bool ColumnDraft::CanRemove() const { return Count() > (fixedCols_ > 0 ? fixedCols_ + 1 : 0); }

void ColumnDraft::Remove(int col) {
    const int last = Count() - 1;
    Apply(ForgottenColumn(grid_, state_, col));
    grid_.SetColPosition(col, last);
    if (state_.keyColumn >= 0) state_.keyColumn = flexgrid::AfterMove(state_.keyColumn, col, last);
    if (state_.keyColumn == last) state_.keyColumn = ControlState().keyColumn;
    grid_.SetCols(last);
    changed_ = true;
    Refresh();
}

void ColumnDraft::Move(int from, int to) {
    grid_.SetColPosition(from, to);
    if (state_.keyColumn >= 0) state_.keyColumn = flexgrid::AfterMove(state_.keyColumn, from, to);
    changed_ = true;
    Refresh();
}

void ColumnDraft::Rename(int col, TextView caption) {
    const Text text = Writable(caption);
    Apply(RenamedColumn(grid_, state_, col, text));
    const bool follows = col == 0 && first_.width == NaturalWidth(0);
    grid_.SetTextMatrix(0, col, text);
    if (follows) first_.width = NaturalWidth(0);
    changed_ = true;
    Refresh();
}

void ColumnDraft::SetWidth(int col, int twips) {
    twips = std::clamp(twips, 0, widest);
    if (col == 0) {
        first_.width = twips;
        return Refresh();
    }
    Text caption(TrimRight(Caption(col)));
    if (caption.empty() && twips != flexgrid::defaultColWidth) caption = u" ";
    while (!caption.empty() && grid_.WidthFor(caption) < twips) caption += u' ';
    if (caption != Caption(col)) Rename(col, caption);
}

void ColumnDraft::SetSide(int col, ColumnSide side) {
    if (side == Side(col)) return;
    grid_.SetColAlignment(col, AlignmentOf(side));
    if (col == 0) {
        first_.alignment = grid_.ColAlignment(0);
        first_.written = first_.alignment;
    }
    changed_ = true;
    Refresh();
}

void ColumnDraft::Set(int col, ColumnSetting setting, int value) {
    state_.*ListOf(setting) = WithSetting(grid_, state_, col, setting, value);
    // A column that is shown is not hidden by its width either.
    if (setting == ColumnSetting::invisible && value == 0 && col == 0 && first_.width == 0)
        first_.width = NaturalWidth(0);
    Refresh();
}

void ColumnDraft::SetField(int col, TextView field) {
    state_.bindFields = WithTextForCaption(state_.bindFields, Caption(col), field);
}

void ColumnDraft::SetFormat(int col, TextView format) {
    state_.columnFormats = WithTextForCaption(state_.columnFormats, Caption(col), format);
    Refresh();
}

void ColumnDraft::Apply(const ChangedTexts& changes) {
    for (const auto& [field, text] : changes) state_.*field = text;
}

Text ColumnDraft::WrittenColumns() const {
    Text text;
    for (int col = 0; col < Count(); ++col) {
        if (col > 0) text += u'|';
        const Text caption = Caption(col);
        GridAlignment written = col == 0 ? first_.written : grid_.ColAlignment(col);
        // Without a character for the alignment, the caption's own first one would be taken for it.
        if (written == GridAlignment::general && !caption.empty() && sideMarkers.find(caption[0]) != TextView::npos)
            written = GridAlignment::leftCenter;
        if (written != GridAlignment::general) text += sideMarkers[static_cast<std::size_t>(written) / 3];
        text += caption;
    }
    return text;
}

Text ColumnDraft::ExampleOf(int col) const {
    if (const TextView format = Format(col); !format.empty())
        return KindOfFormat(format) == FormatKind::number ? Text(u"1234.5")
                                                          : FormatDate({2026, 1, 31}, state_.dateFormat);
    switch (Setting(col, ColumnSetting::dataType)) {
        case data_type::digits:
            return u"123";
        case data_type::numerics:
            return u"12.50";
        case data_type::date:
            return state_.dateFormat;
        default:
            return u"Abc";
    }
}

void ColumnDraft::Refresh() {
    formats_.Forget();
    if (Count() > 0 && grid_.IdOfCol(0) != first_.id) {
        const GridAlignment alignment = grid_.ColAlignment(0);
        first_ = {grid_.IdOfCol(0), NaturalWidth(0), alignment, alignment};
    }
    // The format string gives columns without a caption no width.
    grid_.SetColWidth(flexgrid::Grid::all, flexgrid::Grid::defaultSize);
    Text columns = WrittenColumns();
    grid_.SetFormatString(columns);
    if (changed_) formatString_ = columns.append(rowCaptions_);
    if (Count() == 0) return;
    grid_.SetColAlignment(0, first_.alignment);
    grid_.SetColWidth(0, first_.width);
    for (int col = 0; col < Count(); ++col) {
        if (Setting(col, ColumnSetting::invisible)) grid_.SetColWidth(col, 0);
        grid_.SetTextMatrix(exampleRow, col, ExampleOf(col));
    }
}

}  // namespace qvx::grid
