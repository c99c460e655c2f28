// The administrator's password, read from the database that it protects.
#pragma once

#include <optional>

#include "common/text.h"

namespace qvx::backup {

// Returns the field Password of the row of the table Users whose UCode is 1, as text; nullopt for Null. Throws
// RunTimeError, with the data objects' number and a description that contains no details of the database, when it
// cannot be opened or has no such table or row, or when the field does not contain text (13). Error 429 on a system
// without data objects.
std::optional<Text> AdministratorPassword(TextView connection);

}  // namespace qvx::backup
