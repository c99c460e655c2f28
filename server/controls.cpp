// The library's controls. A control is in the library, registered and creatable exactly when it is in this table;
// so are property pages, in theirs.
#include <array>

#include "backup/backup_control.h"
#include "controls/buttons/button_control.h"
#include "controls/buttons/rbutton_control.h"
#include "controls/decor/cmenus_control.h"
#include "controls/decor/flatborder_control.h"
#include "controls/decor/menu_page_object.h"
#include "controls/grid/combogrid_control.h"
#include "controls/textedit/textedit_control.h"
#include "server/control_class.h"

namespace qvx {

std::span<const ControlClass> AllControls() {
    static const std::array controls{
        backup::BackupControl::classInfo,     buttons::ButtonControl::classInfo,   buttons::RButtonControl::classInfo,
        decor::CMenusControl::classInfo,      decor::FlatBorderControl::classInfo, grid::ComboGridControl::classInfo,
        textedit::TextEditControl::classInfo,
    };
    return controls;
}

std::span<const PageClass> AllPages() {
    static const std::array pages{decor::menuPageClass};
    return pages;
}

}  // namespace qvx
