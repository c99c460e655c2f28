// What goes through a whole grid in one call: Sort, ValidateEntry, DuplicateRecord.
#include <algorithm>

#include "bench/support/workload.h"
#include "bench/windows/host_form.h"
#include "bench/windows/list_view.h"

namespace qvx::bench {
namespace {

constexpr long numberColumn = 1 + sumColumn;  // in the grid, whose first column has the rows' numbers
constexpr long textColumn = 2;                // "Item 4711"

struct OwnedBstr {
    explicit OwnedBstr(const wchar_t* text) : value(SysAllocString(text)) {}
    ~OwnedBstr() { SysFreeString(value); }
    OwnedBstr(const OwnedBstr&) = delete;
    OwnedBstr& operator=(const OwnedBstr&) = delete;
    BSTR value;
};

struct RowKey {
    std::wstring text;
    double number;
    std::size_t row;
};

std::vector<RowKey> MakeKeys(std::size_t rows) {
    std::vector<RowKey> keys;
    for (std::size_t row = 1; row <= rows; ++row) {
        const WideRow cells = SplitWide(WideTexts()[row % distinctRows]);
        keys.push_back({cells[textColumn - 1], std::wcstod(cells[numberColumn - 1].c_str(), nullptr), row});
    }
    return keys;
}

// As texts compare for the user.
bool TextLess(const RowKey& a, const RowKey& b) {
    constexpr DWORD noCase = 0;
    return CompareStringW(LOCALE_USER_DEFAULT, noCase, a.text.c_str(), -1, b.text.c_str(), -1) == CSTR_LESS_THAN;
}

void SortWork(const HostOptions& options, GridForm& form, std::size_t rows, const char* work, const wchar_t* columns,
              bool numbers) {
    const OwnedBstr by(columns);
    // The order that the rows must have afterwards.
    const std::vector<RowKey> keys = MakeKeys(rows);
    std::vector<RowKey> sorted;
    std::vector<double> own;
    for (std::size_t run = 0; run < 5; ++run) {
        sorted = keys;
        own.push_back(Sampled(1, [&] {
            if (numbers) {
                std::stable_sort(sorted.begin(), sorted.end(),
                                 [](const RowKey& a, const RowKey& b) { return a.number < b.number; });
            } else {
                std::stable_sort(sorted.begin(), sorted.end(), TextLess);
            }
        })[0]);
    }
    std::vector<double> grid;
    for (std::size_t run = 0; run < options.Samples(); ++run) {
        form.Fill(rows);
        grid.push_back(Sampled(1, [&] { Require(form->Sort(by.value) == S_OK, "Sort"); })[0]);
        for (std::size_t row = 1; row <= rows; row += rows / 100)
            CheckSameWork(form.Cell(static_cast<long>(row), 0) == std::to_wstring(sorted[row - 1].row), "Sort", work);
    }
    Report(work, rows, "Sort", grid);
    Report(work, rows, "stable_sort of an array", own);
}

void CheckWorks(const HostOptions& options, GridForm& form, std::size_t rows) {
    form.Fill(rows);
    const OwnedBstr required(L";C1;C2;C3;");
    const OwnedBstr positive(L";C4-2;C5-3;");
    const OwnedBstr none(L"");
    Require(form->put_RequiredFields(required.value) == S_OK && form->put_CheckValueFor(positive.value) == S_OK,
            "the rules");
    VARIANT_BOOL found = VARIANT_TRUE;
    const auto repeated = [&](const char* work, auto call) {
        // Often enough for the clock.
        const std::size_t times = 100'000 / rows;
        std::vector<double> samples = Sampled(options.Samples(), [&] {
            for (std::size_t i = 0; i < times; ++i) {
                Require(call() == S_OK, work);
                CheckSameWork(found == VARIANT_FALSE, "ComboGrid", work);
            }
        });
        for (double& sample : samples) sample /= static_cast<double>(times);
        Report(work, rows, "ComboGrid", samples);
    };
    repeated("validate_entry", [&] { return form->ValidateEntry(&found); });
    repeated("duplicate_record", [&] {
        long record = 0;
        long match = 0;
        return form->DuplicateRecord(&record, &match, VARIANT_FALSE, &found);
    });
    // Both look at the last row, too.
    const auto last = static_cast<long>(rows);
    long record = 0;
    long match = 0;
    for (long col = 0; col <= columnCount; ++col) {
        const OwnedBstr text(form.Cell(last - 1, col).c_str());
        Require(form->put_TextMatrix(last, col, text.value) == S_OK, "TextMatrix");
    }
    Require(form->DuplicateRecord(&record, &match, VARIANT_FALSE, &found) == S_OK, "DuplicateRecord");
    CheckSameWork(found == VARIANT_TRUE && record == last - 1 && match == last, "ComboGrid", "duplicate_record");
    Require(form->put_TextMatrix(last, 3, none.value) == S_OK, "TextMatrix");
    long row = 0;
    long col = 0;
    long rule = 0;
    BSTR message = nullptr;
    Require(form->FindInvalid(&row, &col, VARIANT_FALSE, &rule, &message) == S_OK, "FindInvalid");
    SysFreeString(message);
    CheckSameWork(row == last && col == 3, "ComboGrid", "validate_entry");
    Require(form->put_RequiredFields(none.value) == S_OK && form->put_CheckValueFor(none.value) == S_OK, "no rules");
}

}  // namespace

void RunGridWorks(const HostOptions& options) {
    GridForm form(columnCount);
    const OwnedBstr types(L";C4-1;");
    Require(form->put_ColumnsDataType(types.value) == S_OK, "ColumnsDataType");
    for (std::size_t rows = 1000; rows <= 100'000; rows *= 10) {
        CheckWorks(options, form, rows);
        if (options.quick && rows < 100'000) continue;
        SortWork(options, form, rows, "sort_texts", L";C2-0;", false);
        SortWork(options, form, rows, "sort_numbers", L";C4-0;", true);
    }
}

}  // namespace qvx::bench
