// The control kit's example is a control that works.
#include <gtest/gtest.h>

#include "Qvx.h"
#include "tests/control/lamp_control.h"
#include "tests/support/container.h"

namespace qvx::test {

const ControlClass LampControl::classInfo{&CLSID_FlatBorder, &DIID___FlatBorder,         L"Lamp", L"Shows a lamp", 0,
                                          usualMiscStatus,   &CreateControl<LampControl>};

namespace {

ComPtr<IUnknown> NewLamp() {
    ComPtr<IUnknown> lamp;
    EXPECT_EQ(S_OK, CreateControl<LampControl>(IID_IUnknown, lamp.put_void()));
    return lamp;
}

TEST(LampControl, IsLitSavedAndShown) {
    const auto first = NewLamp();
    auto lamp = first.As<_Lamp>();
    ASSERT_EQ(S_OK, lamp->put_Lit(VARIANT_TRUE));
    EXPECT_EQ(S_OK, first.As<IPersistStreamInit>()->IsDirty());
    const auto bag = SaveToBag(first.get());
    EXPECT_EQ(u"Lit=True\n", bag->Print());

    const auto second = NewLamp();
    Container container({});
    container.Place(second, [&](IUnknown* placed) { EXPECT_EQ(S_OK, LoadFromBag(placed, bag.get())); });
    container.Activate();
    Pump();
    const HWND window = container.ControlWindow();
    const HDC dc = GetDC(window);
    EXPECT_EQ(RGB(255, 255, 0), GetPixel(dc, 5, 5));
    ReleaseDC(window, dc);
    double watts = 0;
    EXPECT_EQ(S_OK, second.As<_Lamp>()->get_Watts(&watts));
    EXPECT_EQ(60, watts);
}

}  // namespace
}  // namespace qvx::test
