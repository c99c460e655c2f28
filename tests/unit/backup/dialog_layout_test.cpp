#include "controls/backup/dialog_layout.h"

#include <gtest/gtest.h>

#include <vector>

namespace qvx::backup {
namespace {

using form::Item;

// Users know the dialog by these words.
TEST(DialogLayout, KeepsItsWords) {
    EXPECT_EQ(form::Caption(Item::frame, Mode::restore), u"Restore From");
    EXPECT_EQ(form::Caption(Item::email, Mode::restore), u"Restore as a &Seperate Group");
    EXPECT_EQ(form::Caption(Item::email, Mode::backup), u"&E-mail a copy of backup");
    EXPECT_EQ(prompt::Caption(prompt::Item::notice),
              u"Such a group already exists. So you must enter the administrator password of the existing group.");
}

TEST(DialogLayout, HeightFollowsTheFrameOnlyWhereItMust) {
    const struct {
        int frame, plain, withGroupName;
    } cases[] = {
        {0, 2145, 2550},   {375, 2145, 2550},  // borders of three pixels and a caption of nineteen
        {645, 2145, 2550},                     // the content just fits
        {660, 2160, 2565}, {1200, 2700, 3105},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(form::Height(false, c.frame), c.plain) << c.frame;
        EXPECT_EQ(form::Height(true, c.frame), c.withGroupName) << c.frame;
    }
}

template <typename Items, typename PlaceOf>
void ExpectApart(const Items& items, PlaceOf placeOf, const Rect& room) {
    for (const auto one : items) {
        const Rect place = placeOf(one);
        EXPECT_FALSE(place.Empty()) << static_cast<int>(one);
        EXPECT_EQ(place.Intersect(room), place) << static_cast<int>(one);
        for (const auto other : items) {
            if (one == other) continue;
            EXPECT_TRUE(place.Intersect(placeOf(other)).Empty())
                << static_cast<int>(one) << " and " << static_cast<int>(other);
        }
    }
}

TEST(DialogLayout, NothingIsCutOffOrCovered) {
    for (const int frame : {0, 375, 585, 645, 900}) {
        const auto place = [&](Item item) { return form::Place(item, frame); };
        const int plain = form::Height(false, frame) - frame;
        const std::vector<Item> above{Item::location, Item::browse, Item::email, Item::outcome, Item::ok, Item::cancel};
        ExpectApart(above, place, {0, 0, form::width, plain});
        ExpectApart(std::vector{Item::frame, Item::email, Item::outcome, Item::ok, Item::cancel}, place,
                    {0, 0, form::width, plain});
        const Rect frameInside = place(Item::frame).Inflated(-30, -30);
        for (const Item item : {Item::location, Item::browse}) {
            EXPECT_EQ(place(item).Intersect(frameInside), place(item));
        }
        // The lower window shows nothing of the name's field, the higher one all of it.
        ExpectApart(std::vector{Item::groupLabel, Item::groupName}, place,
                    {0, plain, form::width, form::Height(true, frame) - frame});
    }
    ExpectApart(prompt::items, prompt::Place, {0, 0, prompt::client.width, prompt::client.height});
}

}  // namespace
}  // namespace qvx::backup
