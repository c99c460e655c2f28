#include "controls/grid/cell_formats.h"

#include <utility>

#include "controls/grid/caption_list.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/date_column.h"

namespace qvx::grid {

void CellFormats::Refresh(NumberSigns signs, DateSettings dates) noexcept {
    Forget();
    signs_ = std::move(signs);
    dates_ = std::move(dates);
}

// Captions are compared each time, because hosts change them like any other text.
const CellFormats::Known& CellFormats::Find(int col) const {
    const auto at = static_cast<std::size_t>(col);
    if (at >= known_.size()) known_.resize(at + 1);
    Known& known = known_[at];
    Text scratch;
    const TextView caption = grid_.Rows() > 0 ? grid_.Cell(0, col).AsWide(scratch) : TextView();
    if (!known.sought || known.caption != caption) {
        known.format = TextForCaption(state_.columnFormats, caption);
        known.kind = KindOfFormat(known.format);
        known.caption = caption;
        known.sought = true;
    }
    return known;
}

TextView CellFormats::FormatOf(int col) const {
    return state_.columnFormats.empty() ? TextView() : TextView(Find(col).format);
}

TextView CellFormats::ShownText(int col, TextView text, Text& scratch) const {
    if (state_.columnFormats.empty()) return text;
    const Known& known = Find(col);
    if (known.format.empty()) return text;
    if (known.kind == FormatKind::number) return scratch = FormattedNumber(text, known.format, signs_);
    const auto date = DateColumn(state_.dateFormat, dates_).Read(text);
    return date ? TextView(scratch = FormatDate(*date, known.format, dates_.separator)) : text;
}

}  // namespace qvx::grid
