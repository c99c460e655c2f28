#include "designer/canvas_input_window.h"

#include <algorithm>
#include <utility>

#include "designer/canvas/canvas_keys.h"
#include "designer/canvas/press.h"
#include "designer/document/form_text.h"

namespace qvx::host::designer {

namespace {

constexpr WORD crossCursor = 32515;

}  // namespace

void CanvasInput::Attach() {
    CanvasWindow& canvas = views_.Canvas();
    canvas.onMouse = [this](const Mouse& mouse) { OnMouse(mouse); };
    canvas.onForm = [this](bool twice) { OnForm(twice); };
    canvas.onFormSize = [this](Size inside) { OnFormSize(inside); };
    canvas.onKey = [this](int key, int shift) { return OnKey(key, shift); };
    canvas.onFocus = [this] { views_.UpdateAdorners(); };
    views_.Toolbox().onArmed = [this] { views_.UpdateStatus(); };
    views_.Toolbox().onPlace = [this](const Text& className) { PlaceTool(className); };
}

// --- Mouse.

void CanvasInput::OnMouse(const Mouse& mouse) {
    if (session_.Busy()) return;
    Drag& drag = interaction_.drag;
    switch (mouse.action) {
        case MouseAction::press:
            OnPress(mouse);
            break;
        case MouseAction::doublePress:
            if (const auto at = ShapeAt(session_.AllShapes(), mouse.at);
                at && views_.Toolbox().Armed().empty() && !interaction_.ordersTabs) {
                editors_.ShowPages(ObjectId(session_.AllShapes()[*at].id));
            } else {
                OnPress(mouse);
            }
            break;
        case MouseAction::move:
            if (!drag.Under()) {
                OnHover(mouse);
            } else if (!mouse.held) {
                CancelDrag();
            } else if (drag.MoveTo(mouse.at, !mouse.alt)) {
                views_.UpdateInteraction();
            }
            break;
        case MouseAction::release:
            if (drag.Under()) OnRelease(mouse);
            break;
        case MouseAction::cancel:
            CancelDrag();
            break;
        case MouseAction::menu:
            if (!drag.Under()) OnContextMenu(mouse.at);
            break;
    }
}

void CanvasInput::OnHover(const Mouse& mouse) {
    WORD cursor = arrowCursor;
    CanvasWindow& canvas = views_.Canvas();
    if (interaction_.ordersTabs || !views_.Toolbox().Armed().empty()) {
        cursor = crossCursor;
    } else if (session_.Selected().All().size() == 1) {
        const auto grip = PrimaryGripAt(session_.AllShapes(), session_.Selected(), mouse.at, canvas.HandleSize());
        if (grip) cursor = CursorOf(*grip);
    }
    canvas.SetCursor(cursor);
}

void CanvasInput::OnPress(const Mouse& mouse) {
    session_.CapturePending();
    CanvasWindow& canvas = views_.Canvas();
    const PressState state{interaction_.ordersTabs, !views_.Toolbox().Armed().empty(), mouse.shift, mouse.control,
                           canvas.HandleSize()};
    const Press press = PressAt(session_.AllShapes(), session_.Selected(), mouse.at, state);
    const auto begin = [&](Drag::Kind kind) {
        // Showing a selection does not move a shape, so that the positions still hold.
        const Shapes& shapes = session_.AllShapes();
        const Shape* container = press.container ? &shapes[*press.container] : nullptr;
        interaction_.container = container ? std::optional(container->id) : std::nullopt;
        const Point origin = container ? Point{container->area.left, container->area.top} : Point{};
        interaction_.drag.Begin(kind, mouse.at, origin, session_.FormDpi());
        canvas.CaptureMouse(true);
    };
    switch (press.kind) {
        case Press::Kind::idle:
            break;
        case Press::Kind::orderTab:
            OrderTab(*press.shape);
            break;
        case Press::Kind::place:
            begin(Drag::Kind::place);
            break;
        case Press::Kind::size:
            // All selected controls are sized by the same amount.
            begin(Drag::Kind::size);
            interaction_.drag.Take(session_.SelectedBounds(), session_.Selected().All().size() - 1, press.grip);
            canvas.SetCursor(CursorOf(press.grip));
            break;
        case Press::Kind::band:
            begin(Drag::Kind::band);
            interaction_.adds = mouse.shift || mouse.control;
            break;
        case Press::Kind::toggle:
            session_.Selected().Press(session_.AllShapes(), *press.shape, true);
            session_.Refresh();
            break;
        case Press::Kind::move:
            session_.Selected().Press(session_.AllShapes(), *press.shape, false);
            session_.Refresh();
            begin(Drag::Kind::move);
            interaction_.drag.Take(session_.SelectedBounds(), session_.Selected().All().size() - 1);
            break;
    }
}

void CanvasInput::OnRelease(const Mouse& mouse) {
    Drag& drag = interaction_.drag;
    drag.MoveTo(mouse.at, !mouse.alt);
    const Drag::Kind kind = drag.What();
    const Text armed = views_.Toolbox().Armed();
    const UsualSize usual = UsualSizeOf(armed);
    const std::vector<TwipsRect> bounds = drag.Bounds({usual.width, usual.height});
    const std::vector<Rect> outlines = drag.Outlines();
    const bool moved = drag.Moved();
    drag.End();
    views_.Canvas().CaptureMouse(false);
    switch (kind) {
        case Drag::Kind::place:
            views_.Toolbox().Disarm();
            if (armed == u"Menu") {
                editors_.EditMenus();
            } else {
                session_.PlaceControl(armed, interaction_.container, &bounds.front());
            }
            break;
        case Drag::Kind::band: {
            const Shapes& shapes = session_.AllShapes();
            Selection& selection = session_.Selected();
            const auto container = interaction_.container ? PositionOf(shapes, *interaction_.container) : std::nullopt;
            if (moved) {
                selection.Band(shapes, container, outlines.front(), interaction_.adds);
            } else if (container && !selection.Has(*interaction_.container)) {
                selection.Press(shapes, *container, true);
            } else if (!interaction_.adds) {
                selection.Clear();
            }
            session_.Refresh();
            break;
        }
        case Drag::Kind::move:
        case Drag::Kind::size:
            if (moved) session_.SetSelectedBounds(kind == Drag::Kind::move ? u"Move" : u"Size", bounds);
            break;
        case Drag::Kind::none:
            break;
    }
    views_.UpdateInteraction();
}

void CanvasInput::CancelDrag() {
    if (!interaction_.drag.Under()) return;
    interaction_.drag.End();
    views_.Canvas().CaptureMouse(false);
    views_.Canvas().SetCursor(arrowCursor);
    views_.UpdateInteraction();
}

void CanvasInput::OrderTab(std::size_t shape) {
    const ObjectId id = session_.AllShapes()[shape].id;
    std::vector<ObjectId>& done = interaction_.tabsDone;
    if (std::find(done.begin(), done.end(), id) != done.end()) return;
    done.push_back(id);
    session_.Change(
        u"Tab Order", [&] { session_.Form().SetTabOrder(done); }, u"taborder");
    views_.UpdateAdorners();
}

void CanvasInput::OnContextMenu(Point at) {
    POINT screen{at.x, at.y};
    const Shapes& shapes = session_.AllShapes();
    const Selection& selection = session_.Selected();
    if (at.x < 0 && at.y < 0) {
        // A key opens the menu at the primary, or at the form.
        const auto position = selection.Primary() ? PositionOf(shapes, *selection.Primary()) : std::nullopt;
        const Rect area = position ? shapes[*position].area : Rect{};
        screen = {area.left + 8, area.top + 8};
    } else if (const auto hit = ShapeAt(shapes, at)) {
        if (!selection.Has(shapes[*hit].id)) session_.Select({shapes[*hit].id});
    } else {
        session_.Select({});
    }
    ClientToScreen(session_.Picture().Handle(), &screen);
    onContextMenu(screen);
}

void CanvasInput::OnForm(bool twice) {
    if (interaction_.drag.Under()) return;
    const DesignedForm& form = session_.Picture();
    POINT point{};
    GetCursorPos(&point);
    ScreenToClient(form.Handle(), &point);
    session_.Select({});
    const bool onMenus = form.Face().MenuAt({static_cast<int>(point.x), static_cast<int>(point.y)}).has_value();
    if (twice && onMenus) editors_.EditMenus();
}

void CanvasInput::OnFormSize(Size inside) {
    const Dpi dpi = session_.FormDpi();
    const auto twips = [](int pixels, int dots) { return std::max(Snapped(PixelsToTwips(pixels, dots)), gridStep); };
    session_.Change(u"Size",
                    [&] { session_.Picture().SetClientSize(twips(inside.width, dpi.x), twips(inside.height, dpi.y)); });
}

void CanvasInput::PlaceTool(const Text& className) {
    if (className == u"Menu") {
        views_.Toolbox().Disarm();
        editors_.EditMenus();
    } else if (!className.empty()) {
        session_.PlaceControl(className, std::nullopt, nullptr);
        views_.Toolbox().Disarm();
    }
    views_.Focus(Pane::canvas);
}

// --- Keys.

bool CanvasInput::OnKey(int key, int shift) {
    if (session_.Busy()) return true;
    const CanvasKeyState state{interaction_.drag.Under(), !views_.Toolbox().Armed().empty(), interaction_.ordersTabs,
                               !session_.Selected().Empty()};
    const CanvasAction action = CanvasActionOf(key, shift, state);
    if (action == CanvasAction::nudge) {
        NudgeSelected(NudgeOf(key, shift, session_.FormDpi()));
    } else {
        Apply(action);
    }
    return action != CanvasAction::none;
}

void CanvasInput::Apply(CanvasAction action) {
    switch (action) {
        case CanvasAction::none:
        case CanvasAction::idle:
        case CanvasAction::nudge:
            break;
        case CanvasAction::selectNext:
        case CanvasAction::selectPrevious: {
            Selection next = session_.Selected();
            next.Cycle(session_.Form().TabOrder(), action == CanvasAction::selectNext);
            session_.Select(next.All());
            break;
        }
        case CanvasAction::selectContainer:
            SelectContainer();
            break;
        case CanvasAction::cancelDrag:
            CancelDrag();
            break;
        case CanvasAction::disarm:
            views_.Toolbox().Disarm();
            break;
        case CanvasAction::endTabOrder:
            onCommand(Command::tabOrder);
            break;
        case CanvasAction::placeTool:
            PlaceTool(views_.Toolbox().Armed());
            break;
        case CanvasAction::showPages:
            editors_.ShowPages(ObjectId(*session_.Selected().Primary()));
            break;
    }
}

void CanvasInput::NudgeSelected(const Nudge& nudge) {
    // Repeated nudges of the same controls are one step.
    Text merge = nudge.sizes ? u"size" : u"move";
    for (const ObjectId& id : session_.Selected().All()) merge += u" " + TitleOf(id);
    const ObjectId primary = *session_.Selected().Primary();
    session_.SetSelectedBounds(nudge.sizes ? u"Size" : u"Move", Nudged(session_.SelectedBounds(), nudge), merge);
    const Shapes& shapes = session_.AllShapes();
    if (const auto at = PositionOf(shapes, primary)) views_.Canvas().Reveal(shapes[*at].area);
}

void CanvasInput::SelectContainer() {
    const Shapes& shapes = session_.AllShapes();
    const auto at = PositionOf(shapes, *session_.Selected().Primary());
    std::vector<ObjectId> outer;
    if (at && shapes[*at].container) outer.push_back(shapes[*shapes[*at].container].id);
    session_.Select(std::move(outer));
}

}  // namespace qvx::host::designer
