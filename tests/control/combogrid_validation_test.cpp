// The whole grid checked, as a host does before it saves.
#include <gtest/gtest.h>

#include "tests/control/combogrid_form.h"
#include "tests/support/dialog_closer.h"
#include "tests/support/input.h"
#include "tests/support/message_box.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

TEST(ComboGridValidation, TheFirstWrongCellIsToldAndTheCursorGoesInFrontOfIt) {
    struct Case {
        const wchar_t* required;
        const wchar_t* rules;
        bool wrong;
        const char* current;
    };
    const Case cases[] = {
        {L"", L"", false, "2,4"},
        {L";Qty;", L"", true, "1,1"},  // the column before the failing one
        {L"", L";Rate-2;", true, "1,2"},
        {L";Skip;", L"", true, "1,1"},  // before it stands an inactive column: from the first one on
        {L";No;", L"", true, "1,1"},    // and so before the first
    };
    for (const Case& c : cases) {
        F form({{L"RequiredFields", Variant(FromWide(c.required))}, {L"CheckValueFor", Variant(FromWide(c.rules))}});
        form.GoTo(2, F::month);
        long answer = 7;
        {
            const Person person([&] {
                if (!c.wrong) return;
                // It closes itself.
                if (WaitForBox()) WaitFor([] { return !FindBox(); }, 4000, false);
            });
            answer = *Call(form.grid.get(), L"ValidateEntry").ToLong();
        }
        EXPECT_EQ(answer != 0, c.wrong);
        EXPECT_EQ(form.Current(), c.current);
        EXPECT_EQ(GetFocus(), form.InnerGrid());
    }
}

TEST(ComboGridValidation, AnOpenEditCounts) {
    F form({{L"RequiredFields", Variant(u";Name;")}});
    form.SetCell(2, F::name, u"b");
    form.GoTo(1, F::name);
    form.Type(L"a");
    ASSERT_TRUE(form.Frame());
    EXPECT_EQ(*Call(form.grid.get(), L"ValidateEntry").ToLong(), 0);
    EXPECT_FALSE(form.Frame());
    EXPECT_EQ(form.Cell(1, F::name), u"a");
}

}  // namespace
}  // namespace qvx::test
