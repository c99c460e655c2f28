#include "designer/properties/list_keys.h"

#include <optional>

#include "common/keys.h"
#include "designer/properties/system_colors.h"

namespace qvx::host::designer {

namespace {

bool Has(const ListKey& key, int mask) { return (key.shift & mask) == mask; }

bool OpensBox(const ListKey& key) {
    if (key.system) return key.key == keys::down || key.key == keys::up;
    return key.key == keys::f4;
}

bool Jumps(const ListKey& key) {
    return !key.system && key.key >= 'A' && key.key <= 'Z' && Has(key, keys::controlMask | keys::shiftMask);
}

std::optional<RowStep> StepOf(int key) {
    switch (key) {
        case keys::up:
            return RowStep::previous;
        case keys::down:
            return RowStep::next;
        case keys::pageUp:
            return RowStep::pageUp;
        case keys::pageDown:
            return RowStep::pageDown;
        case keys::home:
            return RowStep::first;
        case keys::end:
            return RowStep::last;
        default:
            return std::nullopt;
    }
}

}  // namespace

RowKeyMeaning RowKeyOf(const ListKey& key, const RowKeyState& state) {
    if (OpensBox(key)) return {RowAction::pressButton};
    if (Jumps(key)) return {RowAction::jump};
    if (key.system) return {};
    if (state.heading) {
        if (key.key == keys::enter) return {RowAction::toggle};
        if (key.key == keys::left) return {state.open ? RowAction::toggle : RowAction::idle};
        if (key.key == keys::right) return {state.open ? RowAction::idle : RowAction::toggle};
    }
    if (const auto step = StepOf(key.key)) return {RowAction::walk, *step};
    switch (key.key) {
        case keys::tab:
            return {Has(key, keys::shiftMask) ? RowAction::leaveBackwards : RowAction::editOrLeave};
        case keys::f2:
            return {RowAction::edit};
        case keys::enter:
            return {RowAction::editOrPress};
        case keys::deleteKey:
            return {state.picture ? RowAction::clearPicture : RowAction::none};
        default:
            return {};
    }
}

FieldKeyMeaning FieldKeyOf(const ListKey& key, bool changed) {
    if (OpensBox(key)) return {FieldAction::pressButton};
    if (Jumps(key)) return {FieldAction::jump};
    if (key.system) return {};
    switch (key.key) {
        case keys::home:
        case keys::end:
            return {};
        case keys::enter:
            return {FieldAction::apply};
        case keys::escape:
            return {changed ? FieldAction::restore : FieldAction::close};
        case keys::tab:
            return {Has(key, keys::shiftMask) ? FieldAction::applyToRows : FieldAction::leave};
        default:
            break;
    }
    const auto step = StepOf(key.key);
    return step ? FieldKeyMeaning{FieldAction::walk, *step} : FieldKeyMeaning{};
}

BoxAction BoxActionOf(BoxPart part, const ListKey& key) {
    const bool closes =
        key.system ? key.key == keys::up || key.key == keys::down : key.key == keys::escape || key.key == keys::f4;
    if (closes) return BoxAction::close;
    if (key.system) return BoxAction::none;
    const bool colors = part == BoxPart::palette || part == BoxPart::colors || part == BoxPart::otherColor;
    if (colors && key.key == keys::tab) {
        return Has(key, keys::shiftMask) ? BoxAction::previousPart : BoxAction::nextPart;
    }
    const bool enter = key.key == keys::enter;
    // In a text, Enter alone begins a line. The space bar presses the button as in any dialog.
    const bool accepts = part == BoxPart::text                                 ? enter && Has(key, keys::controlMask)
                         : part == BoxPart::palette || part == BoxPart::colors ? enter || key.key == keys::space
                                                                               : enter;
    return accepts ? BoxAction::accept : BoxAction::none;
}

std::optional<int> PaletteCellAfter(int key, int cell) {
    int to = cell;
    switch (key) {
        case keys::left:
            to = cell - 1;
            break;
        case keys::right:
            to = cell + 1;
            break;
        case keys::up:
            to = cell - paletteColumns;
            break;
        case keys::down:
            to = cell + paletteColumns;
            break;
        default:
            return std::nullopt;
    }
    return to >= 0 && to < static_cast<int>(paletteCells) ? to : cell;
}

}  // namespace qvx::host::designer
