// The rules of the message box: sizes, button sets, keys. Lengths are in twips unless stated otherwise.
#pragma once

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/ole_color.h"
#include "common/text.h"
#include "drawing/surface.h"

namespace qvx::dialogs {

// The dimensions that the form was designed with.
namespace design {
constexpr Size client{4815, 2175};
constexpr TextView caption = u"  Information";
constexpr TextView okCaption = u"&OK";
constexpr TextView cancelCaption = u"&Cancel";
constexpr OleColor backColor = Rgb(252, 251, 203);
constexpr OleColor foreColor = colors::windowText;
constexpr Size button{795, 315};
constexpr int cancelLeft = 2190;
constexpr int buttonTop = 1335;
constexpr Rect icon{165, 435, 405, 675};
constexpr int blinkInterval = 300;  // milliseconds
constexpr int iconCount = 9;
}  // namespace design

constexpr unsigned textFormat = text_format::wordBreak | text_format::noClip;

// The buttons that a code shows, their captions, and which of them has the focus.
struct ButtonSet {
    bool cancelShown = false;
    bool yesNo = false;
    bool cancelFirst = false;
};
// Returns the set of a code; OK alone for an unknown code. See dialogs/messages.h.
ButtonSet ButtonSetOf(int buttons);

// One button. `tag` is "1" for a button that is shown; the one with tab index 0 gets the focus, and its answer is that
// of a time-out.
struct ButtonPlace {
    int left = 0;
    int top = 0;
    Text caption;
    Text tag;
    bool visible = false;
    int tabIndex = 0;
};

struct BoxLayout {
    Size size;  // of the form
    ButtonPlace ok;
    ButtonPlace cancel;
    Rect text;     // pixels
    Rect caption;  // pixels
    Size corner;   // pixels: the ellipse of the outline's corners
};

// Returns the width in pixels at which the message is wrapped.
int WrapWidth(Dpi dpi);

// Lays out the box for a message that measures `text` pixels when wrapped at WrapWidth.
BoxLayout LayOut(int buttons, Size text, Dpi dpi);

// Returns the form's caption for a title.
Text CaptionFor(TextView title);

// Returns the number of the picture for a caller's number: 6 for any number above 9 or below 0. Throws run-time error
// 35600 for 0, which has no picture.
int PictureNumber(int icon);

enum class Answer { none, ok, cancel, focused, moveFocus };

// Returns the effect of a key typed anywhere in the box: it clicks OK, Cancel or the focused button, or moves the focus
// to the other button. "C" and "N" click Cancel even where it is not visible.
Answer AnswerForKey(int key, int shift, bool cancelVisible);

}  // namespace qvx::dialogs
