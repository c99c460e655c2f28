// Bind of record sets that are read through their interface, by names and in blocks, beside a loop over the same set.
#include "bench/support/workload.h"
#include "bench/windows/host_form.h"
#include "bench/windows/list_view.h"
#include "bench/windows/table_records.h"
#include "com/bstr.h"
#include "com/late_bound.h"
#include "tests/support/script_records.h"

namespace qvx::bench {
namespace {

using Table = std::vector<std::vector<Variant>>;

Table MakeTable(std::size_t rows) {
    Table table(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        table[row].reserve(columnCount);
        for (const std::wstring& cell : SplitWide(WideTexts()[row % distinctRows]))
            table[row].emplace_back(FromWide(cell.c_str()));
    }
    return table;
}

std::size_t LengthOf(const Table& table) {
    std::size_t length = 0;
    for (const auto& record : table)
        for (const Variant& field : record) length += SysStringLen(field.get().bstrVal);
    return length;
}

// ---- What a program does without a grid: reads each field, here adding up the lengths of the texts -----------------

std::size_t LoopByInterface(AdoRecordset& set) {
    ComPtr<AdoFields> fields;
    Require(set.get_Fields(fields.put()) == S_OK, "Fields");
    LONGLONG count = 0;
    fields->get_Count(&count);
    std::vector<ComPtr<AdoField>> each(static_cast<std::size_t>(count));
    for (long i = 0; i < count; ++i) fields->get_Item(Variant(i).get(), each[static_cast<std::size_t>(i)].put());
    std::size_t length = 0;
    for (VARIANT_BOOL end = VARIANT_FALSE; set.get_EOF(&end) == S_OK && end == VARIANT_FALSE; set.MoveNext()) {
        for (const auto& field : each) {
            Variant value;
            field->get_Value(value.put());
            length += SysStringLen(value.get().bstrVal);
        }
    }
    return length;
}

std::size_t LoopByName(IDispatch* set) {
    const LateMember end(set, L"EOF");
    const LateMember fields(set, L"Fields");
    const LateMember next(set, L"MoveNext");
    RepeatedMember item(L"Item");
    std::vector<RepeatedMember> values(columnCount, RepeatedMember(L"Value"));
    std::size_t length = 0;
    for (; !end.Get(set).ToBool().value_or(true); next.Get(set)) {
        const auto current = fields.Get(set).ToObject<IDispatch>();
        for (int i = 0; i < columnCount; ++i) {
            const auto field = item.Get(current, {Variant(i)}).ToObject<IDispatch>();
            length += SysStringLen(values[static_cast<std::size_t>(i)].Get(field).get().bstrVal);
        }
    }
    return length;
}

std::size_t LoopOverBlocks(AdoRecordset& set) {
    const VARIANT missing = Variant::Missing().get();
    std::size_t length = 0;
    for (VARIANT_BOOL end = VARIANT_FALSE; set.get_EOF(&end) == S_OK && end == VARIANT_FALSE;) {
        Variant block;
        Require(set.GetRows(512, missing, missing, block.put()) == S_OK, "GetRows");
        VARIANT* values = nullptr;
        LONG last = 0;
        SafeArrayGetUBound(block.get().parray, 2, &last);
        SafeArrayAccessData(block.get().parray, reinterpret_cast<void**>(&values));
        for (LONG i = 0; i < (last + 1) * columnCount; ++i) length += SysStringLen(values[i].bstrVal);
        SafeArrayUnaccessData(block.get().parray);
    }
    return length;
}

// ---- The works -----------------------------------------------------------------------------------------------------

// The same record set for both: `rewind` sets it to its first record.
template <class Rewind, class Loop>
void Compare(const char* work, const Table& table, std::size_t runs, GridForm& form, IDispatch* set, Rewind rewind,
             Loop loop) {
    const std::size_t expected = LengthOf(table);
    std::vector<double> bound;
    for (std::size_t run = 0; run < runs; ++run) {
        form->put_Rows(2);
        HandleMessages();
        rewind();
        bound.push_back(Sampled(1, [&] { Require(form->Bind(&set) == S_OK, "Bind"); })[0]);
        const auto last = static_cast<long>(table.size());
        CheckSameWork(form.Rows() == last + 1, "Bind", work);
        for (const long row : {1L, last / 2, last})
            for (long col = 1; col <= columnCount; ++col)
                CheckSameWork(
                    form.Cell(row, col) ==
                        table[static_cast<std::size_t>(row - 1)][static_cast<std::size_t>(col - 1)].get().bstrVal,
                    "Bind", work);
    }
    const std::vector<double> looped = Sampled(runs, [&] {
        rewind();
        CheckSameWork(loop() == expected, "The loop", work);
    });
    Report(work, table.size(), "Bind", bound);
    Report(work, table.size(), "Loop over the fields", looped);
}

}  // namespace

void RunBindWorks(const HostOptions& options) {
    for (std::size_t rows = 1000; rows <= (options.quick ? 10'000U : 100'000U); rows *= 10) {
        GridForm form(columnCount);
        const Table table = MakeTable(rows);
        for (const bool blocks : {false, true}) {
            const auto set = MakeObject<TableRecords>(table, blocks);
            const auto loop = [&] { return blocks ? LoopOverBlocks(*set.get()) : LoopByInterface(*set.get()); };
            Compare(
                blocks ? "bind_rows" : "bind_interface", table, options.Samples(), form, set.get(),
                [&] { set->Rewind(); }, loop);
        }
        const auto named = MakeObject<test::ScriptRecords>();
        named->records = table;
        Compare(
            "bind_named", table, 5, form, named.get(), [&] { named->at = 0; }, [&] { return LoopByName(named.get()); });
    }
}

}  // namespace qvx::bench
