#include "backup/dialog_layout.h"

#include <algorithm>

#include "backup/names.h"
#include "common/keys.h"

namespace qvx::backup {

namespace dialog {

namespace {

constexpr Texts backupTexts{u"Backup", u"Backup To", u"Bro&wse...", u"&Backup", u"&Cancel", u"&E-mail a copy of backup",
                            u""};
constexpr Texts restoreTexts{u"Restore",      u"Restore From", u"Bro&wse...",
                             u"&Restore",     u"&Cancel",      u"Restore as a &Seperate Group",
                             u"Group &name :"};

constexpr int plainHeight = 2145;
constexpr int groupHeight = 2550;
constexpr int margin = 90;  // below the lowest thing

}  // namespace

const Texts& TextsOf(Mode mode) { return mode == Mode::backup ? backupTexts : restoreTexts; }

int FormHeight(Mode mode, bool checked) { return HasGroupName(mode, checked) ? groupHeight : plainHeight; }

Size WindowSize(Mode mode, bool checked, Dpi dpi, Size border) {
    const int needed = (HasGroupName(mode, checked) ? groupName.bottom : cancel.bottom) + margin;
    return {TwipsToPixels(clientWidth, dpi.x) + border.width,
            std::max(TwipsToPixels(FormHeight(mode, checked), dpi.y), TwipsToPixels(needed, dpi.y) + border.height)};
}

bool MayRun(TextView path) { return !Trimmed(path).empty(); }

}  // namespace dialog

FormKey FormKeyOf(int key, int shift, bool buttonHasFocus) {
    if (shift != 0) return FormKey::none;
    switch (key) {
        case keys::enter:
            return buttonHasFocus ? FormKey::focusedButton : FormKey::ok;
        case keys::escape:
            return FormKey::cancel;
        default:
            return FormKey::none;
    }
}

}  // namespace qvx::backup
