// The objects behind the property list and the table of what they have in common.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <optional>
#include <vector>

#include "common/run_time_error.h"
#include "designer/properties/listed_properties.h"
#include "designer/properties/object_properties_win32.h"

namespace qvx::host::designer {

// Calls of the objects may lead to anything, the end of the list included: whoever makes one holds the model meanwhile.
class PropertyModel {
  public:
    explicit PropertyModel(std::vector<ObjectProperties> objects);

    ListedProperties& Table() { return table_; }
    const ListedProperties& Table() const { return table_; }

    void ReadAll();
    // How many objects have taken a value, and what the first one that did not says.
    struct Written {
        std::size_t count = 0;
        std::optional<RunTimeError> refusal;
    };
    // To all objects, up to the first that refuses.
    Written Write(std::size_t row, const PropertyValue& value) const;
    Written WritePicture(std::size_t row, IPictureDisp* picture) const;

  private:
    template <class One>
    Written WriteAll(std::size_t row, const One& one) const;

    std::vector<ObjectProperties> objects_;
    std::vector<CommonProperty> properties_;
    ListedProperties table_;
};

}  // namespace qvx::host::designer
