#include "tests/support/server_under_test.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace qvx::test {

namespace {

template <typename Function>
void Find(HMODULE module, const char* name, Function& function) {
    function = reinterpret_cast<Function>(GetProcAddress(module, name));
    if (!function) ADD_FAILURE() << name << " is not exported";
}

std::wstring DefaultPath() {
    wchar_t path[MAX_PATH] = L"";
    if (GetEnvironmentVariableW(L"QVX_OCX", path, MAX_PATH)) return path;
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    // <build>/tests/control/control_tests.exe beside <build>/server/Qvx.ocx
    std::wstring folder = path;
    for (int up = 0; up < 3; ++up) folder.resize(folder.find_last_of(L"\\/"));
    return folder + L"\\server\\Qvx.ocx";
}

}  // namespace

ServerUnderTest& ServerUnderTest::Get() {
    static ServerUnderTest server;
    return server;
}

ServerUnderTest::ServerUnderTest() : path_(DefaultPath()), module_(LoadLibraryW(path_.c_str())) {
    if (!module_) {
        std::wprintf(L"%ls cannot be loaded: error %lu\n", path_.c_str(), GetLastError());
        std::exit(2);
    }
    Find(module_, "DllGetClassObject", getClassObject_);
    Find(module_, "DllCanUnloadNow", canUnload_);
    Find(module_, "DllInstall", install_);
}

HRESULT ServerUnderTest::ClassObject(REFCLSID id, REFIID iid, void** object) const {
    return getClassObject_(id, iid, object);
}

ComPtr<IUnknown> ServerUnderTest::Create(REFCLSID id) const {
    ComPtr<IClassFactory> factory;
    ComPtr<IUnknown> object;
    EXPECT_EQ(S_OK, ClassObject(id, IID_IClassFactory, factory.put_void()));
    if (factory) {
        EXPECT_EQ(S_OK, factory->CreateInstance(nullptr, IID_IUnknown, object.put_void()));
    }
    return object;
}

std::vector<ServerUnderTest::KnownClass> ServerUnderTest::Controls() const {
    std::vector<KnownClass> controls;
    ComPtr<ITypeLib> library;
    if (FAILED(LoadTypeLibEx(path_.c_str(), REGKIND_NONE, library.put()))) return controls;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        library->GetTypeInfo(i, info.put());
        info->GetTypeAttr(&attributes);
        const CLSID id = attributes->guid;
        const bool control = attributes->typekind == TKIND_COCLASS && attributes->wTypeFlags & TYPEFLAG_FCONTROL;
        info->ReleaseTypeAttr(attributes);
        ComPtr<IUnknown> factory;
        if (!control || FAILED(ClassObject(id, IID_IUnknown, factory.put_void()))) continue;
        Bstr name;
        info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr);
        controls.push_back({std::wstring(Wide(name.View())), id});
    }
    return controls;
}

CreatableClasses::CreatableClasses() {
    for (const auto& control : ServerUnderTest::Get().Controls()) {
        ComPtr<IUnknown> factory;
        DWORD cookie = 0;
        EXPECT_EQ(S_OK, ServerUnderTest::Get().ClassObject(control.id, IID_IUnknown, factory.put_void()));
        EXPECT_EQ(S_OK,
                  CoRegisterClassObject(control.id, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie));
        cookies_.push_back(cookie);
    }
}

CreatableClasses::~CreatableClasses() {
    for (const DWORD cookie : cookies_) CoRevokeClassObject(cookie);
}

CallResult Invoke(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT> arguments) {
    CallResult call;
    auto* spelled = const_cast<wchar_t*>(name);
    DISPID id = DISPID_UNKNOWN;
    call.result = object->GetIDsOfNames(IID_NULL, &spelled, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(call.result)) return call;
    std::reverse(arguments.begin(), arguments.end());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
        parameters.rgdispidNamedArgs = &put;
        parameters.cNamedArgs = 1;
    }
    EXCEPINFO exception{};
    call.result =
        object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, call.value.put(), &exception, nullptr);
    if (exception.pfnDeferredFillIn) exception.pfnDeferredFillIn(&exception);
    call.scode = exception.scode;
    call.source = Text(FromBstr(exception.bstrSource));
    call.description = Text(FromBstr(exception.bstrDescription));
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return call;
}

namespace {
std::vector<VARIANT> Borrow(const std::vector<Variant>& values) {
    std::vector<VARIANT> borrowed;
    for (const Variant& value : values) borrowed.push_back(value.get());
    return borrowed;
}
}  // namespace

Variant Call(IDispatch* object, const wchar_t* name, const std::vector<Variant>& arguments) {
    CallResult call = Invoke(object, name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, Borrow(arguments));
    EXPECT_EQ(S_OK, call.result) << "calling " << Bstr(FromWide(name)).get();
    return std::move(call.value);
}

void Put(IDispatch* object, const wchar_t* name, const std::vector<Variant>& arguments) {
    const CallResult call = Invoke(object, name, DISPATCH_PROPERTYPUT, Borrow(arguments));
    EXPECT_EQ(S_OK, call.result) << "setting " << Bstr(FromWide(name)).get();
}

std::wstring Spell(REFGUID id) {
    wchar_t text[40];
    StringFromGUID2(id, text, static_cast<int>(std::size(text)));
    return text;
}

}  // namespace qvx::test
