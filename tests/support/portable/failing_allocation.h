// Running out of memory, for tests that let every allocation of a call fail in turn. The program's operator new is
// replaced, and its malloc and realloc are wrapped (tests/CMakeLists.txt).
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>

#include "common/run_time_error.h"

namespace qvx::test {

// How many allocations fail: a single one, or all from it on, as when no memory is left at all.
enum class Starvation { once, forGood };

// While it exists, the allocation after `passing` others fails.
class FailingAllocation {
  public:
    FailingAllocation(int passing, Starvation starvation);
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    // Whether an allocation has failed.
    bool Happened() const;
};

// Executes a call whose allocations may fail; true when it has run out of memory, which is the only error it may raise.
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

// Calls check(passing, starvation), with the arguments of a FailingAllocation, for one allocation after the other while
// it returns true: that allocation has failed, and nothing was wrong.
template <class Check>
void ForEachAllocation(Check&& check) {
    for (const Starvation starvation : {Starvation::once, Starvation::forGood}) {
        for (int passing = 0; check(passing, starvation); ++passing) {
        }
    }
}

// Executes `call` on what `make` returns a pointer to, with each of its allocations failing in turn. If it runs out of
// memory, the subject must be as before, as far as `describe` shows, and otherwise as after a call with enough memory.
// The subject must still work then: a second call has its full effect.
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

// Does the same for a call that changes nothing: `make` returns the same result as with enough memory, or runs out of
// it.
template <class Make>
void ExpectAllOrNothing(const std::string& name, Make make) {
    const auto whole = make();
    ExpectAllOrNothing(
        name, [] { return std::make_unique<int>(); }, [&](int&) { EXPECT_TRUE(make() == whole); },
        [](int) { return 0; });
}

}  // namespace qvx::test
