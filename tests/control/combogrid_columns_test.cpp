// Columns that the user moves, with the real mouse and keys.
#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/input.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

class ComboGridColumns : public ::testing::Test {
  protected:
    ComboGridColumns() {
        form.Fill({{u"a", u"1", u"2.5", u"Jan/2026", u"Apple"}, {u"b", u"2", u"", u"", u"Banana"}});
        form.GoTo(1, F::qty);
        form.Log();
    }
    // A place in the header, so many pixels from where a column starts.
    POINT Header(int col, int pixels) const { return form.At(0, col, pixels, 6); }
    void DragTo(int col, POINT to, int escape = 0) {
        MoveMouseTo(Header(col, 12));
        LeftButton(true);
        MoveMouseTo({to.x - 5, to.y});
        form.Pump();
        MoveMouseTo(to);
        form.Pump();
        if (escape != 0) form.Press(escape);
        LeftButton(false);
        form.Pump();
    }
    // The captions from left to right, and the events of moving since the last call.
    std::string Order() {
        std::string order;
        for (int col = F::name; col <= F::item; ++col) order += Narrow(form.Cell(0, col)) + " ";
        std::istringstream all(form.Log());
        for (std::string line; std::getline(all, line);)
            if (line.rfind("21(", 0) == 0 || line.rfind("22(", 0) == 0) order += line;
        return order;
    }
    long ColSel() const { return Call(form.Inner().get(), L"ColSel").ToLong().value_or(-1); }

    F form{{{L"MoveColumns", Variant(true)}, {L"AllowBigSelection", Variant(true)}}};
};

TEST_F(ComboGridColumns, MoveWithTheirListsAndBack) {
    Call(form.grid.get(), L"RefreshColIndex");
    DragTo(F::item, Header(F::name, 3));
    EXPECT_EQ("Item Name Qty Rate Month 21(5, 1, False)22(5, 1)", Order());
    EXPECT_EQ("Apple/Banana/", form.Column(1));
    EXPECT_EQ("1,3", form.Current()) << "the cursor stays in its column";
    const auto index = Call(form.grid.get(), L"ColIndex").ToObject<IDispatch>();
    EXPECT_EQ(3, Call(index.get(), L"Item", {Variant(u"Qty")}).ToLong());
    form.Enter(2, 1, L"ch");
    EXPECT_EQ(u"Cherry", form.Cell(2, 1)) << "the list has moved as well";
    EXPECT_EQ(u"Cherry", *Call(form.List(1).get(), L"List", {Variant(2)}).ToText());
    form.Enter(2, 2, L"ch");
    EXPECT_EQ(u"ch", form.Cell(2, 2));
    for (int i = 0; i < 3; ++i) Call(form.grid.get(), L"Undo");
    EXPECT_EQ("Name Qty Rate Month Item 22(1, 5)", Order());
    EXPECT_EQ("a/b/", form.Column(F::name));
    form.Enter(2, F::item, L"ch");
    EXPECT_EQ(u"Cherry", form.Cell(2, F::item));
}

TEST_F(ComboGridColumns, StayWhereTheHostOrEscapeSays) {
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        if (id == 21) Answer(arguments, true);
    };
    DragTo(F::rate, Header(F::name, 3));
    EXPECT_EQ("Name Qty Rate Month Item 21(3, 1, False)", Order());
    form.events->onEvent = nullptr;
    DragTo(F::rate, Header(F::name, 3), VK_ESCAPE);
    DragTo(F::rate, Header(F::rate, 30));
    EXPECT_EQ("Name Qty Rate Month Item ", Order());
    Put(form.grid.get(), L"MoveColumns", {Variant(false)});
    DragTo(F::qty, Header(F::rate, 30));
    EXPECT_EQ("Name Qty Rate Month Item ", Order());
    EXPECT_EQ(F::rate, ColSel()) << "as ever, a drag over headers selects columns";
}

TEST_F(ComboGridColumns, AClickSelectsOrSortsAndADragMoves) {
    form.Click(0, F::rate);
    EXPECT_EQ(F::rate, ColSel());
    EXPECT_EQ(1, form.Number(L"Row"));
    KeyDown(VK_SHIFT);
    form.Click(0, F::name);
    KeyUp(VK_SHIFT);
    EXPECT_EQ(F::name, ColSel());
    EXPECT_EQ("1,3", form.Current());
    Put(form.grid.get(), L"SortOnHeader", {Variant(true)});
    form.Click(0, F::name);
    form.Click(0, F::name);
    EXPECT_EQ("b/a/", form.Column(F::name));
    DragTo(F::name, Header(F::qty, 40));
    EXPECT_EQ("Qty Name Rate Month Item 21(1, 2, False)22(1, 2)", Order());
    EXPECT_EQ(u";Name-1;", *Call(form.grid.get(), L"SortedBy").ToText());
}

