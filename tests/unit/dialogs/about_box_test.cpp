// The About box: its labels, its link, and where dialogs stand.
#include "dialogs/about_box.h"

#include <gtest/gtest.h>

#include "common/dialog_placement.h"
#include "common/keys.h"
#include "common/vendor.h"
#include "tests/support/portable/recording_surface.h"

namespace qvx::about {
namespace {

TEST(AboutBox, LabelUnderThePointer) {
    EXPECT_EQ(LabelAt({30, 125}, {96, 96}), Label::mail);
    EXPECT_EQ(LabelAt({45, 188}, {144, 144}), Label::mail);
    EXPECT_EQ(LabelAt({40, 50}, {96, 96}), Label::company) << "the upper copy of the name";
    EXPECT_EQ(LabelAt({200, 125}, {96, 96}), std::nullopt) << "right of the address";
    EXPECT_EQ(LabelAt({2, 2}, {96, 96}), std::nullopt);
}

TEST(AboutBox, PaintsEveryLabelOnce) {
    for (const LabelLook& label : Labels()) {
        EXPECT_EQ(label.twips.Intersect({0, 0, client.width, client.height}), label.twips);
    }
    RecordingSurface surface;
    Paint(surface, {0, 0, 300, 160});
    for (const char* call :
         {"fill (0,0,300,160)", "text \"Developed by\" (28,20,280,36) 8.25 ", "text \"ORVANE\" (30,38,282,86) 27.75b ",
          "text \"ORVANE\" (28,36,280,84) 27.75b ", "text \"support@orvane.example\" (28,120,180,136) 8.25u "}) {
        EXPECT_NE(surface.Log().find(call), std::string::npos) << call << " in\n" << surface.Log();
    }
}

TEST(AboutBox, OnlyItsOwnPressesCount) {
    constexpr Dpi dpi{96, 96};
    constexpr Point form{2, 2};
    constexpr Point mail{30, 125};
    constexpr Point company{40, 50};
    constexpr Point outside{400, 2};
    struct {
        std::optional<Point> down;
        Point up;
        Answer expected;
    } const cases[] = {{form, {250, 155}, Answer::close},  {mail, {40, 126}, Answer::mail},
                       {company, company, Answer::none},   {std::nullopt, form, Answer::none},
                       {std::nullopt, mail, Answer::none}, {form, mail, Answer::none},
                       {mail, form, Answer::none},         {form, outside, Answer::none}};
    for (const auto& c : cases) {
        Press press;
        if (c.down) press.Down(*c.down, dpi);
        EXPECT_EQ(press.Up(c.up, dpi), c.expected) << c.up.x << ", " << c.up.y;
        EXPECT_EQ(press.Up(form, dpi), Answer::none) << "one press, one click";
    }
    Press calledOff;
    calledOff.Down(form, dpi);
    calledOff.CallOff();
    EXPECT_EQ(calledOff.Up(form, dpi), Answer::none);
}

TEST(AboutBox, KeysThatClose) {
    for (const int key : {keys::escape, static_cast<int>('X'), keys::shift, keys::control}) {
        EXPECT_EQ(AnswerForKey(key) == Answer::close, key == keys::escape || key == 'X') << key;
    }
}

TEST(AboutBox, Mail) {
    EXPECT_EQ(MailLink(), u"mailto:qvx-support@orvane.example?");
    EXPECT_NE(vendor::supportAddress, vendor::supportLinkAddress);
    for (const char16_t* tag : {u"42", u"33", u"32", u"0", u""}) {
        EXPECT_EQ(MailFailed(tag), Text(tag) != u"42" && Text(tag) != u"33");
    }
}

TEST(Placement, OverAWindowInsideTheScreen) {
    const Rect work{0, 0, 1000, 700};
    EXPECT_EQ(PlaceOver({100, 100, 500, 400}, work, {200, 100}), (Point{200, 200}));
    EXPECT_EQ(PlaceOver({900, 650, 1000, 700}, work, {200, 100}), (Point{800, 600}));
    EXPECT_EQ(PlaceOver({-100, -100, 0, 0}, work, {200, 100}), (Point{0, 0}));
    EXPECT_EQ(PlaceOver(work, work, {1200, 900}), (Point{0, -200})) << "the buttons of a huge box stay in sight";
}

}  // namespace
}  // namespace qvx::about
