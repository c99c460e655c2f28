// Where a control stands in its container, in twips.
#pragma once

namespace qvx::host {

struct TwipsRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    friend constexpr bool operator==(const TwipsRect&, const TwipsRect&) = default;
};

// What a control whose block says nothing is wide and high.
constexpr int defaultControlSize = 480;

}  // namespace qvx::host