TEST_F(ComboGridColumns, KeysMoveTheCurrentOneOnTheScreen) {
    form.Press(VK_RIGHT, {VK_MENU, VK_SHIFT});
    EXPECT_EQ("Name Rate Qty Month Item 21(2, 3, False)22(2, 3)", Order());
    EXPECT_EQ("1,3", form.Current());
    Put(form.Inner().get(), L"RightToLeft", {Variant(true)});
    form.Press(VK_RIGHT, {VK_MENU, VK_SHIFT});
    form.Press(VK_RIGHT, {VK_MENU, VK_SHIFT});
    form.Press(VK_RIGHT, {VK_MENU, VK_SHIFT});
    EXPECT_EQ("Qty Name Rate Month Item 21(3, 2, False)22(3, 2)21(2, 1, False)22(2, 1)", Order());
}

TEST_F(ComboGridColumns, ALayoutBringsBackWhatTheUserMade) {
    const Text before = *Call(form.grid.get(), L"UserLayout").ToText();
    DragTo(F::item, Header(F::name, 3));
    Put(form.Inner().get(), L"ColWidth", {Variant(1), Variant(2100)});
    Call(form.grid.get(), L"Sort", {Variant(u";Name-1;")});
    Put(form.grid.get(), L"Filter", {Variant(u"[Name]b")});
    const Text after = *Call(form.grid.get(), L"UserLayout").ToText();
    Put(form.grid.get(), L"UserLayout", {Variant(before)});
    Call(form.grid.get(), L"Sort", {Variant(u";Name-0;")});
    Order();
    EXPECT_EQ("a/b/", form.Column(F::name));
    EXPECT_EQ(2, form.Number(L"FilteredRows"));
    Put(form.grid.get(), L"UserLayout", {Variant(after)});
    EXPECT_EQ(1, form.Number(L"FilteredRows"));
    EXPECT_EQ("Item Name Qty Rate Month ", Order()) << "the host's own moves raise no events";
    EXPECT_EQ("Banana/Apple/", form.Column(1));
    EXPECT_EQ(2100, Call(form.Inner().get(), L"ColWidth", {Variant(1)}).ToLong());
    EXPECT_EQ(after, *Call(form.grid.get(), L"UserLayout").ToText());
    form.Enter(1, 1, L"ch");
    EXPECT_EQ(u"Cherry", form.Cell(1, 1));
}

TEST_F(ComboGridColumns, TheFooterTotalsWhatIsTyped) {
    Put(form.grid.get(), L"Footer", {Variant(u";Qty-0;Name-1;Rate-2;")});
    form.Pump();
    const HWND footer = FindWindowExW(form.InnerGrid(), nullptr, L"QvxGridFooter", nullptr);
    ASSERT_TRUE(footer);
    const auto shown = [&] {
        wchar_t text[200]{};
        GetWindowTextW(footer, text, 200);
        return Narrow(FromWide(text));
    };
    EXPECT_EQ("Name: 2, Qty: 3, Rate: 2.5", shown());
    form.Type(L"40");
    form.Press(VK_RETURN);
    EXPECT_EQ("Name: 2, Qty: 42, Rate: 2.5", shown());
    EXPECT_EQ(u"42", *Call(form.grid.get(), L"FooterText", {Variant(F::qty)}).ToText());
    Call(form.grid.get(), L"Undo");
    DragTo(F::qty, Header(F::name, 3));
    EXPECT_EQ("Qty: 3, Name: 2, Rate: 2.5", shown());
    // Rows end above it.
    Put(form.grid.get(), L"Rows", {Variant(500)});
    form.GoTo(499, F::name);
    Call(form.grid.get(), L"SetCell", {Variant(499), Variant(1), Variant(u"last"), Variant(true)});
    EXPECT_LE(form.At(499, 0, 0, form.Pixels(L"RowHeight", {Variant(499)})).y, AreaOf(footer).top);
    Put(form.grid.get(), L"Footer", {Variant(u"")});
    EXPECT_FALSE(FindWindowExW(form.InnerGrid(), nullptr, L"QvxGridFooter", nullptr));
    EXPECT_EQ(u"", *Call(form.grid.get(), L"FooterText", {Variant(F::qty)}).ToText());
}

