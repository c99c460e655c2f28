#include "dialogs/message_box_icons.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <initializer_list>
#include <numbers>

namespace qvx::dialogs {

namespace {

// A point on the field of 16 by 16 units on which shapes are drawn; a unit is one pixel of the smallest picture.
struct Spot {
    double x;
    double y;
};

struct Paint {
    double red, green, blue;  // 0 to 255
};

constexpr Paint white{255, 255, 255};
constexpr Paint ink{48, 40, 20};

Paint Mix(const Paint& a, const Paint& b, double share) {
    return {a.red + (b.red - a.red) * share, a.green + (b.green - a.green) * share, a.blue + (b.blue - a.blue) * share};
}

// These functions return signed distances, which are negative inside the shape.
double Circle(Spot p, Spot center, double radius) { return std::hypot(p.x - center.x, p.y - center.y) - radius; }

double Box(Spot p, Spot low, Spot high, double radius) {
    const double dx = std::abs(p.x - (low.x + high.x) / 2) - (high.x - low.x) / 2 + radius;
    const double dy = std::abs(p.y - (low.y + high.y) / 2) - (high.y - low.y) / 2 + radius;
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) - radius;
}

double Segment(Spot p, Spot a, Spot b) {
    const double length = (b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y);
    const double along = ((p.x - a.x) * (b.x - a.x) + (p.y - a.y) * (b.y - a.y)) / length;
    const double t = std::clamp(along, 0.0, 1.0);
    return std::hypot(p.x - a.x - t * (b.x - a.x), p.y - a.y - t * (b.y - a.y));
}

// A line with round ends through the points.
double Stroke(Spot p, std::initializer_list<Spot> points, double thickness) {
    double nearest = 1e9;
    for (const Spot* a = points.begin(); a + 1 < points.end(); ++a) {
        nearest = std::min(nearest, Segment(p, *a, *(a + 1)));
    }
    return nearest - thickness / 2;
}

// A convex polygon with its corners in clockwise order; the field's y axis points downwards.
template <std::size_t N>
double Polygon(Spot p, const std::array<Spot, N>& corners) {
    double outside = -1e9;
    for (std::size_t i = 0; i < N; ++i) {
        const Spot& a = corners[i];
        const Spot& b = corners[(i + 1) % N];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        outside = std::max(outside, ((p.x - a.x) * (b.y - a.y) - (p.y - a.y) * (b.x - a.x)) / length);
    }
    return outside;
}

// The colour at one point after the shapes drawn so far.
class Sample {
  public:
    explicit Sample(Spot at) : at_(at) {}
    Spot At() const { return at_; }
    void Fill(double distance, const Paint& paint) {
        if (distance < 0) {
            paint_ = paint;
            covered_ = true;
        }
    }
    // Draws a body that is lighter at the top of the field and has a darker rim, one unit wide.
    void Body(double distance, const Paint& top, const Paint& bottom, const Paint& rim) {
        Fill(distance, rim);
        Fill(distance + 0.9, Mix(top, bottom, at_.y / 16));
    }
    bool Covered() const { return covered_; }
    const Paint& Color() const { return paint_; }

