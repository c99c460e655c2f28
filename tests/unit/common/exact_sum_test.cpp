#include "common/exact_sum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace qvx {
namespace {

TEST(ExactSum, RoundsOnceAndToEven) {
    constexpr double huge = 9007199254740992;  // 2^53
    constexpr double tiny = std::numeric_limits<double>::denorm_min();
    constexpr double largest = std::numeric_limits<double>::max();
    const struct {
        std::vector<double> values;
        double sum;
    } cases[] = {
        {{}, 0},
        {{0.1, 0.2, -0.3}, 0x1p-55},
        {{huge, 1}, huge},
        {{huge, 1, tiny}, huge + 2},
        {{huge, 1, -tiny}, huge},
        {{-huge, -1, -tiny}, -huge - 2},
        {{huge, 3}, huge + 4},
        {{1e308, 1, -1e308}, 1},
        {{largest, largest, -largest}, largest},
        {{largest, largest}, std::numeric_limits<double>::infinity()},
        {{-largest, -largest}, -std::numeric_limits<double>::infinity()},
        {{tiny, tiny, tiny}, 3 * tiny},
        {{largest, -tiny}, largest},
    };
    for (const auto& c : cases) {
        ExactSum sum;
        for (const double value : c.values) sum.Add(value);
        EXPECT_EQ(sum.Value(), c.sum) << c.values.size();
        for (const double value : c.values) sum.Subtract(value);
        EXPECT_EQ(sum.Value(), 0);
    }
}

TEST(ExactSum, IsTheSameInAnyOrderAndWithoutWhatWasTakenAway) {
    std::mt19937_64 random(20261126);
    for (int round = 0; round < 200; ++round) {
        std::vector<double> values(random() % 40 + 1);
        for (double& value : values) {
            do value = std::bit_cast<double>(random());
            while (!std::isfinite(value));
            if (round % 2 == 0)
                value = std::ldexp(std::copysign(1, value) * (1 + std::fabs(std::remainder(value, 1))),
                                   static_cast<int>(random() % 80));
        }
        ExactSum sum;
        for (const double value : values) sum.Add(value);
        const double total = sum.Value();
        std::shuffle(values.begin(), values.end(), random);
        ExactSum shuffled;
        for (const double value : values) shuffled.Add(value);
        EXPECT_EQ(shuffled.Value(), total);
        for (std::size_t i = 1; i < values.size(); ++i) sum.Subtract(values[i]);
        EXPECT_EQ(sum.Value(), values.front());
    }
}

}  // namespace
}  // namespace qvx