// ---- Columns as objects
// ----------------------------------------------------------------------------------------------

class ComboGridColumnObjects : public ComboGridColumns {
  protected:
    ComPtr<IDispatch> Column(const Variant& which) const {
        return Call(form.grid.get(), L"Columns", {which}).ToObject<IDispatch>();
    }
    std::string Property(const wchar_t* name) const { return Narrow(*Call(form.grid.get(), name).ToText()); }
};

TEST_F(ComboGridColumnObjects, AgreeWithTheLists) {
    const struct {
        const wchar_t* member;
        Variant value;
        const wchar_t* list;
        const char* afterwards;
        Variant before;
    } cases[] = {
        {L"Required", Variant(true), L"RequiredFields", ";Name;Rate;", Variant(false)},
        {L"ReadOnly", Variant(true), L"InActiveColumns", ";Name;Rate;", Variant(false)},
        {L"TabStop", Variant(false), L"NonFocusColumns", ";Name;Rate;", Variant(true)},
        {L"Visible", Variant(false), L"InVisibleColumns", ";Name;Rate;", Variant(true)},
        {L"List", Variant(true), L"ListColumns", ";Name;Rate;", Variant(false)},
        {L"ListOnly", Variant(true), L"UnChangableColumns", ";Name;Rate;", Variant(false)},
        {L"DataType", Variant(2), L"ColumnsDataType", ";Name;Rate-2;", Variant(-1)},
        {L"Sign", Variant(4), L"CheckValueFor", ";Name;Rate-4;", Variant(-1)},
        {L"Footer", Variant(3), L"Footer", ";Name;Rate-3;", Variant(-1)},
        {L"MaxLength", Variant(20), L"ColumnsMaxLength", ";Name;Rate-20;", Variant(0)},
    };
    const auto rate = Column(Variant(u"rate"));
    for (const auto& c : cases) {
        SCOPED_TRACE(Narrow(FromWide(c.member)));
        Put(form.grid.get(), c.list, {Variant(u";Name;")});
        EXPECT_EQ(c.before.ToText(), Call(rate.get(), c.member).ToText());
        Put(rate.get(), c.member, {c.value});
        EXPECT_EQ(c.afterwards, Property(c.list));
        Put(form.grid.get(), c.list, {Variant(u"")});
        EXPECT_EQ(c.before.ToText(), Call(rate.get(), c.member).ToText());
        Put(form.grid.get(), c.list, {Variant(Text(c.afterwards, c.afterwards + std::strlen(c.afterwards)))});
        EXPECT_EQ(c.value.ToText(), Call(rate.get(), c.member).ToText());
        Put(rate.get(), c.member, {c.before});
        EXPECT_EQ(";Name;", Property(c.list));
        Put(form.grid.get(), c.list, {Variant(u"")});
    }
}

TEST_F(ComboGridColumnObjects, FollowTheirColumns) {
    const auto qty = Column(Variant(u"Qty"));
    const auto item = Column(Variant(F::item));
    Put(form.grid.get(), L"Footer", {Variant(u";Qty-0;")});
    Put(form.grid.get(), L"Filter", {Variant(u"[Qty]>1")});
    Call(form.grid.get(), L"Sort", {Variant(u";Qty-1;")});
    Call(form.grid.get(), L"RefreshColIndex");
    form.GoTo(1, F::qty);
    form.Press(VK_RIGHT, {VK_MENU, VK_SHIFT});
    EXPECT_EQ(3, Call(qty.get(), L"Index").ToLong());
    EXPECT_EQ(1, Call(form.grid.get(), L"FilteredRows").ToLong());
    Put(qty.get(), L"Caption", {Variant(u"Pieces")});
    EXPECT_EQ("Name Rate Pieces Month Item ", Order().substr(0, 28));
    EXPECT_EQ(";Pieces-0;", Property(L"Footer"));
    EXPECT_EQ("[Pieces]>1", Property(L"Filter"));
    EXPECT_EQ(";Pieces-1;", Property(L"SortedBy"));
    EXPECT_EQ(u"2", *Call(qty.get(), L"FooterText").ToText());
    EXPECT_EQ(0, Call(qty.get(), L"DataType").ToLong());
    const auto index = Call(form.grid.get(), L"ColIndex").ToObject<IDispatch>();
    EXPECT_EQ(3, Call(index.get(), L"Item", {Variant(u"Pieces")}).ToLong());
    form.Enter(form.Number(L"Row"), 3, L"7x");
    EXPECT_EQ(u"7", *Call(qty.get(), L"FooterText").ToText()) << "digits only, as before";
    Put(item.get(), L"Caption", {Variant(u"Fruit")});
    EXPECT_TRUE(Call(item.get(), L"ListOnly").ToBool().value_or(false));
    Put(form.Inner().get(), L"ColPosition", {Variant(F::item), Variant(1)});
    EXPECT_EQ(1, Call(item.get(), L"Index").ToLong());
    Put(form.grid.get(), L"Cols", {Variant(3)});
    EXPECT_EQ(u"Fruit", *Call(item.get(), L"Caption").ToText());
    EXPECT_EQ(364, ErrorOf(qty.get(), L"Caption", DISPATCH_PROPERTYGET));
    Put(form.grid.get(), L"Cols", {Variant(9)});
    EXPECT_EQ(364, ErrorOf(qty.get(), L"Width", DISPATCH_PROPERTYPUT, {Variant(100)})) << "another one has its place";
    const auto all = Call(form.grid.get(), L"Columns").ToObject<IDispatch>();
    EXPECT_EQ(9, Call(all.get(), L"Count").ToLong());
    EXPECT_EQ(13, ErrorOf(all.get(), L"Item", DISPATCH_PROPERTYGET, {Variant(all.get())}));
}

