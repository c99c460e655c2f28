#include "widgets/flexgrid/format_table.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace qvx::flexgrid {

const FormatTable::Node* FormatTable::FindNode(RowId row, int col) const {
    const SharedPattern* pattern = rows_.Find(row);
    if (!pattern) {
        return nullptr;
    }
    const auto found = std::lower_bound((*pattern)->begin(), (*pattern)->end(), col,
                                        [](const Entry& entry, int wanted) { return entry.col < wanted; });
    return found != (*pattern)->end() && found->col == col ? found->node.get() : nullptr;
}

const FontSpec& FormatTable::FontOf(RowId row, int col, const FontSpec& gridFont) const {
    const Node* node = FindNode(row, col);
    if (!node || !node->format.ChangesFont()) {
        return gridFont;
    }
    if (node->fontVersion != fontVersion_) {
        node->font = node->format.FontFrom(gridFont);
        node->fontVersion = fontVersion_;
    }
    return node->font;
}

FormatTable::SharedPattern FormatTable::Share(Pattern pattern) {
    if (pattern.empty()) {
        return nullptr;
    }
    const auto same = [](const Entry& a, const Entry& b) {
        return a.col == b.col && (a.node == b.node || a.node->format == b.node->format);
    };
    for (const SharedPattern& recent : recent_) {
        if (recent && std::equal(recent->begin(), recent->end(), pattern.begin(), pattern.end(), same)) {
            return recent;
        }
    }
    auto shared = std::make_shared<const Pattern>(std::move(pattern));
    recent_[nextRecent_] = shared;
    nextRecent_ = (nextRecent_ + 1) % recent_.size();
    return shared;
}

FormatTable::Pattern FormatTable::Changed(const Pattern* pattern, int firstCol, int lastCol,
                                          const std::function<void(CellFormat&)>& change) {
    Pattern changed;
    std::unordered_map<const Node*, std::shared_ptr<const Node>> done;  // nullptr: becomes a plain pattern
    const Pattern none;
    const Pattern& old = pattern ? *pattern : none;
    auto entry = old.begin();
    for (; entry != old.end() && entry->col < firstCol; ++entry) {
        changed.push_back(*entry);
    }
    for (int col = firstCol; col <= lastCol; ++col) {
        const Node* before = nullptr;
        if (entry != old.end() && entry->col == col) {
            before = (entry++)->node.get();
        }
        const auto [known, isNew] = done.try_emplace(before);
        if (isNew) {
            auto node = std::make_shared<Node>();
            if (before) {
                node->format = before->format;
            }
            change(node->format);
            if (!(node->format == CellFormat{})) {
                known->second = std::move(node);
            }
        }
        if (known->second) {
            changed.push_back({col, known->second});
        }
    }
    changed.insert(changed.end(), entry, old.end());
    return changed;
}

void FormatTable::ChangeCells(std::span<const RowId> rows, int firstCol, int lastCol,
                              const std::function<void(CellFormat&)>& change) {
    const auto patternOf = [this](RowId row) -> const Pattern* {
        const SharedPattern* pattern = rows_.Find(row);
        return pattern ? pattern->get() : nullptr;
    };
    std::unordered_map<const Pattern*, SharedPattern> changed;
    for (const RowId row : rows) {
        const Pattern* before = patternOf(row);
        if (const auto [known, isNew] = changed.try_emplace(before); isNew) {
            known->second = Share(Changed(before, firstCol, lastCol, change));
        }
    }
    rows_.Reserve(rows_.Size() + rows.size());
    // Nothing below allocates. A pattern may be freed with its last row: its address remains unique, since no pattern
    // is created here.
    for (const RowId row : rows) {
        if (const SharedPattern& after = changed.find(patternOf(row))->second) {
            rows_.Set(row, after);
        } else {
            rows_.Erase(row);
        }
    }
}

void FormatTable::ReplacePatterns(const std::function<Pattern(const Pattern&)>& derive) {
    SparseMap<SharedPattern> replaced;
    replaced.Reserve(rows_.Size());
    std::unordered_map<const Pattern*, SharedPattern> derived;
    rows_.ForEach([&](RowId row, const SharedPattern& pattern) {
        const auto [known, isNew] = derived.try_emplace(pattern.get());
        if (isNew) {
            known->second = Share(derive(*pattern));
        }
        if (known->second) {
            replaced.Set(row, known->second);
        }
    });
    rows_ = std::move(replaced);
}

void FormatTable::TruncateColumns(int cols) {
    ReplacePatterns([&](const Pattern& pattern) {
        Pattern kept;
        std::copy_if(pattern.begin(), pattern.end(), std::back_inserter(kept),
                     [&](const Entry& entry) { return entry.col < cols; });
        return kept;
    });
}

void FormatTable::MoveColumn(int from, int to) {
    ReplacePatterns([&](const Pattern& pattern) {
        Pattern moved = pattern;
        for (Entry& entry : moved) {
            if (entry.col == from) {
                entry.col = to;
            } else if (from < to && entry.col > from && entry.col <= to) {
                --entry.col;
            } else if (to < from && entry.col >= to && entry.col < from) {
                ++entry.col;
            }
        }
        std::sort(moved.begin(), moved.end(), [](const Entry& a, const Entry& b) { return a.col < b.col; });
        return moved;
    });
}

void FormatTable::Clear() noexcept {
    rows_.Clear();
    recent_ = {};
}

}  // namespace qvx::flexgrid
