#include "designer/properties/listed_properties.h"

#include <algorithm>
#include <map>
#include <numeric>

#include "common/text_compare.h"
#include "host/form_value.h"

namespace qvx::host::designer {

namespace {

// The label from its first letter on.
TextView Letters(TextView label) {
    if (!label.empty() && label.front() == u'(') label.remove_prefix(1);
    return label;
}

bool SameProperty(const PropertyInfo& a, const PropertyInfo& b) {
    return a.kind == b.kind && a.choices == b.choices && SameName(a.name, b.name);
}

}  // namespace

std::vector<CommonProperty> CommonProperties(const std::vector<std::vector<PropertyInfo>>& objects) {
    std::vector<CommonProperty> common;
    if (objects.empty()) return common;
    // A map by folded names matches hundreds of properties of many objects in one pass for each.
    std::vector<std::map<Text, std::size_t>> places(objects.size());
    for (std::size_t i = 1; i < objects.size(); ++i)
        for (std::size_t j = 0; j < objects[i].size(); ++j) places[i].emplace(FoldedText(objects[i][j].name), j);
    for (std::size_t j = 0; j < objects[0].size(); ++j) {
        CommonProperty property{objects[0][j], {j}};
        const Text key = FoldedText(property.info.name);
        bool everywhere = objects.size() == 1 || !property.info.single;
        for (std::size_t i = 1; everywhere && i < objects.size(); ++i) {
            const auto found = places[i].find(key);
            everywhere = found != places[i].end() && SameProperty(property.info, objects[i][found->second]);
            if (!everywhere) break;
            property.info.readOnly |= objects[i][found->second].readOnly;
            property.places.push_back(found->second);
        }
        if (everywhere) common.push_back(std::move(property));
    }
    return common;
}

PropertyReading CommonReading(const std::vector<PropertyReading>& readings) {
    if (readings.empty()) return {};
    const bool same = std::all_of(readings.begin(), readings.end(), [&](const auto& r) { return r == readings[0]; });
    if (same) return readings[0];
    PropertyReading different;
    different.readable =
        std::any_of(readings.begin(), readings.end(), [](const PropertyReading& r) { return r.readable; });
    return different;
}

void ListedProperties::SetProperties(std::vector<PropertyInfo> properties) {
    rows_.clear();
    for (PropertyInfo& info : properties) rows_.push_back({std::move(info), {}});
    Arrange();
}

void ListedProperties::SetOrder(PropertyOrder order) {
    order_ = order;
    Arrange();
}

void ListedProperties::Toggle(std::size_t line) {
    if (line >= lines_.size() || !lines_[line].IsHeading()) return;
    const Text heading = lines_[line].heading;
    if (!closed_.erase(heading)) closed_.insert(heading);
    Arrange();
}

void ListedProperties::Arrange() {
    std::vector<std::size_t> order(rows_.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::vector<Text> labels;
    for (const PropertyRow& row : rows_) labels.push_back(PropertyLabel(row.info));
    const bool byCategory = order_ == PropertyOrder::categorized;
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        if (byCategory) {
            const int category = CompareTextNoCase(rows_[a].info.category, rows_[b].info.category);
            if (category != 0) return category < 0;
        }
        return CompareTextNoCase(labels[a], labels[b]) < 0;
    });
    lines_.clear();
    const Text* heading = nullptr;
    bool open = true;
    for (const std::size_t row : order) {
        const Text& category = rows_[row].info.category;
        if (byCategory && (!heading || !EqualNoCase(*heading, category))) {
            heading = &category;
            open = !closed_.contains(category);
            lines_.push_back({std::nullopt, category, open});
        }
        if (open) lines_.push_back({row});
    }
}

const PropertyRow* ListedProperties::RowAt(std::size_t line) const {
    return line < lines_.size() && lines_[line].row ? &rows_[*lines_[line].row] : nullptr;
}

std::optional<std::size_t> ListedProperties::FindRow(TextView name) const {
    for (std::size_t i = 0; i < rows_.size(); ++i)
        if (SameName(rows_[i].info.name, name)) return i;
    return std::nullopt;
}

std::optional<std::size_t> ListedProperties::LineOf(TextView name) const {
    const auto row = FindRow(name);
    for (std::size_t i = 0; row && i < lines_.size(); ++i)
        if (lines_[i].row == row) return i;
    return std::nullopt;
}

std::optional<std::size_t> ListedProperties::FindBeginning(TextView beginning, std::size_t from) const {
    const std::size_t count = lines_.size();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t line = (from + i) % count;
        const PropertyRow* row = RowAt(line);
        const Text label = row ? PropertyLabel(row->info) : lines_[line].heading;
        if (StartsWithNoCase(Letters(label), beginning)) return line;
    }
    return std::nullopt;
}

std::optional<std::size_t> TypedSearch::Type(const ListedProperties& table, std::size_t current, char16_t letter,
                                             unsigned long long time) {
    constexpr unsigned long long pause = 1000;
    if (time - last_ > pause) typed_.clear();
    last_ = time;
    typed_ += letter;
    const bool repeated = typed_.find_first_not_of(letter) == Text::npos;
    // While more of it is typed, a name that still fits stays the current one.
    if (const auto found = table.FindBeginning(typed_, typed_.size() == 1 ? current + 1 : current)) return found;
    if (repeated) return table.FindBeginning(TextView(&letter, 1), current + 1);
    return std::nullopt;
}

}  // namespace qvx::host::designer
