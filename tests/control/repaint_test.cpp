// What a shown control looks like after a change, beside one that was made with it: every property of every control and
// of the grid inside one, as the type library lists them, in design mode and in run mode, and other sizes.
#include <gtest/gtest.h>
#include <olectl.h>

#include <memory>

#include "com/font_object.h"
#include "common/run_time_error.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/container.h"
#include "tests/support/dual_interfaces.h"
#include "tests/support/each_control.h"
#include "tests/support/input.h"
#include "tests/support/menu_pixels.h"
#include "tests/support/narrow.h"
#include "tests/support/resolution.h"
#include "tests/support/server_under_test.h"

namespace qvx::test {
namespace {

constexpr RECT usual{10, 10, 250, 130};

// One value for one property; indexed ones are set at 1.
struct Change {
    std::wstring property;
    std::vector<Variant> arguments;

    std::string Print() const {
        Text text;
        for (const Variant& argument : arguments) text += u" " + argument.ToText().value_or(u"(object)");
        return Narrow(FromWide(property.c_str())) + Narrow(text);
    }
    bool ApplyTo(IDispatch* object) const {
        std::vector<VARIANT> given;
        for (const Variant& argument : arguments) given.push_back(argument.get());
        return SUCCEEDED(Invoke(object, property.c_str(), DISPATCH_PROPERTYPUT, given).result);
    }
};

// Values that differ from what a control begins with; of whole numbers all that enumerations have, and a few more.
std::vector<Variant> ValuesOf(const Function& put) {
    switch (put.parameters.back().Target()) {
        case VT_BOOL:
            return {Variant(true), Variant(false)};
        case VT_I2:
        case VT_I4: {
            std::vector<Variant> values;
            for (long value = 0; value <= 9; ++value) values.emplace_back(value);
            return values;
        }
        case VT_UI4:
            return {Variant(static_cast<long>(RGB(230, 120, 10)))};
        case VT_R4:
        case VT_R8:
            return {Variant(2.5)};
        case VT_BSTR:
            // What means something to the property; others take any.
            return {Variant(put.name == "FormatString"       ? u"<No|>Quantity|Price"
                            : put.name == "InVisibleColumns" ? u";B;"
                                                             : u"15")};
        default:
            break;
    }
    if (put.name.ends_with("Font")) return {Variant(static_cast<IDispatch*>(MakeFontObject({u"Tahoma", 18}).get()))};
    if (put.name.ends_with("Picture"))
        return {Variant(static_cast<IDispatch*>(SolidPicture({9, 9}, RGB(10, 120, 230)).get()))};
    return {};
}

// All that can be written of an object.
std::vector<Change> ChangesOf(IDispatch* object) {
    std::vector<Change> changes;
    for (const Function& function : FunctionsOf(object)) {
        if (function.kind != INVOKE_PROPERTYPUT) continue;
        for (const Variant& value : ValuesOf(function)) {
            changes.push_back({function.WideName(), std::vector<Variant>(function.Arguments() - 1, Variant(1))});
            changes.back().arguments.push_back(value);
        }
    }
    return changes;
}

class RepaintTest : public ::testing::TestWithParam<std::tuple<const CLSID*, bool>> {
  protected:
    RepaintTest() { MoveMouseTo({600, 500}); }

