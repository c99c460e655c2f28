// The administrator's password, out of the database that it guards.
#pragma once

#include <optional>

#include "common/text.h"

namespace qvx::backup {

// The field Password of the row of the table Users whose UCode is 1, as text; nothing for Null. Throws RunTimeError,
// with the data objects' number and a description that names nothing of the database: it cannot be opened, it has no
// such table or row, or the field holds what is no text (13). 429 on a system without data objects.
std::optional<Text> AdministratorPassword(TextView connection);

}  // namespace qvx::backup
