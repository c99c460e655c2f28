// Cells read and written by a program, a call a cell, through the dual interface and late bound, beside an object that
// only has an array of texts. Another object is called with the grid, so that both suffer the same disturbance.
#include "bench/support/workload.h"
#include "bench/windows/cell_object.h"
#include "bench/windows/host_form.h"
#include "bench/windows/list_view.h"

namespace qvx::bench {
namespace {

constexpr long cellRows = 1000;

// The texts that are written, of one of two sets in turn so that each one is a change.
const std::vector<BSTR>& CellTexts(int set) {
    static const auto make = [](std::size_t first) {
        std::vector<BSTR> texts;
        for (std::size_t row = 0; row < cellRows; ++row)
            for (const std::wstring& cell : SplitWide(WideTexts()[first + row]))
                texts.push_back(SysAllocString(cell.c_str()));
        return texts;
    };
    static const std::vector<BSTR> sets[] = {make(0), make(cellRows)};
    return sets[set];
}

// A property of a row and a column, called late bound.
class LateCells {
  public:
    LateCells(IDispatch* object, const wchar_t* name) : object_(object) {
        auto* names = const_cast<wchar_t*>(name);
        Require(object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id_) == S_OK, "GetIDsOfNames");
    }
    HRESULT Get(long row, long col, BSTR* text) {
        VARIANTARG place[2] = {Number(col), Number(row)};
        DISPPARAMS arguments{place, nullptr, 2, 0};
        VARIANT result{};
        const HRESULT called = object_->Invoke(id_, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &arguments,
                                               &result, nullptr, nullptr);
        *text = result.bstrVal;
        return called;
    }
    HRESULT Put(long row, long col, BSTR text) {
        VARIANTARG values[3] = {{}, Number(col), Number(row)};
        values[0].vt = VT_BSTR;
        values[0].bstrVal = text;
        DISPID named = DISPID_PROPERTYPUT;
        DISPPARAMS arguments{values, &named, 3, 1};
        return object_->Invoke(id_, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &arguments, nullptr, nullptr,
                               nullptr);
    }

  private:
    static VARIANTARG Number(long value) {
        VARIANTARG number{};
        number.vt = VT_I4;
        number.lVal = value;
        return number;
    }
    IDispatch* object_;
    DISPID id_ = DISPID_UNKNOWN;
};

template <class Get>
void ReadCells(const char* peer, const char* work, int set, long firstRow, Get get) {
    const std::vector<BSTR>& texts = CellTexts(set);
    std::size_t same = 0;
    for (long row = 0; row < cellRows; ++row) {
        for (long col = 0; col < columnCount; ++col) {
            BSTR text = nullptr;
            if (get(row + firstRow, col + firstRow, &text) != S_OK) break;
            const BSTR expected = texts[static_cast<std::size_t>(row * columnCount + col)];
            same += std::wcscmp(text, expected) == 0 ? 1 : 0;
            SysFreeString(text);
        }
    }
    CheckSameWork(same == texts.size(), peer, work);
}

template <class Put>
void WriteCells(const char* peer, const char* work, int set, long firstRow, Put put) {
    const std::vector<BSTR>& texts = CellTexts(set);
    bool good = true;
    for (long row = 0; row < cellRows; ++row)
        for (long col = 0; col < columnCount; ++col)
            good =
                put(row + firstRow, col + firstRow, texts[static_cast<std::size_t>(row * columnCount + col)]) == S_OK &&
                good;
    CheckSameWork(good, peer, work);
}

// Writes all cells and reads them back; the samples are seconds for all.
template <class Get, class Put>
void Measure(const HostOptions& options, const char* peer, const char* getWork, const char* putWork, long firstRow,
             Get get, Put put) {
    std::vector<double> reads;
    std::vector<double> writes;
    for (std::size_t run = 0; run < 2 * options.Samples(); ++run) {
        const int set = static_cast<int>(run % 2);
        writes.push_back(Sampled(1, [&] { WriteCells(peer, putWork, set, firstRow, put); })[0]);
        HandleMessages();
        reads.push_back(Sampled(1, [&] { ReadCells(peer, getWork, set, firstRow, get); })[0]);
    }
    Report(getWork, cellRows * columnCount, peer, reads);
    Report(putWork, cellRows * columnCount, peer, writes);
}

}  // namespace

void RunCellWorks(const HostOptions& options) {
    GridForm form(columnCount);
    Require(form->put_Rows(cellRows + 1) == S_OK, "Rows");
    HandleMessages();
    _ComboGrid* const grid = form.Grid();
    const auto plain = MakeCellObject(cellRows, columnCount);
    LateCells lateGrid(grid, L"TextMatrix");
    LateCells latePlain(plain.get(), L"Cell");
    const auto late = [](LateCells& cells) {
        return std::pair([&cells](long row, long col, BSTR* text) { return cells.Get(row, col, text); },
                         [&cells](long row, long col, BSTR text) { return cells.Put(row, col, text); });
    };
    Measure(
        options, "TextMatrix", "cell_get_dual", "cell_put_dual", 1,
        [&](long row, long col, BSTR* text) { return grid->get_TextMatrix(row, col, text); },
        [&](long row, long col, BSTR text) { return grid->put_TextMatrix(row, col, text); });
    Measure(
        options, "Array of texts", "cell_get_dual", "cell_put_dual", 0,
        [&](long row, long col, BSTR* text) { return plain->get_Cell(row, col, text); },
        [&](long row, long col, BSTR text) { return plain->put_Cell(row, col, text); });
    const auto [getGrid, putGrid] = late(lateGrid);
    Measure(options, "TextMatrix", "cell_get_late", "cell_put_late", 1, getGrid, putGrid);
    const auto [getPlain, putPlain] = late(latePlain);
    Measure(options, "Array of texts", "cell_get_late", "cell_put_late", 0, getPlain, putPlain);
}

}  // namespace qvx::bench
