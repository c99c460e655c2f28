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

// A control that a walk over the blocks has come to.
struct Visit {
    const Block* block;
    std::optional<std::size_t> container;  // among the ones before
};

// All that stand in a block, each container before what stands in it; menus are left out.
std::vector<Visit> Walk(const Block& form);

// What the form gives each control as its TabIndex.
std::vector<int> TabIndexes(const std::vector<Visit>& visits);
// The one behind all of them.
int NextTabIndex(const std::vector<Visit>& visits);

}  // namespace qvx::host::designer
