#include "soak/scene.h"

#include <array>
#include <utility>

namespace qvx::soak {

Kind KindOf(std::string_view className) {
    constexpr std::array<std::pair<std::string_view, Kind>, 21> kinds{{
        {"QvxFlexGrid", Kind::grid},
        {"QvxDesignCanvas", Kind::canvas},
        {"QvxDesignOverlay", Kind::canvas},
        {"QvxDesignToolbox", Kind::palette},
        {"QvxPropertyList", Kind::list},
        {"QvxPropertyRows", Kind::list},
        {"QvxPropertyDropDown", Kind::list},
        {"QvxButton", Kind::button},
        {"QvxControl", Kind::button},
        {"Edit", Kind::edit},
        {"ComboBox", Kind::list},
        {"ComboLBox", Kind::list},
        {"ListBox", Kind::list},
        {"SysListView32", Kind::list},
        {"SysTreeView32", Kind::list},
        {"Button", Kind::button},
        {"ToolbarWindow32", Kind::button},
        {"#32768", Kind::popup},
        {"#32770", Kind::dialog},
        {"QvxMessageBox", Kind::dialog},
        {"QvxDesignEditor", Kind::dialog},
    }};
    for (const auto& [name, kind] : kinds) {
        if (name == className) return kind;
    }
    return Kind::form;
}

}  // namespace qvx::soak
