// The stand-in data objects of samples/ado, registered for the length of a scope only.
#pragma once

#include <windows.h>

#include <string>

#include "com/pointer.h"
#include "common/text.h"

namespace qvx::test {

// What the build puts at <build>/...; this program is in <build>/tests/control.
std::wstring BuiltFile(const wchar_t* below);
// The same for <build>/tests/support/...
std::wstring SupportLibrary(const wchar_t* below);

CLSID ClassOf(const wchar_t* name);

class AdoServer {
  public:
    AdoServer();
    // Objects that are left over are a failure.
    ~AdoServer();
    AdoServer(const AdoServer&) = delete;
    AdoServer& operator=(const AdoServer&) = delete;

  private:
    HRESULT Run(const char* name);

    HMODULE module_;
};

// An error's description that says that no driver for the database is installed.
bool MeansNoDriver(TextView description);

}  // namespace qvx::test
