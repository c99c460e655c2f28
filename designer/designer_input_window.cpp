// Mouse and keys of the designer.
#include <windows.h>

#include <algorithm>

#include "common/keys.h"
#include "designer/designer_window.h"
#include "designer/document/form_text.h"
#include "win/dpi.h"

namespace qvx::host::designer {

namespace {

constexpr WORD crossCursor = 32515;

std::optional<std::size_t> PositionOf(const Shapes& shapes, const ObjectId& id) {
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        if (shapes[i].id == id) return i;
    }
    return std::nullopt;
}

// Where a container's inside begins; the form's is at 0.
Point OriginOf(const Shapes& shapes, std::optional<std::size_t> container) {
    if (!container) return {};
    return {shapes[*container].area.left, shapes[*container].area.top};
}

}  // namespace

// --- Mouse.

void DesignerWindow::OnMouse(const Mouse& mouse) {
    if (busy_) return;
    switch (mouse.action) {
        case MouseAction::press:
            Press(mouse);
            break;
        case MouseAction::doublePress:
            if (const auto at = ShapeAt(shapes_, mouse.at); at && toolbox_.Armed().empty() && !tabOrderView_) {
                ShowPages(shapes_[*at].id);
            } else {
                Press(mouse);
            }
            break;
        case MouseAction::move:
            if (!drag_.Under()) {
                Hover(mouse);
            } else if (!mouse.held) {
                CancelDrag();
            } else if (drag_.MoveTo(mouse.at, !mouse.alt)) {
                UpdateAdorners();
                UpdateStatus();
            }
            break;
        case MouseAction::release:
            if (drag_.Under()) Release(mouse);
            break;
        case MouseAction::cancel:
            CancelDrag();
            break;
        case MouseAction::menu:
            if (!drag_.Under()) ShowContextMenu(mouse.at);
            break;
    }
}

void DesignerWindow::Hover(const Mouse& mouse) {
    WORD cursor = arrowCursor;
    if (tabOrderView_ || !toolbox_.Armed().empty()) {
        cursor = crossCursor;
    } else if (selection_.All().size() == 1) {
        if (const auto at = PositionOf(shapes_, *selection_.Primary())) {
            if (const auto handle = GripAt(shapes_[*at].area, mouse.at, canvas_.HandleSize())) {
                cursor = CursorOf(*handle);
            }
        }
    }
    canvas_.SetCursor(cursor);
}

void DesignerWindow::Press(const Mouse& mouse) {
    CapturePending();
    if (tabOrderView_) {
        PressInTabOrder(mouse.at);
        return;
    }
    const Dpi dpi = FormDpi();
    const auto begin = [&](Drag::Kind kind, std::optional<std::size_t> container) {
        dragContainer_ = container ? std::optional(shapes_[*container].id) : std::nullopt;
        drag_.Begin(kind, mouse.at, OriginOf(shapes_, container), dpi);
        canvas_.CaptureMouse(true);
    };
    if (!toolbox_.Armed().empty()) {
        begin(Drag::Kind::place, ContainerAt(shapes_, mouse.at));
        return;
    }
    const bool toggle = mouse.shift || mouse.control;
    if (const ObjectId* primary = selection_.Primary(); primary && !toggle) {
        const auto at = PositionOf(shapes_, *primary);
        const auto handle = at ? GripAt(shapes_[*at].area, mouse.at, canvas_.HandleSize()) : std::nullopt;
        if (handle) {
            // All of the selection is sized by the same amount.
            begin(Drag::Kind::size, shapes_[*at].container);
            drag_.Take(SelectedBounds(), selection_.All().size() - 1, *handle);
            canvas_.SetCursor(CursorOf(*handle));
            return;
        }
    }
    const auto hit = ShapeAt(shapes_, mouse.at);
    // Inside a frame, Ctrl begins a rubber band there.
    if (!hit || (mouse.control && shapes_[*hit].holdsOthers)) {
        begin(Drag::Kind::band, hit);
        dragAdds_ = toggle;
        return;
    }
    selection_.Press(shapes_, *hit, toggle);
    UpdateView();
    if (toggle) return;
    begin(Drag::Kind::move, shapes_[*hit].container);
    drag_.Take(SelectedBounds(), selection_.All().size() - 1);
}

