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
    // The module stays loaded to the end of the process: its objects' last messages may still be on the way.
}

void ClassSource::UseFile(const Text& path) {
    constexpr int fileNotFound = 53;
    // First for the length, which includes the closing NUL; the system searches its folders for paths that are not
    // full.
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

ComPtr<IUnknown> ClassSource::Create(const Text& className) const {
    ComPtr<IUnknown> object;
    CLSID id{};
    if (FindInFile(className, id)) {
        using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
        const auto get =
            reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module_, "DllGetClassObject")));
        if (!get) throw ComError(CO_E_ERRORINDLL);
        ComPtr<IClassFactory> factory;
        Check(get(id, IID_IClassFactory, factory.put_void()));
        Check(factory->CreateInstance(nullptr, IID_IUnknown, object.put_void()));
        return object;
    }
    if (FAILED(CLSIDFromProgID(Wide(className), &id))) throw ComError(REGDB_E_CLASSNOTREG);
    Check(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, object.put_void()));
    return object;
}

}  // namespace qvx::host
