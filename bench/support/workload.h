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

inline constexpr std::array<const char*, 8> words = {"North", "South", "East",     "West",
                                                     "Paid",  "Open",  "Returned", "In transit"};

// Spreads consecutive numbers; any good multiplier will do.
inline std::uint32_t Mixed(std::size_t row) { return static_cast<std::uint32_t>(row) * 2654435761U; }

// The number of rows that the insertions add.
constexpr std::size_t insertedRows = 1000;

// Cells have 0 to 11 characters, 6 on average; column 3 contains amounts, and one cell in 16 of column 7 is blank.
inline std::string RowText(std::size_t row) {
    const std::uint32_t mixed = Mixed(row);
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

// The same with words in place of a third of the amounts.
inline std::string MixedRowText(std::size_t row) {
    std::string text = RowText(row);
    const std::uint32_t mixed = Mixed(row);
    if ((mixed >> 12) % 3 != 0) return text;
    std::size_t start = 0;
    for (int col = 0; col < sumColumn; ++col) start = text.find('\t', start) + 1;
    return text.replace(start, text.find('\t', start) - start, words[(mixed >> 10) % words.size()]);
}

template <class String>
std::vector<String> RowTexts(std::string (*textOf)(std::size_t) = RowText) {
    std::vector<String> rows;
    rows.reserve(distinctRows);
    for (std::size_t row = 0; row < distinctRows; ++row) {
        const std::string text = textOf(row);
        rows.emplace_back(text.begin(), text.end());
    }
    return rows;
}

}  // namespace qvx::bench
