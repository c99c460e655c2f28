#include "tests/support/ado_server.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <algorithm>
#include <iterator>

namespace qvx::test {

std::wstring BuiltFile(const wchar_t* below) {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring folder = path;
    for (int up = 0; up < 3; ++up) folder.resize(folder.find_last_of(L"\\/"));
    return folder + L'\\' + below;
}

CLSID ClassOf(const wchar_t* name) {
    CLSID id{};
    EXPECT_EQ(CLSIDFromProgID(name, &id), S_OK);
    return id;
}

AdoServer::AdoServer() : module_(LoadLibraryW(BuiltFile(L"samples\\ado\\QvxAdo.dll").c_str())) {
    if (!module_) ADD_FAILURE() << "QvxAdo.dll cannot be loaded: error " << GetLastError();
    EXPECT_EQ(Run("DllRegisterServer"), S_OK);
}

AdoServer::~AdoServer() {
    EXPECT_EQ(Run("DllCanUnloadNow"), S_OK) << "objects are left over";
    EXPECT_EQ(Run("DllUnregisterServer"), S_OK);
    FreeLibrary(module_);
}

HRESULT AdoServer::Run(const char* name) {
    const auto function = reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    return function ? function() : E_NOINTERFACE;
}

bool MeansNoDriver(TextView description) {
    constexpr TextView signs[] = {u"There is no ODBC driver manager", u"Can't open lib", u"Data source name not found"};
    return std::any_of(std::begin(signs), std::end(signs),
                       [&](TextView sign) { return description.find(sign) != TextView::npos; });
}

}  // namespace qvx::test
