#include "controls/grid/column_settings.h"

#include <optional>

#include "common/ascii.h"
#include "common/number_text.h"
#include "common/run_time_error.h"
#include "common/text_compare.h"
#include "controls/grid/caption_list.h"
#include "controls/grid/column_checks.h"
#include "controls/grid/column_lists.h"
#include "controls/grid/column_totals.h"

namespace qvx::grid {
namespace {

constexpr int dataTypes = data_type::date + 1;

struct SettingList {
    Text ControlState::*list;
    int form;
};

// In the order of ColumnSetting. The last one is no setting, but its items are renamed as well.
constexpr SettingList settingLists[] = {
    {&ControlState::requiredFields, item_form::plain},
    {&ControlState::nonFocusColumns, item_form::plain},
    {&ControlState::inVisibleColumns, item_form::plain},
    {&ControlState::inActiveColumns, item_form::plain},
    {&ControlState::listColumns, item_form::plain},
    {&ControlState::unChangableColumns, item_form::plain},
    {&ControlState::columnsDataType, dataTypes},
    {&ControlState::checkValueFor, sign_rule::count},
    {&ControlState::footer, 2 * totalKinds},
    {&ControlState::columnsMaxLength, item_form::number},
    {&ControlState::validateColumns, item_form::plain},
};

[[noreturn]] void RefuseSetting() { throw RunTimeError(errors::invalidPropertyValue, u"Invalid property value"); }

void CheckCaption(TextView caption) {
    if (caption.find(u';') != TextView::npos) RefuseSetting();
}

bool IsCodeOrNumber(TextView text, int form) {
    if (text.empty()) return false;
    for (const char16_t c : text)
        if (!IsDigit(c)) return false;
    return form == item_form::number || (text.size() == 1 && text[0] - u'0' < form);
}

// The places of the two semicolons of an item.
struct ItemPlace {
    std::size_t begin;
    std::size_t end;
};

std::optional<ItemPlace> FindItem(TextView list, TextView caption, int form, std::size_t from) {
    Text start(u";");
    start.append(caption).append(1, form == item_form::plain ? u';' : u'-');
    for (;; ++from) {
        const std::size_t found = FindNoCase(list.substr(from), start);
        if (found == TextView::npos) return std::nullopt;
        from += found;
        const std::size_t value = from + start.size();
        if (form == item_form::plain) return ItemPlace{from, value - 1};
        const std::size_t end = list.find(u';', value);
        if (end == TextView::npos) return std::nullopt;
        if (IsCodeOrNumber(list.substr(value, end - value), form)) return ItemPlace{from, end};
    }
}

// Removes all items of a column and returns the place of the first; npos without any.
std::size_t RemoveItems(Text& list, TextView caption, int form) {
    std::size_t first = Text::npos;
    for (std::size_t from = 0; const auto item = FindItem(list, caption, form, from);) {
        from = item->begin;
        if (first == Text::npos) first = from;
        list.erase(from + 1, item->end - from);
    }
    return first;
}

// What is left of a list whose only item is gone.
void ClearIfBare(Text& list) {
    if (list == TextView(u";")) list.clear();
}

// Whether the caption is that of another column: of any, or of one before this.
bool IsCaptionOfOther(const flexgrid::Grid& grid, int col, TextView caption, bool before = false) {
    for (int other = 0; other < (before ? col : grid.Cols()); ++other)
        if (other != col && EqualNoCase(CaptionOf(grid, other), caption)) return true;
    return false;
}

// A column that gets another caption.
struct Renaming {
    Text from;
    TextView to;
    bool shared;  // another column keeps the old caption
    bool taken;   // another column has the new one
};

Text WithRenamedItems(TextView list, const Renaming& caption, int form) {
    Text text(list);
    if (!caption.taken) {
        RemoveItems(text, caption.to, form);
        for (std::size_t from = 0; const auto item = FindItem(text, caption.from, form, from);) {
            const std::size_t value = item->begin + 1 + caption.from.size();
            Text renamed(caption.to);
            renamed.append(text, value, item->end + 1 - value);
            const std::size_t place = caption.shared ? item->end + 1 : item->begin + 1;
            text.replace(place, caption.shared ? 0 : item->end + 1 - place, renamed);
            from = place + renamed.size() - 1;
        }
    } else if (!caption.shared) {
        RemoveItems(text, caption.from, form);
    }
    if (text.size() != list.size()) ClearIfBare(text);
    return text;
}

// A list of another form is returned as it is. With `keeps`, the column that keeps the old caption keeps its item.
Text WithRenamedCaption(TextView list, const Renaming& caption, bool keeps) {
    Text text;
    for (TextView rest = list; !rest.empty();) {
        const auto item = TakeCaptioned(rest);
        if (!item) return Text(list);
        const bool renamed = EqualNoCase(item->caption, caption.from);
        if (!renamed || keeps) AppendCaptioned(text, *item);
        if (renamed && !caption.taken) AppendCaptioned(text, {caption.to, item->text});
    }
    return text;
}

// Returns what a renaming changes in all the lists.
ChangedTexts Changes(const flexgrid::Grid& grid, const ControlState& state, int col, const Renaming& renaming) {
    ChangedTexts changes;
    const auto change = [&](Text ControlState::*field, Text text) {
        if (text != state.*field) changes.emplace_back(field, std::move(text));
    };
    for (const SettingList& list : settingLists) {
        // Codes that have no meaning move along with those that do.
        const int form = list.form == item_form::plain ? item_form::plain : item_form::number;
        change(list.list, WithRenamedItems(state.*list.list, renaming, form));
    }
    // Of several columns with the same caption, the first one has the field.
    if (!IsCaptionOfOther(grid, col, renaming.from, true))
        change(&ControlState::bindFields, WithRenamedCaption(state.bindFields, renaming, false));
    change(&ControlState::columnFormats, WithRenamedCaption(state.columnFormats, renaming, renaming.shared));
    return changes;
}

const SettingList& ListOfSetting(ColumnSetting setting) { return settingLists[static_cast<std::size_t>(setting)]; }

}  // namespace

int ListedValue(TextView list, TextView caption, int form) {
    if (form == item_form::plain) return IsListedColumn(list, caption) ? 1 : 0;
    if (form == item_form::number) return ColumnNumber(list, caption);
    for (int code = 0; code < form; ++code)
        if (HasColumnCode(list, caption, code)) return code;
    return -1;
}

Text WithListedValue(TextView list, TextView caption, int form, int value) {
    CheckCaption(caption);
    const int none = form > 0 ? -1 : 0;
    if (value < none || (form > 0 && value >= form)) RefuseSetting();
    Text text(list);
    if (value == ListedValue(list, caption, form)) return text;
    const std::size_t place = RemoveItems(text, caption, form);
    if (value == none) {
        ClearIfBare(text);
        return text;
    }
    Text item(caption);
    if (form != item_form::plain) item.append(u"-").append(IntegerToText(value));
    item += u';';
    // A last item that counts for nothing, for lack of a semicolon, does not begin to.
    const std::size_t before = place != Text::npos ? place : text.rfind(u';');
    if (before == Text::npos)
        text.append(u";").append(item);
    else
        text.insert(before + 1, item);
    return text;
}

Text ControlState::*ListOf(ColumnSetting setting) { return ListOfSetting(setting).list; }

int SettingOf(const flexgrid::Grid& grid, const ControlState& state, int col, ColumnSetting setting) {
    const SettingList& list = ListOfSetting(setting);
    return ListedValue(state.*list.list, CaptionOf(grid, col), list.form);
}

Text WithSetting(const flexgrid::Grid& grid, const ControlState& state, int col, ColumnSetting setting, int value) {
    const SettingList& list = ListOfSetting(setting);
    return WithListedValue(state.*list.list, CaptionOf(grid, col), list.form, value);
}

int FrozenColsWith(int fixedCols, int frozenCols, int col, bool frozen) {
    const int before = col - fixedCols;
    if (before < 0 || frozen == (before < frozenCols)) return frozenCols;
    return frozen ? before + 1 : before;
}

ChangedTexts RenamedColumn(const flexgrid::Grid& grid, const ControlState& state, int col, TextView caption) {
    CheckCaption(caption);
    const Renaming renaming{CaptionOf(grid, col), caption, IsCaptionOfOther(grid, col, CaptionOf(grid, col)),
                            IsCaptionOfOther(grid, col, caption)};
    return EqualNoCase(renaming.from, caption) ? ChangedTexts() : Changes(grid, state, col, renaming);
}

ChangedTexts ForgottenColumn(const flexgrid::Grid& grid, const ControlState& state, int col) {
    // A column that gets the caption of another one gives its own settings up.
    const Renaming gone{CaptionOf(grid, col), {}, false, true};
    return IsCaptionOfOther(grid, col, gone.from) ? ChangedTexts() : Changes(grid, state, col, gone);
}

}  // namespace qvx::grid
