// The flexible grid's window: real keys and mouse, bars, scrolling, and what is on the screen.
#include "widgets/flexgrid/flexgrid_window.h"

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "common/keys.h"
#include "tests/support/container.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/input.h"
#include "tests/support/thread_windows.h"

namespace qvx::test {
namespace {

using flexgrid::FlexGridWindow;
using flexgrid::Grid;

// Notes what the grid and its window tell, a word each.
class Log final : public flexgrid::GridWindowEvents, public flexgrid::GridListener {
  public:
    std::string words;
    std::function<void()> onMouseDown;
    std::function<Text(int, int)> onToolTip;
    int tipsAsked = 0;

    void Click() override { words += "Click "; }
    void DblClick() override { words += "DblClick "; }
    void KeyDown(short&, short&) override { words += "KeyDown "; }
    void KeyPress(short& keyAscii) override { words += "KeyPress" + std::to_string(keyAscii) + " "; }
    void KeyUp(short&, short) override { words += "KeyUp "; }
    void MouseDown(short button, short, float x, float y) override {
        words += "MouseDown" + std::to_string(button) + "@" + std::to_string(static_cast<int>(x)) + "," +
                 std::to_string(static_cast<int>(y)) + " ";
        if (onMouseDown) onMouseDown();
    }
    void MouseUp(short, short, float, float) override { words += "MouseUp "; }
    void Scroll() override { words += "Scroll "; }
    void GotFocus() override { words += "GotFocus "; }
    void LostFocus() override { words += "LostFocus "; }
    void Resized() override { words += "Resized "; }
    Text ToolTip(int row, int col) override {
        ++tipsAsked;
        return onToolTip ? onToolTip(row, col) : Text();
    }
    void LeaveCell() override { words += "Leave "; }
    void EnterCell() override { words += "Enter "; }
    void RowColChange() override { words += "RowCol "; }
    void SelChange() override { words += "Sel "; }
};

// The client area's pixels, as they are on the screen or as the window draws them anew.
std::vector<COLORREF> Pixels(HWND window, bool anew) {
    RECT client{};
    GetClientRect(window, &client);
    return PictureOf({static_cast<int>(client.right), static_cast<int>(client.bottom)},
                     [&](HDC dc) {
                         if (anew) {
                             SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
                             return;
                         }
                         const HDC screen = GetDC(window);
                         BitBlt(dc, 0, 0, client.right, client.bottom, screen, 0, 0, SRCCOPY);
                         ReleaseDC(window, screen);
                     })
        .pixels;
}

// How many pixels differ between the screen and a fresh drawing; 0 is what there should be.
int WrongPixels(HWND window) {
    const auto shown = Pixels(window, false);
    const auto fresh = Pixels(window, true);
    int wrong = 0;
    for (std::size_t i = 0; i < shown.size(); ++i) wrong += shown[i] != fresh[i];
    return wrong;
}

// 30 rows of 16 pixels and 8 columns of 64 behind a header each, in a window of 300 x 200 without a border.
class FlexGridWindowTest : public ::testing::Test {
  protected:
    FlexGridWindowTest() {
        Grid& model = grid_->Model();
        model.SetRows(30);
        model.SetCols(8);
        for (int row = 0; row < 30; ++row) {
            model.SetRowHeight(row, 240);
            for (int col = 0; col < 8; ++col) model.SetTextMatrix(row, col, std::u16string(1, u'a' + row % 26));
        }
        model.SetBorderStyle(flexgrid::GridBorder::none);
        grid_->AddEvents(&log_);
        model.AddListener(&log_);
        EXPECT_TRUE(grid_->CreateIn(frame_.Window(), {10, 10, 310, 210}));
        EXPECT_TRUE(BringToFront(frame_.Window()));
    }
    ~FlexGridWindowTest() override {
        grid_->Model().RemoveListener(&log_);
        grid_->RemoveEvents(&log_);
    }
    Grid& Model() { return grid_->Model(); }
    void Focus() {
        SetFocus(grid_->Handle());
        Settle();
        log_.words.clear();
    }
    static void Settle(int milliseconds = 120) {
        WaitFor([] { return false; }, milliseconds);
    }
    void MoveTo(int x, int y) {
        POINT at{x, y};
        ClientToScreen(grid_->Handle(), &at);
        MoveMouseTo(at);
        Settle(60);
    }
    void ClickAt(int x, int y) {
        MoveTo(x, y);
        LeftButton(true);
        LeftButton(false);
    }
    // Whether the grid tells of it, sooner or later.
    bool Heard(const char* word) {
        return WaitFor([&] { return log_.words.find(word) != std::string::npos; });
    }
    std::string Place() {
        return std::to_string(Model().Row()) + "," + std::to_string(Model().Col()) + ":" +
               std::to_string(Model().RowSel()) + "," + std::to_string(Model().ColSel());
    }

