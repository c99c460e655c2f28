// The library's controls. A control is part of the library, registered and creatable exactly if it is in this table;
// the same holds for property pages and their table.
#include <array>

#include "controls/backup/backup_control.h"
#include "controls/borders/flatborder_control.h"
#include "controls/buttons/button_control.h"
#include "controls/buttons/rbutton_control.h"
#include "controls/grid/column_page_object.h"
#include "controls/grid/combogrid_control.h"
#include "controls/menus/cmenus_control.h"
#include "controls/menus/menu_page_object.h"
#include "controls/textedit/textedit_control.h"
#include "kit/control_class.h"

namespace qvx {

std::span<const ControlClass> AllControls() {
    static const std::array controls{
        backup::BackupControl::classInfo,     buttons::ButtonControl::classInfo,     buttons::RButtonControl::classInfo,
        menus::CMenusControl::classInfo,      borders::FlatBorderControl::classInfo, grid::ComboGridControl::classInfo,
        textedit::TextEditControl::classInfo,
    };
    return controls;
}

std::span<const PageClass> AllPages() {
    static const std::array pages{grid::columnPageClass, menus::menuPageClass};
    return pages;
}

}  // namespace qvx
