// The administrator's password: what is stored, what is typed, and whether the one is the other.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "common/text.h"

namespace qvx::backup {

// A text that nobody is to find in memory afterwards: overwritten before it is let go.
class SecretText {
  public:
    SecretText() = default;
    explicit SecretText(Text&& text) : text_(std::move(text)) { Overwrite(text); }
    SecretText(SecretText&& other) noexcept : text_(std::move(other.text_)) { Overwrite(other.text_); }
    SecretText& operator=(SecretText&&) = delete;
    SecretText(const SecretText&) = delete;
    SecretText& operator=(const SecretText&) = delete;
    ~SecretText() { Overwrite(text_); }

    TextView View() const { return text_; }

    // Every character becomes 0, up to what the text's memory holds.
    static void Overwrite(Text& text) noexcept;

  private:
    Text text_;
};

// Where the stored password is read, anew for every try. Nothing for Null.
using PasswordSource = std::function<std::optional<Text>()>;

// Whether what was typed opens the way. Letter case counts. Null is neither equal to a text nor different from it, and
// only what is different is refused.
bool PasswordAccepted(const std::optional<SecretText>& stored, TextView typed);

}  // namespace qvx::backup