TEST_F(ComboGridColumnObjects, ShowFormatsAndStayInView) {
    const auto rate = Column(Variant(u"Rate"));
    Put(form.grid.get(), L"Footer", {Variant(u";Rate-0;")});
    Put(rate.get(), L"Format", {Variant(u"0.00 \"[]\"")});
    EXPECT_EQ("[Rate]0.00 \"[]\"", Property(L"ColumnFormats"));
    EXPECT_EQ(u"2.5", *Call(rate.get(), L"FooterText").ToText());
    EXPECT_EQ(u"2.5", *Call(form.grid.get(), L"TextMatrix", {Variant(1), Variant(F::rate)}).ToText());
    Put(rate.get(), L"Caption", {Variant(u"Price")});
    EXPECT_EQ("[Price]0.00 \"[]\"", Property(L"ColumnFormats"));
    Put(rate.get(), L"Format", {Variant(u"")});
    EXPECT_EQ("", Property(L"ColumnFormats"));

    const auto frozen = [&](int col) { return Call(Column(Variant(col)).get(), L"Frozen").ToBool().value_or(false); };
    Put(Column(Variant(F::qty)).get(), L"Frozen", {Variant(true)});
    EXPECT_EQ("2", Property(L"FrozenCols"));
    EXPECT_TRUE(!frozen(0) && frozen(F::name) && frozen(F::qty) && !frozen(F::rate));
    Put(Column(Variant(F::name)).get(), L"Frozen", {Variant(true)});
    EXPECT_EQ("2", Property(L"FrozenCols"));
    Put(form.Inner().get(), L"LeftCol", {Variant(F::item)});
    form.GoTo(1, F::rate);
    form.Press(VK_LEFT);
    EXPECT_EQ("1,2", form.Current());
    Put(Column(Variant(F::name)).get(), L"Frozen", {Variant(false)});
    EXPECT_EQ("0", Property(L"FrozenCols"));
}

TEST_F(ComboGridColumnObjects, AreHiddenAndShownWithTheirWidth) {
    const auto rate = Column(Variant(u"Rate"));
    const auto key = Column(Variant(u"Key"));
    const auto width = [&](const ComPtr<IDispatch>& column) { return Call(column.get(), L"Width").ToLong(); };
    EXPECT_EQ(0, width(key));
    EXPECT_FALSE(Call(key.get(), L"Visible").ToBool().value_or(true));
    Put(key.get(), L"Visible", {Variant(true)});
    EXPECT_GT(width(key).value_or(0), 0);
    Put(rate.get(), L"Width", {Variant(2100)});
    Put(rate.get(), L"Alignment", {Variant(7)});
    EXPECT_EQ(2100, Call(form.Inner().get(), L"ColWidth", {Variant(F::rate)}).ToLong());
    EXPECT_EQ(7, Call(form.Inner().get(), L"ColAlignment", {Variant(F::rate)}).ToLong());
    Put(rate.get(), L"Visible", {Variant(false)});
    EXPECT_EQ(0, width(rate));
    EXPECT_EQ(";Rate;", Property(L"InVisibleColumns"));
    Put(rate.get(), L"Visible", {Variant(true)});
    EXPECT_EQ(2100, width(rate));
    EXPECT_EQ("", Property(L"InVisibleColumns"));
}

}  // namespace
}  // namespace qvx::test
