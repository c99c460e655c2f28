#include "controls/grid/field_map.h"

#include <algorithm>

#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "controls/grid/caption_list.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/column_order.h"

namespace qvx::grid {
namespace {

[[noreturn]] void RefuseFields(TextView why, TextView name) {
    Text text(u"Invalid property value: BindFields ");
    text.append(why);
    if (!name.empty()) text.append(u" \"").append(name).append(u"\"");
    throw RunTimeError(errors::invalidPropertyValue, text.append(u"."));
}

int ColumnNamed(const flexgrid::Grid& grid, TextView caption) {
    for (int col = 0; col < grid.Cols(); ++col)
        if (EqualNoCase(CaptionOf(grid, col), caption)) return col;
    RefuseFields(u"names the unknown column", caption);
}

}  // namespace

std::optional<int> PlaceOf(TextView name, const std::vector<Text>& names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (EqualNoCase(names[i], name)) return static_cast<int>(i);
    return std::nullopt;
}

FieldMap::FieldMap(const flexgrid::Grid& grid, const ControlState& state, const std::vector<Text>& names)
    : byName_(!state.bindFields.empty()) {
    const int count = static_cast<int>(names.size());
    for (int col = 0; !byName_ && col < grid.Cols(); ++col) {
        const int field = FieldPlaceOf(grid, state, col) - state.bindFrom;
        fields_.push_back(field < count ? std::max(field, none) : none);
    }
    while (!fields_.empty() && fields_.back() == none) fields_.pop_back();
    for (TextView rest = state.bindFields; !rest.empty();) {
        const auto item = TakeCaptioned(rest);
        if (!item) RefuseFields(u"is no list of [Caption]field", {});
        const auto col = static_cast<std::size_t>(ColumnNamed(grid, item->caption));
        const auto field = PlaceOf(item->text, names);
        if (!field) RefuseFields(u"names the unknown field", item->text);
        while (col >= fields_.size()) fields_.push_back(none);
        fields_[col] = *field;
    }
}

std::optional<int> FieldMap::FieldOf(int col) const {
    const auto at = static_cast<std::size_t>(col);
    return at < fields_.size() && fields_[at] != none ? std::optional(fields_[at]) : std::nullopt;
}

}  // namespace qvx::grid
