// Sorting by real clicks on headers.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/control/combogrid_form.h"
#include "tests/support/input.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

class ComboGridSort : public ::testing::Test {
  protected:
    ComboGridSort() {
        form.Fill({{u"pear", u"10"}, {u"Apple", u"9"}, {u"\u00E9clair", u"9"}, {u"", u"100"}});
        form.GoTo(2, F::name);
        form.Log();
    }
    std::string Names() const { return form.Column(F::name); }
    // The events of sorting since the last call, and what the rows are sorted by now.
    std::string Sorts() {
        std::string sorts;
        std::istringstream all(form.Log());
        for (std::string line; std::getline(all, line);)
            if (line.rfind("13(", 0) == 0 || line.rfind("14(", 0) == 0) sorts += line + "\n";
        return sorts + Narrow(Call(form.grid.get(), L"SortedBy").ToText().value_or(u"?"));
    }

    F form{{{L"SortOnHeader", Variant(true)}}};
};

TEST_F(ComboGridSort, ClicksSortReverseAndAdd) {
    form.Click(0, F::name);
    EXPECT_EQ("14(;Name-0;, False)\n13(;Name-0;)\n;Name-0;", Sorts());
    EXPECT_EQ("Apple/?clair/pear//", Names());
    EXPECT_EQ("1,1", form.Current()) << "the cursor stays on its record";
    form.Click(0, F::name);
    EXPECT_EQ("14(;Name-1;, False)\n13(;Name-1;)\n;Name-1;", Sorts());
    EXPECT_EQ("pear/?clair/Apple//", Names());
    form.Click(0, F::qty);
    KeyDown(VK_SHIFT);
    form.Click(0, F::name);
    KeyUp(VK_SHIFT);
    EXPECT_EQ("Apple/?clair/pear//", Names());
    EXPECT_EQ("9/9/10/100/", form.Column(F::qty));
    Sorts();
    Call(form.grid.get(), L"Undo");
    Call(form.grid.get(), L"Undo");
    EXPECT_EQ(";Name-1;", Sorts());
    EXPECT_EQ("pear/?clair/Apple//", Names());
}

TEST_F(ComboGridSort, AHandlerMayRefuseItAndADragSelects) {
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        if (id == 14) Answer(arguments, true);
    };
    form.Click(0, F::name);
    EXPECT_EQ("pear/Apple/?clair//", Names());
    form.events->onEvent = nullptr;
    Sorts();
    Put(form.Inner().get(), L"AllowBigSelection", {Variant(true)});
    MoveMouseTo(form.At(0, F::name, 30, 6));
    LeftButton(true);
    MoveMouseTo(form.At(0, F::qty, 8, 6));
    form.Pump();
    LeftButton(false);
    form.Pump();
    EXPECT_EQ("", Sorts());
    EXPECT_EQ(F::qty, Call(form.Inner().get(), L"ColSel").ToLong()) << "a drag";
}

TEST_F(ComboGridSort, AnOpenEditIsCommittedFirst) {
    form.Press(VK_F2);
    form.Type(L"z");
    form.Click(0, F::name);
    EXPECT_EQ("Applez/?clair/pear//", Names());
    EXPECT_FALSE(form.Frame());
    Call(form.grid.get(), L"Sort", {Variant(u";Qty-1;")});
    EXPECT_EQ("100/10/9/9/", form.Column(F::qty));
    EXPECT_EQ("14(;Name-0;, False)\n13(;Name-0;)\n;Qty-1;", Sorts()) << "the method raises no events";
    Call(form.grid.get(), L"RemoveAllRecords");
    EXPECT_EQ("", Sorts());
}

}  // namespace
}  // namespace qvx::test
