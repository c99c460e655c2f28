// Record sets into a ComboGrid, and the whole grid checked, as a host does both.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "com/late_bound.h"
#include "com/safearray.h"
#include "tests/control/combogrid_form.h"
#include "tests/support/message_box.h"
#include "tests/support/narrow.h"

namespace qvx::test {
namespace {

using F = ComboGridForm;

// A field that numbers its only member in its own way.
class ScriptField final : public ComObject<IDispatch> {
  public:
    ScriptField(DISPID id, std::function<Variant()> value) : id_(id), value_(std::move(value)) {}
    static inline int lookups = 0;

    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        if (std::wstring(names[0]) != L"Value") return DISP_E_UNKNOWNNAME;
        ++lookups;
        *ids = id_;
        return S_OK;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) override {
        if (member != id_) return DISP_E_MEMBERNOTFOUND;
        *result = value_().detach();
        return S_OK;
    }

  private:
    ~ScriptField() override = default;
    DISPID id_;
    std::function<Variant()> value_;
};

// A record set of a script's own: three members deep, with everything that can go wrong.
class ScriptRecords final : public ComObject<IDispatch> {
  public:
    std::vector<std::vector<Variant>> records;
    long counted = -2;  // what RecordCount says; -2: how many there are
    bool hasCount = true;
    bool hasRows = false;       // GetRows is there
    size_t failsAt = SIZE_MAX;  // reading that record fails
    HRESULT closed = S_OK;      // what everything fails with
    bool slow = false;          // a block takes a while
    size_t at = 0;
    int blocks = 0;
    long firstPosition = 1;
    enum class Fields { itself, steady, fresh } fields = Fields::itself;  // objects in each record

    STDMETHODIMP GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
        static const wchar_t* const known[] = {L"RecordCount", L"EOF",    L"AbsolutePosition",
                                               L"MoveNext",    L"Fields", L"GetRows",
                                               L"Item",        L"Count",  L"Value"};
        for (DISPID i = 0; i < static_cast<DISPID>(std::size(known)); ++i) {
            if (std::wstring(known[i]) != names[0]) continue;
            if ((i == 0 && !hasCount) || (i == 5 && !hasRows)) break;
            *ids = i;
            return S_OK;
        }
        return DISP_E_UNKNOWNNAME;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                        UINT*) override {
        const auto fail = [&](HRESULT code, const wchar_t* words) {
            exception->scode = code;
            exception->bstrDescription = SysAllocString(words);
            return DISP_E_EXCEPTION;
        };
        if (FAILED(closed)) return fail(closed, L"Operation is not allowed when the object is closed.");
        Variant answer;
        switch (member) {
            case 0:
                answer = Variant(counted == -2 ? static_cast<long>(records.size()) : counted);
                break;
            case 1:
                answer = Variant(at >= records.size());
                break;
            case 2:
                answer = Variant(static_cast<long>(at) + firstPosition);
                break;
            case 3:
                ++at;
                break;
            case 4:
                answer = Variant(static_cast<IDispatch*>(this));
                break;
            case 5: {
                ++blocks;
                if (slow) Sleep(30);
                const auto wanted = static_cast<size_t>(*Variant(arguments->rgvarg[0]).ToLong());
                const size_t count = std::min(wanted, records.size() - at);
                if (failsAt >= at && failsAt < at + count) return fail(E_FAIL, L"The data are damaged.");
                answer = Rows(count);
                at += count;
                break;
            }
            case 6:
                if (at == failsAt) return fail(E_FAIL, L"The data are damaged.");
                field_ = static_cast<size_t>(*Variant(arguments->rgvarg[0]).ToLong());
                answer = Variant(fields == Fields::itself ? static_cast<IDispatch*>(this) : Field(field_));
                break;
            case 7:
                answer = Variant(records.empty() ? 0L : static_cast<long>(records[0].size()));
                break;
            default:
                answer = records[at][field_];
        }
        if (result) *result = answer.detach();
        return S_OK;
    }

