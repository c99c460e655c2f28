// The whole grid checked, as a host does before it saves.
#include <gtest/gtest.h>

#include "tests/control/combogrid_form.h"
#include "tests/support/input.h"
#include "tests/support/message_box.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

TEST(ComboGridValidation, AnOpenEditCountsAndTheFirstWrongCellIsReported) {
    F form({{L"RequiredFields", Variant(u";Name;")}});
    form.SetCell(2, F::name, u"b");
    form.GoTo(1, F::name);
    form.Type(L"a");
    ASSERT_TRUE(form.Frame());
    EXPECT_EQ(*Call(form.grid.get(), L"ValidateEntry").ToLong(), 0);
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ(form.Cell(1, F::name), u"a");
    Put(form.grid.get(), L"CheckValueFor", {Variant(u";Rate-2;")});
    form.GoTo(2, F::month);
    const Person person([&] {
        // It closes itself.
        if (WaitForBox()) WaitFor([] { return !FindBox(); }, 4000, false);
    });
    EXPECT_NE(*Call(form.grid.get(), L"ValidateEntry").ToLong(), 0);
    EXPECT_EQ(form.Current(), "1,2") << "in front of it";
    EXPECT_EQ(GetFocus(), form.InnerGrid());
}

}  // namespace
}  // namespace qvx::test
