// The component server that the control tests load by its file, without the registry.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <string>
#include <vector>

#include "com/pointer.h"
#include "com/variant.h"

namespace qvx::test {

class ServerUnderTest {
  public:
    // Returns the server, loaded once, from the path in the environment variable QVX_OCX or from the build folder of
    // this program.
    static ServerUnderTest& Get();

    const std::wstring& Path() const { return path_; }
    HMODULE Module() const { return module_; }

    // Creates an object of the class; null, with a failed expectation, when the server does not have it.
    ComPtr<IUnknown> Create(REFCLSID id) const;
    HRESULT ClassObject(REFCLSID id, REFIID iid, void** object) const;
    HRESULT CanUnload() const { return canUnload_(); }
    HRESULT Install(bool install, const wchar_t* where) const { return install_(install, where); }

    // A class of the type library that has a factory in the server.
    struct KnownClass {
        std::wstring name;
        CLSID id;
    };
    std::vector<KnownClass> Controls() const;

  private:
    ServerUnderTest();

    std::wstring path_;
    HMODULE module_ = nullptr;
    HRESULT(WINAPI* getClassObject_)(REFCLSID, REFIID, LPVOID*) = nullptr;
    HRESULT(WINAPI* canUnload_)() = nullptr;
    HRESULT(WINAPI* install_)(BOOL, LPCWSTR) = nullptr;
};

// Makes it possible to create the server's classes by identifier in this process for the duration of a scope, for
// containers that create controls themselves.
class CreatableClasses {
  public:
    CreatableClasses();
    ~CreatableClasses();
    CreatableClasses(const CreatableClasses&) = delete;
    CreatableClasses& operator=(const CreatableClasses&) = delete;

  private:
    std::vector<DWORD> cookies_;
};

// --- Late-bound calls, as scripts make them ---

struct CallResult {
    HRESULT result = S_OK;
    Variant value;
    HRESULT scode = S_OK;  // of the exception
    Text source;
    Text description;
};

// Calls a member. `arguments` are from left to right and passed themselves, so that by-reference ones can be among
// them.
CallResult Invoke(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments = {});
// Calls a method or reads a property, which must succeed.
Variant Call(IDispatch* object, const wchar_t* name, const std::vector<Variant>& arguments = {});
// Writes a property, which must succeed; the last argument is the value.
void Put(IDispatch* object, const wchar_t* name, const std::vector<Variant>& arguments);

std::wstring Spell(REFGUID id);

}  // namespace qvx::test
