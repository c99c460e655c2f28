// A collection as hosts expect it: items are numbered from 1 in the order in which they were added, and each may have a
// key, which is compared without regard to case.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "common/run_time_error.h"
#include "common/text.h"
#include "common/text_compare.h"

namespace qvx {

template <class Item>
class KeyedCollection {
  public:
    std::size_t Count() const noexcept { return entries_.size(); }

    // Throws error 457 when the key is in use; whatever fails, nothing is added. An empty key is a key like any other.
    void Add(Item item, std::optional<TextView> key = std::nullopt) {
        auto entry = std::make_unique<Entry>(Entry{std::move(item), key ? FoldedText(*key) : Text(), key.has_value()});
        if (entry->hasKey && byKey_.contains(entry->key))
            throw RunTimeError(errors::keyAlreadyExists,
                               u"This key is already associated with an element of this collection");
        entries_.emplace_back();
        try {
            if (entry->hasKey) byKey_.emplace(entry->key, entry.get());
        } catch (...) {
            entries_.pop_back();
            throw;
        }
        entries_.back() = std::move(entry);
    }

    // Access by number from 1; error 9 outside 1 to Count.
    Item& At(long index) { return entries_[Position(index)]->item; }
    const Item& At(long index) const { return entries_[Position(index)]->item; }

    // Access by key; error 5 when there is none.
    Item& At(TextView key) { return EntryOf(key).item; }
    const Item& At(TextView key) const { return EntryOf(key).item; }

    // Returns null when there is no such key.
    const Item* Find(TextView key) const {
        const auto found = byKey_.find(FoldedText(key));
        return found == byKey_.end() ? nullptr : &found->second->item;
    }

    bool Contains(TextView key) const { return Find(key) != nullptr; }

    // Removes an item by number from 1; error 9 outside 1 to Count.
    void Remove(long index) { RemovePosition(Position(index)); }

    // Removes an item by key; error 5 when there is none.
    void Remove(TextView key) {
        const Entry* const entry = &EntryOf(key);
        const auto at =
            std::find_if(entries_.begin(), entries_.end(), [entry](const auto& e) { return e.get() == entry; });
        RemovePosition(static_cast<std::size_t>(at - entries_.begin()));
    }

    void Clear() noexcept {
        byKey_.clear();
        entries_.clear();
    }

  private:
    struct Entry {
        Item item;
        Text key;  // case-folded
        bool hasKey;
    };

    std::size_t Position(long index) const {
        if (index < 1 || static_cast<std::size_t>(index) > entries_.size())
            throw RunTimeError(errors::subscriptOutOfRange, u"Subscript out of range");
        return static_cast<std::size_t>(index) - 1;
    }

    Entry& EntryOf(TextView key) const {
        const auto found = byKey_.find(FoldedText(key));
        if (found == byKey_.end())
            throw RunTimeError(errors::invalidProcedureCall, u"Invalid procedure call or argument");
        return *found->second;
    }

    void RemovePosition(std::size_t position) {
        if (entries_[position]->hasKey) byKey_.erase(entries_[position]->key);
        entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
    }

    // byKey_ contains every entry with a key, and only those; entries keep their addresses while vectors grow.
    std::vector<std::unique_ptr<Entry>> entries_;
    std::unordered_map<Text, Entry*> byKey_;
};

}  // namespace qvx
