// A push button as assistive programs see it.
#pragma once

#include <optional>

#include "common/caption.h"
#include "common/text.h"
#include "widgets/button/access_key.h"
#include "widgets/button/push_look.h"

namespace qvx::buttons {

// States as the system numbers them.
namespace accessible_state {
constexpr long unavailable = 0x1;
constexpr long focused = 0x4;
constexpr long focusable = 0x100000;
constexpr long hasPopup = 0x40000000;
}  // namespace accessible_state

constexpr long accessibleButtonRole = 0x2B;

inline Text AccessibleName(const PushLook& look) { return WithoutAccessMark(look.caption); }

inline std::optional<Text> AccessibleShortcut(const PushLook& look) {
    const char16_t key = AccessKey(look.caption);
    return key == u'\0' ? std::nullopt : std::optional(Text{u'A', u'l', u't', u'+', key});
}

// `hasPopup`: the button indicates that it opens something.
constexpr long AccessibleState(bool enabled, bool focused, bool hasPopup) {
    namespace state = accessible_state;
    if (!enabled) return state::unavailable;
    return state::focusable | (focused ? state::focused : 0) | (hasPopup ? state::hasPopup : 0);
}

}  // namespace qvx::buttons