  private:
    Spot at_;
    Paint paint_{};
    bool covered_ = false;
};

void Exclamation(Sample& s, Spot top, double bottom, double dotCenter, const Paint& paint) {
    s.Fill(Box(s.At(), {top.x - 1, top.y}, {top.x + 1, bottom}, 0.6), paint);
    s.Fill(Box(s.At(), {top.x - 1, dotCenter - 1}, {top.x + 1, dotCenter + 1}, 0.7), paint);
}

void Disc(Sample& s, const Paint& top, const Paint& bottom, const Paint& rim) {
    s.Body(Circle(s.At(), {8, 8}, 7.8), top, bottom, rim);
}

void Information(Sample& s) {
    Disc(s, {72, 148, 232}, {28, 92, 190}, {18, 62, 138});
    s.Fill(Box(s.At(), {7, 3}, {9, 5}, 0.7), white);
    s.Fill(Box(s.At(), {7, 6}, {9, 12.6}, 0.5), white);
}

void Warning(Sample& s) {
    const Spot p = s.At();
    // The triangle is enlarged by the radius of its rounding.
    const double triangle = Polygon(p, std::array<Spot, 3>{{{8, 2.6}, {14.6, 14.2}, {1.4, 14.2}}}) - 1;
    s.Body(std::max(triangle, 0.7 - p.y), {255, 214, 74}, {247, 172, 12}, {150, 98, 0});
    Exclamation(s, {8, 5.2}, 10.4, 12.4, ink);
}

void Error(Sample& s) {
    Disc(s, {236, 96, 84}, {196, 36, 32}, {132, 16, 16});
    s.Fill(Stroke(s.At(), {{5.2, 5.2}, {10.8, 10.8}}, 2.1), white);
    s.Fill(Stroke(s.At(), {{10.8, 5.2}, {5.2, 10.8}}, 2.1), white);
}

void Ok(Sample& s) {
    Disc(s, {96, 190, 88}, {36, 140, 48}, {18, 96, 32});
    s.Fill(Stroke(s.At(), {{4.4, 8.4}, {7, 11}, {11.6, 5.4}}, 2.1), white);
}

void Mail(Sample& s) {
    const Spot p = s.At();
    s.Body(Box(p, {0.3, 3}, {15.7, 13.6}, 1), {255, 255, 255}, {222, 232, 246}, {44, 84, 150});
    const double inside = Box(p, {0.8, 3.4}, {15.2, 13.2}, 0.6);
    const Paint fold{44, 84, 150};
    s.Fill(std::max(Stroke(p, {{1, 3.8}, {8, 9.4}, {15, 3.8}}, 1.1), inside), fold);
    s.Fill(std::max(Stroke(p, {{1.2, 12.8}, {5.6, 8.6}}, 0.8), inside), {140, 166, 206});
    s.Fill(std::max(Stroke(p, {{14.8, 12.8}, {10.4, 8.6}}, 0.8), inside), {140, 166, 206});
}

void Notice(Sample& s) {
    Disc(s, {255, 178, 84}, {232, 118, 16}, {160, 74, 4});
    Exclamation(s, {8, 3.2}, 9.4, 11.9, white);
}

void Question(Sample& s) {
    Disc(s, {120, 120, 216}, {72, 62, 172}, {46, 38, 122});
    const Spot p = s.At();
    // The hook of the question mark: three quarters of a circle, then down to the stem.
    constexpr Spot center{8, 5.9};
    constexpr double radius = 2.3;
    const double angle = std::atan2(p.y - center.y, p.x - center.x);
    const bool onArc = angle < 0.55 * std::numbers::pi / 2 || angle > std::numbers::pi * 0.98;
    s.Fill(onArc ? std::abs(Circle(p, center, radius)) - 0.95 : 1.0, white);
    s.Fill(Stroke(p, {{9.6, 7.5}, {8, 9.2}}, 1.8), white);
    s.Fill(Box(p, {7.05, 8.6}, {8.95, 10.2}, 0.3), white);
    s.Fill(Box(p, {7, 11}, {9, 13}, 0.7), white);
}

void Failure(Sample& s) {
    constexpr double cut = 4.5;
    constexpr double low = 0.3;
    constexpr double high = 15.7;
    static constexpr std::array<Spot, 8> octagon{{{low + cut, low},
                                                  {high - cut, low},
                                                  {high, low + cut},
                                                  {high, high - cut},
                                                  {high - cut, high},
                                                  {low + cut, high},
                                                  {low, high - cut},
                                                  {low, low + cut}}};
    s.Body(Polygon(s.At(), octagon), {232, 84, 74}, {188, 28, 28}, {124, 12, 14});
    Exclamation(s, {8, 3.2}, 9.4, 11.9, white);
}

void Lock(Sample& s) {
    const Spot p = s.At();
    const double bow = std::max(std::abs(Circle(p, {8, 5}, 3.2)) - 1, p.y - 5);
    const double legs = std::max(std::abs(std::abs(p.x - 8) - 3.2) - 1, std::max(5 - p.y, p.y - 8));
    s.Fill(std::min(bow, legs), {112, 116, 124});
    s.Body(Box(p, {2, 7}, {14, 15.7}, 1.2), {250, 206, 92}, {222, 158, 28}, {140, 92, 8});
    s.Fill(Circle(p, {8, 10.4}, 1.3), ink);
    s.Fill(Box(p, {7.4, 10.4}, {8.6, 13.4}, 0.3), ink);
}

using Drawing = void (*)(Sample&);
constexpr std::array<Drawing, 9> drawings{Information, Warning, Error, Ok, Mail, Notice, Question, Failure, Lock};

// The number of samples per pixel in each direction.
constexpr int fineness = 8;

std::uint32_t Packed(double alpha, double red, double green, double blue) {
    const auto byte = [](double value) { return static_cast<std::uint32_t>(std::clamp(std::lround(value), 0L, 255L)); };
    return byte(alpha) << 24 | byte(red) << 16 | byte(green) << 8 | byte(blue);
}

std::uint32_t PixelAt(Drawing draw, int x, int y, double unitsPerPixel) {
    int covered = 0;
    Paint sum{};
    for (int i = 0; i < fineness * fineness; ++i) {
        const int column = i % fineness;
        const int row = i / fineness;
        Sample sample({(x + (column + 0.5) / fineness) * unitsPerPixel, (y + (row + 0.5) / fineness) * unitsPerPixel});
        draw(sample);
        if (sample.Covered()) {
            ++covered;
            sum.red += sample.Color().red;
            sum.green += sample.Color().green;
            sum.blue += sample.Color().blue;
        }
    }
    constexpr double all = fineness * fineness;
    return Packed(255 * covered / all, sum.red / all, sum.green / all, sum.blue / all);
}

}  // namespace

IconImage DrawIcon(int number, int size) {
    assert(number >= 1 && number <= static_cast<int>(drawings.size()));
    const Drawing draw = drawings[static_cast<std::size_t>(number - 1)];
    IconImage image{size, {}};
    image.pixels.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            image.pixels.push_back(PixelAt(draw, x, y, 16.0 / size));
        }
    }
    return image;
}

IconImage OnBackground(IconImage image, OleColor background) {
    const auto blended = [&](std::uint32_t pixel, unsigned pixelShift, unsigned backShift) {
        const std::uint32_t rest = 255 - (pixel >> 24);
        const std::uint32_t back = background >> backShift & 0xFF;
        const std::uint32_t value = (pixel >> pixelShift & 0xFF) + (back * rest + 127) / 255;
        return std::min(value, 255U) << pixelShift;
    };
    for (std::uint32_t& pixel : image.pixels) {
        pixel = 0xFF000000U | blended(pixel, 16, 0) | blended(pixel, 8, 8) | blended(pixel, 0, 16);
    }
    return image;
}

}  // namespace qvx::dialogs
