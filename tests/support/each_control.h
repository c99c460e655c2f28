// The controls, for tests that apply to each of them.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "Qvx.h"

namespace qvx::test {

struct NamedControl {
    const char* name;
    const CLSID* id;
};

inline constexpr NamedControl namedControls[] = {
    {"Button", &CLSID_Button},     {"RButton", &CLSID_RButton}, {"ComboGrid", &CLSID_ComboGrid},
    {"TextEdit", &CLSID_TextEdit}, {"Backup", &CLSID_Backup},   {"FlatBorder", &CLSID_FlatBorder},
    {"CMenus", &CLSID_CMenus},
};

inline std::vector<const CLSID*> EachControlId() {
    std::vector<const CLSID*> ids;
    for (const NamedControl& control : namedControls) ids.push_back(control.id);
    return ids;
}

inline bool IsInvisible(const CLSID* id) {
    return *id == CLSID_Backup || *id == CLSID_FlatBorder || *id == CLSID_CMenus;
}

// Returns the controls that are visible at run time, get their size from the host and take the focus.
inline std::vector<const CLSID*> EachVisibleControlId() {
    std::vector<const CLSID*> ids = EachControlId();
    std::erase_if(ids, IsInvisible);
    return ids;
}

// Returns the controls that have a fixed size and are visible only in designers.
inline std::vector<const CLSID*> EachInvisibleControlId() {
    std::vector<const CLSID*> ids = EachControlId();
    std::erase_if(ids, [](const CLSID* id) { return !IsInvisible(id); });
    return ids;
}

// Returns the name of a control for parameterised tests.
inline std::string ControlName(const ::testing::TestParamInfo<const CLSID*>& parameter) {
    for (const NamedControl& control : namedControls) {
        if (control.id == parameter.param) return control.name;
    }
    return "Unknown";
}

}  // namespace qvx::test
