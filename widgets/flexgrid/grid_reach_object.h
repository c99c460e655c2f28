// Access of the members of the grid's automation object to the window and its model.
#pragma once

#include <type_traits>

#include "com/guard.h"
#include "com/members.h"
#include "common/run_time_error.h"
#include "widgets/flexgrid/flexgrid_window.h"

namespace qvx::flexgrid {

class GridReach {
  protected:
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

    template <class Result, class Object, class Value, class... Parameters, class... Given>
    HRESULT Get(Result* result, Value (Object::*member)(Parameters...) const, Given... given) {
        return Give(result, [&] { return (Model().*member)(FromHost<Parameters>(given)...); });
    }
    template <class Result, class Value, class... Parameters, class... Given>
    HRESULT Get(Result* result, Value (FlexGridWindow::*member)(Parameters...), Given... given) {
        return Give(result, [&] {
            // The window's answers depend on its scroll position, and it may have to scroll first.
            const auto held = Shown().Hold();
            return (Shown().*member)(FromHost<Parameters>(given)...);
        });
    }
    template <class Side>
    HRESULT GetCell(long* result, Side side) {
        return Give(result, [&] {
            const auto held = Shown().Hold();
            return side(Shown().CellTwips());
        });
    }
    template <class Object, class... Parameters, class... Given>
    HRESULT Put(void (Object::*member)(Parameters...), Given... given) {
        return Guard([&] {
            const auto held = Shown().Hold();
            if constexpr (std::is_same_v<Object, FlexGridWindow>) {
                (Shown().*member)(FromHost<Parameters>(given)...);
            } else {
                (Model().*member)(FromHost<Parameters>(given)...);
            }
        });
    }

    FlexGridWindow* window_;
};

}  // namespace qvx::flexgrid
