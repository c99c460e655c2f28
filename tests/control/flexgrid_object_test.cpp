// The flexible grid's automation object as hosts reach it, late-bound through ComboGrid.Grid.
#include <windows.h>

#include <gtest/gtest.h>
#include <ocidl.h>
#include <olectl.h>

#include "Qvx.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/property_change.h"

namespace qvx::test {
namespace {

constexpr DISPID enterCell = 1;
constexpr DISPID leaveCell = 2;
constexpr DISPID scroll = 5;
constexpr DISPID compare = 6;

std::string Spelled(const wchar_t* name) { return {name, name + std::char_traits<wchar_t>::length(name)}; }

class FlexGridObject : public ::testing::Test {
  protected:
    FlexGridObject() { Place(); }
    // A fresh control in a fresh container.
    void Place() {
        Container::Options options = HostInMode(true);
        options.bounds = {10, 10, 310, 160};
        container_ = std::make_unique<Container>(options);
        container_->Place(ServerUnderTest::Get().Create(CLSID_ComboGrid));
        grid_ = Call(container_->Automation().get(), L"Grid").ToObject<IDispatch>();
        Put(grid_.get(), L"FixedCols", {Variant(0)});
        Put(grid_.get(), L"Rows", {Variant(6)});
        Put(grid_.get(), L"Cols", {Variant(4)});
        Put(grid_.get(), L"FixedRows", {Variant(1)});
        Put(grid_.get(), L"FixedCols", {Variant(1)});
    }
    Text Read(const wchar_t* name, const std::vector<Variant>& arguments = {}) {
        return Call(grid_.get(), name, arguments).ToText().value_or(u"?");
    }

    std::unique_ptr<Container> container_;
    ComPtr<IDispatch> grid_;
};

TEST_F(FlexGridObject, EveryWritablePropertyKeepsWhatItIsGiven) {
    std::string others;
    ForEachProperty(grid_.get(), [&](const Function& member, const std::vector<VARIANT>& index) {
        Place();
        if (!Change(grid_.get(), member, index)) others += member.name + " ";
    });
    EXPECT_EQ(others, "ColPosition RowPosition CellPicture Sort ") << "orders, and a picture by its value";
}

TEST_F(FlexGridObject, FiresItsEventsAndAsksForTheOrderOfRows) {
    const auto recorder = MakeObject<EventRecorder>();
    const Connection connection(grid_.get(), EventsOf(grid_.get()), recorder.get());
    Put(grid_.get(), L"Row", {Variant(3)});
    EXPECT_EQ(recorder->Count(leaveCell), 1U);
    EXPECT_EQ(recorder->Count(enterCell), 1U);
    for (int row = 1; row < 6; ++row) Put(grid_.get(), L"TextMatrix", {Variant(row), Variant(1), Variant(row)});
    recorder->onEvent = [](DISPID event, DISPPARAMS& arguments) {
        if (event == compare) {
            // Later rows first. Arguments come from right to left.
            ASSERT_EQ(arguments.rgvarg[0].vt, VT_BYREF | VT_I2);
            *arguments.rgvarg[0].piVal = static_cast<short>(arguments.rgvarg[1].lVal - arguments.rgvarg[2].lVal);
        }
    };
    Put(grid_.get(), L"Sort", {Variant(9)});
    EXPECT_GT(recorder->Count(compare), 0U);
    Text order;
    for (int row = 1; row < 6; ++row) order += Read(L"TextMatrix", {Variant(row), Variant(1)});
    EXPECT_EQ(order, u"54321");
}

TEST_F(FlexGridObject, FontAndPicturesAreObjects) {
    const auto font = Call(grid_.get(), L"Font").ToObject<IFontDisp>();
    ASSERT_TRUE(font);
    const auto size = Query<IFont>(font.get());
    CY points;
    points.int64 = 120000;
    size->put_Size(points);
    Put(grid_.get(), L"Row", {Variant(1)});
    EXPECT_EQ(Read(L"CellFontSize"), u"12") << "the grid follows its font object";

    const auto picture = Call(grid_.get(), L"Picture").ToObject<IPicture>();
    ASSERT_TRUE(picture);
    SHORT type = 0;
    picture->get_Type(&type);
    EXPECT_EQ(type, PICTYPE_BITMAP);
    const ComPtr<IDispatch> given = picture.As<IDispatch>();
    VARIANT value{};
    value.vt = VT_DISPATCH;
    value.pdispVal = given.get();
    EXPECT_EQ(Invoke(grid_.get(), L"CellPicture", DISPATCH_PROPERTYPUTREF, {value}).result, S_OK);
    EXPECT_EQ(Call(grid_.get(), L"CellPicture").ToObject<IUnknown>(), picture.As<IUnknown>());
}

TEST_F(FlexGridObject, TellsOfAScrollOnceThatIsHeldAtTheEnd) {
    container_->Activate();
    EXPECT_NE(Read(L"hWnd"), u"0");
    EXPECT_NE(Read(L"hWnd"), Call(container_->Automation().get(), L"hWnd").ToText());
    Put(grid_.get(), L"Rows", {Variant(100)});
    Put(grid_.get(), L"ColWidth", {Variant(-1), Variant(3000)});
    const auto recorder = MakeObject<EventRecorder>();
    const Connection connection(grid_.get(), EventsOf(grid_.get()), recorder.get());
    for (const wchar_t* member : {L"TopRow", L"LeftCol"}) {
        recorder->events.clear();
        for (const int beyond : {0, 1}) {
            Put(grid_.get(), member, {Variant(member[0] == L'T' ? 99 - beyond : 3)});
            EXPECT_EQ(recorder->Count(scroll), 1U) << Spelled(member) << beyond;
        }
    }
    EXPECT_NE(Read(L"TopRow"), u"99") << "held where the page is full";
    EXPECT_EQ(Read(L"RowIsVisible", {Variant(99)}), u"True");
    EXPECT_EQ(Read(L"RowIsVisible", {Variant(2)}), u"False");
}

}  // namespace
}  // namespace qvx::test
