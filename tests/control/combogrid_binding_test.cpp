// Record sets into a ComboGrid, as a host binds them.
#include <gtest/gtest.h>

#include <functional>

#include "com/late_bound.h"
#include "com/safearray.h"
#include "com/wide_text.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/dialog_closer.h"
#include "tests/support/input.h"
#include "tests/support/message_box.h"
#include "tests/support/narrow.h"
#include "tests/support/script_records.h"
#include "tests/support/server_allocations.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

Variant Null() {
    Variant null;
    null.ptr()->vt = VT_NULL;
    return null;
}

// Cells of a row from the first on, up to the last that the test looks at.
std::string Row(const F& form, int row, int cols = 5) {
    std::string texts;
    for (int col = 0; col < cols; ++col) {
        texts += Narrow(form.Cell(row, col));
        texts += col + 1 < cols ? "," : "";
    }
    return texts;
}

void Bind(F& form, IDispatch* records) { Call(form.grid.get(), L"Bind", {Variant(records)}); }

bool GridIsShown(const F& form) { return IsWindowVisible(form.InnerGrid()) != 0; }

TEST(ComboGridBinding, RecordsBecomeRows) {
    for (const bool inBlocks : {false, true}) {
        F form({{L"AutoRecordNumber", Variant(true)}});
        Put(form.grid.get(), L"Changed", {Variant(true)});
        const auto records = MakeObject<ScriptRecords>();
        records->hasRows = inBlocks;
        records->firstPosition = 3;
        records->records = {{Variant(u"Ann"), Variant(7), Null(), Variant(true)},
                            {Variant(u""), Variant(1.5), Variant(u"x"), Variant()},
                            {Variant(u"a\tb"), Variant(-0.25), Null(), Variant(false)}};
        form.GoTo(2, F::rate);
        Bind(form, records.get());
        EXPECT_EQ(form.Number(L"Rows"), 4);
        EXPECT_EQ(Row(form, 1), "3,Ann,7,,True");
        EXPECT_EQ(Row(form, 2), "4,,1.5,x,");
        EXPECT_EQ(Row(form, 3), "5,a,b,-0.25,") << "a tab in a field separates cells";
        EXPECT_EQ(form.Log(), "2(-1, -1, , , False)\n");
        EXPECT_EQ(form.Number(L"Changed"), 0);
        EXPECT_EQ(form.Current(), "1,3") << "ready for entry";
        EXPECT_TRUE(GridIsShown(form));
        EXPECT_EQ(GetFocus(), form.InnerGrid()) << "it had the focus before";
        EXPECT_EQ(records->blocks, inBlocks ? 1 : 0);
        EXPECT_EQ(records->at, 3U);
    }
}

TEST(ComboGridBinding, RowsHaveTheNumbersThatTheRecordsHave) {
    for (const bool inBlocks : {false, true}) {
        for (const long first : {0, -1}) {
            F form({{L"AutoRecordNumber", Variant(true)}});
            const auto records = MakeObject<ScriptRecords>();
            records->firstPosition = first;
            records->hasRows = inBlocks;
            records->records.assign(600, {Variant(u"x")});
            Bind(form, records.get());
            std::string numbers;  // around the end of the first block, too
            for (const int row : {1, 512, 513, 600}) numbers += Narrow(form.Cell(row, F::no)) + " ";
            EXPECT_EQ(numbers, first == 0 ? "0 511 512 599 " : "-1 -1 -1 -1 ") << inBlocks;
        }
    }
}

