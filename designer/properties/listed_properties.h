// The rows of the property list: the properties that several objects have in common, their order, and the search for a
// row by its name.
#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

#include "designer/properties/property_row.h"

namespace qvx::host::designer {

// A property that all of the objects have, and its position among the properties of each.
struct CommonProperty {
    PropertyInfo info;
    std::vector<std::size_t> places;
};

// Properties are the same when name and kind are, and enumerations have the same choices. What is read-only for one is
// for all. In the order of the first object.
std::vector<CommonProperty> CommonProperties(const std::vector<std::vector<const PropertyInfo*>>& objects);

// One value for several objects: theirs when it is the same for all, else nothing, which is shown empty.
class CommonReading {
  public:
    // Takes the next object's reading. False when those of further objects would make no difference.
    bool Add(PropertyReading reading);
    const PropertyReading& Result() const { return common_; }

  private:
    PropertyReading common_;
    bool first_ = true;
    bool different_ = false;
};

struct PropertyRow {
    PropertyInfo info;
    PropertyReading reading;
};

enum class PropertyOrder { alphabetic, categorized };

class ListedProperties {
  public:
    // A row, or the heading of a category.
    struct Line {
        std::optional<std::size_t> row;
        Text heading{};
        bool open = true;  // a heading's rows are shown
        bool IsHeading() const { return !row; }
    };

    void SetProperties(std::vector<PropertyInfo> properties);
    void SetOrder(PropertyOrder order);
    PropertyOrder Order() const { return order_; }
    // Hides or shows the rows below a heading. The lines after it get other numbers.
    void Toggle(std::size_t line);

    const std::vector<PropertyRow>& Rows() const { return rows_; }
    const std::vector<Line>& Lines() const { return lines_; }
    // The row of a line; null for a heading and beyond the end.
    const PropertyRow* RowAt(std::size_t line) const;
    void SetReading(std::size_t row, PropertyReading reading) { rows_[row].reading = std::move(reading); }

    // By the property's name, whatever its case.
    std::optional<std::size_t> FindRow(TextView name) const;
    std::optional<std::size_t> LineOf(TextView name) const;
    // The first line from `from` on, and round from the top, whose name begins so. Brackets do not count.
    std::optional<std::size_t> FindBeginning(TextView beginning, std::size_t from) const;

  private:
    void Arrange();

    std::vector<PropertyRow> rows_;
    std::vector<Line> lines_;
    PropertyOrder order_ = PropertyOrder::alphabetic;
    std::set<Text> closed_;
};

// Letters typed one after the other are the beginning of a name. After a pause, the search begins anew; the same letter
// again and again leads from one name to the next.
class TypedSearch {
  public:
    // `time` in milliseconds of any clock. The line to go to from `current`; nothing when no name begins so.
    std::optional<std::size_t> Type(const ListedProperties& table, std::size_t current, char16_t letter,
                                    unsigned long long time);
    void Reset() { typed_.clear(); }

  private:
    Text typed_;
    unsigned long long last_ = 0;
};

}  // namespace qvx::host::designer
