#include "dialogs/message_box_layout.h"

#include "common/keys.h"
#include "common/run_time_error.h"
#include "dialogs/messages.h"

namespace qvx::dialogs {

namespace {

// Distances in pixels at 96 dots per inch.
constexpr int textLeft = 40;
constexpr int textTop = 30;
constexpr int textRightMargin = 20;
constexpr int textBottomMargin = 30;
constexpr int buttonBottomMargin = 10;
constexpr int captionHeight = 17;
constexpr int cornerSize = 20;

// Half the gap between the two buttons, in twips.
constexpr int halfButtonGap = 10;
// The space that two buttons need in addition to their own widths, in twips.
constexpr int twoButtonsExtra = 250;

constexpr int indexOutOfBounds = 35600;

Size EnlargedForButtons(Size size, const ButtonSet& set) {
    if (set.cancelShown && size.width <= 2 * design::button.width) {
        size.width = 2 * design::button.width + twoButtonsExtra;
    } else if (!set.cancelShown && size.width <= design::button.width) {
        size.width = design::button.width;
    }
    return size;
}

}  // namespace

ButtonSet ButtonSetOf(int buttons) {
    switch (buttons) {
        case 2:
        case 6:
            return {true, true, false};
        case 10:
            return {true, true, true};
        case 3:
        case 7:
            return {true, false, false};
        case 11:
            return {true, false, true};
        default:
            return {};
    }
}

int WrapWidth(Dpi dpi) { return TwipsToPixels(design::client.width, dpi.x) - Scaled(textLeft, dpi.x); }

BoxLayout LayOut(int buttons, Size text, Dpi dpi) {
    const ButtonSet set = ButtonSetOf(buttons);
    BoxLayout box;
    const int left = Scaled(textLeft, dpi.x);
    const int top = Scaled(textTop, dpi.y);
    box.text = {left, top, left + text.width, top + text.height};
    // The vertical resolution is used instead of the horizontal one, since it gives the width that the box has always
    // had.
    box.size.width = PixelsToTwips(box.text.right + Scaled(textRightMargin, dpi.x), dpi.y);
    box.size.height = design::button.height + PixelsToTwips(text.height + top + Scaled(textBottomMargin, dpi.y), dpi.y);
    box.size = EnlargedForButtons(box.size, set);

    box.ok.tag = u"1";
    box.ok.caption = set.yesNo ? TextView(u"&Yes") : design::okCaption;
    box.ok.tabIndex = set.cancelFirst ? 1 : 0;
    box.ok.visible = true;
    box.ok.top = box.size.height - design::button.height - PixelsToTwips(Scaled(buttonBottomMargin, dpi.y), dpi.y);

    box.cancel.tag = set.cancelShown ? u"1" : u"";
    box.cancel.caption = set.yesNo ? TextView(u"&No") : design::cancelCaption;
    box.cancel.tabIndex = 1 - box.ok.tabIndex;
    box.cancel.visible = set.cancelShown;
    if (set.cancelShown) {
        box.ok.left = box.size.width / 2 - design::button.width - halfButtonGap;
        box.cancel.left = box.size.width / 2 + halfButtonGap;
        box.cancel.top = box.ok.top;
    } else {
        box.ok.left = (box.size.width - design::button.width) / 2;
        box.cancel.left = design::cancelLeft;
        box.cancel.top = design::buttonTop;
    }

    box.caption = {0, 0, TwipsToPixels(box.size.width, dpi.x), Scaled(captionHeight, dpi.y)};
    box.corner = {Scaled(cornerSize, dpi.x), Scaled(cornerSize, dpi.y)};
    return box;
}

Text CaptionFor(TextView title) {
    Text caption(u"  ");
    caption += title;
    return caption;
}

int PictureNumber(int icon) {
    const int number = icon > design::iconCount || icon < 0 ? icon::notice : icon;
    if (number == 0) {
        throw RunTimeError(indexOutOfBounds, u"Index out of bounds");
    }
    return number;
}

Answer AnswerForKey(int key, int shift, bool cancelVisible) {
    // With two buttons, the next and the previous one are the same.
    if (key == keys::tab && (shift & ~keys::shiftMask) == 0) {
        return Answer::moveFocus;
    }
    if (shift != 0) {
        return Answer::none;
    }
    switch (key) {
        case 'O':
        case 'Y':
            return Answer::ok;
        case 'C':
        case 'N':
            return Answer::cancel;
        case keys::escape:
            return cancelVisible ? Answer::none : Answer::ok;
        // Enter is not one of the box's own keys; it presses the focused button, as in every dialog of the system.
        case keys::enter:
            return Answer::focused;
        default:
            return Answer::none;
    }
}

}  // namespace qvx::dialogs