    // A control that holds something to see.
    std::unique_ptr<Container> Make(RECT bounds = usual) const {
        const auto [id, userMode] = GetParam();
        Container::Options options = HostInMode(userMode);
        options.bounds = bounds;
        auto container = std::make_unique<Container>(std::move(options));
        const auto bag = MakeObject<MemoryBag>();
        if (*id == CLSID_ComboGrid) {
            bag->Set(L"Rows", Variant(4));
            bag->Set(L"Cols", Variant(4));
            bag->Set(L"FormatString", Variant(u"No|A|B|C;No|x|x|y"));
            bag->Set(L"ColWidth0", Variant(600));
        }
        container->Place(ServerUnderTest::Get().Create(*id),
                         [&](IUnknown* control) { EXPECT_EQ(S_OK, LoadFromBag(control, bag.get())); });
        return container;
    }
    static PixelPicture Shown(const Container& container) {
        Pump();
        return PictureOnScreen(container.ControlWindow());
    }
    // Makes each change of an object that a control has, or of the control, and returns how many of them show.
    int CompareChanges(const std::function<ComPtr<IDispatch>(const Container&)>& object) const {
        const auto container = Make();
        int visible = 0;
        for (const Change& change : ChangesOf(object(*container).get())) {
            SCOPED_TRACE(change.Print());
            const auto fresh = Make();
            if (!change.ApplyTo(object(*fresh).get())) continue;
            fresh->Activate();
            const PixelPicture expected = Shown(*fresh);
            fresh->Close();
            const auto living = Make();
            living->Activate();
            const PixelPicture before = Shown(*living);
            EXPECT_TRUE(change.ApplyTo(object(*living).get()));
            EXPECT_EQ(0, Different(expected, Shown(*living)));
            visible += Different(before, expected) != 0 ? 1 : 0;
        }
        return visible;
    }
    static int Different(const PixelPicture& a, const PixelPicture& b) {
        if (a.size != b.size) return INT_MAX;
        int different = 0;
        for (std::size_t i = 0; i < a.pixels.size(); ++i) different += a.pixels[i] != b.pixels[i] ? 1 : 0;
        return different;
    }
};

std::string ModeName(const ::testing::TestParamInfo<std::tuple<const CLSID*, bool>>& parameter) {
    const auto [id, userMode] = parameter.param;
    return ControlName({id, parameter.index}) + (userMode ? "InRunMode" : "InDesignMode");
}

INSTANTIATE_TEST_SUITE_P(Controls, RepaintTest,
                         ::testing::Combine(::testing::ValuesIn(EachControlId()), ::testing::Bool()), ModeName);

TEST_P(RepaintTest, ASetPropertyShowsAtOnce) {
    const bool hidden = std::get<bool>(GetParam()) && IsInvisible(std::get<0>(GetParam()));
    const int visible = CompareChanges([](const Container& control) { return control.Automation(); });
    const CLSID& id = *std::get<0>(GetParam());
    const bool plain = id == CLSID_Backup || id == CLSID_CMenus;
    EXPECT_EQ(!hidden && !plain, visible > 0) << "something is there to see";
}

TEST_P(RepaintTest, AnotherSizeShowsWhole) {
    for (const RECT& bounds : {RECT{10, 10, 330, 190}, RECT{10, 10, 170, 80}, RECT{10, 10, 330, 80}}) {
        const auto fresh = Make(bounds);
        fresh->Activate();
        const PixelPicture expected = Shown(*fresh);
        fresh->Close();
        const auto living = Make();
        living->Activate();
        Shown(*living);
        living->MoveTo(bounds);
        EXPECT_EQ(0, Different(expected, Shown(*living))) << bounds.right << " x " << bounds.bottom;
    }
}

class InnerGridRepaintTest : public RepaintTest {};

INSTANTIATE_TEST_SUITE_P(Controls, InnerGridRepaintTest,
                         ::testing::Combine(::testing::Values(&CLSID_ComboGrid), ::testing::Bool()), ModeName);

TEST_P(InnerGridRepaintTest, ASetPropertyShowsAtOnce) {
    const int visible = CompareChanges(
        [](const Container& control) { return Call(control.Automation().get(), L"Grid").ToObject<IDispatch>(); });
    EXPECT_GT(visible, 40);
}

// Less is drawn than the system asks for when the focus comes or goes and when something has been in front.
TEST(Repaint, WhatIsLeftAloneIsAsIfAllWereDrawnAnew) {
    for (const long highlight : {0L, 1L, 2L}) {
        for (const long merge : {0L, 1L}) {
            SCOPED_TRACE(std::to_string(highlight) + " " + std::to_string(merge));
            ComboGridForm form({{L"HighLight", Variant(highlight)}, {L"MergeCells", Variant(merge)}});
            const auto inner = form.Inner();
            Put(form.grid.get(), L"Rows", {Variant(40L)});
            form.GoTo(1, 1);
            Put(inner.get(), L"RowSel", {Variant(3L)});
            Put(inner.get(), L"ColSel", {Variant(2L)});
            const auto shown = [&] {
                form.Pump();
                return PictureOnScreen(form.InnerGrid()).pixels;
            };
            const auto compareWithAll = [&](const char* when) {
                auto pixels = shown();
                Call(inner.get(), L"Refresh");
                EXPECT_TRUE(pixels == shown()) << when;
                return pixels;
            };
            const auto focused = compareWithAll("focused");
            SetFocus(form.container.Window());
            EXPECT_TRUE(compareWithAll("without the focus") != focused);
            SetFocus(form.InnerGrid());
            EXPECT_TRUE(compareWithAll("focused again") == focused);
            RECT grid{};
            GetWindowRect(form.InnerGrid(), &grid);
            MapWindowPoints(nullptr, form.container.Window(), reinterpret_cast<POINT*>(&grid), 2);
            // Over cells, over the bars, and over both.
            for (const POINT& at :
                 {POINT{20, 30}, POINT{grid.right - 15, 60}, POINT{grid.right - 60, 60}, POINT{60, grid.bottom - 30}}) {
                const HWND cover = CreateWindowW(L"STATIC", L"", WS_CHILD | WS_VISIBLE, at.x, at.y, 50, 20,
                                                 form.container.Window(), nullptr, nullptr, nullptr);
                SetWindowPos(cover, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
                EXPECT_TRUE(shown() != focused);
                DestroyWindow(cover);
                EXPECT_TRUE(shown() == focused) << at.x << ", " << at.y;
            }
        }
    }
}

}  // namespace
}  // namespace qvx::test
