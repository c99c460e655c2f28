#include "host/class_source_object.h"

#include <oleauto.h>

#include <vector>

#include "com/bstr.h"
#include "com/guard.h"
#include "common/run_time_error.h"
#include "host/form_value.h"

namespace qvx::host {

ClassSource::~ClassSource() {
    library_.reset();
    // The module stays loaded to the end of the process, since its objects' last messages may still be on the way.
}

void ClassSource::UseFile(const Text& path) {
    constexpr int fileNotFound = 53;
    // The first call gives the length with the closing NUL. The system would search its folders for a relative path.
    const DWORD length = GetFullPathNameW(Wide(path), 0, nullptr, nullptr);
    std::vector<wchar_t> buffer(length + std::size_t{1});
    const wchar_t* full = buffer.data();
    const DWORD written = GetFullPathNameW(Wide(path), length, buffer.data(), nullptr);
    if (written == 0 || written >= length || GetFileAttributesW(full) == INVALID_FILE_ATTRIBUTES) {
        throw RunTimeError(fileNotFound, u"there is no file \"" + path + u"\"");
    }
    module_ = LoadLibraryExW(full, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!module_) throw ComError(HRESULT_FROM_WIN32(GetLastError()));
    Check(LoadTypeLibEx(full, REGKIND_NONE, library_.put()));
}

bool ClassSource::FindInFile(const Text& className, CLSID& id) const {
    if (!library_) return false;
    Bstr libraryName;
    Check(library_->GetDocumentation(-1, libraryName.put(), nullptr, nullptr, nullptr));
    for (UINT i = 0; i < library_->GetTypeInfoCount(); ++i) {
        TYPEKIND kind{};
        if (FAILED(library_->GetTypeInfoType(i, &kind)) || kind != TKIND_COCLASS) continue;
        Bstr name;
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        Check(library_->GetDocumentation(static_cast<INT>(i), name.put(), nullptr, nullptr, nullptr));
        if (!SameName(libraryName.ToText() + u"." + name.ToText(), className)) continue;
        Check(library_->GetTypeInfo(i, info.put()));
        Check(info->GetTypeAttr(&attributes));
        id = attributes->guid;
        info->ReleaseTypeAttr(attributes);
        return true;
    }
    return false;
}

namespace {

// The type library that the registry names for a class; empty when there is none.
ComPtr<ITypeLib> RegisteredLibrary(const Text& className) {
    CLSID id{};
    wchar_t* spelled = nullptr;
    ComPtr<ITypeLib> library;
    if (FAILED(CLSIDFromProgID(Wide(className), &id)) || FAILED(StringFromCLSID(id, &spelled))) return library;
    const std::wstring base = std::wstring(L"CLSID\\") + spelled;
    CoTaskMemFree(spelled);
    wchar_t value[64]{};
    LONG size = sizeof value;
    if (RegQueryValueW(HKEY_CLASSES_ROOT, (base + L"\\TypeLib").c_str(), value, &size) != ERROR_SUCCESS) return library;
    GUID libraryId{};
    if (FAILED(CLSIDFromString(value, &libraryId))) return library;
    size = sizeof value;
    int major = 1;
    int minor = 0;
    if (RegQueryValueW(HKEY_CLASSES_ROOT, (base + L"\\Version").c_str(), value, &size) == ERROR_SUCCESS) {
        wchar_t* rest = nullptr;
        major = static_cast<int>(wcstol(value, &rest, 10));
        if (*rest == L'.') minor = static_cast<int>(wcstol(rest + 1, nullptr, 10));
    }
    LoadRegTypeLib(libraryId, static_cast<WORD>(major), static_cast<WORD>(minor), 0, library.put());
    return library;
}

}  // namespace

std::vector<ClassSource::Known> ClassSource::ClassesWith(const Text& registeredClass) const {
    std::vector<Known> found;
    const ComPtr<ITypeLib> library = library_ ? library_ : RegisteredLibrary(registeredClass);
    if (!library) return found;
    Bstr libraryName;
    if (FAILED(library->GetDocumentation(-1, libraryName.put(), nullptr, nullptr, nullptr))) return found;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        TYPEKIND kind{};
        if (FAILED(library->GetTypeInfoType(i, &kind)) || kind != TKIND_COCLASS) continue;
        Bstr name;
        Bstr help;
        ComPtr<ITypeInfo> info;
        TYPEATTR* attributes = nullptr;
        if (FAILED(library->GetDocumentation(static_cast<INT>(i), name.put(), help.put(), nullptr, nullptr)) ||
            FAILED(library->GetTypeInfo(i, info.put())) || FAILED(info->GetTypeAttr(&attributes))) {
            continue;
        }
        const bool shown =
            (attributes->wTypeFlags & TYPEFLAG_FCANCREATE) && !(attributes->wTypeFlags & TYPEFLAG_FHIDDEN);
        if (shown) found.push_back({libraryName.ToText() + u"." + name.ToText(), help.ToText(), attributes->guid});
        info->ReleaseTypeAttr(attributes);
    }
    return found;
}

ComPtr<IUnknown> ClassSource::CreateFromFile(const CLSID& id) const {
    using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    const auto get =
        reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module_, "DllGetClassObject")));
    if (!get) throw ComError(CO_E_ERRORINDLL);
    ComPtr<IClassFactory> factory;
    ComPtr<IUnknown> object;
    Check(get(id, IID_IClassFactory, factory.put_void()));
    Check(factory->CreateInstance(nullptr, IID_IUnknown, object.put_void()));
    return object;
}

ComPtr<IUnknown> ClassSource::CreateById(const CLSID& id) const {
    if (module_) {
        try {
            return CreateFromFile(id);
        } catch (const ComError&) {
            // The class is not one of that file's.
        }
    }
    ComPtr<IUnknown> object;
    Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.put_void()));
    return object;
}

ComPtr<IUnknown> ClassSource::Create(const Text& className) const {
    ComPtr<IUnknown> object;
    CLSID id{};
    if (FindInFile(className, id)) return CreateFromFile(id);
    if (FAILED(CLSIDFromProgID(Wide(className), &id))) throw ComError(REGDB_E_CLASSNOTREG);
    Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.put_void()));
    return object;
}

}  // namespace qvx::host
