// The flat border on windows of all kinds: its pixels, and how it comes and goes.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>
#include <olectl.h>

#include <memory>

#include "Qvx.h"
#include "tests/support/container.h"
#include "tests/support/late_bound_object.h"
#include "tests/support/resource_counts.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

constexpr COLORREF black = RGB(0, 0, 0);
constexpr COLORREF yellow = RGB(250, 251, 208);
constexpr COLORREF red = RGB(255, 0, 0);

LRESULT CALLBACK FirstProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == WM_APP ? 1 : DefWindowProcW(window, message, wParam, lParam);
}
LRESULT CALLBACK SecondProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == WM_APP ? 2 : DefWindowProcW(window, message, wParam, lParam);
}

WNDPROC ProcedureOf(HWND window) { return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC)); }

// A window for a border: child windows of one parent, each with a frame of the system's.
class Framed {
  public:
    Framed(HWND parent, WNDPROC procedure, const wchar_t* windowClass = L"TestContainer") {
        window_ = CreateWindowExW(WS_EX_CLIENTEDGE, windowClass, L"", WS_CHILD | WS_VISIBLE | WS_BORDER, 30, 40, 120,
                                  80, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
        if (procedure) SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    }
    ~Framed() { DestroyWindow(window_); }
    Framed(const Framed&) = delete;
    Framed& operator=(const Framed&) = delete;
    HWND Window() const { return window_; }
    WNDPROC Procedure() const { return ProcedureOf(window_); }
    LRESULT Ask() const { return SendMessageW(window_, WM_APP, 0, 0); }

    COLORREF Pixel(int x, int y) const {
        RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW);
        const HDC dc = GetWindowDC(window_);
        const COLORREF color = GetPixel(dc, x, y);
        ReleaseDC(window_, dc);
        return color;
    }
    // From the left edge inwards, at half height.
    std::vector<COLORREF> Edge() const { return {Pixel(0, 40), Pixel(1, 40), Pixel(2, 40)}; }
    bool Bordered() const { return Edge() == std::vector<COLORREF>{yellow, black, black}; }

  private:
    HWND window_;
};

// A border control whose host says on which window it stands.
class Border {
  public:
    explicit Border(HWND window) {
        container_ = MakeObject<LateBoundObject>();
        Stand(window);
        extended_ = MakeObject<LateBoundObject>();
        extended_->members[L"Container"] = Variant(static_cast<IDispatch*>(container_.get()));
        Container::Options options = HostInMode(true);
        options.extended = extended_;
        site_ = std::make_unique<Container>(options);
        site_->Place(ServerUnderTest::Get().Create(CLSID_FlatBorder), [](IUnknown* control) {
            auto bag = MakeObject<MemoryBag>();
            EXPECT_EQ(S_OK, LoadFromBag(control, bag.get()));
        });
    }
    void Stand(HWND window) const {
        container_->members[L"hWnd"] = Variant(static_cast<long>(reinterpret_cast<LONG_PTR>(window)));
    }
    Container& Site() const { return *site_; }
    void End() { site_.reset(); }
    void Set(const wchar_t* name, COLORREF color) const {
        Put(site_->Automation().get(), name, {Variant(static_cast<long>(color))});
    }

  private:
    ComPtr<LateBoundObject> container_;
    ComPtr<LateBoundObject> extended_;
    std::unique_ptr<Container> site_;
};

class FlatBorder : public ::testing::Test {
  protected:
    FlatBorder() : top_({}) { SetForegroundWindow(top_.Window()); }
    Container top_;  // with a window to put others into
};

TEST_F(FlatBorder, IsPaintedOverTheFrame) {
    const Framed frame(top_.Window(), nullptr);
    const WNDPROC before = frame.Procedure();
    const auto edge = frame.Edge();
    EXPECT_FALSE(frame.Bordered());
    Border border(frame.Window());
    EXPECT_NE(frame.Procedure(), before);
    EXPECT_TRUE(frame.Bordered());
    // All around, to the corners, and no further inwards.
    for (const POINT corner : {POINT{0, 0}, POINT{119, 0}, POINT{0, 79}, POINT{119, 79}}) {
        EXPECT_EQ(frame.Pixel(corner.x, corner.y), yellow);
    }
    for (const POINT inner : {POINT{1, 1}, POINT{118, 1}, POINT{1, 78}, POINT{118, 78}, POINT{60, 1}, POINT{117, 40}}) {
        EXPECT_EQ(frame.Pixel(inner.x, inner.y), black);
    }
    EXPECT_NE(frame.Pixel(4, 40), black);
    border.End();
    EXPECT_EQ(frame.Procedure(), before);
    EXPECT_EQ(frame.Edge(), edge) << "the frame is the system's again";
}

