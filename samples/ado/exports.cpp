// What the system calls in a component server, and the names under which scripts find these objects.
#include <windows.h>

#include <olectl.h>

#include <iterator>
#include <string>

#include "com/guard.h"
#include "com/module.h"
#include "com/object.h"
#include "samples/ado/connection_object.h"
#include "samples/ado/recordset_object.h"

namespace qvx::ado {

namespace {

template <class Object>
HRESULT Create(REFIID iid, void** object) {
    return MakeObject<Object>()->QueryInterface(iid, object);
}

struct Class {
    CLSID id;
    const wchar_t* name;
    HRESULT (*create)(REFIID iid, void** object);
};

// Identifiers of our own: only the names are those of the system's data objects.
constexpr Class classes[] = {
    {{0x5c0f2ab4, 0x3e1d, 0x4f86, {0x9b, 0x27, 0x61, 0x0c, 0xd8, 0x4e, 0x7f, 0x31}},
     L"ADODB.Connection",
     Create<ConnectionObject>},
    {{0x5c0f2ab5, 0x3e1d, 0x4f86, {0x9b, 0x27, 0x61, 0x0c, 0xd8, 0x4e, 0x7f, 0x31}},
     L"ADODB.Recordset",
     Create<RecordsetObject>},
};

// Part of the module and not counted among its objects: some script engines never let go of a factory.
class Factory final : public IClassFactory {
  public:
    explicit Factory(const Class& made) : class_(made) {}
    STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
        return Guard([&]() -> HRESULT {
            if (!object) return E_POINTER;
            *object = nullptr;
            if (outer) return CLASS_E_NOAGGREGATION;
            return class_.create(iid, object);
        });
    }
    STDMETHODIMP LockServer(BOOL lock) override {
        CountObject(lock ? 1 : -1);
        return S_OK;
    }

  private:
    const Class& class_;
};

Factory factories[] = {Factory(classes[0]), Factory(classes[1])};

std::wstring Spell(REFGUID id) {
    wchar_t text[40];
    StringFromGUID2(id, text, static_cast<int>(std::size(text)));
    return text;
}

void Write(const std::wstring& key, const wchar_t* name, const std::wstring& data) {
    const auto size = static_cast<DWORD>((data.size() + 1) * sizeof(wchar_t));
    Check(HRESULT_FROM_WIN32(
        static_cast<DWORD>(RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, data.c_str(), size))));
}

std::wstring Read(const std::wstring& key, const wchar_t* name) {
    wchar_t text[64] = L"";
    DWORD size = sizeof(text);
    RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
}

// Whose the name was before, so that it can be given back.
constexpr wchar_t before[] = L"QvxBefore";

void Register() {
    Text module = ModulePath(ThisModule());
    for (const Class& made : classes) {
        const std::wstring id = Spell(made.id);
        const std::wstring program = std::wstring(made.name) + L"\\CLSID";
        const std::wstring server = L"CLSID\\" + id + L"\\InprocServer32";
        const std::wstring owner = Read(program, nullptr);
        if (!owner.empty() && owner != id) Write(program, before, owner);
        Write(program, nullptr, id);
        Write(server, nullptr, WideBuffer(module));
        Write(server, L"ThreadingModel", L"Apartment");
        Write(L"CLSID\\" + id + L"\\ProgID", nullptr, made.name);
    }
}

void Unregister() {
    for (const Class& made : classes) {
        const std::wstring id = Spell(made.id);
        const std::wstring program = std::wstring(made.name) + L"\\CLSID";
        RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"CLSID\\" + id).c_str());
        if (Read(program, nullptr) != id) continue;
        const std::wstring owner = Read(program, before);
        if (owner.empty()) {
            RegDeleteTreeW(HKEY_CLASSES_ROOT, made.name);
        } else {
            Write(program, nullptr, owner);
            RegDeleteKeyValueW(HKEY_CLASSES_ROOT, program.c_str(), before);
        }
    }
}

}  // namespace

}  // namespace qvx::ado

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, LPVOID* object) {
    return qvx::Guard([&]() -> HRESULT {
        if (!object) return E_POINTER;
        *object = nullptr;
        for (std::size_t i = 0; i < std::size(qvx::ado::classes); ++i) {
            if (qvx::ado::classes[i].id == id) return qvx::ado::factories[i].QueryInterface(iid, object);
        }
        return CLASS_E_CLASSNOTAVAILABLE;
    });
}

STDAPI DllCanUnloadNow() { return qvx::LiveObjects() == 0 ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() {
    return qvx::Guard([] { qvx::ado::Register(); });
}

STDAPI DllUnregisterServer() {
    return qvx::Guard([] { qvx::ado::Unregister(); });
}
