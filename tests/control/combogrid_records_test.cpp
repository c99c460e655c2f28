// Members that manage rows as records and add cells up, as hosts call them.
#include <gtest/gtest.h>

#include "Qvx.h"
#include "com/safearray.h"
#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/input.h"
#include "tests/support/late_bound_object.h"
#include "tests/support/message_box.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

VARIANT Reference(VARTYPE type, void* variable) {
    VARIANT reference{};
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = variable;
    return reference;
}

VARIANT Reference(Variant& variable) { return Reference(VT_VARIANT, variable.ptr()); }

TEST(ComboGridRecords, Go) {
    F form({{L"KeyColumn", Variant(int{F::rate})}, {L"AutoRecordNumber", Variant(true)}});
    const std::vector<std::vector<const char16_t*>> rows{{u"a", u"1", u""}, {u"", u"0", u""}, {u"d", u"", u"5"}};
    form.Fill(rows);
    Call(form.grid.get(), L"RemoveEmptyRows");
    EXPECT_EQ("d/", form.Column(F::name)) << "by the key column when nothing else is said";
    EXPECT_EQ("1/", form.Column(F::no));
    form.Fill(rows);
    Call(form.grid.get(), L"RemoveEmptyRows", {Variant(false)});
    EXPECT_EQ("a/d/", form.Column(F::name));
}

TEST(ComboGridRecords, CellsAreSetButNotCleared) {
    F form;
    const auto set = [&](int row, std::vector<Variant> more) {
        more.insert(more.begin(), {Variant(row), Variant(int{F::name})});
        return ErrorOf(form.grid.get(), L"SetCell", DISPATCH_METHOD, more);
    };
    set(1, {Variant(u"new")});
    for (const std::vector<Variant>& none :
         {{Variant(u"")}, {Variant()}, {Variant::Missing()}, std::vector<Variant>()}) {
        set(1, none);
        EXPECT_EQ(u"new", form.Cell(1, F::name));
    }
    EXPECT_EQ("", form.Log()) << "no change events";
    EXPECT_EQ(false, Call(form.grid.get(), L"Changed").ToBool());
    EXPECT_EQ(381, set(9, {Variant(u"x")}));
    EXPECT_EQ(30009, set(9, {Variant(u""), Variant(true)}));
}

TEST(ComboGridRecords, SetCellMovesTheCursorAndTheFocus) {
    F form;
    form.GoTo(1, F::name);
    form.Type(L"open");
    ASSERT_NE(nullptr, form.Frame());
    Call(form.grid.get(), L"SetCell", {Variant(2), Variant(int{F::qty}), Variant::Missing(), Variant(true)});
    form.Pump();
    EXPECT_EQ("2,2", form.Current());
    EXPECT_EQ(u"open", form.Cell(1, F::name)) << "the edit that was left is finished";
    EXPECT_EQ(form.InnerGrid(), GetFocus());
    EXPECT_EQ(nullptr, form.Frame());
    // From a window elsewhere, to the current cell.
    SetFocus(form.container.Window());
    Call(form.grid.get(), L"SetCell", {Variant(2), Variant(int{F::qty}), Variant(u"4"), Variant(true)});
    EXPECT_EQ(form.InnerGrid(), GetFocus());
}

TEST(ComboGridRecords, RowsAreClearedByListsThatMayBeLeftOut) {
    F form;
    const std::pair<std::vector<Variant>, const char*> cases[] = {
        {{}, "|||"}, {{Variant(u";qty;")}, "a||2|"}, {{Variant::Missing(), Variant(u";Rate;")}, "||2|"}};
    for (const auto& [lists, row] : cases) {
        form.Fill({{u"a", u"1", u"2"}});
        std::vector<Variant> arguments{Variant(1)};
        arguments.insert(arguments.end(), lists.begin(), lists.end());
        Call(form.grid.get(), L"ClearRow", arguments);
        std::string left;
        for (const int col : {F::name, F::qty, F::rate}) left += Narrow(form.Cell(1, col)) + "|";
        EXPECT_EQ(row, left);
    }
}

TEST(ComboGridRecords, DuplicatesComeBackThroughTheArguments) {
    F form;
    form.Fill({{u"a", u"1"}, {u"b", u"2"}, {u"B", u"2"}, {u"a1"}});
    const auto duplicate = [&](const std::vector<VARIANT>& arguments) {
        return Invoke(form.grid.get(), L"DuplicateRecord", DISPATCH_METHOD, arguments).value.ToBool();
    };
    EXPECT_EQ(true, duplicate({}));
    Variant record;
    Variant matchOn(u"7");
    EXPECT_EQ(true, duplicate({Reference(record), Reference(matchOn)}));
    EXPECT_EQ(1, record.ToLong());
    EXPECT_EQ(4, matchOn.ToLong());
    form.SetCell(4, F::name, u"other");
    short small = 9;
    long number = 9;
    EXPECT_EQ(true, duplicate({Variant::Missing().get(), Reference(VT_I4, &number)}));
    EXPECT_EQ(3, number);
    // None: the first argument stays, the second is 0.
    form.SetCell(3, F::name, u"c");
    EXPECT_EQ(false, duplicate({Reference(VT_I2, &small), Reference(VT_I4, &number)}));
    EXPECT_EQ(9, small);
    EXPECT_EQ(0, number);
    EXPECT_EQ("1,1", form.Current()) << "nothing is selected without being asked for";
}