void DesignerWindow::Release(const Mouse& mouse) {
    drag_.MoveTo(mouse.at, !mouse.alt);
    const Drag::Kind kind = drag_.What();
    const Text armed = toolbox_.Armed();
    const UsualSize usual = UsualSizeOf(armed);
    const std::vector<TwipsRect> bounds = drag_.Bounds({usual.width, usual.height});
    const std::vector<Rect> outlines = drag_.Outlines();
    const bool moved = drag_.Moved();
    drag_.End();
    canvas_.CaptureMouse(false);
    switch (kind) {
        case Drag::Kind::place:
            toolbox_.Disarm();
            if (armed == u"Menu") {
                EditMenus();
            } else {
                PlaceControl(armed, dragContainer_, &bounds.front());
            }
            break;
        case Drag::Kind::band: {
            const auto container = dragContainer_ ? PositionOf(shapes_, *dragContainer_) : std::nullopt;
            if (moved) {
                selection_.Band(shapes_, container, outlines.front(), dragAdds_);
            } else if (container && !selection_.Has(*dragContainer_)) {
                selection_.Press(shapes_, *container, true);
            } else if (!dragAdds_) {
                selection_.Clear();
            }
            UpdateView();
            break;
        }
        case Drag::Kind::move:
        case Drag::Kind::size:
            if (moved) SetSelectedBounds(kind == Drag::Kind::move ? u"Move" : u"Size", bounds);
            break;
        case Drag::Kind::none:
            break;
    }
    UpdateAdorners();
    UpdateStatus();
}

void DesignerWindow::CancelDrag() {
    if (!drag_.Under()) return;
    drag_.End();
    canvas_.CaptureMouse(false);
    canvas_.SetCursor(arrowCursor);
    UpdateAdorners();
    UpdateStatus();
}

void DesignerWindow::PressInTabOrder(Point at) {
    const auto hit = ShapeAt(shapes_, at);
    if (!hit) return;
    const ObjectId id = shapes_[*hit].id;
    const auto done = std::find(tabOrderDone_.begin(), tabOrderDone_.end(), id);
    if (done != tabOrderDone_.end()) return;
    tabOrderDone_.push_back(id);
    Change(
        u"Tab Order", [&] { document_->SetTabOrder(tabOrderDone_); }, u"taborder");
    UpdateAdorners();
}

void DesignerWindow::ShowContextMenu(Point at) {
    POINT screen{at.x, at.y};
    if (at.x < 0 && at.y < 0) {
        // From the keyboard: at the primary, or at the form.
        const auto position = selection_.Primary() ? PositionOf(shapes_, *selection_.Primary()) : std::nullopt;
        const Rect area = position ? shapes_[*position].area : Rect{};
        screen = {area.left + 8, area.top + 8};
    } else if (const auto hit = ShapeAt(shapes_, at)) {
        if (!selection_.Has(shapes_[*hit].id)) Select({shapes_[*hit].id});
    } else {
        Select({});
    }
    ClientToScreen(form_->Handle(), &screen);
    const HMENU menu = CreatePopupMenu();
    for (const MenuItem& item : ContextMenu(State())) {
        if (item.caption == u"-") {
            AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
            continue;
        }
        Text caption = item.caption;
        if (const Text keys = ShortcutText(ParseShortcut(item.shortcut)); !keys.empty()) caption += u"\t" + keys;
        AppendMenuW(menu, MF_STRING | (item.enabled ? MF_ENABLED : MF_GRAYED) | (item.checked ? MF_CHECKED : 0u),
                    item.id, Wide(caption));
    }
    const auto chosen = TrackPopupMenu(menu, TPM_RETURNCMD | TPM_RIGHTBUTTON, screen.x, screen.y, 0, Handle(), nullptr);
    DestroyMenu(menu);
    if (chosen) Do(static_cast<Command>(chosen));
}

// --- Keys.

