#include "designer/canvas/press.h"

namespace qvx::host::designer {

Press PressAt(const Shapes& shapes, const Selection& selection, Point at, const PressState& state) {
    const auto hit = ShapeAt(shapes, at);
    if (state.ordersTabs) return {hit ? Press::Kind::orderTab : Press::Kind::idle, hit};
    if (state.armed) return {Press::Kind::place, hit, ContainerAt(shapes, at)};
    const bool toggle = state.shift || state.control;
    if (const auto grip = PrimaryGripAt(shapes, selection, at, state.handleSize); grip && !toggle) {
        const auto primary = PositionOf(shapes, *selection.Primary());
        return {Press::Kind::size, primary, shapes[*primary].container, *grip};
    }
    // In a frame, Ctrl begins a rubber band.
    if (!hit || (state.control && shapes[*hit].holdsOthers)) return {Press::Kind::band, hit, hit};
    return {toggle ? Press::Kind::toggle : Press::Kind::move, hit, shapes[*hit].container};
}

std::optional<Grip> PrimaryGripAt(const Shapes& shapes, const Selection& selection, Point at, int handleSize) {
    const auto primary = selection.Primary() ? PositionOf(shapes, *selection.Primary()) : std::nullopt;
    return primary ? GripAt(shapes[*primary].area, at, handleSize) : std::nullopt;
}

}  // namespace qvx::host::designer
