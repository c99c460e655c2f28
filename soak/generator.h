// Chooses a user's next action at random, weighted by what the target window understands.
#pragma once

#include <cstdint>
#include <deque>
#include <random>
#include <string>

#include "soak/action.h"
#include "soak/scene.h"

namespace qvx::soak {

class Generator {
  public:
    // The same seed and the same scenes give the same actions on every machine.
    explicit Generator(std::uint64_t seed) : random_(seed) {}

    Action Next(const Scene& scene);

  private:
    Action Choose(const Scene& scene);
    int Below(int limit);
    bool Chance(int percent) { return Below(100) < percent; }
    template <typename List>
    const auto& OneOf(const List& list) {
        return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
    }

    Action Answer(const Scene& scene);
    Action AtMenu(const Scene& scene);
    Action Keys(const Scene& scene);
    Action Mouse(const Scene& scene);
    Action Window(const Scene& scene);
    // Starts an activity that takes several steps, as users perform it.
    void Plan(const Scene& scene);
    std::string Entry();
    Point PlaceIn(const Part& part);

    std::mt19937_64 random_;
    std::deque<Action> planned_;
};

}  // namespace qvx::soak