TEST(ComboGridBinding, FieldsMayNumberTheirMembersAsTheyLike) {
    for (const auto fields : {ScriptRecords::Fields::steady, ScriptRecords::Fields::fresh}) {
        F form;
        const auto records = MakeObject<ScriptRecords>();
        records->fields = fields;
        for (long i = 0; i < 20; ++i) records->records.push_back({Variant(i), Variant(i * 10), Variant(u"x")});
        ScriptField::lookups = 0;
        Bind(form, records.get());
        ASSERT_EQ(form.Number(L"Rows"), 21);
        EXPECT_EQ(Row(form, 1, 4), ",0,0,x");
        EXPECT_EQ(Row(form, 20, 4), ",19,190,x");
        EXPECT_EQ(ScriptField::lookups, fields == ScriptRecords::Fields::steady ? 3 : 60);
    }
}

TEST(ComboGridBinding, WhatRecordSetsMaySay) {
    struct Case {
        const char* what;
        const char* reported;  // the number, or empty
        long rows;
        std::function<void(ScriptRecords&)> set;
    };
    const auto three = [](ScriptRecords& r) { r.records = {{Variant(u"a")}, {Variant(u"b")}, {Variant(u"c")}}; };
    const auto failing = [&](ScriptRecords& r) { three(r), r.failsAt = 2; };
    const Case cases[] = {
        {"uncounted", "", 4, [&](auto& r) { three(r), r.counted = -1; }},
        {"at its end", "", 1, [&](auto& r) { three(r), r.at = 3; }},
        {"from the second on", "", 3, [&](auto& r) { three(r), r.at = 1; }},
        {"closed", ": 3704", 1, [&](auto& r) { three(r), r.closed = static_cast<HRESULT>(0x800A0E78); }},
        {"without RecordCount", ": 438", 3, [&](auto& r) { three(r), r.hasCount = false; }},
        {"failing", ": -2147467259", 3, failing},
        {"failing in a block", ": -2147467259", 3, [&](auto& r) { failing(r), r.hasRows = true; }},
        {"failing in a block nobody knows where", ": -2147467259", 3,
         [&](auto& r) { failing(r), r.hasRows = r.losesBlock = true, r.firstPosition = -1; }},
        {"failing in a block without places, and uncounted", ": -2147467259", 3,
         [&](auto& r) { failing(r), r.hasRows = r.losesBlock = true, r.hasPosition = false, r.counted = -1; }},
        {"without places, and uncounted", "", 4,
         [&](auto& r) { three(r), r.hasRows = true, r.hasPosition = false, r.counted = -1; }},
        {"without fields", "", 3, [](auto& r) { r.records.resize(2); }},
        {"more fields than columns", "", 2, [](auto& r) { r.records = {std::vector<Variant>(40, Variant(u"x"))}; }},
        {"binary", ": 13", 2,
         [](auto& r) {
             Variant bytes;
             bytes.ptr()->parray = SafeArrayCreateVector(VT_UI1, 0, 4);
             bytes.ptr()->vt = VT_ARRAY | VT_UI1;
             r.records = {{Variant(u"a")}, {bytes}};
         }},
    };
    for (const Case& c : cases) {
        F form;
        const auto records = MakeObject<ScriptRecords>();
        c.set(*records);
        form.Log();
        std::string title;
        {
            const Person person([&] {
                if (!*c.reported) return;
                wchar_t text[200]{};
                GetWindowTextW(WaitForBox(), text, 200);
                title = Narrow(FromWide(text));
                TypeKey(VK_RETURN);
            });
            Bind(form, records.get());
        }
        EXPECT_TRUE(title.ends_with(c.reported)) << c.what << " " << title;
        EXPECT_EQ(form.Number(L"Rows"), c.rows) << c.what;
        EXPECT_EQ(form.Log(), *c.reported ? "" : "2(-1, -1, , , False)\n") << c.what;
        EXPECT_TRUE(GridIsShown(form)) << c.what;
    }
}