    Container frame_{{}};
    std::unique_ptr<FlexGridWindow> grid_ = std::make_unique<FlexGridWindow>();
    Log log_;
};

TEST_F(FlexGridWindowTest, KeysMoveTheCursorAndTellInOrder) {
    Focus();
    TypeKey(VK_DOWN);
    ASSERT_TRUE(Heard("KeyUp"));
    EXPECT_EQ(log_.words, "KeyDown Leave Enter RowCol Sel KeyUp ");
    EXPECT_EQ(Place(), "2,1:2,1");
    TypeKey(VK_RIGHT, {VK_SHIFT});
    EXPECT_TRUE(WaitFor([&] { return Place() == "2,1:2,2"; })) << Place();
    TypeKey(VK_END, {VK_CONTROL});
    EXPECT_TRUE(WaitFor([&] { return Place() == "29,7:29,7"; })) << Place();
    EXPECT_TRUE(grid_->RowIsVisible(29));
    EXPECT_TRUE(grid_->ColIsVisible(7));
    Settle();
    EXPECT_EQ(WrongPixels(grid_->Handle()), 0);
}

TEST_F(FlexGridWindowTest, DraggingSelectsAndScrollsBeyondTheEdge) {
    MoveTo(64 + 10, 16 + 8);
    LeftButton(true);
    MoveTo(64 * 2 + 10, 16 * 3 + 8);
    EXPECT_EQ(log_.words, "GotFocus MouseDown1@1110,360 Sel ") << "the focus comes first";
    EXPECT_EQ(Place(), "1,1:3,2");
    EXPECT_EQ(grid_->MouseRow(), 3);
    EXPECT_EQ(grid_->MouseCol(), 2);
    MoveTo(64 * 2 + 10, 230);
    EXPECT_TRUE(WaitFor([&] { return Model().TopRow() > 5; }));
    EXPECT_GT(Model().RowSel(), 14);
    LeftButton(false);
    ASSERT_TRUE(Heard("MouseUp")) << log_.words;
    EXPECT_EQ(log_.words.find("Click"), std::string::npos) << "released outside";
    EXPECT_EQ(GetCapture(), nullptr);
    const int top = Model().TopRow();
    Settle();
    EXPECT_EQ(Model().TopRow(), top) << "the release ends it";
    EXPECT_EQ(WrongPixels(grid_->Handle()), 0);
}

TEST_F(FlexGridWindowTest, NothingIsDraggedByAButtonThatIsUp) {
    // As in front of a message box.
    log_.onMouseDown = [&] { LeftButton(false), Settle(); };
    MoveTo(64 * 2 + 10, 32 + 8);
    LeftButton(true);
    ASSERT_TRUE(WaitFor([&] { return Place() == "2,2:2,2"; })) << Place();
    MoveTo(64 * 3 + 10, 16 * 5 + 8);
    Settle();
    EXPECT_EQ(Place(), "2,2:2,2");
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(FlexGridWindowTest, HeadersSelectLinesAndTheirBordersResize) {
    ClickAt(64 * 2 + 30, 8);
    EXPECT_TRUE(WaitFor([&] { return Place() == "1,2:29,2"; })) << Place();

    Model().SetAllowUserResizing(flexgrid::GridResizing::columns);
    log_.words.clear();
    MoveTo(64 * 2 - 1, 8);
    LeftButton(true);
    MoveTo(64 * 2 + 29, 8);
    LeftButton(false);
    ASSERT_TRUE(Heard("Resized")) << log_.words;
    EXPECT_EQ(Model().ColWidth(1), (64 + 30) * 15);
    EXPECT_EQ(log_.words.find("Click"), std::string::npos) << "no click";
    EXPECT_EQ(Place(), "1,2:29,2") << "nor another selection";

    MoveTo(64 * 2 + 29, 8);
    LeftButton(true);
    MoveTo(64 * 2 + 60, 8);
    TypeKey(VK_ESCAPE);
    Settle();
    LeftButton(false);
    Settle();
    EXPECT_EQ(Model().ColWidth(1), (64 + 30) * 15) << "Escape gives it up";
    EXPECT_EQ(WrongPixels(grid_->Handle()), 0);
}

TEST_F(FlexGridWindowTest, TheWheelGoesAcrossWithShift) {
    SendMessageW(grid_->Handle(), WM_MOUSEWHEEL, MAKEWPARAM(MK_SHIFT, static_cast<WORD>(-120)), 0);
    EXPECT_GT(Model().LeftCol(), 1);
    EXPECT_EQ(Model().TopRow(), 1);
}

TEST_F(FlexGridWindowTest, BarsAppearOnlyWhereNeededAndReachFar) {
    const auto bars = [&] {
        grid_->Refresh();
        const LONG_PTR style = GetWindowLongPtrW(grid_->Handle(), GWL_STYLE);
        return std::string(style & WS_HSCROLL ? "H" : "") + (style & WS_VSCROLL ? "V" : "");
    };
    EXPECT_EQ(bars(), "HV");
    Model().SetCols(3);
    Model().SetRows(200'000);
    EXPECT_EQ(bars(), "V");
    SendMessageW(grid_->Handle(), WM_VSCROLL, SB_BOTTOM, 0);
    grid_->Refresh();
    EXPECT_GT(Model().TopRow(), 199'900);
    SCROLLINFO info{sizeof info, SIF_ALL, 0, 0, 0, 0, 0};
    GetScrollInfo(grid_->Handle(), SB_VERT, &info);
    EXPECT_EQ(info.nPos, Model().TopRow()) << "more than 16 bits";
    EXPECT_EQ(info.nMax - static_cast<int>(info.nPage) + 1, info.nPos) << "at its end";
    Model().SetRows(10);
    EXPECT_EQ(bars(), "");
    EXPECT_EQ(Model().TopRow(), 1) << "pulled back";

    struct FrameChanges : WindowSubclass {
        int count = 0;
        LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
            count += message == WM_NCCALCSIZE;
            return Default(message, wParam, lParam);
        }
    } changes;
    ASSERT_TRUE(changes.Attach(grid_->Handle()));
    Model().SetRows(200);
    Model().SetCols(30);
    EXPECT_EQ(bars(), "HV");
    EXPECT_EQ(changes.count, 1) << "both bars at once";
    EXPECT_EQ(WrongPixels(grid_->Handle()), 0);
}

TEST_F(FlexGridWindowTest, DrawsChangesAfterAHostHasKeptTheFormFromBeingDrawn) {
    Settle();
    SendMessageW(frame_.Window(), WM_SETREDRAW, FALSE, 0);
    Model().SetTextMatrix(1, 1, u"lost");
    SendMessageW(frame_.Window(), WM_SETREDRAW, TRUE, 0);
    Settle(150);
    Model().SetTextMatrix(2, 1, u"later");
    Settle();
    EXPECT_EQ(WrongPixels(grid_->Handle()), 0);
}

TEST_F(FlexGridWindowTest, WhatIsCopiedWhileScrollingIsWhatADrawingWouldShow) {
    Focus();
    Model().Select(3, 2, 6, 4);
    for (const bool mirrored : {false, true}) {
        Model().SetRightToLeft(mirrored);
        Settle();
        for (const auto& [top, left] : {std::pair{2, 1}, {6, 1}, {5, 1}, {5, 3}, {5, 1}, {25, 2}, {1, 1}, {4, 3}}) {
            grid_->ScrollTo(top, left);
            Settle(30);
            ASSERT_EQ(WrongPixels(grid_->Handle()), 0) << top << "," << left << (mirrored ? " mirrored" : "");
        }
    }
    // A cell changed and the view scrolled before either was painted.
    Model().SetRightToLeft(false);
    grid_->ScrollTo(3, 1);
    Settle(30);
    Model().SetTextMatrix(5, 2, u"changed");
    grid_->ScrollTo(4, 1);
    Model().SetTextMatrix(7, 1, u"as well");
    Settle(30);
    EXPECT_EQ(WrongPixels(grid_->Handle()), 0);
}

// Says when a message comes by.
class Passed final : public WindowSubclass {
  public:
    Passed(char name, std::string& seen) : name_(name), seen_(seen) {}

  private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_APP) seen_ += name_;
        return Default(message, wParam, lParam);
    }
    char name_;
    std::string& seen_;
};

// A host's own procedure.
std::string passed;
WNDPROC below = nullptr;
LRESULT CALLBACK HostProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_APP) passed += 'h';
    return CallWindowProcW(below, window, message, wParam, lParam);
}

