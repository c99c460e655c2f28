// Whole grids that are exchanged as arrays: LoadArray and ToArray, beside a plain copy of the same texts.
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "bench/support/workload.h"
#include "bench/windows/host_form.h"
#include "bench/windows/list_view.h"
#include "com/safearray.h"
#include "com/variant.h"

namespace qvx::bench {
namespace {

// The elements of an array while it is locked. The array must outlive this.
class Elements {
  public:
    explicit Elements(SAFEARRAY* array) : array_(array) {
        void* data = nullptr;
        Require(SafeArrayAccessData(array_, &data) == S_OK, "SafeArrayAccessData");
        first_ = static_cast<VARIANT*>(data);
    }
    ~Elements() { SafeArrayUnaccessData(array_); }
    Elements(const Elements&) = delete;
    Elements& operator=(const Elements&) = delete;
    VARIANT* First() const { return first_; }

  private:
    SAFEARRAY* array_;
    VARIANT* first_;
};

SAFEARRAY* NewArray(std::size_t rows) {
    SAFEARRAYBOUND bounds[] = {{columnCount, 0}, {static_cast<ULONG>(rows), 0}};
    SAFEARRAY* const array = SafeArrayCreate(VT_VARIANT, 2, bounds);
    Require(array != nullptr, "SafeArrayCreate");
    return array;
}

SafeArray MakeRecords(std::size_t rows) {
    SafeArray array(NewArray(rows));
    const Elements elements(array.get());
    VARIANT* value = elements.First();
    for (std::size_t row = 0; row < rows; ++row) {
        for (const std::wstring& cell : SplitWide(WideTexts()[row % distinctRows])) {
            value->bstrVal = SysAllocStringLen(cell.data(), static_cast<UINT>(cell.size()));
            value++->vt = VT_BSTR;
        }
    }
    return array;
}

// ---- The least that each direction costs ---------------------------------------------------------------------------

struct Free {
    void operator()(std::uint8_t* memory) const noexcept { std::free(memory); }
};

// The texts as bytes, each row after the ends of its cells.
std::unique_ptr<std::uint8_t, Free> PackedRows(SAFEARRAY* records, std::size_t rows) {
    constexpr std::size_t longestRow = 128;
    std::unique_ptr<std::uint8_t, Free> bytes(static_cast<std::uint8_t*>(std::malloc(rows * longestRow)));
    const Elements elements(records);
    const VARIANT* value = elements.First();
    std::uint8_t* at = bytes.get();
    for (std::size_t row = 0; row < rows; ++row) {
        std::uint8_t* const ends = at;
        std::uint8_t* const text = at + columnCount;
        std::size_t used = 0;
        for (std::size_t col = 0; col < columnCount; ++col, ++value) {
            const BSTR cell = value->bstrVal;
            const std::size_t length = SysStringLen(cell);
            for (std::size_t i = 0; i < length; ++i) text[used + i] = static_cast<std::uint8_t>(cell[i]);
            used += length;
            ends[col] = static_cast<std::uint8_t>(used);
        }
        at = text + used;
    }
    // Pages that no row has reached were never touched.
    const auto used = static_cast<std::size_t>(at - bytes.get());
    bytes.reset(static_cast<std::uint8_t*>(std::realloc(bytes.release(), used)));
    return bytes;
}

// Another array of the same texts.
SafeArray Copy(SAFEARRAY* records, std::size_t rows) {
    SafeArray copy(NewArray(rows));
    const Elements from(records);
    const Elements to(copy.get());
    for (std::size_t i = 0; i < rows * columnCount; ++i) {
        const BSTR cell = from.First()[i].bstrVal;
        to.First()[i].bstrVal = SysAllocStringLen(cell, SysStringLen(cell));
        to.First()[i].vt = VT_BSTR;
    }
    return copy;
}

// ---- The works -----------------------------------------------------------------------------------------------------

constexpr const char* ours = "ComboGrid";
constexpr const char* floorName = "Floor";

// Every cell where the array has a hundred rows or fewer, otherwise those of a hundred rows and of the last one.
template <class Same>
bool SameCells(SAFEARRAY* records, std::size_t rows, Same same) {
    const Elements elements(records);
    const std::size_t step = std::max<std::size_t>(rows / 100, 1);
    for (std::size_t row = 0;; row = std::min(row + step, rows - 1)) {
        for (std::size_t col = 0; col < columnCount; ++col) {
            const std::size_t at = row * columnCount + col;
            if (!same(row, col, elements.First()[at].bstrVal)) return false;
        }
        if (row == rows - 1) return true;
    }
}

bool SameTexts(BSTR a, BSTR b) {
    return SysStringLen(a) == SysStringLen(b) && std::wcscmp(a ? a : L"", b ? b : L"") == 0;
}

bool IsCopy(SAFEARRAY* copy, SAFEARRAY* records, std::size_t rows) {
    LONG lastField = 0;
    LONG lastRecord = 0;
    if (SafeArrayGetDim(copy) != 2 || SafeArrayGetUBound(copy, 1, &lastField) != S_OK || lastField != columnCount - 1 ||
        SafeArrayGetUBound(copy, 2, &lastRecord) != S_OK || lastRecord != static_cast<LONG>(rows) - 1)
        return false;
    const Elements elements(copy);
    return SameCells(records, rows, [&](std::size_t row, std::size_t col, BSTR text) {
        const VARIANT& value = elements.First()[row * columnCount + col];
        return value.vt == VT_BSTR && SameTexts(value.bstrVal, text);
    });
}

void ExchangeWorks(GridForm& form, std::size_t rows, std::size_t runs) {
    const SafeArray records = MakeRecords(rows);
    VARIANT argument{};
    argument.vt = VT_ARRAY | VT_VARIANT;
    argument.parray = records.get();
    std::vector<double> loads, packs, reads, copies;
    for (std::size_t run = 0; run < runs; ++run) {
        form->put_Rows(2);
        HandleMessages();
        loads.push_back(Sampled(1, [&] { Require(form->LoadArray(argument) == S_OK, "LoadArray"); })[0]);
        HandleMessages();
        CheckSameWork(form.Rows() == static_cast<long>(rows) + 1, ours, "array_load");
        CheckSameWork(SameCells(records.get(), rows,
                                [&](std::size_t row, std::size_t col, BSTR text) {
                                    return form.Cell(static_cast<long>(row) + 1, static_cast<long>(col) + 1) ==
                                           std::wstring_view(text, SysStringLen(text));
                                }),
                      ours, "array_load");
        std::unique_ptr<std::uint8_t, Free> packed;
        packs.push_back(Sampled(1, [&] { packed = PackedRows(records.get(), rows); })[0]);
        packed.reset();
        {
            Variant result;
            reads.push_back(Sampled(1, [&] { Require(form->ToArray(result.put()) == S_OK, "ToArray"); })[0]);
            CheckSameWork(IsCopy(result.get().parray, records.get(), rows), ours, "array_read");
        }
        SafeArray copy;
        copies.push_back(Sampled(1, [&] { copy = Copy(records.get(), rows); })[0]);
        CheckSameWork(IsCopy(copy.get(), records.get(), rows), floorName, "array_read");
    }
    Report("array_load", rows, ours, loads);
    Report("array_load", rows, floorName, packs);
    Report("array_read", rows, ours, reads);
    Report("array_read", rows, floorName, copies);
}

// A million rows are three arrays of ten million texts at a time.
bool HasRoomForMillion() {
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    constexpr DWORDLONG needed = 6ULL << 30;
    return sizeof(void*) == 8 && GlobalMemoryStatusEx(&memory) && memory.ullAvailPhys > needed;
}

}  // namespace

void RunArrayWorks(const HostOptions& options) {
    GridForm form(columnCount);
    ExchangeWorks(form, 1000, 2 * options.Samples());
    ExchangeWorks(form, 100'000, options.Samples());
    if (!options.quick && HasRoomForMillion()) ExchangeWorks(form, 1'000'000, 3);
}

}  // namespace qvx::bench
