#include "dialogs/about_box.h"

#include <utility>

#include "common/keys.h"
#include "common/numeric_reading.h"
#include "common/vendor.h"

namespace qvx::about {

namespace {

constexpr OleColor paper = Rgb(255, 255, 255);
constexpr OleColor band = Rgb(28, 63, 110);
constexpr OleColor companyColor = Rgb(28, 63, 110);
constexpr OleColor shadowColor = Rgb(196, 206, 220);
constexpr OleColor linkColor = Rgb(0, 84, 180);
constexpr OleColor quietColor = Rgb(90, 90, 90);

// The width in twips of the coloured band along the left edge.
constexpr int bandWidth = 120;

constexpr unsigned labelFormat = text_format::singleLine | text_format::noPrefix;

// The largest number with which the system's call to open a document reports a failure.
constexpr double lastFailure = 32;

FontSpec Verdana(double points, int weight = 400, bool underline = false) {
    FontSpec font;
    font.face = u"Verdana";
    font.points = points;
    font.weight = weight;
    font.underline = underline;
    return font;
}

}  // namespace

const std::vector<LabelLook>& Labels() {
    static const std::vector<LabelLook> labels{
        {u"Developed by", {420, 300, 4200, 540}, Verdana(8.25), quietColor},
        {vendor::company, {450, 570, 4230, 1290}, Verdana(27.75, 700), shadowColor},
        {vendor::company, {420, 540, 4200, 1260}, Verdana(27.75, 700), companyColor},
        {vendor::supportAddress, {420, 1800, 2700, 2040}, Verdana(8.25, 400, true), linkColor},
        {vendor::location, {420, 1500, 4200, 1740}, Verdana(8.25), quietColor},
    };
    return labels;
}

std::optional<Label> LabelAt(Point point, Dpi dpi) {
    const std::vector<LabelLook>& labels = Labels();
    std::optional<Label> found;
    for (std::size_t i = 0; i < labels.size(); ++i) {
        if (TwipsToPixels(labels[i].twips, dpi).Contains(point)) {
            found = static_cast<Label>(i);
        }
    }
    return found;
}

void Paint(Surface& surface, const Rect& inside) {
    const Dpi dpi = surface.Resolution();
    surface.FillRect(inside, paper);
    surface.FillRect({0, 0, TwipsToPixels(bandWidth, dpi.x), inside.bottom}, band);
    for (const LabelLook& label : Labels()) {
        surface.DrawLabel(label.text, TwipsToPixels(label.twips, dpi), label.font, label.color, labelFormat);
    }
}

Answer Press::Up(Point point, Dpi dpi) {
    const auto began = std::exchange(on_, std::nullopt);
    const Rect form = TwipsToPixels(Rect{0, 0, client.width, client.height}, dpi);
    const auto label = LabelAt(point, dpi);
    if (!began || !form.Contains(point) || began->label != label) return Answer::none;
    if (!label) return Answer::close;
    return *label == Label::mail ? Answer::mail : Answer::none;
}

Answer AnswerForKey(int key) { return key == keys::shift || key == keys::control ? Answer::none : Answer::close; }

Text MailLink() {
    Text link(u"mailto:");
    link += vendor::supportLinkAddress;
    link += u"?";
    return link;
}

bool MailFailed(TextView tag) { return NumericValue(tag) <= lastFailure; }

}  // namespace qvx::about