// Small letters attach, capital ones detach.
TEST(Subclasses, ComeInOrderWhateverHostsPutBetween) {
    const struct {
        const char* steps;
        const char* seen;
    } cases[] = {{"a", "a"},     {"ab", "ba"},   {"abA", "b"},   {"abB", "a"},     {"aA", ""},        {"ha", "ah"},
                 {"ah", "ha"},   {"ahb", "hba"}, {"ahA", "h"},   {"ahAb", "hb"},   {"ahAH", ""},      {"ahAHb", "b"},
                 {"abhAB", "h"}, {"aha", "ha"},  {"ahbHA", "b"}, {"ahAHbBa", "a"}, {"abhBAba", "hab"}};
    for (const auto& c : cases) {
        passed.clear();
        const HWND window = CreateWindowW(L"EDIT", L"", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
        Passed a('a', passed);
        Passed b('b', passed);
        for (const char* step = c.steps; *step; ++step) {
            Passed& part = *step == 'a' || *step == 'A' ? a : b;
            if (*step == 'h' || *step == 'H') {
                const auto procedure = reinterpret_cast<LONG_PTR>(*step == 'h' ? HostProcedure : below);
                below = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, procedure));
            } else if (*step < 'a') {
                part.Detach();
            } else {
                EXPECT_TRUE(part.Attach(window));
            }
        }
        SendMessageW(window, WM_APP, 0, 0);
        EXPECT_EQ(passed, c.seen) << c.steps;
        SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"still an edit field"));
        EXPECT_EQ(SendMessageW(window, EM_LINELENGTH, 0, 0), 19) << c.steps;
        DestroyWindow(window);
        EXPECT_TRUE(!a.Handle() && !b.Handle()) << c.steps;
    }
}

