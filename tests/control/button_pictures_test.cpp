// Both push buttons in all their states on the screen, as a mouse, a keyboard and a program bring them about, compared
// with pictures of them: pixel by pixel around the caption, and by the amount of ink in it, since text depends on the
// fonts that a machine has.
#include <windows.h>

#include <gtest/gtest.h>
#include <olectl.h>

#include <cstdlib>

#include "Qvx.h"
#include "tests/control/golden.h"
#include "tests/control/push_button_form.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/png_file.h"

namespace qvx::test {
namespace {

enum class State { normal, hot, pressed, disabled, focused };
constexpr State states[] = {State::normal, State::hot, State::pressed, State::disabled, State::focused};
constexpr const char* stateNames[] = {"normal", "hot", "pressed", "disabled", "focused"};

// The three styles of the flat button, then the rounded one.
constexpr int rows = 4;
constexpr int roundedRow = 3;
constexpr int columns = 5;
constexpr char16_t caption[] = u"&Post";

// The colours of the classic desktop for the length of a scope.
class DesktopColors {
  public:
    DesktopColors() {
        constexpr COLORREF classic[] = {RGB(212, 208, 200), RGB(128, 128, 128), RGB(255, 255, 255), RGB(64, 64, 64),
                                        RGB(212, 208, 200), RGB(0, 0, 0),       RGB(128, 128, 128)};
        for (int i = 0; i < count; ++i) before_[i] = GetSysColor(elements[i]);
        SetSysColors(count, elements, classic);
    }
    ~DesktopColors() { SetSysColors(count, elements, before_); }
    DesktopColors(const DesktopColors&) = delete;
    DesktopColors& operator=(const DesktopColors&) = delete;

  private:
    static constexpr int elements[] = {COLOR_BTNFACE, COLOR_BTNSHADOW, COLOR_BTNHIGHLIGHT, COLOR_3DDKSHADOW,
                                       COLOR_3DLIGHT, COLOR_BTNTEXT,   COLOR_GRAYTEXT};
    static constexpr int count = 7;
    COLORREF before_[count]{};
};

constexpr Size cell{100, 28};

std::wstring SheetPath() {
    const std::string path = GoldenPath("buttons.png");
    return {path.begin(), path.end()};
}

constexpr int fullInk = 255 * 2;  // two thirds of the difference between black and white

int Difference(COLORREF a, COLORREF b) {
    return std::abs(GetRValue(a) - GetRValue(b)) + std::abs(GetGValue(a) - GetGValue(b)) +
           std::abs(GetBValue(a) - GetBValue(b));
}

// Compares a button with its place on the sheet, or puts it there.
void ExpectSame(PixelPicture& sheet, int row, State state, const PixelPicture& got) {
    ASSERT_EQ(cell, got.size);
    // Inside the borders, and inside the flat buttons' focus rectangle.
    const Rect text = Rect{0, 0, cell.width, cell.height}.Inflated(-4, -4);
    int wrong = 0;
    Point first{-1, -1};
    int wanted = 0;  // how much ink there is in the caption
    int ink = 0;
    std::optional<COLORREF> ground;
    for (int y = 0; y < cell.height; ++y) {
        for (int x = 0; x < cell.width; ++x) {
            COLORREF& expected = sheet.At(static_cast<int>(state) * cell.width + x, row * cell.height + y);
            const COLORREF drawn = got.At(x, y);
            if (updateGolden) expected = drawn;
            if (text.Contains({x, y})) {
                if (!ground) ground = expected;
                wanted += Difference(expected, *ground);
                ink += Difference(drawn, *ground);
            } else if (expected != drawn && wrong++ == 0) {
                first = {x, y};
            }
        }
    }
    EXPECT_EQ(wrong, 0) << "first at " << first.x << "," << first.y;
    EXPECT_GE(wanted, 11 * fullInk);
    EXPECT_NEAR(ink, wanted, wanted / 3 + 10 * fullInk);
}

class ButtonOnScreen : public ::testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Rows, ButtonOnScreen, ::testing::Range(0, rows));

struct Live : PushButtonForm {
    using PushButtonForm::PushButtonForm;
    void TestBody() override {}
};

TEST_P(ButtonOnScreen, LooksAsItsPicture) {
    const DesktopColors colors;
    const int row = GetParam();
    auto sheet = ReadPng(SheetPath());
    if (updateGolden && !sheet) sheet.emplace(Size{cell.width * columns, cell.height * rows});
    ASSERT_TRUE(sheet);
    for (const State state : states) {
        SCOPED_TRACE(stateNames[static_cast<int>(state)]);
        Live live(row == roundedRow ? CLSID_RButton : CLSID_Button);
        const auto button = live.button_;
        Put(button.get(), L"Caption", {Variant(Text(caption))});
        if (row != roundedRow) {
            Put(button.get(), L"Behavior", {Variant(row)});
            Put(button.get(), L"BorderColor", {Variant(static_cast<long>(RGB(0, 0, 160)))});
        }
        Put(button.get(), L"Enabled", {Variant(state != State::disabled)});
        live.Activate();
        live.container_->MoveTo({20, 20, 20 + cell.width, 20 + cell.height});
        if (state == State::hot || state == State::pressed) {
            MoveMouseTo(live.At(50, 14));
            EXPECT_TRUE(WaitFor([&] { return GetCapture() == live.window_; }));
        }
        if (state == State::pressed) LeftButton(true);
        if (state == State::focused) live.Focus();
        PushButtonForm::Settle();
        ExpectSame(*sheet, row, state, PictureOnScreen(live.window_));
        if (state == State::pressed) {
            MoveMouseTo(live.At(160, 60));
            LeftButton(false);
        }
        PushButtonForm::Settle();
    }
    EXPECT_TRUE(!updateGolden || WritePng(SheetPath(), *sheet));
}

}  // namespace
}  // namespace qvx::test
