#include "controls/grid/find_bar_layout.h"

#include <algorithm>

#include "common/number_text.h"
#include "dialogs/messages.h"

namespace qvx::grid {
namespace {

namespace texts = dialogs::messages::find_bar;

// Puts parts one after the other, in lines.
class BarFlow {
  public:
    BarFlow(BarLayout& layout, int left, int right, int gap, int height)
        : layout_(layout), left_(left), right_(right), gap_(gap), height_(height), x_(left), y_(gap) {}

    int Room() const { return right_ - x_; }
    void NewLine() {
        if (x_ == left_) return;
        x_ = left_;
        y_ += height_ + gap_;
    }
    void Add(BarPart part, int width) {
        if (width > Room()) NewLine();
        width = std::min(width, std::max(Room(), 0));
        layout_.places[part] = {x_, y_, x_ + width, y_ + height_};
        x_ += width + gap_;
    }
    int Bottom() const { return y_ + height_ + gap_; }

  private:
    BarLayout& layout_;
    int left_;
    int right_;
    int gap_;
    int height_;
    int x_;
    int y_;
};

}  // namespace

[[gnu::cold]] void AppendNumber(Text& text, std::int64_t number) {
    Text digits = IntegerToText(number);
    for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, 1, u',');
    text.append(digits);
}

bool IsForReplacing(BarPart part) {
    return part == BarPart::WithLabel || part == BarPart::With || part == BarPart::Replace ||
           part == BarPart::ReplaceAll;
}

[[gnu::cold]] BarLayout LayOutBar(const BarMeasures& m, int width) {
    BarLayout layout;
    const int gap = Scaled(4, m.dpi.x);
    const int height = m.lineHeight + Scaled(8, m.dpi.y);
    const int square = height;
    const int around = Scaled(8, m.dpi.x);  // a button's caption
    const int close = std::max(width - gap - square, gap);
    layout.places[BarPart::Close] = {close, gap, close + square, gap + height};

    // Both fields begin at the same place and are equally wide; that of the text shrinks down to a limit for the sake
    // of the parts that belong to it.
    int label = m.textWidths[BarPart::TextLabel];
    if (m.replaces) label = std::max(label, m.textWidths[BarPart::WithLabel]);
    const int count = m.textWidths[BarPart::Count];
    const int beside = label + gap + 2 * (gap + square);
    const int room = close - gap - gap - beside;
    const int least = std::min(Scaled(60, m.dpi.x), std::max(room, 0));
    const int field = std::clamp(room - gap - count, least, std::max(least, Scaled(180, m.dpi.x)));

    BarFlow flow(layout, gap, close - gap, gap, height);
    flow.Add(BarPart::TextLabel, label);
    flow.Add(BarPart::Text, field);
    flow.Add(BarPart::Previous, square);
    flow.Add(BarPart::Next, square);
    flow.Add(BarPart::Count, count);
    constexpr BarPart choices[] = {BarPart::MatchCase, BarPart::WholeCell, BarPart::InColumn};
    int together = -gap;
    for (const BarPart part : choices) together += m.checkWidth + 2 * gap + m.textWidths[part] + gap;
    if (together > flow.Room()) flow.NewLine();
    for (const BarPart part : choices) flow.Add(part, m.checkWidth + 2 * gap + m.textWidths[part]);
    if (m.replaces) {
        flow.NewLine();
        flow.Add(BarPart::WithLabel, label);
        flow.Add(BarPart::With, field);
        for (const BarPart part : {BarPart::Replace, BarPart::ReplaceAll})
            flow.Add(part, m.textWidths[part] + 2 * around);
    }
    layout.height = flow.Bottom();
    return layout;
}

[[gnu::cold]] Text HitText(const HitStatus& status) {
    Text text;
    if (!status.searching) return text;
    if (status.total == 0 && status.complete) return text.append(texts::noHits);
    if (status.number > 0) {
        AppendNumber(text, status.number);
        text.append(texts::of);
    }
    AppendNumber(text, status.total);
    if (!status.complete) text.append(texts::goingOn);
    if (status.number == 0) text.append(status.total == 1 && status.complete ? texts::hit : texts::hits);
    return text;
}

[[gnu::cold]] Text ReplacedText(const Replacements& done) {
    Text text;
    AppendNumber(text, done.replaced);
    text.append(texts::replaced);
    if (done.refused == 0) return text;
    text.append(u", ");
    AppendNumber(text, done.refused);
    return text.append(texts::refused);
}

}  // namespace qvx::grid
