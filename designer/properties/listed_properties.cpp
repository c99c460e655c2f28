#include "designer/properties/listed_properties.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

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
    return &a == &b || (a.kind == b.kind && a.choices == b.choices && SameName(a.name, b.name));
}

// Where the properties of one object are.
class Places {
  public:
    Places(const std::vector<const PropertyInfo*>& infos) : infos_(infos) {}

    // `likely` is the position among the properties of another object, which is the same for objects of one type.
    std::optional<std::size_t> Of(const PropertyInfo& property, std::size_t likely) {
        if (likely < infos_.size() && infos_[likely] == &property) return likely;
        // A map by folded names finds hundreds of properties in one pass.
        if (byName_.empty()) {
            for (std::size_t i = 0; i < infos_.size(); ++i) byName_.emplace(FoldedText(infos_[i]->name), i);
        }
        const auto found = byName_.find(FoldedText(property.name));
        return found == byName_.end() ? std::nullopt : std::optional(found->second);
    }

  private:
    const std::vector<const PropertyInfo*>& infos_;
    std::map<Text, std::size_t> byName_;
};

}  // namespace

std::vector<CommonProperty> CommonProperties(const std::vector<std::vector<const PropertyInfo*>>& objects) {
    std::vector<CommonProperty> common;
    if (objects.empty()) return common;
    std::vector<Places> places(objects.begin(), objects.end());
    for (std::size_t j = 0; j < objects[0].size(); ++j) {
        const PropertyInfo& first = *objects[0][j];
        CommonProperty property{first, {j}};
        bool everywhere = objects.size() == 1 || !first.single;
        for (std::size_t i = 1; everywhere && i < objects.size(); ++i) {
            const auto place = places[i].Of(first, j);
            everywhere = place && SameProperty(first, *objects[i][*place]);
            if (!everywhere) break;
            property.info.readOnly |= objects[i][*place]->readOnly;
            property.places.push_back(*place);
        }
        if (everywhere) common.push_back(std::move(property));
    }
    return common;
}

bool CommonReading::Add(PropertyReading reading) {
    if (std::exchange(first_, false)) {
        common_ = std::move(reading);
        return true;
    }
    if (!different_ && !(reading == common_)) {
        different_ = true;
        const bool readable = common_.readable;
        common_ = {};
        common_.readable = readable;
    }
    common_.readable |= reading.readable;
    return !different_ || !common_.readable;
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
