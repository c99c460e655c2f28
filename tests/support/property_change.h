// Properties as the type library lists them, read and given other values.
#pragma once

#include <olectl.h>

#include <optional>
#include <vector>

#include "com/font_object.h"
#include "tests/support/dual_interfaces.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {

// What two values of a property are compared by; nothing for what cannot be.
inline std::optional<Text> Shown(const Variant& value) {
    if (const auto font = value.ToObject<IFont>()) return ReadFontObject(font.get()).face;
    if (value.Type() == VT_DISPATCH || value.Type() == VT_UNKNOWN) return std::nullopt;
    return value.ToText();
}

inline Variant ReadValue(IDispatch* object, const Function& member, const std::vector<VARIANT>& index) {
    return Invoke(object, member.WideName().c_str(), DISPATCH_PROPERTYGET, index).value;
}

inline std::optional<Text> Read(IDispatch* object, const Function& member, const std::vector<VARIANT>& index) {
    const CallResult read = Invoke(object, member.WideName().c_str(), DISPATCH_PROPERTYGET, index);
    return SUCCEEDED(read.result) ? Shown(read.value) : std::nullopt;
}

// Values of which every property takes one, and for most of them it is not the one that they have.
inline std::vector<Variant> Candidates() {
    FontSpec font;
    font.face = u"Tahoma";
    std::vector<Variant> candidates{Variant(false), Variant(true), Variant(u";A;"), Variant(1), Variant(2),
                                    Variant(0),     Variant(3),    Variant(5),      Variant(-1)};
    candidates.emplace_back(static_cast<IDispatch*>(MakeFontObject(font).get()));
    return candidates;
}

// Gives the property another value than it has; nothing when there is none that it takes and gives back.
inline std::optional<Text> Change(IDispatch* object, const Function& member, const std::vector<VARIANT>& index) {
    const auto before = Read(object, member, index);
    for (const Variant& candidate : Candidates()) {
        std::vector<VARIANT> arguments = index;
        arguments.push_back(candidate.get());
        if (FAILED(Invoke(object, member.WideName().c_str(), DISPATCH_PROPERTYPUT, arguments).result)) continue;
        const auto now = Read(object, member, index);
        const auto given = candidate.To(ReadValue(object, member, index).Type());
        if (now && now != before && given && Shown(*given) == now) return now;
    }
    return std::nullopt;
}

// Calls `act` for every property that can be written, with the index to write it at: of rows and columns those in the
// middle of a new grid.
template <typename Act>
void ForEachProperty(IDispatch* object, Act act) {
    for (const Function& member : FunctionsOf(object)) {
        if (member.kind == INVOKE_PROPERTYPUT)
            act(member, std::vector<VARIANT>(member.Arguments() - 1, Variant(1).get()));
    }
}

}  // namespace qvx::test
