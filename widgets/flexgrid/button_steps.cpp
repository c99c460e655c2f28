#include "widgets/flexgrid/button_steps.h"

#include <array>

namespace qvx::flexgrid {

std::span<const ButtonStep> StepsOf(short button, ButtonAction action) {
    using enum ButtonStep;
    static constexpr std::array down{takeFocus, notifyDown, press, notifyDblClick};
    static constexpr std::array up{release, notifyUp, notifyClick};
    const bool left = button == leftButton;
    if (action == ButtonAction::up) {
        return left ? std::span(up) : std::span(up).subspan(1, 1);
    }
    const std::size_t steps = !left ? 2 : action == ButtonAction::down ? 3 : 4;
    return std::span(down).first(steps);
}

}  // namespace qvx::flexgrid
