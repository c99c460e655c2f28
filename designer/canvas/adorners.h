// What is drawn above a form under design: the handles of what is selected, outlines of a drag, the numbers of the tab
// order. All in pixels of the form's inside.
#pragma once

#include <vector>

#include "designer/document/selection.h"
#include "drawing/surface.h"

namespace qvx::host::designer {

struct Adorner {
    enum class Look { primaryHandle, handle, weakHandle, outline, badge, doneBadge };
    Look look = Look::handle;
    Rect area;
    Text text;  // of badges
};

// The handles around the selected controls: eight around the primary, four around each of the others; weak while the
// canvas does not have the focus.
std::vector<Adorner> SelectionAdorners(const Shapes& shapes, const Selection& selection, bool focused, int handleSize);

// The place of every control in the tab order. `done` are the controls that have been clicked so far.
std::vector<Adorner> TabOrderAdorners(const Shapes& shapes, const std::vector<ObjectId>& order,
                                      const std::vector<ObjectId>& done, Dpi dpi);

// The areas that the adorners cover. An outline covers its four sides only.
std::vector<Rect> PartsOf(const std::vector<Adorner>& adorners, int outlineWidth);

void PaintAdorners(Surface& surface, const std::vector<Adorner>& adorners);

}  // namespace qvx::host::designer
