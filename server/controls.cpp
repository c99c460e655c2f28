// The library's controls. A control is in the library, registered and creatable exactly when it is in this table.
#include "server/control_class.h"

#if __has_include("controls/buttons/button_control.h")
#include "controls/buttons/button_control.h"
#endif
#if __has_include("controls/grid/combogrid_control.h")
#include "controls/grid/combogrid_control.h"
#endif

#include <vector>

namespace qvx {

std::span<const ControlClass> AllControls() {
    static const std::vector<ControlClass> controls {
#if __has_include("controls/buttons/button_control.h")
        buttons::ButtonControl::classInfo,
#endif
#if __has_include("controls/grid/combogrid_control.h")
            grid::ComboGridControl::classInfo,
#endif
    };
    return controls;
}

}  // namespace qvx
