// The objects that the property list shows, and the table of their common properties.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <optional>
#include <vector>

#include "common/run_time_error.h"
#include "designer/properties/listed_properties.h"
#include "designer/properties/object_properties_win32.h"

namespace qvx::host::designer {

// A call of an object may do anything, even destroy the list, so that callers hold the model meanwhile.
class PropertyModel {
  public:
    explicit PropertyModel(std::vector<ObjectProperties> objects);

    ListedProperties& Table() { return table_; }
    const ListedProperties& Table() const { return table_; }

    void ReadAll();
    // How many objects have accepted a value, and the error of the first one that did not.
    struct Written {
        std::size_t count = 0;
        std::optional<RunTimeError> refusal;
    };
    // Writes to all objects, up to the first that refuses.
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
