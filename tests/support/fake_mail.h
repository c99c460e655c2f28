// Replaces the system's mail program with that of tests/support/mapi, for one module and the duration of a scope.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <cstring>
#include <cwchar>
#include <string>

#include "com/wide_text.h"
#include "tests/support/ado_server.h"
#include "tests/support/import_patch.h"

namespace qvx::test {

class FakeMail {
  public:
    // `module` is the module that loads the mail system.
    explicit FakeMail(HMODULE module)
        : load_(module, "LoadLibraryExW", reinterpret_cast<void*>(&Load)),
          find_(module, "GetProcAddress", reinterpret_cast<void*>(&Find)) {
        EXPECT_TRUE(load_.Found() && find_.Found()) << "the module cannot be watched";
        realLoad_ = reinterpret_cast<decltype(realLoad_)>(load_.Real());
        realFind_ = reinterpret_cast<decltype(realFind_)>(find_.Real());
        program_ = LoadLibraryW(Path().c_str());
        EXPECT_TRUE(program_) << "FakeMapi.dll cannot be loaded: error " << GetLastError();
        installed_ = wide_ = true;
        flags_ = 0;
        Answer(0, 0, 0);
        Take();
    }
    ~FakeMail() { FreeLibrary(program_); }
    FakeMail(const FakeMail&) = delete;
    FakeMail& operator=(const FakeMail&) = delete;

    // Sets what logon, sending and sending in wide characters return from now on.
    void Answer(ULONG logon, ULONG send, ULONG wide) {
        Exported<void (*)(ULONG, ULONG, ULONG)>("FakeMapiAnswer")(logon, send, wide);
    }
    // Returns the calls to the program since the last time, one line for each.
    Text Take() { return Text(FromWide(Exported<const wchar_t* (*)()>("FakeMapiTake")())); }

    // Set whether there is a mail program at all, and whether it has the wide call.
    void Install(bool installed) { installed_ = installed; }
    void KnowWide(bool wide) { wide_ = wide; }
    // Returns the flags with which the mail system was loaded.
    DWORD LoadFlags() const { return flags_; }

  private:
    template <class Function>
    Function Exported(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(program_, name)));
    }

    static std::wstring Path() { return SupportLibrary(L"mapi\\FakeMapi.dll"); }
    static HMODULE WINAPI Load(LPCWSTR name, HANDLE file, DWORD flags) {
        if (std::wcscmp(name, L"mapi32.dll") != 0) return realLoad_(name, file, flags);
        flags_ = flags;
        return installed_ ? realLoad_(Path().c_str(), nullptr, 0) : nullptr;
    }
    static FARPROC WINAPI Find(HMODULE module, LPCSTR name) {
        const bool hidden = !wide_ && reinterpret_cast<ULONG_PTR>(name) > 0xFFFF && !std::strcmp(name, "MAPISendMailW");
        return hidden ? nullptr : realFind_(module, name);
    }

    // The real functions are called through these, because the watched module may be this one.
    inline static HMODULE(WINAPI* realLoad_)(LPCWSTR, HANDLE, DWORD);
    inline static FARPROC(WINAPI* realFind_)(HMODULE, LPCSTR);
    inline static bool installed_;
    inline static bool wide_;
    inline static DWORD flags_;
    ImportPatch load_;
    ImportPatch find_;
    HMODULE program_ = nullptr;
};

}  // namespace qvx::test
