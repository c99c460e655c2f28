// Rows that know what they were, loaded from arrays and record sets, whatever changes them afterwards.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>

#include "Qvx.h"
#include "com/safearray.h"
#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/drawn_picture.h"
#include "tests/support/input.h"
#include "tests/support/message_box.h"
#include "tests/support/narrow.h"
#include "tests/support/script_records.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

VARIANT InArray(SAFEARRAY* array, VARTYPE type) {
    VARIANT value{};
    value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
    value.parray = array;
    return value;
}

// An array of that many fields and records from these lower bounds on, whose elements `fill` writes in their order.
template <class Element>
SafeArray Table(VARTYPE type, ULONG fields, ULONG records, LONG low, const std::vector<Element>& elements) {
    SAFEARRAYBOUND bounds[] = {{fields, low}, {records, -low}};
    SafeArray array(SafeArrayCreate(type, 2, bounds));
    for (std::size_t i = 0; i < elements.size(); ++i)
        std::memcpy(static_cast<char*>(array.get()->pvData) + i * sizeof(Element), &elements[i], sizeof(Element));
    return array;
}

HRESULT LoadArray(const F& form, const VARIANT& array) {
    const CallResult call = Invoke(form.grid.get(), L"LoadArray", DISPATCH_METHOD, {array});
    return FAILED(call.result) ? call.scode & 0xFFFF : 0;
}

// Name and Qty of three records.
void LoadThree(const F& form) {
    Variant cells[] = {Variant(u"Ann"), Variant(7), Variant(u"Bob"), Variant(8), Variant(u"Cid"), Variant(9)};
    const SafeArray array = Table<VARIANT>(VT_VARIANT, 2, 3, 0, {});
    for (std::size_t i = 0; i < 6; ++i) static_cast<VARIANT*>(array.get()->pvData)[i] = cells[i].detach();
    ASSERT_EQ(0, LoadArray(form, InArray(array.get(), VT_VARIANT)));
}

std::string TextIn(const F& form, const wchar_t* member, long first, long col) {
    return Narrow(Call(form.grid.get(), member, {Variant(first), Variant(col)}).ToText().value_or(u"?"));
}

// The state of each row and the original name of changed ones; then the names of the deleted rows.
std::string States(const F& form) {
    std::string states;
    for (long row = 1; row < form.Number(L"Rows"); ++row) {
        const long state = *Call(form.grid.get(), L"RowState", {Variant(row)}).ToLong();
        states += "unc"[state];
        if (state == grdRowChanged) states += "(" + TextIn(form, L"OriginalText", row, F::name) + ")";
    }
    for (long i = 0; i < form.Number(L"DeletedRows"); ++i) states += " -" + TextIn(form, L"DeletedText", i, F::name);
    return states;
}

