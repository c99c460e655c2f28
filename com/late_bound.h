// Members of somebody else's object, called by their names.
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

// What a failed call of another object's says, as a run-time error: a number of the hosts' kind where the code holds
// one, else the whole code. The description is the one that the object gave, else the system's.
RunTimeError ForeignError(HRESULT code, const EXCEPINFO* exception = nullptr);
// The same for a call through a vtable, whose description lies in the thread's error object.
RunTimeError ForeignError(HRESULT code, IUnknown* object, REFIID interfaceId);

// A new object of another program's class, by the name that scripts give it. Error 429 where no such class is installed
// or it makes no object for names.
ComPtr<IDispatch> CreateNamedObject(const wchar_t* className);

// One member, looked up once and called many times. The object is not held.
class LateMember {
  public:
    // Error 438 when the object has no such member, 91 without an object.
    LateMember(IDispatch* object, const wchar_t* name);
    // Nothing instead of error 438.
    static std::optional<LateMember> Find(IDispatch* object, const wchar_t* name);
    // The member that stands for the object itself; whether there is one, Get finds out.
    static LateMember Default() { return LateMember(DISPID_VALUE); }

    // A property read or a method called, whichever it is; arguments from left to right. What fails is raised.
    Variant Get(IDispatch* object, std::initializer_list<Variant> arguments = {}) const;

  private:
    explicit LateMember(DISPID id) : id_(id) {}
    DISPID id_ = DISPID_UNKNOWN;
};

// The same member of one object after the other: looked up again only when the object is another one, since a member's
// number is the object's own and stays for its life. Holds the object that was used last.
class RepeatedMember {
  public:
    // The name must live as long.
    explicit RepeatedMember(const wchar_t* name) : name_(name) {}

    // As LateMember's constructor and Get.
    Variant Get(const ComPtr<IDispatch>& object, std::initializer_list<Variant> arguments = {});

  private:
    const wchar_t* name_;
    ComPtr<IDispatch> object_;
    std::optional<LateMember> member_;
};

}  // namespace qvx
