// What the About box shows and does.
#pragma once

#include <optional>
#include <vector>

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/ole_color.h"
#include "common/text.h"
#include "drawing/surface.h"

namespace qvx::about {

// The labels by index: the company's name stands twice, the first copy being the shadow of the second.
enum class Label { developedBy = 0, companyShadow = 1, company = 2, mail = 3, location = 4 };

struct LabelLook {
    TextView text;
    Rect twips;
    FontSpec font;
    OleColor color;
};

constexpr Size client{4500, 2400};  // twips
constexpr TextView title = u"About Qvx";

// By index.
const std::vector<LabelLook>& Labels();

// The label at a point, in pixels of the form; the upper one where two overlap.
std::optional<Label> LabelAt(Point point, Dpi dpi);

// `inside` is all that the window has inside its frame, in pixels.
void Paint(Surface& surface, const Rect& inside);

// What an input to the form makes the dialog do.
enum class Answer { none, close, mail };

// The left mouse button over the form. Only a press that began here counts, and only where it is let go on the same
// label, or off them on the form: the release of the click that opened the dialog must not close it.
class Press {
  public:
    void Down(Point point, Dpi dpi) { on_ = Spot{LabelAt(point, dpi)}; }
    // Points are pixels of the form, and may lie outside.
    Answer Up(Point point, Dpi dpi);
    // Someone else took the mouse.
    void CallOff() { on_.reset(); }

  private:
    struct Spot {
        std::optional<Label> label;
    };
    std::optional<Spot> on_;
};

// Any key closes the form but Shift and Control.
Answer AnswerForKey(int key);

// The link that the mail label opens.
Text MailLink();

// Whether opening it failed, from the answer as the label's tag keeps it: decimal text, failing up to 32.
bool MailFailed(TextView tag);

}  // namespace qvx::about
