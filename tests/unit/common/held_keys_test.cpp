// Keys that are held down while a dialog opens.
#include "common/held_keys.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/keys.h"

namespace qvx {
namespace {

TEST(HeldKeys, OnlyWhatGoesDownHereCounts) {
    using namespace keys;
    enum What { down, repeat, release, leave };
    struct Step {
        What what;
        int key;
    };
    struct {
        const char* name;
        std::vector<Step> steps;
        std::string counts;  // of the presses and repeats: "1" for those that count
    } const cases[] = {
        {"held since before", {{repeat, enter}, {repeat, enter}}, "00"},
        {"pressed anew", {{repeat, enter}, {release, enter}, {down, enter}}, "01"},
        {"held from here on", {{down, space}, {repeat, space}, {repeat, space}}, "111"},
        {"another one", {{repeat, enter}, {down, space}, {repeat, enter}, {down, 'N'}}, "0101"},
        {"released elsewhere", {{down, space}, {release, space}, {repeat, space}}, "10"},
        {"held while another dialog was open", {{down, enter}, {leave, 0}, {repeat, enter}}, "10"},
        {"pressed after it", {{down, enter}, {leave, 0}, {release, enter}, {down, enter}}, "11"},
        {"keys that no keyboard has", {{repeat, -1}, {down, -1}, {repeat, 300}, {down, 300}}, "0101"},
    };
    for (const auto& c : cases) {
        HeldKeys held;
        std::string counts;
        for (const Step& step : c.steps) {
            if (step.what == release) {
                held.Up(step.key);
            } else if (step.what == leave) {
                held.Leave();
            } else {
                counts += held.Down(step.key, step.what == repeat) ? '1' : '0';
            }
        }
        EXPECT_EQ(counts, c.counts) << c.name;
    }
}

}  // namespace
}  // namespace qvx
