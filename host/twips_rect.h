// The position of a control in its container, in twips.
#pragma once

namespace qvx::host {

struct TwipsRect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    friend constexpr bool operator==(const TwipsRect&, const TwipsRect&) = default;
};

// Width and height of a control whose block gives none.
constexpr int defaultControlSize = 480;

}  // namespace qvx::host
