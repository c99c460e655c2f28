// The properties of one selected object: what the form adds and what is its own, read and written by late-bound calls.
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>

#include <memory>
#include <vector>

#include "com/pointer.h"
#include "com/variant.h"
#include "designer/properties/property_row.h"
#include "designer/properties/type_members_win32.h"

namespace qvx::host::designer {

class ObjectProperties {
  public:
    // Any of them may be null. A name that both have is the form's. `control` is asked for what its type information
    // does not give: choices, words for values, and pages.
    ObjectProperties(const ComPtr<IDispatch>& extended, const ComPtr<IDispatch>& own, const ComPtr<IUnknown>& control,
                     TypeMemberReader& reader);

    // By position; the positions stay the same. Objects of one type share them.
    std::vector<const PropertyInfo*> Infos() const;
    bool HasPages() const { return hasPages_; }

    // The object's value, as far as it can be shown. When the object refuses, or gives a value of another type than it
    // declares, the reading is unreadable.
    PropertyReading Read(std::size_t place) const;
    // Throws RunTimeError with the object's own message when it refuses.
    void Write(std::size_t place, const PropertyValue& value) const;
    // Null for no picture.
    void WritePicture(std::size_t place, IPictureDisp* picture) const;

  private:
    struct Member {
        ComPtr<IDispatch> object;
        std::shared_ptr<const TypeMember> type;
        bool own;
    };

    void Add(const ComPtr<IDispatch>& object, bool own, TypeMemberReader& reader);
    void AskForMore();
    std::vector<PropertyChoice> AskForChoices(const Member& member) const;
    static bool Denied(const Member& member);
    static Variant Get(const Member& member);
    static void Put(const Member& member, Variant value);

    std::vector<Member> members_;
    ComPtr<IPerPropertyBrowsing> browsing_;
    bool hasPages_ = false;
};

}  // namespace qvx::host::designer
