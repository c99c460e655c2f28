// Access of the members of the grid's automation object to the window and its model.
#pragma once

#include <type_traits>
#include <utility>

#include "com/guard.h"
#include "com/members.h"
#include "common/run_time_error.h"
#include "widgets/flexgrid/flexgrid_window.h"

namespace qvx::flexgrid {

class GridReach : protected MemberAccess<GridReach> {
  protected:
    friend MemberAccess;

    explicit GridReach(FlexGridWindow& window) : window_(&window) {}
    ~GridReach() = default;

    // Throws run-time error 364 when the window has been destroyed.
    FlexGridWindow& Shown() const {
        if (!window_) {
            throw RunTimeError(errors::objectUnloaded, u"Object was unloaded");
        }
        return *window_;
    }
    Grid& Model() const { return Shown().Model(); }

    template <class Base>
    requires std::is_base_of_v<Base, Grid> Grid& PartOf(std::type_identity<Base>) const { return Model(); }
    FlexGridWindow& PartOf(std::type_identity<FlexGridWindow>) const { return Shown(); }
    template <class Apply>
    HRESULT Put(TextView, Apply apply) {
        return Guard([&] {
            const auto held = Shown().Hold();
            apply();
        });
    }

    using MemberAccess::GetMember;
    template <class Result, class Value, class... Parameters, class... Given>
    HRESULT GetMember(Result* result, Value (FlexGridWindow::*getter)(Parameters...), Given... given) {
        return Give(result, [&] {
            // The window's answers depend on its scroll position, and it may have to scroll first.
            const auto held = Shown().Hold();
            return (Shown().*getter)(FromHost<Parameters>(given)...);
        });
    }
    template <class Side>
    HRESULT GetCell(long* result, Side side) {
        return Give(result, [&] {
            const auto held = Shown().Hold();
            return side(Shown().CellTwips());
        });
    }
    FlexGridWindow* window_;
};

}  // namespace qvx::flexgrid
