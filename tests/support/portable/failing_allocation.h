// What happens when memory runs out: for tests that let every allocation of a call fail in turn. The program's operator
// new is replaced, and its malloc and realloc are wrapped (tests/CMakeLists.txt).
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>

#include "common/run_time_error.h"

namespace qvx::test {

// How many allocations fail: the one, or all from it on, as when there is no memory left at all.
enum class Starvation { once, forGood };

// While it lives the allocation behind `passing` others fails.
class FailingAllocation {
  public:
    FailingAllocation(int passing, Starvation starvation);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    // Whether it has come to that.
    bool Happened() const;
};

// Runs a call whose allocations may fail; true when it has run out of memory, which is the only error it may raise.
template <class Call>
bool RunsOutOfMemory(Call&& call) {
    try {
        call();
    } catch (const std::bad_alloc&) {
        return true;
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.Number(), errors::outOfMemory);
        return true;
    }
    return false;
}

// check(passing, starvation) for each allocation of what it runs with a FailingAllocation of these, as long as it
// returns true: that has happened, and nothing was wrong.
template <class Check>
void ForEachAllocation(Check&& check) {
    for (const Starvation starvation : {Starvation::once, Starvation::forGood}) {
        for (int passing = 0; check(passing, starvation); ++passing) {
        }
    }
}

// Runs `call` on what `make` returns a pointer to, with each of its allocations failing in turn: where it runs out of
// memory, the subject is as it was before, as far as `describe` tells, and else as after a call with memory enough.
// Then it still works: the call, made once more, does all it is to do.
template <class Make, class Call, class Describe>
void ExpectAllOrNothing(const std::string& name, Make make, Call call, Describe describe) {
    const auto unharmed = make();
    call(*unharmed);
    const auto after = describe(*unharmed);
    ForEachAllocation([&](int passing, Starvation starvation) {
        SCOPED_TRACE(name + ", allocation " + std::to_string(passing) +
                     (starvation == Starvation::once ? " alone" : " and all behind it"));
        const auto subject = make();
        const auto before = describe(*subject);
        bool starved = false;
        bool happened = false;
        {
            const FailingAllocation failing(passing, starvation);
            starved = RunsOutOfMemory([&] { call(*subject); });
            happened = failing.Happened();
        }
        EXPECT_TRUE(happened || !starved);
        const auto left = describe(*subject);
        EXPECT_EQ(left, starved ? before : after);
        if (starved && left == before) {
            call(*subject);
            EXPECT_EQ(describe(*subject), after) << "made once more";
        }
        return happened && left == (starved ? before : after);
    });
}

// The same for what changes nothing: `make` returns what it returns with memory enough, or runs out of it.
template <class Make>
void ExpectAllOrNothing(const std::string& name, Make make) {
    const auto whole = make();
    ExpectAllOrNothing(
        name, [] { return std::make_unique<int>(); }, [&](int&) { EXPECT_TRUE(make() == whole); },
        [](int) { return 0; });
}

}  // namespace qvx::test
