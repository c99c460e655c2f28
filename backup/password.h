// The administrator's password: who may restore over a database.
#pragma once

#include <optional>

#include "common/text.h"

namespace qvx::backup {

// Whether what was typed lets its user in. Upper and lower case count. A stored Null compares as neither equal nor
// different, and only a difference keeps anybody out.
inline bool AcceptsPassword(const std::optional<Text>& stored, TextView typed) { return !stored || *stored == typed; }

// Leaves nothing of a password in the memory it was in.
inline void Wipe(Text& password) {
    volatile char16_t* characters = password.data();
    for (std::size_t i = 0; i < password.size(); ++i) characters[i] = 0;
    password.clear();
}

}  // namespace qvx::backup
