#include "controls/backup/password.h"

namespace qvx::backup {

void SecretText::Overwrite(Text& text) noexcept {
    text.resize(text.capacity());  // within its capacity, so nothing is moved
    // Without volatile, the compiler may omit writes to memory that is about to be freed.
    volatile char16_t* character = text.data();
    for (std::size_t left = text.size(); left > 0; --left) *character++ = u'\0';
    text.clear();
}

bool PasswordAccepted(const std::optional<SecretText>& stored, TextView typed) {
    return !stored || stored->View() == typed;
}

}  // namespace qvx::backup
