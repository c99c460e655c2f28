// The administrator's password: the stored text, the typed text, and their comparison.
#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "common/text.h"

namespace qvx::backup {

// A text that must not remain in memory: it is overwritten before it is freed.
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

    // Sets every character to 0, up to the capacity of the text.
    static void Overwrite(Text& text) noexcept;

  private:
    Text text_;
};

// Reads the stored password, anew for every attempt. Returns nullopt for Null.
using PasswordSource = std::function<std::optional<Text>()>;

// Whether the typed password is accepted. The comparison is case-sensitive. Null is neither equal to a text nor
// different from it, and only what is different is refused.
bool PasswordAccepted(const std::optional<SecretText>& stored, TextView typed);

}  // namespace qvx::backup