// Records are missing then; the grid is whole, and takes them all when it is bound again.
TEST(ComboGridBinding, CanBeDoneAgainAfterMemoryHasRunOut) {
    const ServerAllocations allocations;
    const DialogCloser closer;
    for (const bool inBlocks : {false, true}) {
        F form;
        const auto records = MakeObject<ScriptRecords>();
        records->hasRows = inBlocks;
        records->records.assign(3, {Variant(u"a name that is long enough"), Variant(7)});
        const Variant argument(static_cast<IDispatch*>(records.get()));
        ServerAllocations::ForEach([&](int passing, bool forGood) {
            records->at = 0;
            bool happened = false;
            {
                const ServerAllocations::Failure failure(passing, forGood);
                Invoke(form.grid.get(), L"Bind", DISPATCH_METHOD, {argument.get()});
                happened = failure.Happened();
            }
            EXPECT_TRUE(GridIsShown(form)) << passing;
            EXPECT_LE(form.Number(L"Rows"), 4) << passing;
            records->at = 0;
            Bind(form, records.get());
            EXPECT_EQ(form.Number(L"Rows"), 4) << passing;
            EXPECT_EQ(Row(form, 3, 3), ",a name that is long enough,7") << passing;
            return happened;
        });
    }
}

// A number's decimal comma, for as long as the scope lasts.
class DecimalComma {
  public:
    DecimalComma() {
        GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_, 8);
        SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, L",");
    }
    ~DecimalComma() { SetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, before_); }
    DecimalComma(const DecimalComma&) = delete;
    DecimalComma& operator=(const DecimalComma&) = delete;

  private:
    wchar_t before_[8]{};
};

Variant Of(VARTYPE type, const Variant& value) {
    const auto converted = value.To(type);
    EXPECT_TRUE(converted) << type;
    return converted.value_or(Variant());
}

// However a value comes into a cell, it reads the same there.
TEST(ComboGridBinding, ValuesHaveOneText) {
    const DecimalComma comma;
    Bstr spelled;
    ASSERT_EQ(S_OK, VarBstrFromR8(0.5, LOCALE_USER_DEFAULT, 0, spelled.put()));
    ASSERT_EQ(Narrow(spelled.View()), "0,5") << "the system does as the user likes";
    constexpr double day = 45355;  // 4 March 2024
    Bstr shortDate;
    ASSERT_EQ(S_OK, VarBstrFromDate(day, LOCALE_USER_DEFAULT, 0, shortDate.put()));
    const std::pair<Variant, std::string> cases[] = {
        {Variant(static_cast<short>(-7)), "-7"},
        {Variant(1234.5), "1234.5"},
        {Variant(1e15), "1E+15"},
        {Of(VT_R4, Variant(0.25)), "0.25"},
        {Of(VT_CY, Variant(3.5)), "3.5"},
        {Of(VT_DECIMAL, Variant(u"12.345")), "12.345"},
        {Variant(true), "True"},
        {Of(VT_DATE, Variant(day)), Narrow(shortDate.View())},
        {Null(), ""},
        {Variant(), ""},
    };
    F form;
    const auto inner = form.Inner();
    for (const auto& [value, text] : cases) {
        SCOPED_TRACE(std::to_string(value.Type()) + " " + text);
        const Variant plain(value);
        const Variant field(
            static_cast<IDispatch*>(MakeObject<ScriptField>(DISPID_VALUE, [plain] { return plain; }).get()));
        const auto records = MakeObject<ScriptRecords>();
        records->records = {{value, field}};
        Bind(form, records.get());
        EXPECT_EQ(Row(form, 1, 3), "," + text + "," + text) << "bound";
        for (const Variant& given : {value, field}) {
            const auto cell = [&](const auto& write) {
                form.SetCell(1, F::name, u"former");
                write();
                return Narrow(form.Cell(1, F::name));
            };
            EXPECT_EQ(cell([&] {
                          Call(form.grid.get(), L"SetCell", {Variant(1), Variant(int{F::name}), given});
                      }),
                      text.empty() ? "former" : text);
            for (IDispatch* grid : {form.grid.get(), inner.get()})
                EXPECT_EQ(cell([&] { Put(grid, L"TextMatrix", {Variant(1), Variant(int{F::name}), given}); }), text);
        }
    }
    // What has no text stays out.
    Variant error;
    error.ptr()->vt = VT_ERROR;
    error.ptr()->scode = E_FAIL;
    for (const Variant& given : {error, Variant(static_cast<IDispatch*>(nullptr))})
        EXPECT_EQ(ErrorOf(form.grid.get(), L"SetCell", DISPATCH_METHOD, {Variant(1), Variant(int{F::name}), given}),
                  13);
}

