// The stand-in data objects of samples/ado, registered for the length of a scope only.
#pragma once

#include <windows.h>

#include <string>

#include "com/pointer.h"
#include "common/text.h"

namespace qvx::test {

// Returns the path of a file at <build>/...; this program is in <build>/tests/control.
std::wstring BuiltFile(const wchar_t* below);

// Returns the class identifier of a program identifier.
CLSID ClassOf(const wchar_t* name);

class AdoServer {
  public:
    AdoServer();
    // Expects that no objects are left.
    ~AdoServer();
    AdoServer(const AdoServer&) = delete;
    AdoServer& operator=(const AdoServer&) = delete;

  private:
    HRESULT Run(const char* name);

    HMODULE module_;
};

// Whether an error's description means that no driver for the database is installed.
bool MeansNoDriver(TextView description);

}  // namespace qvx::test
