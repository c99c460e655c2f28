#include "host/form_parts_object.h"

#include <algorithm>
#include <set>

#include "common/run_time_error.h"
#include "common/text_compare.h"

namespace qvx::host {

namespace {

// The controls and menus by number (from 0) and by name.
class ControlsObject final : public FormPart {
  public:
    explicit ControlsObject(HostForm& form) : FormPart(form) {
        AddReadOnly(u"Count", [this](const Call&) { return Variant(static_cast<long>(PartsOf(Form()).size())); });
        AddReadOnly(u"Item", [this](const Call& call) { return ControlOf(Form(), call); });
        SetDefaultMember(u"Item");
        AddEnumerator([this] {
            std::vector<ComPtr<IDispatch>> all;
            for (const NamedPart& part : PartsOf(Form())) all.push_back(part.object);
            return all;
        });
    }

  private:
    ~ControlsObject() override = default;
};

class ControlArrayObject final : public FormPart {
  public:
    ControlArrayObject(HostForm& form, Text name) : FormPart(form), name_(std::move(name)) {
        AddReadOnly(u"Count", [this](const Call&) { return Variant(static_cast<long>(Elements().size())); });
        AddReadOnly(u"LBound", [this](const Call&) { return Variant(Bounds().first); });
        AddReadOnly(u"UBound", [this](const Call&) { return Variant(Bounds().second); });
        AddReadOnly(u"Item", [this](const Call& call) { return Variant(Element(Form(), name_, call.Long(0)).get()); });
        SetDefaultMember(u"Item");
        AddEnumerator([this] {
            std::vector<ComPtr<IDispatch>> all;
            for (const NamedPart& element : Elements()) all.push_back(element.object);
            return all;
        });
    }

    static ComPtr<IDispatch> Element(HostForm& form, const Text& name, long index) {
        constexpr int elementMissing = 340;
        for (const NamedPart& part : PartsOf(form)) {
            if (index >= 0 && part.index == index && SameName(part.name, name)) return part.object;
        }
        throw RunTimeError(elementMissing, u"Control array element does not exist");
    }

  private:
    ~ControlArrayObject() override = default;

    std::vector<NamedPart> Elements() const {
        std::vector<NamedPart> elements = PartsOf(Form());
        std::erase_if(elements, [&](const NamedPart& part) { return part.index < 0 || !SameName(part.name, name_); });
        return elements;
    }
    std::pair<int, int> Bounds() const {
        std::pair<int, int> bounds{0, -1};
        bool first = true;
        for (const NamedPart& element : Elements()) {
            bounds.first = first ? element.index : std::min(bounds.first, element.index);
            bounds.second = first ? element.index : std::max(bounds.second, element.index);
            first = false;
        }
        return bounds;
    }

    Text name_;
};

class ControlArraysObject final : public FormPart {
  public:
    explicit ControlArraysObject(HostForm& form) : FormPart(form) {
        for (const NamedPart& part : PartsOf(form)) {
            if (part.index >= 0) names_.insert(FoldedText(part.name));
        }
        for (const Text& name : names_) {
            AddReadOnly(name.c_str(), [this, name](const Call& call) {
                if (!call.Has(0)) return Variant(MakeControlArray(Form(), name).get());
                return Variant(ControlArrayObject::Element(Form(), name, call.Long(0)).get());
            });
        }
    }

  private:
    ~ControlArraysObject() override = default;

    std::set<Text> names_;  // whatever their letters' case
};

}  // namespace

std::vector<NamedPart> PartsOf(HostForm& form) {
    std::vector<NamedPart> parts;
    for (const auto& control : form.Controls()) {
        parts.push_back({control->Name(), control->Index(), ComPtr<IDispatch>(control->Extended())});
    }
    for (const MenuItem* menu : form.Menus().All()) {
        parts.push_back({menu->name, menu->index, ComPtr<IDispatch>(form.Menus().Automation(*menu))});
    }
    return parts;
}

Variant ControlOf(HostForm& form, const Call& call) {
    const std::vector<NamedPart> parts = PartsOf(form);
    if (call.At(0).Type() == VT_BSTR) {
        const Text name = call.String(0);
        for (const NamedPart& part : parts) {
            if (SameName(part.name, name)) return Variant(part.object.get());
        }
        constexpr int elementNotFound = 730;
        throw RunTimeError(elementNotFound, u"Control '" + name + u"' not found");
    }
    const long number = call.Long(0);
    if (number < 0 || static_cast<std::size_t>(number) >= parts.size()) {
        throw RunTimeError(errors::subscriptOutOfRange, u"Subscript out of range");
    }
    return Variant(parts[static_cast<std::size_t>(number)].object.get());
}

ComPtr<IDispatch> MakeControls(HostForm& form) { return MakeObject<ControlsObject>(form); }

ComPtr<IDispatch> MakeControlArray(HostForm& form, const Text& name) {
    return MakeObject<ControlArrayObject>(form, name);
}

ComPtr<IDispatch> MakeControlArrays(HostForm& form) { return MakeObject<ControlArraysObject>(form); }

}  // namespace qvx::host
