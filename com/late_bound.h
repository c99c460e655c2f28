// Calls of members of foreign objects by name.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <initializer_list>
#include <optional>
#include <vector>

#include "com/pointer.h"
#include "com/variant.h"
#include "common/run_time_error.h"

namespace qvx {

// Returns the error of a failed call of a foreign object as a run-time error: a number as hosts know it if the code
// contains one, otherwise the whole code. The description is the one that the object gave, otherwise the system's.
RunTimeError ForeignError(HRESULT code, const EXCEPINFO* exception = nullptr);
// The same for a call through a vtable, whose description is in the thread's error object.
RunTimeError ForeignError(HRESULT code, IUnknown* object, REFIID interfaceId);

// Creates an object of another program's class by its program identifier, as scripts do. Throws error 429 where no such
// class is installed or it cannot create an object that is called by names.
ComPtr<IDispatch> CreateNamedObject(const wchar_t* className);

// One member, looked up once and called many times. It does not keep a reference to the object.
class LateMember {
  public:
    // Throws error 438 when the object has no such member, 91 without an object.
    LateMember(IDispatch* object, const wchar_t* name);
    // Returns nullopt instead of error 438.
    static std::optional<LateMember> Find(IDispatch* object, const wchar_t* name);
    // The default member, which represents the object itself; Get finds out whether there is one.
    static LateMember Default() { return LateMember(DISPID_VALUE); }

    // Reads a property or calls a method, whichever it is; arguments are from left to right. Throws the object's error.
    Variant Get(IDispatch* object, std::initializer_list<Variant> arguments = {}) const;
    // Sets a property without arguments. Throws the object's error.
    void Put(IDispatch* object, const Variant& value) const;

  private:
    explicit LateMember(DISPID id) : id_(id) {}
    Variant Invoke(IDispatch* object, WORD flags, DISPPARAMS& parameters) const;
    DISPID id_ = DISPID_UNKNOWN;
};

// The same member of several objects in turn. It is looked up again only when the object is a different one, since a
// member's number belongs to the object and stays the same for its life. Keeps a reference to the object that was used
// last.
class RepeatedMember {
  public:
    // The name must live as long as this.
    explicit RepeatedMember(const wchar_t* name) : name_(name) {}

    // As LateMember's constructor and Get.
    Variant Get(const ComPtr<IDispatch>& object, std::initializer_list<Variant> arguments = {});
    void Put(const ComPtr<IDispatch>& object, const Variant& value);

  private:
    const LateMember& Of(const ComPtr<IDispatch>& object);
    const wchar_t* name_;
    ComPtr<IDispatch> object_;
    std::optional<LateMember> member_;
};

}  // namespace qvx
