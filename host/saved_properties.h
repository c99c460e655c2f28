// What an object says when it is asked to save itself, and how that gets into its block of the form file.
#pragma once

#include <memory>
#include <variant>
#include <vector>

#include "common/text.h"
#include "host/form_file.h"

namespace qvx::host {

struct SavedGroup;

struct SavedProperty {
    Text name;
    std::variant<FormValue, std::shared_ptr<SavedGroup>> value;
};

// In the order of writing. Writing a name again replaces its value.
class SavedProperties {
  public:
    void Add(Text name, FormValue value);
    void AddGroup(Text name, std::shared_ptr<SavedGroup> group);
    const SavedProperty* Find(TextView name) const;
    const std::vector<SavedProperty>& All() const { return properties_; }

  private:
    void Put(SavedProperty property);
    std::vector<SavedProperty> properties_;
};

// A property that is an object with properties of its own (a font).
struct SavedGroup {
    Text classId;
    SavedProperties properties;
};

bool SameSaved(const SavedProperty& a, const SavedProperty& b);

enum class MergeMode {
    // Only what changed since `loaded` was taken touches the file: a form that was loaded and not changed is written
    // as it was, even where the file spells out defaults that the object would leave out.
    changes,
    // Every property the object knows is written anew, in the object's own order, as a designer's first save would.
    everything,
};

// Brings `now` into `block`. `loaded` is what the object saved right after it was loaded from that block, `known` the
// names it asked for while loading. Properties that are neither known nor saved stay as they are.
void MergeSaved(Block& block, const SavedProperties& loaded, const SavedProperties& now, const std::vector<Text>& known,
                MergeMode mode);

}  // namespace qvx::host