TEST(ComboGridStates, CountWhoeverMakesTheChange) {
    struct Case {
        const char* what;
        std::function<void(F&)> change;
        const char* states;
    };
    const Case cases[] = {
        {"nothing", [](F&) {}, "uuu"},
        {"typing", [](F& form) { form.Enter(2, F::name, L"x"); }, "uc(Bob)u"},
        {"typing taken back",
         [](F& form) {
             form.Enter(2, F::name, L"x");
             form.Press('Z', {VK_CONTROL});
         },
         "uuu"},
        {"deleting and inserting rows",
         [](F& form) {
             form.GoTo(2, F::name);
             form.Press(VK_SPACE, {VK_SHIFT});
             const Person yes([] {
                 if (WaitForBox()) TypeKey('Y');
             });
             form.Press(VK_DELETE);
             form.Press(VK_INSERT);
         },
         "unu -Bob"},
        {"the host's cells",
         [](F& form) {
             form.SetCell(1, F::qty, u"1");
             Call(form.grid.get(), L"SetCell", {Variant(2), Variant(int{F::rate}), Variant(u"2")});
         },
         "c(Ann)c(Bob)u"},
        {"everything removed", [](F& form) { Call(form.grid.get(), L"RemoveAllRecords"); }, "c(Ann) -Bob -Cid"},
        {"accepting an open edit",
         [](F& form) {
             form.GoTo(2, F::name);
             form.Type(L"x");
             Call(form.grid.get(), L"AcceptChanges");
         },
         "uuu"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        F form({{L"TrackRows", Variant(true)}, {L"ExtendedKeys", Variant(true)}, {L"MarkChanged", Variant(true)}});
        LoadThree(form);
        c.change(form);
        EXPECT_EQ(c.states, States(form));
        Put(form.grid.get(), L"TrackRows", {Variant(false)});
        EXPECT_EQ(std::string(static_cast<std::size_t>(form.Number(L"Rows")) - 1, 'u'), States(form));
    }
}

// Scrolling moves what is drawn already, and the bars must not move with it.
TEST(ComboGridStates, BarsStayWhereRowsBegin) {
    F form({{L"TrackRows", Variant(true)}, {L"MarkChanged", Variant(true)}});
    LoadThree(form);
    form.SetCell(2, F::qty, u"1");
    const auto inner = form.Inner();
    Put(inner.get(), L"FixedCols", {Variant(0)});
    const auto picture = [&] {
        form.Pump();
        return PictureOnScreen(form.InnerGrid());
    };
    picture();
    for (const int left : {1, 2, 1, 0}) {
        Put(inner.get(), L"LeftCol", {Variant(left)});
        const PixelPicture scrolled = picture();
        int green = 0;
        for (const COLORREF pixel : scrolled.pixels) green += pixel == RGB(0, 128, 0) ? 1 : 0;
        EXPECT_GT(green, 0);
        Call(inner.get(), L"Refresh");
        EXPECT_EQ(scrolled.pixels, picture().pixels) << left;
    }
}

TEST(ComboGridArrays, ComeInManyFormsAndGoOutInOne) {
    F form;
    const auto rows = [&] { return form.Column(F::name) + form.Column(F::qty) + form.Column(F::rate); };
    EXPECT_EQ(0, LoadArray(form, InArray(Table<LONG>(VT_I4, 2, 2, 3, {1, 2, 3, 4}).get(), VT_I4)));
    EXPECT_EQ("1/3/2/4///", rows());
    EXPECT_EQ(0, LoadArray(form, InArray(Table<double>(VT_R8, 1, 3, 1, {0.5, 2, -1}).get(), VT_R8)));
    EXPECT_EQ("0.5/2/-1///////", rows());
    VARIANT decimal{};
    VarDecFromR8(1.25, &decimal.decVal);
    const SafeArray decimals = Table<DECIMAL>(VT_DECIMAL, 1, 1, 0, {decimal.decVal});
    SAFEARRAY* array = decimals.get();
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_ARRAY | VT_DECIMAL;
    reference.pparray = &array;
    EXPECT_EQ(0, LoadArray(form, reference));
    EXPECT_EQ("1.25///", rows());
    for (const auto& [value, type] : {std::pair{SafeArrayCreateVector(VT_I4, 0, 2), VT_I4},
                                      {SafeArrayCreateVector(VT_VARIANT, 0, 2), VT_VARIANT}}) {
        const SafeArray vector(value);
        EXPECT_EQ(13, LoadArray(form, InArray(vector.get(), static_cast<VARTYPE>(type))));
    }
    EXPECT_EQ(13, LoadArray(form, Variant(u"x").get()));
    EXPECT_EQ(13, LoadArray(form, Variant().get()));
    EXPECT_EQ("1.25///", rows()) << "the rows stay";
    EXPECT_EQ(0, LoadArray(form, InArray(Table<LONG>(VT_I4, 2, 0, 0, {}).get(), VT_I4)));
    EXPECT_EQ("///", rows()) << "one row to enter";

    LoadThree(form);
    form.GoTo(3, F::rate);
    form.Type(L"5");
    const Variant out = Call(form.grid.get(), L"ToArray");
    const SAFEARRAY& all = *out.get().parray;
    ASSERT_EQ(VT_ARRAY | VT_VARIANT, out.Type());
    EXPECT_EQ(F::key, static_cast<int>(all.rgsabound[1].cElements)) << "without the column before BindFrom";
    EXPECT_EQ(3U, all.rgsabound[0].cElements);
    EXPECT_EQ(0, all.rgsabound[0].lLbound + all.rgsabound[1].lLbound);
    Call(form.grid.get(), L"RemoveAllRecords");
    EXPECT_EQ(0, LoadArray(form, out.get()));
    EXPECT_EQ("Ann/Bob/Cid/7/8/9///5/", rows());
}

TEST(ComboGridAppend, AddsPagesOfFieldsByName) {
    for (const bool inBlocks : {false, true}) {
        for (const auto fields : {ScriptRecords::Fields::itself, ScriptRecords::Fields::fresh}) {
            F form({{L"AutoRecordNumber", Variant(true)},
                    {L"TrackRows", Variant(true)},
                    {L"BindFields", Variant(u"[Qty]AMOUNT,[Name]name")}});
            Call(form.grid.get(), L"RemoveAllRecords");
            Call(form.grid.get(), L"AcceptChanges");
            const auto page = [&](const char16_t* name, long amount) {
                const auto records = MakeObject<ScriptRecords>();
                records->fields = fields;
                records->hasRows = inBlocks;
                records->fieldNames = {L"id", L"name", L"amount"};
                records->records = {{Variant(1), Variant(name), Variant(amount)},
                                    {Variant(2), Variant(u"a\tb"), Variant(amount + 1)}};
                Call(form.grid.get(), L"Append", {Variant(static_cast<IDispatch*>(records.get()))});
            };
            page(u"Ann", 7);
            form.SetCell(2, F::rate, u"1");
            page(u"Bob", 9);
            EXPECT_EQ("1/2/3/4/", form.Column(F::no)) << "and the empty row is gone";
            EXPECT_EQ("Ann/a\tb/Bob/a\tb/", form.Column(F::name));
            EXPECT_EQ("7/8/9/10/", form.Column(F::qty));
            EXPECT_EQ("uc(a\tb)uu", States(form));
            Put(form.grid.get(), L"BindFields", {Variant(u"[Name]nobody")});
            std::string title;
            {
                const Person person([&] {
                    wchar_t text[200]{};
                    GetWindowTextW(WaitForBox(), text, 200);
                    title = Narrow(FromWide(text));
                    TypeKey(VK_RETURN);
                });
                page(u"x", 1);
            }
            EXPECT_NE(title.find(": 380"), std::string::npos) << title;
            EXPECT_EQ(5, form.Number(L"Rows"));
        }
    }
}

class ComboGridApply : public ::testing::Test {
  protected:
    ComboGridApply() {
        records->writable = true;
        records->hasRows = true;
        records->fieldNames = {L"name", L"qty", L"rate", L"month", L"item"};
        Variant day(45355.0);
        day.ptr()->vt = VT_DATE;
        Variant null;
        null.ptr()->vt = VT_NULL;
        for (const char16_t* name : {u"Ann", u"Bob", u"Cid"})
            records->records.push_back({Variant(name), Variant(7), Variant(0.5), day, null});
        Call(form.grid.get(), L"Bind", {Variant(static_cast<IDispatch*>(records.get()))});
        form.Log();
    }
    // One changed, one deleted, one new.
    void Change() {
        form.SetCell(1, F::qty, u"8");
        form.SetCell(1, F::rate, u"1.5");
        form.SetCell(1, F::item, u"Apple");
        Call(form.Inner().get(), L"RemoveItem", {Variant(2)});
        Call(form.Inner().get(), L"AddItem", {Variant(u"\tDan\t9")});
    }
    // The records in the order of their names, each value with its type.
    std::string Records() const {
        std::vector<std::string> all;
        for (const auto& record : records->records) {
            std::string texts;
            for (const Variant& value : record)
                texts += (value.Type() == VT_DATE ? "day" : Narrow(value.ToText().value_or(u"?"))) + ":" +
                         std::to_string(value.Type()) + " ";
            all.push_back(texts + "/");
        }
        std::sort(all.begin(), all.end());
        return std::accumulate(all.begin(), all.end(), std::string());
    }
    // The number of written records, or that of the error less than 0.
    long Apply() {
        const Variant set(static_cast<IDispatch*>(records.get()));
        const Variant key(u"name");
        const CallResult call = Invoke(form.grid.get(), L"Apply", DISPATCH_METHOD, {set.get(), key.get()});
        return FAILED(call.result) ? -(call.scode & 0xFFFF) : call.value.ToLong().value_or(-1);
    }

    F form{{{L"TrackRows", Variant(true)}}};
    ComPtr<ScriptRecords> records = MakeObject<ScriptRecords>();
};

TEST_F(ComboGridApply, WritesValuesOfTheFieldsTypes) {
    Change();
    EXPECT_EQ(3, Apply());
    EXPECT_EQ("Ann:8 8:3 1.5:5 day:7 Apple:8 /Cid:8 7:3 0.5:5 day:7 :1 /Dan:8 9:8 :1 :1 :1 /", Records());
    EXPECT_EQ("uuu", States(form));
    EXPECT_EQ(0, Apply());
    form.SetCell(1, F::rate, u"");
    form.SetCell(1, F::item, u"");
    form.SetCell(1, F::month, u"4 mar 2024");
    form.SetCell(3, F::name, u"Bob");
    EXPECT_EQ(2, Apply());
    EXPECT_EQ("Ann:8 8:3 :1 day:7 :8 /Bob:8 9:8 :1 :1 :1 /Cid:8 7:3 0.5:5 day:7 :1 /", Records());
    EXPECT_EQ(Narrow(form.Cell(2, F::month)), Narrow(form.Cell(1, F::month))) << "as the record shows it";
}

TEST_F(ComboGridApply, LeavesTheRecordsAsTheyWereAfterAnError) {
    const std::string before = Records();
    Change();
    form.SetCell(3, F::rate, u"refused");
    const std::string states = States(form);
    for (const bool transactions : {true, false}) {
        records->hasTransactions = transactions;
        records->transactions.clear();
        EXPECT_EQ(-(E_FAIL & 0xFFFF), Apply());
        EXPECT_EQ(transactions ? "BR" : "", records->transactions);
        EXPECT_EQ(before, Records());
        EXPECT_EQ("cun -Bob", States(form).erase(1, 5)) << states;
    }
    form.SetCell(1, F::qty, u"many");
    EXPECT_EQ(-13, Apply());
    EXPECT_EQ(before, Records());
    records->writable = false;
    EXPECT_EQ(-438, Apply());
}

TEST_F(ComboGridApply, AsksWhatToDoWithRecordsOfOthers) {
    Change();
    records->hasTransactions = true;
    records->records[0][1] = Variant(99);
    const std::string theirs = Records();
    EXPECT_EQ(-30020, Apply());
    const std::string asked = "27(1, -1, qty, 8, 99, False, False)\n";
    EXPECT_EQ(asked, form.Log());
    form.events->onEvent = [&](DISPID, DISPPARAMS& arguments) { Answer(arguments, true); };
    EXPECT_EQ(0, Apply()) << "cancelled";
    EXPECT_EQ(theirs, Records());
    form.Log();
    form.events->onEvent = [&](DISPID, DISPPARAMS& arguments) { *arguments.rgvarg[1].pboolVal = VARIANT_TRUE; };
    EXPECT_EQ(3, Apply());
    EXPECT_EQ("BC", records->transactions);
    EXPECT_EQ(asked, form.Log());
    EXPECT_EQ(0U, Records().find("Ann:8 8:3 "));
    EXPECT_EQ("uuu", States(form));
}

}  // namespace
}  // namespace qvx::test
