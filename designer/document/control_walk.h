// The controls among the blocks of a form, in the order of the file.
#pragma once

#include <optional>
#include <vector>

#include "designer/document/selection.h"
#include "host/form_file.h"

namespace qvx::host::designer {

// Whether controls of that class may hold others.
bool HoldsOthers(TextView className);
bool IsMenu(const Block& block);
ObjectId IdOf(const Block& block);

// A control that the walk over the blocks visits.
struct Visit {
    const Block* block;
    std::optional<std::size_t> container;  // the position of an earlier visit
};

// All controls in a block, each container before its contents. Menus are left out.
std::vector<Visit> Walk(const Block& form);

// A control in a block or in what it contains; null when there is none.
const Block* FindControl(const Block& form, const ObjectId& id);

// The TabIndex of each control.
std::vector<int> TabIndexes(const std::vector<Visit>& visits);
// The TabIndex of a control that comes after all of them.
int NextTabIndex(const std::vector<Visit>& visits);

}  // namespace qvx::host::designer