  private:
    ~ScriptRecords() override = default;
    IDispatch* Field(size_t field) {
        fields_.resize(records[0].size());
        if (fields == Fields::fresh || !fields_[field]) {
            const auto id = static_cast<DISPID>(100 + 7 * field + (fields == Fields::fresh ? 1000 * at : 0));
            fields_[field] =
                ComPtr<IDispatch>(MakeObject<ScriptField>(id, [this, field] { return records[at][field]; }));
        }
        return fields_[field].get();
    }
    Variant Rows(size_t count) {
        SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(records[0].size()), 0}, {static_cast<ULONG>(count), 0}};
        Variant rows;
        rows.ptr()->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
        rows.ptr()->vt = VT_ARRAY | VT_VARIANT;
        for (LONG r = 0; r < static_cast<LONG>(count); ++r)
            for (LONG f = 0; f < static_cast<LONG>(records[0].size()); ++f) {
                LONG place[] = {f, r};
                SafeArrayPutElement(rows.get().parray, place,
                                    records[at + static_cast<size_t>(r)][static_cast<size_t>(f)].ptr());
            }
        return rows;
    }
    size_t field_ = 0;
    std::vector<ComPtr<IDispatch>> fields_;
};

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
        std::function<void(ScriptRecords&)> set;
        const char* reported;  // the number, or empty
        long rows;
        const char* events;
    };
    const auto three = [](ScriptRecords& r) { r.records = {{Variant(u"a")}, {Variant(u"b")}, {Variant(u"c")}}; };
    const Case cases[] = {
        {"none", [](ScriptRecords&) {}, "", 2, "2(-1, -1, , , False)\n"},
        {"uncounted", [&](ScriptRecords& r) { three(r), r.counted = -1; }, "", 4, "2(-1, -1, , , False)\n"},
        {"at its end", [&](ScriptRecords& r) { three(r), r.at = 3; }, "", 1, "2(-1, -1, , , False)\n"},
        {"from the second on", [&](ScriptRecords& r) { three(r), r.at = 1; }, "", 3, "2(-1, -1, , , False)\n"},
        {"closed", [&](ScriptRecords& r) { three(r), r.closed = static_cast<HRESULT>(0x800A0E78); }, ": 3704", 1, ""},
        {"without RecordCount", [&](ScriptRecords& r) { three(r), r.hasCount = false; }, ": 438", 3, ""},
        {"failing", [&](ScriptRecords& r) { three(r), r.failsAt = 2; }, ": -2147467259", 3, ""},
        {"failing in a block", [&](ScriptRecords& r) { three(r), r.failsAt = 2, r.hasRows = true; }, ": -2147467259", 3,
         ""},
        {"without fields",
         [](ScriptRecords& r) {
             r.records = {{}, {}};
         },
         "", 3, "2(-1, -1, , , False)\n"},
        {"more fields than columns", [](ScriptRecords& r) { r.records = {std::vector<Variant>(40, Variant(u"x"))}; },
         "", 2, "2(-1, -1, , , False)\n"},
        {"binary",
         [](ScriptRecords& r) {
             Variant bytes;
             bytes.ptr()->parray = SafeArrayCreateVector(VT_UI1, 0, 4);
             bytes.ptr()->vt = VT_ARRAY | VT_UI1;
             r.records = {{Variant(u"a")}, {bytes}};
         },
         ": 13", 2, ""},
    };
    for (const Case& c : cases) {
        F form;
        const auto records = MakeObject<ScriptRecords>();
        c.set(*records);
        form.Log();
        std::wstring title;
        {
            const Person person([&] {
                if (!*c.reported) return;
                const HWND box = WaitForBox();
                wchar_t text[200]{};
                GetWindowTextW(box, text, 200);
                title = text;
                TypeKey(VK_RETURN);
            });
            Bind(form, records.get());
        }
        const std::wstring ending(c.reported, c.reported + std::strlen(c.reported));
        EXPECT_TRUE(title.size() >= ending.size() && title.substr(title.size() - ending.size()) == ending)
            << c.what << " " << std::string(title.begin(), title.end());
        EXPECT_EQ(form.Number(L"Rows"), c.rows) << c.what;
        EXPECT_EQ(form.Log(), c.events) << c.what;
        EXPECT_TRUE(GridIsShown(form)) << c.what;
    }
}

TEST(ComboGridBinding, AnEmptySetLeavesARowToEnter) {
    F form({{L"AutoRecordNumber", Variant(true)}});
    Bind(form, MakeObject<ScriptRecords>().get());
    EXPECT_EQ(form.Number(L"Rows"), 2);
    EXPECT_EQ(Row(form, 1), "1,,,,");
    form.Type(L"x");
    form.Press(VK_RETURN);
    EXPECT_EQ(Row(form, 1), "1,x,,,");
}

TEST(ComboGridBinding, NoRecordSetIsAnErrorToTheUser) {
    F form;
    const Person person([] {
        if (WaitForBox()) TypeKey(VK_RETURN);
    });
    Call(form.grid.get(), L"Bind", {Variant(static_cast<IDispatch*>(nullptr))});
    EXPECT_EQ(form.Number(L"Rows"), 3) << "what was there stays";
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
        if (form.events->Count(grid_event::bindProgress) == 2) Answer(arguments, true);
    };
    Bind(form, records.get());
    form.events->onEvent = nullptr;
    const auto told = form.events->Count(grid_event::bindProgress);
    EXPECT_EQ(told, 2U);
    EXPECT_GT(form.Number(L"Rows"), 500);
    EXPECT_LT(form.Number(L"Rows"), 20'001);
    EXPECT_TRUE(hiddenMeanwhile);
    EXPECT_TRUE(GridIsShown(form));
    EXPECT_EQ(form.events->Count(grid_event::afterCellChange), 1U);
}

TEST(ComboGridBinding, AHandlerMayBindAnew) {
    F form;
    const auto outer = MakeObject<ScriptRecords>();
    outer->records.assign(100, {Variant(u"outer")});
    const auto inner = MakeObject<ScriptRecords>();
    inner->records.assign(5, {Variant(u"inner")});
    form.events->onEvent = [&](DISPID id, DISPPARAMS&) {
        if (id != grid_event::enterCell || form.Number(L"Rows") != 2) return;
        form.events->onEvent = nullptr;
        Bind(form, inner.get());
    };
    Bind(form, outer.get());
    EXPECT_EQ(form.Number(L"Rows"), 6);
    EXPECT_EQ(Row(form, 5, 2), ",inner");
    EXPECT_TRUE(GridIsShown(form));
}

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
