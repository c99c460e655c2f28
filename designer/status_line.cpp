#include "designer/status_line.h"

#include "common/number_text.h"
#include "designer/document/named_pictures.h"

namespace qvx::host::designer {

namespace {

// What a tool, the tab order or a selection of several controls has to say.
Text HintOf(const StatusState& state) {
    if (state.armed == u"Menu") return u"Press Enter or double-click to edit the form's menus.";
    if (!state.armed.empty()) return u"Draw the " + state.armed + u" on the form, or press Enter.";
    if (state.ordersTabs) return u"Click the controls in the order in which Tab shall visit them; Escape ends this.";
    if (state.selected > 1) return IntegerToText(static_cast<int>(state.selected)) + u" controls";
    return {};
}

}  // namespace

StatusTexts StatusOf(const StatusState& state) {
    StatusTexts texts;
    texts.hint = HintOf(state);
    TwipsRect bounds = state.form;
    bool placed = false;
    if (state.dragging) {
        placed = state.dragged.has_value();
        bounds = state.dragged.value_or(bounds);
    } else if (state.selected > 0) {
        placed = true;
        bounds = state.primaryBounds;
        if (!state.fault.empty()) texts.hint = state.fault;
        if (texts.hint.empty()) texts.hint = TitleOf(state.primary);
    } else if (texts.hint.empty()) {
        texts.hint = state.formName;
    }
    if (placed) texts.place = IntegerToText(bounds.left) + u", " + IntegerToText(bounds.top);
    texts.size = IntegerToText(bounds.width) + u" \u00D7 " + IntegerToText(bounds.height) + u" twips";
    return texts;
}

Text DesignerCaption(TextView path, const Text& formName, bool dirty, const Text& program) {
    return (path.empty() ? formName : FileNameOf(path)) + (dirty ? u"*" : u"") + u" - " + program + u" Designer";
}

}  // namespace qvx::host::designer