TEST_F(FlatBorder, FollowsItsColorsAtOnce) {
    const Framed frame(top_.Window(), nullptr);
    const Border border(frame.Window());
    SetWindowTextW(frame.Window(), L"other");
    SendMessageW(frame.Window(), WM_NCACTIVATE, FALSE, 0);
    EXPECT_TRUE(frame.Bordered()) << "in spite of what the system draws";
    border.Set(L"OuterBorder", red);
    border.Set(L"InnerBorder", static_cast<COLORREF>(0x80000000u | COLOR_HIGHLIGHT));
    EXPECT_EQ(frame.Edge(), (std::vector<COLORREF>{red, GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_HIGHLIGHT)}));
    EXPECT_EQ(SaveToBag(border.Site().Control())->Print(), u"InnerBorder=-2147483635\nOuterBorder=255\n");
}

// The library keeps one previous procedure: the second window's.
TEST_F(FlatBorder, TheSecondOnesProcedureStaysWhicheverEndsFirst) {
    for (const bool firstEndsFirst : {true, false}) {
        SCOPED_TRACE(firstEndsFirst);
        const Framed one(top_.Window(), FirstProcedure);
        const Framed two(top_.Window(), SecondProcedure);
        Border first(one.Window());
        EXPECT_EQ(one.Ask(), 1) << "nothing is left of others";
        Border second(two.Window());
        EXPECT_EQ(one.Ask(), 2);
        EXPECT_EQ(two.Ask(), 2);
        EXPECT_TRUE(one.Bordered() && two.Bordered());
        (firstEndsFirst ? first : second).End();
        EXPECT_EQ((firstEndsFirst ? one : two).Procedure(), &SecondProcedure);
        EXPECT_TRUE((firstEndsFirst ? two : one).Bordered());
        (firstEndsFirst ? second : first).End();
        EXPECT_EQ((firstEndsFirst ? two : one).Procedure(), &SecondProcedure);
    }
    EXPECT_EQ(S_OK, ServerUnderTest::Get().CanUnload());
}

// Another class's procedure would make of a window's bytes what it likes.
TEST_F(FlatBorder, AWindowOfAnotherClassKeepsItsOwnProcedure) {
    const Framed one(top_.Window(), FirstProcedure);
    const Framed field(top_.Window(), nullptr, L"EDIT");
    const WNDPROC before = field.Procedure();
    Border first(one.Window());
    Border second(field.Window());
    EXPECT_EQ(one.Ask(), 1);
    SetWindowTextW(field.Window(), L"text");
    EXPECT_EQ(SendMessageW(field.Window(), EM_LINELENGTH, 0, 0), 4);
    first.End();
    EXPECT_EQ(one.Procedure(), &FirstProcedure);
    second.End();
    EXPECT_EQ(field.Procedure(), before);
}

TEST_F(FlatBorder, TwoOnOneWindowDoNotCallEachOtherForEver) {
    const Framed frame(top_.Window(), FirstProcedure);
    Border first(frame.Window());
    Border second(frame.Window());
    second.Set(L"OuterBorder", red);
    EXPECT_EQ(frame.Ask(), 1);
    EXPECT_EQ(frame.Pixel(0, 40), red);
    first.Set(L"InnerBorder", red);
    EXPECT_EQ(frame.Pixel(0, 40), yellow) << "the colours that were set last";
    second.End();
    EXPECT_EQ(frame.Pixel(0, 40), yellow) << "the other one's is left";
    first.End();
    EXPECT_EQ(frame.Procedure(), &FirstProcedure);
}

LRESULT CALLBACK Tap(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR data) {
    if (message == WM_APP) ++*reinterpret_cast<int*>(data);
    return DefSubclassProc(window, message, wParam, lParam);
}

