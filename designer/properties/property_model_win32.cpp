#include "designer/properties/property_model_win32.h"

#include "com/guard.h"
#include "com/late_bound.h"

namespace qvx::host::designer {

PropertyModel::PropertyModel(std::vector<ObjectProperties> objects) : objects_(std::move(objects)) {
    std::vector<std::vector<const PropertyInfo*>> infos;
    for (const ObjectProperties& object : objects_) infos.push_back(object.Infos());
    properties_ = CommonProperties(infos);
    if (objects_.size() == 1 && objects_[0].HasPages()) {
        PropertyInfo pages;
        pages.name = u"Custom";
        pages.kind = PropertyKind::pages;
        pages.category = CategoryOf(pages.name, pages.kind);
        pages.help = u"Opens the property pages of the object.";
        properties_.push_back({std::move(pages), {}});
    }
    std::vector<PropertyInfo> common;
    for (const CommonProperty& property : properties_) common.push_back(property.info);
    table_.SetProperties(std::move(common));
}

void PropertyModel::ReadAll() {
    for (std::size_t row = 0; row < properties_.size(); ++row) {
        const std::vector<std::size_t>& places = properties_[row].places;
        CommonReading reading;
        for (std::size_t i = 0; i < places.size() && reading.Add(objects_[i].Read(places[i])); ++i) {
        }
        table_.SetReading(row, reading.Result());
    }
}

template <class One>
PropertyModel::Written PropertyModel::WriteAll(std::size_t row, const One& one) const {
    const std::vector<std::size_t>& places = properties_[row].places;
    Written written;
    try {
        for (std::size_t i = 0; i < places.size(); ++i) {
            one(objects_[i], places[i]);
            ++written.count;
        }
    } catch (const ComError& error) {
        written.refusal = ForeignError(error.Result());
    } catch (...) {
        written.refusal = CurrentError();
    }
    return written;
}

PropertyModel::Written PropertyModel::Write(std::size_t row, const PropertyValue& value) const {
    return WriteAll(row, [&](const ObjectProperties& object, std::size_t place) { object.Write(place, value); });
}

PropertyModel::Written PropertyModel::WritePicture(std::size_t row, IPictureDisp* picture) const {
    return WriteAll(row,
                    [&](const ObjectProperties& object, std::size_t place) { object.WritePicture(place, picture); });
}

}  // namespace qvx::host::designer
