// The message box's rules: sizes, button sets, keys. Twips where nothing else is said.
#pragma once

#include "common/font_spec.h"
#include "common/geometry.h"
#include "common/ole_color.h"
#include "common/text.h"
#include "drawing/surface.h"

namespace qvx::dialogs {

// The form as it was designed.
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

// Which buttons a code shows, under which captions, and which of them has the focus.
struct ButtonSet {
    bool cancelShown = false;
    bool yesNo = false;
    bool cancelFirst = false;
};
ButtonSet ButtonSetOf(int buttons);

// One button. `tag` is "1" for a button that takes part; the one with tab index 0 gets the focus and so answers a
// time-out.
struct ButtonPlace {
    int left = 0;
    int top = 0;
    Text caption;
    Text tag;
    bool visible = false;
    int tabIndex = 0;
};

struct BoxLayout {
    Size size;  // the form
    ButtonPlace ok;
    ButtonPlace cancel;
    Rect text;     // pixels
    Rect caption;  // pixels
    Size corner;   // pixels: the ellipse of the outline's corners
};

// Width in pixels at which the message breaks.
int WrapWidth(Dpi dpi);

// Everything's place for a message measured as `text` pixels at WrapWidth.
BoxLayout LayOut(int buttons, Size text, Dpi dpi);

// The form's caption for a title.
Text CaptionFor(TextView title);

// The picture's number for the number a caller gives: anything above 9 or below 0 is 6. There is no picture 0, and the
// list of pictures refuses it: run-time error 35600.
int PictureNumber(int icon);

enum class Answer { none, ok, cancel, focused, moveFocus };

// What a key typed anywhere in the box does: clicks OK, Cancel or the button with the focus, or moves the focus to the
// other button. A "C" or "N" clicks Cancel even where it is not visible.
Answer AnswerForKey(int key, int shift, bool cancelVisible);

}  // namespace qvx::dialogs
