// The same rows for every peer: ten columns of short texts, one tab-separated text per row.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qvx::bench {

constexpr int columnCount = 10;
constexpr int sumColumn = 3;

// The number of different rows; row i has text i modulo this number, so that the input is created before the clock
// starts and still fits the processor's caches, like one read from a file.
constexpr std::size_t distinctRows = 4096;

// The number of rows that the insertions add.
constexpr std::size_t insertedRows = 1000;

// Cells have 0 to 11 characters, 6 on average; column 3 contains amounts, and one cell in 16 of column 7 is blank.
inline std::string RowText(std::size_t row) {
    static constexpr std::array<const char*, 8> words = {"North", "South", "East",     "West",
                                                         "Paid",  "Open",  "Returned", "In transit"};
    // A multiplier that spreads consecutive numbers; any good one will do.
    const auto mixed = static_cast<std::uint32_t>(row) * 2654435761U;
    const auto digits = [](std::uint32_t value, std::uint32_t limit) { return std::to_string(value % limit); };
    std::string text = std::to_string(row + 1);
    text += "\tItem " + digits(mixed >> 8, 10000);
    text += std::string("\t") + words[(mixed >> 5) % words.size()];
    text += "\t" + digits(mixed >> 3, 1000) + "." + digits(mixed >> 11, 9) + "5";
    text += "\t" + digits(mixed >> 7, 100);
    text += "\tKL" + digits(mixed >> 9, 100000);
    text += "\t" + digits(mixed >> 13, 28) + "/" + digits(mixed >> 15, 12) + "/2024";
    text += (mixed >> 20) % 16 == 0 ? "\t  " : std::string("\t") + words[(mixed >> 17) % words.size()];
    text += "\t-" + digits(mixed >> 4, 5000);
    text += "\tX" + digits(mixed >> 6, 1000);
    return text;
}

template <class String>
std::vector<String> RowTexts() {
    std::vector<String> rows;
    rows.reserve(distinctRows);
    for (std::size_t row = 0; row < distinctRows; ++row) {
        const std::string text = RowText(row);
        rows.emplace_back(text.begin(), text.end());
    }
    return rows;
}

}  // namespace qvx::bench
