// Both push buttons in all their states, compared with pictures of them: pixel by pixel around the caption, and by the
// amount of ink in it, since text depends on the fonts that a machine has.
#include <windows.h>

#include <gtest/gtest.h>
#include <olectl.h>

#include <cstdlib>

#include "Qvx.h"
#include "controls/buttons/rbutton_face.h"
#include "tests/control/golden.h"
#include "tests/control/push_button_form.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/png_file.h"
#include "tests/support/source_folder.h"
#include "widgets/button/button_face.h"
#include "win/gdi_surface.h"
#include "win/handles.h"

namespace qvx::test {
namespace {

using namespace qvx::buttons;

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

Size CellSize(int dpi) { return {100 * dpi / 96, 28 * dpi / 96}; }

UniqueRegion Shape(Size size, int dpi) {
    const Size corner = RButtonCorner({dpi, dpi});
    return UniqueRegion(CreateRoundRectRgn(0, 0, size.width, size.height, corner.width, corner.height));
}

// What the rules draw, cut to the window's shape on a white ground.
PixelPicture Drawn(int row, State state, int dpi) {
    const Size size = CellSize(dpi);
    return PictureOf(size, [&](HDC dc) {
        PatBlt(dc, 0, 0, size.width, size.height, WHITENESS);
        {
            const bool focused = state == State::focused || state == State::pressed;
            const auto prepare = [&](PushLook& look) {
                look.caption = caption;
                look.face = {0, 0, size.width, size.height};
                look.enabled = state != State::disabled;
            };
            GdiSurface surface(dc, Dpi{dpi, dpi});
            if (row == roundedRow) {
                SelectClipRgn(dc, Shape(size, dpi).Get());
                RButtonLook look;
                prepare(look);
                const RButtonState shown = state == State::hot       ? RButtonState::raised
                                           : state == State::pressed ? RButtonState::held
                                                                     : RButtonState::idle;
                DrawRButton(surface, look, shown, focused);
            } else {
                ButtonLook look;
                prepare(look);
                look.behavior = static_cast<buttons::Style>(row);
                look.borderColor = Rgb(0, 0, 160);
                ButtonImage image;
                image.Draw(state == State::pressed ? button_state::pressed : button_state::normal, focused);
                if (state == State::hot) image.Draw(button_state::hot, focused);
                image.Paint(surface, look);
            }
        }
    });
}

PixelPicture Cell(const PixelPicture& sheet, int row, State state, int dpi) {
    PixelPicture cell(CellSize(dpi));
    const int left = static_cast<int>(state) * cell.size.width;
    for (int y = 0; y < cell.size.height; ++y) {
        for (int x = 0; x < cell.size.width; ++x) cell.At(x, y) = sheet.At(left + x, row * cell.size.height + y);
    }
    return cell;
}

std::wstring SheetPath(int dpi) {
    const std::string source = sourceFolder;
    const std::wstring folder(source.begin(), source.end());
    const bool hasDrive = folder.size() > 1 && folder[1] == L':';
    return (hasDrive ? folder : L"Z:" + folder) + L"/tests/control/golden/buttons-" + std::to_wstring(dpi) + L".png";
}

// Inside the borders, and inside the flat buttons' focus rectangle.
Rect CaptionArea(Size size, int dpi) {
    return Rect{0, 0, size.width, size.height}.Inflated(-Scaled(4, dpi), -Scaled(4, dpi));
}

int Difference(COLORREF a, COLORREF b) {
    return std::abs(GetRValue(a) - GetRValue(b)) + std::abs(GetGValue(a) - GetGValue(b)) +
           std::abs(GetBValue(a) - GetBValue(b));
}

// How much is drawn in an area, in pixels as black as can be on the ground that its corner shows.
int Ink(const PixelPicture& picture, const Rect& area) {
    const COLORREF ground = picture.At(area.left, area.top);
    int sum = 0;
    for (int y = area.top; y < area.bottom; ++y) {
        for (int x = area.left; x < area.right; ++x) sum += Difference(picture.At(x, y), ground);
    }
    return sum / (3 * 255 * 2 / 3);
}

void ExpectSame(const PixelPicture& expected, const PixelPicture& got, int dpi, bool rounded) {
    ASSERT_EQ(expected.size, got.size);
    const Rect text = CaptionArea(got.size, dpi);
    const UniqueRegion shape = rounded ? Shape(got.size, dpi) : UniqueRegion();
    int wrong = 0;
    Point first{-1, -1};
    for (int y = 0; y < got.size.height; ++y) {
        for (int x = 0; x < got.size.width; ++x) {
            if (text.Contains({x, y}) || (shape && !PtInRegion(shape.Get(), x, y))) continue;
            if (expected.At(x, y) == got.At(x, y)) continue;
            if (wrong++ == 0) first = {x, y};
        }
    }
    EXPECT_EQ(wrong, 0) << "first at " << first.x << "," << first.y;
    const int wanted = Ink(expected, text);
    EXPECT_GT(wanted, 10);
    EXPECT_NEAR(Ink(got, text), wanted, wanted / 3 + 10);
}

TEST(ButtonPictures, EveryStateAtEachResolution) {
    const DesktopColors colors;
    for (const int dpi : {96, 192}) {
        const Size cell = CellSize(dpi);
        PixelPicture sheet({cell.width * columns, cell.height * rows});
        for (int row = 0; row < rows; ++row) {
            for (const State state : states) {
                const PixelPicture drawn = Drawn(row, state, dpi);
                for (int y = 0; y < cell.height; ++y) {
                    for (int x = 0; x < cell.width; ++x) {
                        sheet.At(static_cast<int>(state) * cell.width + x, row * cell.height + y) = drawn.At(x, y);
                    }
                }
            }
        }
        if (updateGolden) {
            EXPECT_TRUE(WritePng(SheetPath(dpi), sheet));
            continue;
        }
        const auto kept = ReadPng(SheetPath(dpi));
        ASSERT_TRUE(kept) << dpi;
        ASSERT_EQ(kept->size, sheet.size);
        for (int row = 0; row < rows; ++row) {
            for (const State state : states) {
                SCOPED_TRACE(std::to_string(dpi) + " dots per inch, row " + std::to_string(row) + ", " +
                             stateNames[static_cast<int>(state)]);
                ExpectSame(Cell(*kept, row, state, dpi), Cell(sheet, row, state, dpi), dpi, row == roundedRow);
            }
        }
    }
}

// The same pictures on the screen, of controls that a mouse and a keyboard have brought into each state.
class ButtonOnScreen : public ::testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Rows, ButtonOnScreen, ::testing::Range(0, rows));

struct Live : PushButtonForm {
    using PushButtonForm::PushButtonForm;
    void TestBody() override {}
};

TEST_P(ButtonOnScreen, LooksAsItsPicture) {
    const DesktopColors colors;
    const int row = GetParam();
    const auto kept = ReadPng(SheetPath(96));
    ASSERT_TRUE(kept);
    for (const State state : states) {
        SCOPED_TRACE(stateNames[static_cast<int>(state)]);
        Live live(row == roundedRow ? CLSID_RButton : CLSID_Button);
        const auto button = live.button_;
        Put(button.get(), L"Caption", {Variant(Text(caption))});
        if (row != roundedRow) {
            Put(button.get(), L"Behavior", {Variant(row)});
            Put(button.get(), L"BorderColor", {Variant(static_cast<long>(Rgb(0, 0, 160)))});
        }
        Put(button.get(), L"Enabled", {Variant(state != State::disabled)});
        live.Activate();
        const Size size = CellSize(96);
        live.container_->MoveTo({20, 20, 20 + size.width, 20 + size.height});
        if (state == State::hot || state == State::pressed) {
            MoveMouseTo(live.At(50, 14));
            EXPECT_TRUE(WaitFor([&] { return GetCapture() == live.window_; }));
        }
        if (state == State::pressed) LeftButton(true);
        if (state == State::focused) live.Focus();
        PushButtonForm::Settle();
        ExpectSame(Cell(*kept, row, state, 96), PictureOnScreen(live.window_), 96, row == roundedRow);
        if (state == State::pressed) {
            MoveMouseTo(live.At(160, 60));
            LeftButton(false);
        }
        PushButtonForm::Settle();
    }
}

}  // namespace
}  // namespace qvx::test