// The text of the box is drawn; its caption is the window's.
TEST(ComboGridRecords, TheUserIsToldOfDuplicates) {
    F form;
    form.Fill({{u"x", u"1"}, {u"a", u"2"}, {u"y", u"3"}, {u"A", u"2"}});
    SetWindowTextW(form.container.Window(), L"Orders");
    form.GoTo(1, F::rate);
    std::wstring caption;
    const ULONGLONG start = GetTickCount64();
    CallResult call;
    {
        const Person person([&] {
            const HWND box = WaitForBox();
            wchar_t text[100] = L"";
            GetWindowTextW(box, text, 100);
            caption = text;
        });
        call = Invoke(form.grid.get(), L"DuplicateRecord", DISPATCH_METHOD,
                      {Variant::Missing().get(), Variant::Missing().get(), Variant(true).get()});
    }
    const ULONGLONG taken = GetTickCount64() - start;
    EXPECT_EQ(true, call.value.ToBool());
    EXPECT_NE(std::wstring::npos, caption.find(L"Orders")) << "the form's caption";
    EXPECT_GE(taken, 2400u) << "it closes by itself";
    EXPECT_LT(taken, 9000u);
    form.Pump();
    EXPECT_EQ("4,1", form.Current());
    EXPECT_EQ(int{F::key}, Call(form.Inner().get(), L"ColSel").ToLong());
    EXPECT_EQ(form.InnerGrid(), GetFocus());
}

TEST(ComboGridRecords, AnOpenEditIsFinishedFirst) {
    for (const wchar_t* method : {L"RemoveEmptyRows", L"RemoveAllRecords", L"DuplicateRecord"}) {
        F form;
        form.Fill({{u"first"}, {u"second"}});
        form.GoTo(2, F::name);
        form.Type(L"typed");
        ASSERT_NE(nullptr, form.Frame());
        form.Log();
        Call(form.grid.get(), method);
        form.Pump();
        EXPECT_EQ(nullptr, form.Frame());
        EXPECT_EQ("2(2, 1, second, typed, False)\n", form.Log()) << "told before the rows move";
        EXPECT_EQ(method == std::wstring_view(L"RemoveAllRecords") ? "/" : "first/typed/", form.Column(F::name));
        EXPECT_EQ(method != std::wstring_view(L"RemoveAllRecords"), Call(form.grid.get(), L"Changed").ToBool());
    }
}

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

// Without any box: a person would have to close it.
TEST(ComboGridValidation, TheHostLearnsOfItFirstAndHasRulesOfItsOwn) {
    F form({{L"OnErrorFirst", Variant(true)}, {L"ValidateColumns", Variant(u";Name;")}});
    form.Fill({{u"a", u"1"}, {u"b", u"2"}, {u"B", u"2"}});
    form.events->onEvent = [](DISPID id, DISPPARAMS& arguments) {
        if (id == 3) Answer(arguments, false);
        VARIANT& message = arguments.rgvarg[0];
        if (id == 24 && arguments.rgvarg[3].lVal == 2) SysReAllocString(message.pbstrVal, L"Not on stock.");
    };
    form.Log();
    EXPECT_NE(0, Call(form.grid.get(), L"ValidateEntry").ToLong());
    EXPECT_EQ("24(1, 1, a, )\n24(2, 1, b, )\n3(0, Not on stock., True)", form.Log().substr(0, 53));
    EXPECT_EQ(2, form.Number(L"Row"));
    long row = 0;
    long col = 0;
    long rule = 0;
    const auto find = [&](bool rowOnly) {
        return Invoke(form.grid.get(), L"FindInvalid", DISPATCH_METHOD,
                      {Reference(VT_I4, &row), Reference(VT_I4, &col), Variant(rowOnly).get(), Reference(VT_I4, &rule)})
            .value.ToText();
    };
    EXPECT_EQ(u"Not on stock.", find(false));
    EXPECT_EQ("2,1,3", std::to_string(row) + "," + std::to_string(col) + "," + std::to_string(rule));
    EXPECT_EQ(u"", find(false)) << "after that cell";
    EXPECT_EQ(0, row);
    row = 3;
    EXPECT_EQ(u"", find(true));
    EXPECT_EQ(u"Not on stock.", Call(form.grid.get(), L"FindInvalid").ToText());
    row = 0;
    EXPECT_EQ(true, Invoke(form.grid.get(), L"FindDuplicate", DISPATCH_METHOD,
                           {Reference(VT_I4, &row), Variant::Missing().get(), Variant(u";Qty;").get()})
                        .value.ToBool());
    EXPECT_EQ(2, row);
    form.Log();
    EXPECT_EQ(
        true,
        Call(form.grid.get(), L"DuplicateRecord", {Variant::Missing(), Variant::Missing(), Variant(true)}).ToBool());
    EXPECT_EQ("3(0, Duplicate Records Found. Records '2' and '3', True)", form.Log().substr(0, 56));
    Call(form.grid.get(), L"Bind", {Variant(form.Inner().get())});
    EXPECT_EQ("3(", form.Log().substr(0, 2)) << "a failure, and no box";
}

