#include "backup/control_picture.h"

namespace qvx::backup {

namespace {

// The picture is drawn on a field of so many steps each way.
constexpr int steps = 18;

constexpr OleColor body = Rgb(0, 0, 128);
constexpr OleColor paper = Rgb(255, 255, 255);
constexpr OleColor metal = Rgb(192, 192, 192);

struct Part {
    Rect place;
    OleColor color;
};

constexpr Part disk[] = {
    {{3, 3, 15, 15}, body},    // the case
    {{5, 8, 13, 15}, paper},   // the label
    {{6, 10, 12, 11}, metal},  // and what is written on it
    {{6, 12, 12, 13}, metal}, {{6, 3, 12, 7}, metal}, {{10, 4, 11, 6}, body},
};

}  // namespace

void PaintControlPicture(Surface& surface, const Rect& area) {
    surface.FillRect(area, colors::buttonFace);
    surface.DrawEdge(area, edge::raised, edge::allSides);
    const auto x = [&](int step) { return area.left + ScaleRounded(step, area.Width(), steps); };
    const auto y = [&](int step) { return area.top + ScaleRounded(step, area.Height(), steps); };
    for (const Part& part : disk) {
        surface.FillRect({x(part.place.left), y(part.place.top), x(part.place.right), y(part.place.bottom)},
                         part.color);
    }
}

}  // namespace qvx::backup