bool DesignerWindow::TranslateKey(MSG& message) {
    const bool inside = message.hwnd == Handle() || IsChild(Handle(), message.hwnd);
    if (!inside || (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN)) return false;
    const int key = static_cast<int>(message.wParam);
    const int shift = ShiftState();
    const bool onCanvas = message.hwnd == canvas_.Handle();
    constexpr int f6 = keys::f2 + 4;
    if (key == f6 && (shift & ~keys::shiftMask) == 0) {
        FocusNextPane((shift & keys::shiftMask) == 0);
        return true;
    }
    const MenuItem* item = menus_.FindShortcut({key, shift});
    if (item) {
        const auto command = static_cast<Command>(item->id);
        if (IsEditing(command) && !onCanvas) return false;
        // There, F4 opens what is to choose from.
        if (command == Command::properties && IsChild(properties_.Handle(), message.hwnd)) return false;
        Do(command);
        return true;
    }
    return false;
}

void DesignerWindow::FocusNextPane(bool forward) {
    const HWND panes[] = {canvas_.Handle(), properties_.Handle(), toolbox_.Handle()};
    const HWND focus = GetFocus();
    std::size_t at = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        if (focus == panes[i] || IsChild(panes[i], focus)) at = i;
    }
    // The form's controls are in the canvas, but never have the focus.
    SetFocus(panes[(at + (forward ? 1 : 2)) % 3]);
}

bool DesignerWindow::OnKey(int key, int shift) {
    if (busy_) return true;
    switch (key) {
        case keys::left:
        case keys::right:
        case keys::up:
        case keys::down:
            Nudge(key, shift);
            return true;
        case keys::tab: {
            if (shift & ~keys::shiftMask) return false;
            Selection next = selection_;
            next.Cycle(document_->TabOrder(), (shift & keys::shiftMask) == 0);
            Select(next.All());
            return true;
        }
        case keys::escape:
            if (drag_.Under()) {
                CancelDrag();
            } else if (!toolbox_.Armed().empty()) {
                toolbox_.Disarm();
            } else if (tabOrderView_) {
                Do(Command::tabOrder);
            } else if (const ObjectId* primary = selection_.Primary()) {
                // Outwards: the container, then the form.
                const auto at = PositionOf(shapes_, *primary);
                const auto outer = at ? shapes_[*at].container : std::nullopt;
                Select(outer ? std::vector<ObjectId>{shapes_[*outer].id} : std::vector<ObjectId>{});
            }
            return true;
        case keys::enter:
            if (const Text armed = toolbox_.Armed(); !armed.empty()) {
                if (toolbox_.onPlace) toolbox_.onPlace(armed);
            } else if (const ObjectId* primary = selection_.Primary()) {
                ShowPages(*primary);
            }
            return true;
        default:
            return false;
    }
}

void DesignerWindow::Nudge(int key, int shift) {
    if (selection_.Empty() || drag_.Under()) return;
    const bool fine = (shift & keys::controlMask) != 0;
    const bool size = (shift & keys::shiftMask) != 0;
    const Dpi dpi = FormDpi();
    const int across = key == keys::left ? -1 : key == keys::right ? 1 : 0;
    const int down = key == keys::up ? -1 : key == keys::down ? 1 : 0;
    const int dx = across * (fine ? TwipsPerPixel(dpi.x) : gridStep);
    const int dy = down * (fine ? TwipsPerPixel(dpi.y) : gridStep);
    const std::vector<TwipsRect> before = SelectedBounds();
    std::vector<TwipsRect> bounds = before;
    if (size) {
        for (TwipsRect& rect : bounds) rect = Sized(rect, Grip::bottomRight, dx, dy, !fine);
        // The other direction stays, on the grid or off it.
        for (std::size_t i = 0; i < bounds.size(); ++i) {
            if (!across) bounds[i].width = before[i].width;
            if (!down) bounds[i].height = before[i].height;
        }
    } else {
        bounds = Moved(bounds, bounds.size() - 1, dx, dy, !fine);
    }
    Text merge = size ? u"size" : u"move";
    for (const ObjectId& id : selection_.All()) merge += u" " + TitleOf(id);
    const ObjectId last = *selection_.Primary();
    SetSelectedBounds(size ? u"Size" : u"Move", bounds, merge);
    if (const auto at = PositionOf(shapes_, last)) canvas_.Reveal(shapes_[*at].area);
}

}  // namespace qvx::host::designer
