// The component server that the control tests load: by its file, without the registry.
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
    // Loaded once, from the path in the environment variable QVX_OCX or from the build folder this program lies in.
    static ServerUnderTest& Get();

    const std::wstring& Path() const { return path_; }
    HMODULE Module() const { return module_; }

    // A new object of the class; null, with a failed expectation, when the server has none.
    ComPtr<IUnknown> Create(REFCLSID id) const;
    HRESULT ClassObject(REFCLSID id, REFIID iid, void** object) const;
    HRESULT CanUnload() const { return canUnload_(); }
    HRESULT Install(bool install, const wchar_t* where) const { return install_(install, where); }

    // The classes with a factory in the server, of those in its type library.
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

// Makes the server's classes creatable by identifier in this process for the length of a scope, for containers that
// create controls themselves.
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

// `arguments` from left to right; the variants themselves are passed, so that by-reference ones can be among them.
CallResult Invoke(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments = {});
// A method or a property read that must succeed.
Variant Call(IDispatch* object, const wchar_t* name, const std::vector<Variant>& arguments = {});
// A property write that must succeed; the last argument is the value.
void Put(IDispatch* object, const wchar_t* name, const std::vector<Variant>& arguments);

std::wstring Spell(REFGUID id);

}  // namespace qvx::test
