// The listeners of a grid, which may come and go while they are being notified.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "widgets/flexgrid/grid_listener.h"

namespace qvx::flexgrid {

class ListenerList {
  public:
    // Not owned; notified in the order in which they were added.
    void Add(GridListener* listener) { listeners_.push_back(listener); }
    void Remove(GridListener* listener) {
        const auto found = std::find(listeners_.begin(), listeners_.end(), listener);
        if (found == listeners_.end()) {
            return;
        }
        if (notifying_ > 0) {
            *found = nullptr;  // a loop over the list is in progress
        } else {
            listeners_.erase(found);
        }
    }

    // Calls each listener, including those that are added meanwhile. What a listener throws ends the round.
    template <class Call>
    void Notify(Call call) {
        if (listeners_.empty()) {
            return;
        }
        const Round round(*this);
        for (std::size_t i = 0; i < listeners_.size(); ++i) {
            if (listeners_[i]) {
                call(*listeners_[i]);
            }
        }
    }
    // Notifies of a change that has been made: a listener that fails, for lack of memory, does not undo it, and the
    // others are still notified.
    template <class Call>
    void NotifyAfterwards(Call call) noexcept {
        Notify([&](GridListener& listener) {
            try {
                call(listener);
            } catch (...) {
                // The change is made.
            }
        });
    }

  private:
    class Round {
      public:
        explicit Round(ListenerList& list) : list_(list) { ++list_.notifying_; }
        ~Round() {
            if (--list_.notifying_ == 0) {
                std::erase(list_.listeners_, nullptr);
            }
        }
        Round(const Round&) = delete;
        Round& operator=(const Round&) = delete;

      private:
        ListenerList& list_;
    };

    std::vector<GridListener*> listeners_;  // removed ones are nullptr while notifying_ > 0
    int notifying_ = 0;
};

}  // namespace qvx::flexgrid