// Somebody who came after the border keeps his place when it ends, and may go after it.
TEST_F(FlatBorder, LeavesThoseWhoCameLaterAlone) {
    const Framed frame(top_.Window(), FirstProcedure);
    int seen = 0;
    Border border(frame.Window());
    ASSERT_TRUE(SetWindowSubclass(frame.Window(), Tap, 1, reinterpret_cast<DWORD_PTR>(&seen)));
    border.End();
    EXPECT_EQ(frame.Ask(), 1);
    EXPECT_EQ(seen, 1);
    EXPECT_FALSE(frame.Bordered());
    RemoveWindowSubclass(frame.Window(), Tap, 1);
    EXPECT_EQ(frame.Ask(), 1);
    Border again(frame.Window());
    EXPECT_TRUE(frame.Bordered());
    EXPECT_EQ(frame.Ask(), 1);
}

// One procedure that serves both windows, behind the border of one and before that of the other: each would send the
// other's messages round in circles.
TEST_F(FlatBorder, AProcedureOnBothSidesOfItEndsNoMessageInACircle) {
    const Framed one(top_.Window(), nullptr);
    const Framed two(top_.Window(), nullptr);
    int seen = 0;
    ASSERT_TRUE(SetWindowSubclass(two.Window(), Tap, 1, reinterpret_cast<DWORD_PTR>(&seen)));
    const Border first(one.Window());
    ASSERT_TRUE(SetWindowSubclass(one.Window(), Tap, 1, reinterpret_cast<DWORD_PTR>(&seen)));
    const Border second(two.Window());
    one.Ask();
    two.Ask();
    EXPECT_GE(seen, 2);
    EXPECT_TRUE(one.Bordered());
}

TEST_F(FlatBorder, OutlivesItsWindowAndFollowsItsContainer) {
    auto one = std::make_unique<Framed>(top_.Window(), FirstProcedure);
    const Framed two(top_.Window(), FirstProcedure);
    Border border(one->Window());
    border.Stand(two.Window());
    border.Site().Activate();
    EXPECT_EQ(one->Procedure(), &FirstProcedure);
    EXPECT_TRUE(two.Bordered());
    border.Stand(one->Window());
    border.Site().SetAmbient(DISPID_AMBIENT_LOCALEID, Variant(1033));
    EXPECT_NE(one->Procedure(), &FirstProcedure);
    one.reset();
    border.Set(L"OuterBorder", red);
    border.End();
    EXPECT_EQ(two.Procedure(), &FirstProcedure);
    EXPECT_EQ(S_OK, ServerUnderTest::Get().CanUnload());
}

// Hosts that offer less: the form of the control, the window that the host keeps it in, and no window at all.
TEST_F(FlatBorder, FindsTheWindowOfHostsThatOfferLess) {
    const Framed frame(top_.Window(), nullptr);
    const auto form = MakeObject<LateBoundObject>();
    form->members[L"hWnd"] = Variant(static_cast<long>(reinterpret_cast<LONG_PTR>(frame.Window())));
    const auto extended = MakeObject<LateBoundObject>();
    extended->members[L"Parent"] = Variant(static_cast<IDispatch*>(form.get()));
    Container::Options options;
    options.extended = extended;
    Container container(options);
    container.Place(ServerUnderTest::Get().Create(CLSID_FlatBorder));
    EXPECT_TRUE(frame.Bordered());
    container.Close();

    Container bare({});
    const WNDPROC before = ProcedureOf(bare.Window());
    bare.Place(ServerUnderTest::Get().Create(CLSID_FlatBorder));
    EXPECT_NE(ProcedureOf(bare.Window()), before);
    bare.Close();
    EXPECT_EQ(ProcedureOf(bare.Window()), before);

    // Numbers that are no windows.
    for (const long number : {0L, -1L, 12345678L}) {
        form->members[L"hWnd"] = Variant(number);
        container.Place(ServerUnderTest::Get().Create(CLSID_FlatBorder));
        container.Close();
    }
    const auto alone = ServerUnderTest::Get().Create(CLSID_FlatBorder);
    EXPECT_EQ(S_OK, alone.As<IPersistStreamInit>()->InitNew());
}

TEST_F(FlatBorder, PaintingLeavesNothingBehind) {
    const Framed frame(top_.Window(), nullptr);
    const Border border(frame.Window());
    const auto paint = [&] {
        RedrawWindow(frame.Window(), nullptr, nullptr, RDW_FRAME | RDW_INVALIDATE | RDW_UPDATENOW);
    };
    ExpectNothingLeftBehind(1000, paint);
}

}  // namespace
}  // namespace qvx::test
