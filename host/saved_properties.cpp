#include "host/saved_properties.h"

#include <algorithm>

namespace qvx::host {

namespace {

bool SameProperties(const SavedProperties& a, const SavedProperties& b) {
    return std::equal(
        a.All().begin(), a.All().end(), b.All().begin(), b.All().end(),
        [](const SavedProperty& x, const SavedProperty& y) { return SameName(x.name, y.name) && SameSaved(x, y); });
}

void Write(Block& block, const SavedProperty& property) {
    if (const auto* value = std::get_if<FormValue>(&property.value)) {
        block.Set(property.name, *value);
    } else {
        const SavedGroup& group = *std::get<std::shared_ptr<SavedGroup>>(property.value);
        Block& inner = block.Group(property.name, group.classId);
        for (const SavedProperty& item : group.properties.All()) Write(inner, item);
    }
}

// Removes from a group the properties that it no longer has.
void RemoveGone(Block& block, const SavedGroup& before, const SavedGroup& now) {
    for (const SavedProperty& property : before.properties.All()) {
        const SavedProperty* still = now.properties.Find(property.name);
        if (!still) {
            block.Remove(property.name);
            continue;
        }
        const auto* inner = std::get_if<std::shared_ptr<SavedGroup>>(&property.value);
        const auto* innerNow = std::get_if<std::shared_ptr<SavedGroup>>(&still->value);
        if (inner && innerNow) RemoveGone(block.Group(property.name, (*innerNow)->classId), **inner, **innerNow);
    }
}

}  // namespace

void SavedProperties::Put(SavedProperty property) {
    for (SavedProperty& present : properties_) {
        if (SameName(present.name, property.name)) {
            present = std::move(property);
            return;
        }
    }
    properties_.push_back(std::move(property));
}

void SavedProperties::Add(Text name, FormValue value) { Put({std::move(name), std::move(value)}); }

void SavedProperties::AddGroup(Text name, std::shared_ptr<SavedGroup> group) {
    Put({std::move(name), std::move(group)});
}

const SavedProperty* SavedProperties::Find(TextView name) const {
    for (const SavedProperty& property : properties_) {
        if (SameName(property.name, name)) return &property;
    }
    return nullptr;
}

bool SameSaved(const SavedProperty& a, const SavedProperty& b) {
    if (a.value.index() != b.value.index()) return false;
    if (const auto* group = std::get_if<std::shared_ptr<SavedGroup>>(&a.value)) {
        const SavedGroup& other = *std::get<std::shared_ptr<SavedGroup>>(b.value);
        return (*group)->classId == other.classId && SameProperties((*group)->properties, other.properties);
    }
    return a.value == b.value;
}

void MergeSaved(Block& block, const SavedProperties& loaded, const SavedProperties& now, const std::vector<Text>& known,
                MergeMode mode) {
    if (mode == MergeMode::everything) {
        for (const Text& name : known) block.Remove(name);
        for (const SavedProperty& property : loaded.All()) block.Remove(property.name);
        for (const SavedProperty& property : now.All()) block.Remove(property.name);
        for (const SavedProperty& property : now.All()) Write(block, property);
        return;
    }
    for (const SavedProperty& property : loaded.All()) {
        if (!now.Find(property.name)) block.Remove(property.name);  // it has its default again
    }
    for (const SavedProperty& property : now.All()) {
        const SavedProperty* before = loaded.Find(property.name);
        if (before && SameSaved(*before, property)) continue;
        Write(block, property);
        const auto* groupBefore = before ? std::get_if<std::shared_ptr<SavedGroup>>(&before->value) : nullptr;
        const auto* group = std::get_if<std::shared_ptr<SavedGroup>>(&property.value);
        if (groupBefore && group) RemoveGone(block.Group(property.name, (*group)->classId), **groupBefore, **group);
    }
}

}  // namespace qvx::host
