// The library's controls. A control is in the library, registered and creatable exactly when it is in this table.
#include <array>

#include "backup/backup_control.h"
#include "controls/buttons/button_control.h"
#include "controls/buttons/rbutton_control.h"
#include "controls/grid/combogrid_control.h"
#include "controls/textedit/textedit_control.h"
#include "server/control_class.h"

namespace qvx {

std::span<const ControlClass> AllControls() {
    static const std::array controls{
        backup::BackupControl::classInfo,  buttons::ButtonControl::classInfo,    buttons::RButtonControl::classInfo,
        grid::ComboGridControl::classInfo, textedit::TextEditControl::classInfo,
    };
    return controls;
}

}  // namespace qvx
