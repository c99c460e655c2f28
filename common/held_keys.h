// The keys that count in a dialog that opens, or becomes active again, while the user holds a key down.
#pragma once

#include <bitset>
#include <cstddef>

namespace qvx {

// A key that went down in another window repeats for as long as it is held, and none of that is meant for the dialog:
// Enter would answer a question that nobody has read yet. Keys are virtual keys.
class HeldKeys {
  public:
    // A key goes down, or the keyboard repeats it. Returns whether it counts.
    bool Down(int key, bool repeated) {
        const auto index = Index(key);
        if (!repeated) pressed_.set(index);
        return pressed_.test(index);
    }
    void Up(int key) { pressed_.reset(Index(key)); }
    // Another dialog has opened over this one, and receives the keys from now on.
    void Leave() { pressed_.reset(); }

  private:
    static constexpr std::size_t count = 256;
    static std::size_t Index(int key) { return static_cast<std::size_t>(key) % count; }

    std::bitset<count> pressed_;  // keys that went down in this dialog
};

}  // namespace qvx