class PaintCounter final : public WindowSubclass {
  public:
    int paintings = 0;

  private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        paintings += message == WM_PAINT;
        return Default(message, wParam, lParam);
    }
};

TEST_F(FlexGridWindowTest, ManyChangesArePaintedOnceAndNoneWhileRedrawIsOff) {
    Settle();
    PaintCounter counter;
    ASSERT_TRUE(counter.Attach(grid_->Handle()));
    const auto before = Pixels(grid_->Handle(), false);
    Model().SetRedraw(false);
    for (int i = 0; i < 100'000; ++i) Model().SetTextMatrix(1 + i % 29, 1 + i % 7, u"x");
    InvalidateRect(grid_->Handle(), nullptr, TRUE);
    Settle();
    EXPECT_EQ(Pixels(grid_->Handle(), false), before);
    counter.paintings = 0;
    Model().SetRedraw(true);
    for (int i = 0; i < 1000; ++i) Model().SetTextMatrix(1 + i % 29, 1 + i % 7, u"y");
    Settle();
    EXPECT_EQ(counter.paintings, 1);
    EXPECT_EQ(WrongPixels(grid_->Handle()), 0);
}

TEST_F(FlexGridWindowTest, PlacesAreInTwipsFromTheOuterCornerAndStayWithinTheirRange) {
    Model().SetBorderStyle(flexgrid::GridBorder::single);
    Model().MoveTo(2, 1);
    const int border = GetSystemMetrics(SM_CXEDGE);
    EXPECT_EQ(grid_->CellTwips(),
              (Rect{(border + 64) * 15, (border + 32) * 15, (border + 127) * 15, (border + 47) * 15}));
    Model().SetCols(40);
    Model().SetColWidth(Grid::all, INT32_MAX);
    Model().SetRowHeight(Grid::all, INT32_MAX);
    EXPECT_EQ(grid_->ColPos(39), INT32_MAX);
    EXPECT_EQ(grid_->RowPos(29), INT32_MAX);
    Model().SetRightToLeft(true);
    EXPECT_EQ(grid_->ColPos(39), INT32_MIN);
}

// The tip's text while one is on the screen, else empty.
std::wstring ShownTip() {
    for (const HWND tip : ThreadWindows(TOOLTIPS_CLASSW)) {
        wchar_t shown[64] = {};
        if (IsWindowVisible(tip) && GetWindowTextW(tip, shown, 64) > 0) return shown;
    }
    return {};
}

TEST_F(FlexGridWindowTest, ATipIsAskedForWhenThePointerRestsAndGoesWithTheWindow) {
    log_.onToolTip = [&](int row, int col) { return col == 1 ? Model().TextMatrix(row, col) : Text(); };
    const auto tips = [] { return ThreadWindows(TOOLTIPS_CLASSW).size(); };
    const auto comes = [](const wchar_t* text) { return WaitFor([&] { return ShownTip() == text; }, 2000); };
    const std::size_t before = tips();
    for (int x = 64 + 4; x < 64 * 2 + 20; x += 16) {
        MoveTo(x, 40);
        EXPECT_EQ(ShownTip(), L"");
        if (x == 64 + 4) Model().SetTextMatrix(2, 1, u"since changed");
    }
    EXPECT_EQ(log_.tipsAsked, 0) << "not on the way";
    MoveTo(64 + 20, 40);
    EXPECT_TRUE(comes(L"since changed"));
    MoveTo(64 + 20, 56);
    EXPECT_TRUE(comes(L"d")) << "the next cell's";
    MoveTo(64 * 2 + 20, 56);
    Settle(800);
    EXPECT_EQ(ShownTip(), L"") << "a cell without one";
    EXPECT_EQ(tips(), before + 1);
    // The control's window goes and a new one comes, within the same form.
    DestroyWindow(grid_->Handle());
    EXPECT_EQ(tips(), before);
    ASSERT_TRUE(grid_->CreateIn(frame_.Window(), {10, 10, 310, 210}));
    MoveTo(64 + 20, 56);
    EXPECT_TRUE(comes(L"d")) << "the cell of before";
}

TEST(FlexGridWindowLife, WorksWithoutAWindow) {
    FlexGridWindow grid;
    grid.MoveTo({0, 0, 300, 100});
    grid.Model().SetRows(50);
    grid.Model().MoveTo(40, 1);
    EXPECT_GT(grid.CellTwips().top, 0);
    EXPECT_TRUE(grid.RowIsVisible(40));
    EXPECT_EQ(grid.MouseRow(), 0);
}

}  // namespace
}  // namespace qvx::test
