#include "controls/backup/dialog_layout.h"

#include <algorithm>

#include "controls/backup/backup_names.h"

namespace qvx::backup {

namespace form {

namespace {

constexpr int plainHeight = 2145;
constexpr int heightWithGroupName = 2550;
constexpr int fieldHeight = 300;

}  // namespace

TextView Caption(Mode mode) { return mode == Mode::restore ? u"Restore" : u"Backup"; }

TextView Caption(Item item, Mode mode) {
    const bool restore = mode == Mode::restore;
    switch (item) {
        case Item::frame:
            return restore ? u"Restore From" : u"Backup To";
        case Item::browse:
            return u"Bro&wse...";
        case Item::email:
            return restore ? u"Restore as a &Seperate Group" : u"&E-mail a copy of backup";
        case Item::ok:
            return restore ? u"&Restore" : u"&Backup";
        case Item::cancel:
            return u"&Cancel";
        case Item::groupLabel:
            return restore ? u"Group &name :" : u"";
        case Item::location:
        case Item::groupName:
        case Item::outcome:
            break;
    }
    return {};
}

int Height(bool groupNameShown, int frameHeight) {
    const int plain = std::max(plainHeight, contentHeight + frameHeight);
    return groupNameShown ? plain + heightWithGroupName - plainHeight : plain;
}

Rect Place(Item item, int frameHeight) {
    constexpr int left = 120;
    constexpr int right = width - 120;
    switch (item) {
        case Item::frame:
            return {left, 60, right, 840};
        case Item::location:
            return {left + 120, 345, 4200, 345 + fieldHeight};
        case Item::browse:
            return {4260, 330, right - 105, 330 + 345};
        case Item::email:
            return {left, 900, 3000, 1155};
        case Item::outcome:
            return {left, 1230, 3000, 1455};
        case Item::ok:
            return {3060, 1020, 4200, 1365};
        case Item::cancel:
            return {4290, 1020, right, 1365};
        case Item::groupLabel: {
            const int top = Height(false, frameHeight) - frameHeight;
            return {left, top + 45, 1380, top + 270};
        }
        case Item::groupName: {
            const int top = Height(false, frameHeight) - frameHeight;
            return {1440, top, right, top + fieldHeight};
        }
    }
    return {};
}

bool MayRun(TextView location) { return !Trimmed(location).empty(); }

}  // namespace form

namespace prompt {

TextView Caption(Item item) {
    switch (item) {
        case Item::notice:
            return u"Such a group already exists. So you must enter the administrator password of the existing group.";
        case Item::label:
            return u"&Password :";
        case Item::ok:
            return u"&OK";
        case Item::cancel:
            return u"&Cancel";
        case Item::password:
            break;
    }
    return {};
}

Rect Place(Item item) {
    constexpr int left = 180;
    constexpr int right = client.width - 180;
    switch (item) {
        case Item::notice:
            return {left, 180, right, 780};
        case Item::label:
            return {left, 915, 1200, 1140};
        case Item::password:
            return {1260, 870, right, 1185};
        case Item::ok:
            return {right - 2370, 1395, right - 1230, 1740};
        case Item::cancel:
            return {right - 1140, 1395, right, 1740};
    }
    return {};
}

}  // namespace prompt

}  // namespace qvx::backup