VARIANT AsVariant(const SafeArray& array, VARTYPE type = VT_VARIANT) {
    VARIANT value{};
    value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    value.parray = array.get();
    return value;
}

class Products : public ::testing::Test {
  protected:
    Products() {
        form_.Fill({{u"3", u"2", u"2.5"}, {u"x", u"4", u"1"}, {u"1", u"", u"9"}});
        // An amount column that is neither written yet nor read.
        form_.SetCell(1, F::skip, u"old");
    }
    // What comes back; -1000 less the number of an error when there was one.
    double Product(VARIANT columns, int col2Set = -1) {
        const CallResult call =
            Invoke(form_.grid.get(), L"GetProductOf", DISPATCH_METHOD, {Variant(col2Set).get(), columns});
        return FAILED(call.result) ? -1000 - (call.scode & 0xFFFF) : call.value.ToDouble().value_or(-1);
    }
    F form_;
};

TEST_F(Products, AreWrittenAndAddedUp) {
    const SafeArray columns = SafeArray::OfVariants({Variant(int{F::qty}), Variant(int{F::rate})});
    EXPECT_EQ(9, Product(AsVariant(columns)));
    EXPECT_EQ("old///", form_.Column(F::skip)) << "below 0 nothing is written";
    EXPECT_EQ(9, Product(AsVariant(columns), F::skip));
    EXPECT_EQ("5/4/0/", form_.Column(F::skip));
    EXPECT_EQ("", form_.Log()) << "no change events";
    EXPECT_EQ(false, Call(form_.grid.get(), L"Changed").ToBool());
    const auto sum = [&](int rowOrCol, int index) {
        return Call(form_.grid.get(), L"GetSumOf", {Variant(rowOrCol), Variant(index)}).ToDouble();
    };
    EXPECT_EQ(12.5, sum(7, F::rate)) << "whatever is not a row is a column";
    EXPECT_EQ(12.5, sum(gdRow, 1));
}

TEST_F(Products, ListsComeInManyForms) {
    const SafeArray texts = SafeArray::OfVariants({Variant(u"2"), Variant(u" 3.4 ")});
    EXPECT_EQ(9, Product(AsVariant(texts)));
    // Elements that refer on to variables, in a variable, passed by reference.
    long qty = F::qty;
    Variant rate(u"3");
    SafeArray references(SafeArrayCreateVector(VT_VARIANT, 0, 2));
    static_cast<VARIANT*>(references.get()->pvData)[0] = Reference(VT_I4, &qty);
    static_cast<VARIANT*>(references.get()->pvData)[1] = Reference(rate);
    VARIANT inner = AsVariant(references);
    EXPECT_EQ(9, Product(Reference(VT_VARIANT, &inner)));
    SAFEARRAY* array = references.get();
    EXPECT_EQ(9, Product(Reference(VT_ARRAY | VT_VARIANT, &array)));
    // As the other script language has it.
    const auto object = MakeObject<LateBoundObject>();
    object->members[L"length"] = Variant(2);
    object->members[L"0"] = Variant(int{F::qty});
    object->members[L"1"] = Variant(u"3");
    EXPECT_EQ(9, Product(Variant(static_cast<IDispatch*>(object.get())).get()));
}

TEST_F(Products, ListsBeginAtElementZero) {
    const auto from = [&](LONG low, ULONG count) {
        SafeArray array(SafeArrayCreateVector(VT_I4, low, count));
        for (ULONG i = 0; i < count; ++i)
            static_cast<LONG*>(array.get()->pvData)[i] = low + static_cast<LONG>(i) + F::qty;
        return Product(AsVariant(array, VT_I4));
    };
    EXPECT_EQ(9, from(0, 2));
    EXPECT_EQ(9, from(-2, 4)) << "what stands before element 0 does not count";
    EXPECT_EQ(-1009, from(1, 2));
    EXPECT_EQ(-1009, from(-2, 2));
    EXPECT_EQ(-1009, from(0, 0));
    EXPECT_EQ(-1013, Product(Variant(2).get())) << "no list at all";
    EXPECT_EQ("old///", form_.Column(F::skip));
}

}  // namespace
}  // namespace qvx::test
