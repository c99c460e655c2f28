// What the designer says of the form in its status line and in its caption.
#pragma once

#include <optional>

#include "designer/document/selection.h"
#include "host/twips_rect.h"

namespace qvx::host::designer {

struct StatusState {
    Text armed;                        // the class of the tool that is chosen; empty for the pointer
    bool ordersTabs = false;           // presses give the tab order
    std::optional<TwipsRect> dragged;  // where the primary would be now
    bool dragging = false;             // controls are moved, sized or placed
    std::size_t selected = 0;
    // Of the primary, where there is one.
    ObjectId primary;
    TwipsRect primaryBounds;
    Text fault;  // why it cannot be shown; empty for one that is
    // Of the form.
    Text formName;
    TwipsRect form;
};

struct StatusTexts {
    Text hint;
    Text place;
    Text size;
};

StatusTexts StatusOf(const StatusState& state);

// The caption of the designer's window. `path` is the form's file, empty for a form that has none.
Text DesignerCaption(TextView path, const Text& formName, bool dirty, const Text& program);

}  // namespace qvx::host::designer
