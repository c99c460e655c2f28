// The contents and behaviour of the About box.
#pragma once

#include <optional>
#include <vector>

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/ole_color.h"
#include "common/text.h"
#include "drawing/surface.h"

namespace qvx::about {

// The labels by index. The company's name appears twice; the first copy is the shadow of the second.
enum class Label { developedBy = 0, companyShadow = 1, company = 2, mail = 3, location = 4 };

struct LabelLook {
    TextView text;
    Rect twips;
    FontSpec font;
    OleColor color;
};

constexpr Size client{4500, 2400};  // twips, the client area
constexpr TextView title = u"About Qvx";

// Returns the looks of the labels by index.
const std::vector<LabelLook>& Labels();

// Returns the label at a point in pixels of the form; where two overlap, the upper one.
std::optional<Label> LabelAt(Point point, Dpi dpi);

// Paints the form. `inside` is the whole client area in pixels.
void Paint(Surface& surface, const Rect& inside);

// The reaction of the dialog to an input.
enum class Answer { none, close, mail };

// The left mouse button over the form. Only a press that began here counts, and only where it is released on the same
// label, or beside the labels on the form: the release of the click that opened the dialog must not close it.
class Press {
  public:
    void Down(Point point, Dpi dpi) { on_ = Spot{LabelAt(point, dpi)}; }
    // Points are pixels of the form, and may be outside it.
    Answer Up(Point point, Dpi dpi);
    // Other code has taken the mouse capture.
    void CallOff() { on_.reset(); }

  private:
    struct Spot {
        std::optional<Label> label;
    };
    std::optional<Spot> on_;
};

// Any key except Shift and Control closes the form.
Answer AnswerForKey(int key);

// Returns the link that the mail label opens.
Text MailLink();

// Returns whether opening the link failed. `tag` is the result of the system's call as decimal text; numbers up to 32
// are failures.
bool MailFailed(TextView tag);

}  // namespace qvx::about