TEST(ComboGridBinding, AnEmptySetLeavesARowToEnterAndNoneTheRowsThatWere) {
    F form({{L"AutoRecordNumber", Variant(true)}});
    const Person person([] {
        if (WaitForBox()) TypeKey(VK_RETURN);
    });
    Bind(form, nullptr);
    EXPECT_EQ(form.Number(L"Rows"), 3);
    Bind(form, MakeObject<ScriptRecords>().get());
    EXPECT_EQ(form.Number(L"Rows"), 2);
    EXPECT_EQ(Row(form, 1), "1,,,,");
}

// The record set that the system keeps in memory, through its own interface: counts and places as documented.
template <class... Arguments>
HRESULT CallSlot(IUnknown* object, size_t slot, Arguments... arguments) {
    using Method = HRESULT(STDMETHODCALLTYPE*)(IUnknown*, Arguments...);
    return reinterpret_cast<Method>((*reinterpret_cast<void***>(object))[slot])(object, arguments...);
}

TEST(ComboGridBinding, TheSystemsRecordSetIsReadByItsInterface) {
    constexpr CLSID recordset{0x00000535, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
    ComPtr<IDispatch> set;
    if (FAILED(CoCreateInstance(recordset, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(set.put()))))
        GTEST_SKIP() << "the system has no record sets";
    constexpr size_t fieldsSlot = 21, appendSlot = 11, itemSlot = 10, putValueSlot = 14, addNewSlot = 30,
                     moveFirstSlot = 38, openSlot = 40;
    constexpr int adVarWChar = 202;
    ComPtr<IDispatch> fields;
    ASSERT_EQ(S_OK, CallSlot(set.get(), fieldsSlot, fields.put()));
    // One field: not every system keeps what is put into a second one.
    const Bstr name(u"Name");
    ASSERT_EQ(S_OK, CallSlot(fields.get(), appendSlot, name.get(), adVarWChar, LONG_PTR{20}, 0));
    const VARIANT missing = Variant::Missing().get();
    ASSERT_EQ(S_OK, CallSlot(set.get(), openSlot, missing, missing, -1, -1, LONG{-1}));
    for (const char16_t* value : {u"b", u"c", u"d"}) {
        ASSERT_EQ(S_OK, CallSlot(set.get(), addNewSlot, missing, missing));
        ComPtr<IDispatch> field;
        ASSERT_EQ(S_OK, CallSlot(fields.get(), itemSlot, Variant(0).get(), field.put()));
        ASSERT_EQ(S_OK, CallSlot(field.get(), putValueSlot, Variant(value).get()));
    }
    ASSERT_EQ(S_OK, CallSlot(set.get(), moveFirstSlot));
    F form;
    Bind(form, set.get());
    EXPECT_EQ(form.Number(L"Rows"), 4);
    EXPECT_EQ(Row(form, 1, 3), ",b,");
    EXPECT_EQ(Row(form, 3, 3), ",d,");
}

TEST(ComboGridBinding, LongLoadsTellAndMayBeCalledOff) {
    F form;
    auto records = MakeObject<ScriptRecords>();
    records->hasRows = true;
    records->slow = true;
    records->records.assign(20'000, {Variant(u"a"), Variant(1)});
    bool hiddenMeanwhile = true;
    form.events->onEvent = [&](DISPID id, DISPPARAMS& arguments) {
        if (id != grid_event::bindProgress) return;
        hiddenMeanwhile = hiddenMeanwhile && !GridIsShown(form);
        EXPECT_EQ(arguments.rgvarg[1].lVal, 20'000);
        records.reset();  // the grid holds its own
        PostQuitMessage(7);
        if (form.events->Count(grid_event::bindProgress) == 2) Answer(arguments, true);
    };
    Bind(form, records.get());
    form.events->onEvent = nullptr;
    EXPECT_EQ(TakeQuit(), 7) << "painting meanwhile has taken the end away from the host's loop";
    const auto told = form.events->Count(grid_event::bindProgress);
    EXPECT_EQ(told, 2U);
    EXPECT_GT(form.Number(L"Rows"), 500);
    EXPECT_LT(form.Number(L"Rows"), 20'001);
    EXPECT_TRUE(hiddenMeanwhile);
    EXPECT_TRUE(GridIsShown(form));
    EXPECT_EQ(form.events->Count(grid_event::afterCellChange), 1U);
}

// Whoever binds while the grid is being bound has the last word, wherever the first call stands.
TEST(ComboGridBinding, TheRecordsAskedForLastAreThereWhole) {
    struct Case {
        const char* what;
        DISPID event;  // or, below 0, the call of the records with that place among their names
        int times;     // that it comes before the other records are asked for
    };
    const Case cases[] = {
        {"an open edit is committed", grid_event::afterCellChange, 1},
        {"the cursor leaves its row", grid_event::leaveCell, 1},
        {"the cursor leaves the header", grid_event::leaveCell, 2},
        {"the cursor is on the first row", grid_event::enterCell, 2},
        {"the first row is selected", grid_event::selChange, 2},
        {"records are counted", ~0, 1},
        {"the end is asked for again", ~1, 2},
        {"the place is asked for", ~2, 1},
        {"the next record is asked for", ~3, 1},
        {"a value is asked for", ~8, 1},
    };
    for (const Case& c : cases) {
        for (const std::size_t count : {std::size_t{100}, std::size_t{0}}) {
            if (c.event < ~0 && count == 0) continue;
            SCOPED_TRACE(std::string(c.what) + ", of " + std::to_string(count));
            F form({{L"AutoRecordNumber", Variant(true)}});
            const auto outer = MakeObject<ScriptRecords>();
            outer->records.assign(count, {Variant(u"outer")});
            const auto inner = MakeObject<ScriptRecords>();
            inner->records.assign(5, {Variant(u"inner")});
            inner->firstPosition = 7;
            form.GoTo(2, F::name);
            if (c.event == grid_event::afterCellChange) form.Type(L"x");
            form.Log();
            int left = c.times;
            const auto bindAnew = [&](DISPID id) {
                if (id == c.event && --left == 0) Bind(form, inner.get());
            };
            form.events->onEvent = [&](DISPID id, DISPPARAMS&) { bindAnew(id); };
            outer->onCall = [&](DISPID member) { bindAnew(~member); };
            Bind(form, outer.get());
            form.events->onEvent = nullptr;
            ASSERT_LE(left, 0) << "it came";
            EXPECT_EQ(form.Number(L"Rows"), 6);
            EXPECT_EQ(Row(form, 1, 2), "7,inner");
            EXPECT_EQ(Row(form, 5, 2), "11,inner");
            EXPECT_EQ(form.Current(), "1,1") << "ready for entry";
            EXPECT_EQ(inner->at, 5U);
            EXPECT_LE(outer->at, 1U) << "the others are left where they were";
            EXPECT_EQ(form.Number(L"Changed"), 0);
            const std::string told = form.Log();
            EXPECT_EQ(told.substr(told.find("2(-1")), "2(-1, -1, , , False)\n") << "once";
            EXPECT_TRUE(GridIsShown(form));
        }
    }
}

}  // namespace
}  // namespace qvx::test
