#include "server/registration.h"

#include <oleauto.h>

#include <algorithm>
#include <functional>
#include <set>
#include <utility>

#include "Qvx.h"
#include "com/guard.h"
#include "com/module.h"
#include "com/type_library.h"
#include "com/wide_text.h"
#include "common/number_text.h"
#include "kit/control_class.h"

// The cross-compiler's headers do not declare these two.
extern "C" HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
extern "C" HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID library, WORD major, WORD minor, LCID locale, SYSKIND kind);

namespace qvx {

namespace {

constexpr wchar_t libraryName[] = L"Qvx";
constexpr wchar_t libraryVersion[] = L"1.0";

class RegistryKey {
  public:
    RegistryKey() = default;
    ~RegistryKey() {
        if (key_) RegCloseKey(key_);
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;
    HKEY get() const { return key_; }
    HKEY* put() { return &key_; }

  private:
    HKEY key_ = nullptr;
};

// The place of the classes: a key that is always open, and a path below it, which may be empty.
std::pair<HKEY, std::wstring> PlaceOf(ClassRoot root) {
    if (root == ClassRoot::standard) return {HKEY_CLASSES_ROOT, {}};
    return {root == ClassRoot::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE, L"Software\\Classes"};
}

void Open(ClassRoot root, RegistryKey& classes) {
    const auto [base, path] = PlaceOf(root);
    Check(HRESULT_FROM_WIN32(static_cast<DWORD>(
        RegCreateKeyExW(base, path.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, classes.put(), nullptr))));
}

std::wstring Spell(REFGUID id) {
    wchar_t text[40];
    StringFromGUID2(id, text, static_cast<int>(std::size(text)));
    return text;
}

void Write(HKEY classes, const RegistryValue& value) {
    RegistryKey key;
    Check(HRESULT_FROM_WIN32(static_cast<DWORD>(
        RegCreateKeyExW(classes, value.key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr))));
    if (value.name.empty() && value.data.empty()) return;
    Check(HRESULT_FROM_WIN32(
        static_cast<DWORD>(RegSetValueExW(key.get(), value.name.empty() ? nullptr : value.name.c_str(), 0, REG_SZ,
                                          reinterpret_cast<const BYTE*>(value.data.c_str()),
                                          static_cast<DWORD>((value.data.size() + 1) * sizeof(wchar_t))))));
}

// Returns the entries that exist, with their present data.
std::vector<RegistryValue> Present(HKEY classes, const std::vector<RegistryValue>& entries) {
    std::vector<RegistryValue> present;
    for (const RegistryValue& entry : entries) {
        RegistryKey key;
        if (RegOpenKeyExW(classes, entry.key.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) continue;
        DWORD bytes = 0;
        std::wstring data;
        LSTATUS read = RegGetValueW(key.get(), nullptr, entry.name.c_str(), RRF_RT_REG_SZ, nullptr, nullptr, &bytes);
        if (read == ERROR_SUCCESS) {
            data.resize(bytes / sizeof(wchar_t));
            read = RegGetValueW(key.get(), nullptr, entry.name.c_str(), RRF_RT_REG_SZ, nullptr, data.data(), &bytes);
            data.resize(std::min(data.size(), data.find(L'\0')));
        }
        const bool keyAlone = entry.name.empty() && entry.data.empty();
        if (read == ERROR_SUCCESS || keyAlone) present.push_back({entry.key, entry.name, data});
    }
    return present;
}

bool IsEmpty(HKEY key) {
    DWORD keys = 0;
    DWORD values = 0;
    const LSTATUS queried = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
                                             nullptr, nullptr, nullptr);
    return queried == ERROR_SUCCESS && keys == 0 && values == 0;
}

// Removes the values, then every key of theirs that has become empty, starting with the innermost.
void Remove(HKEY classes, const std::vector<RegistryValue>& entries) {
    std::set<std::wstring> keys;
    for (const RegistryValue& entry : entries) {
        RegistryKey key;
        if (RegOpenKeyExW(classes, entry.key.c_str(), 0, KEY_WRITE, key.put()) == ERROR_SUCCESS) {
            RegDeleteValueW(key.get(), entry.name.empty() ? nullptr : entry.name.c_str());
        }
        for (std::wstring path = entry.key;;) {
            keys.insert(path);
            const auto parent = path.find_last_of(L'\\');
            // The lists that all servers share must not be removed.
            if (parent == std::wstring::npos || path.substr(0, parent) == L"CLSID") break;
            path.resize(parent);
        }
    }
    std::vector<std::wstring> innermostFirst(keys.begin(), keys.end());
    std::sort(innermostFirst.begin(), innermostFirst.end(),
              [](const auto& a, const auto& b) { return a.size() > b.size(); });
    for (const std::wstring& path : innermostFirst) {
        RegistryKey key;
        if (RegOpenKeyExW(classes, path.c_str(), 0, KEY_READ, key.put()) != ERROR_SUCCESS) continue;
        if (IsEmpty(key.get())) RegDeleteKeyW(classes, path.c_str());
    }
}

bool IsClassEntry(const RegistryValue& entry) { return entry.key.rfind(L"CLSID\\", 0) == 0; }

// 32-bit and 64-bit programs find classes by the same names, but each kind has classes of its own. The names are kept
// as long as the server of the other kind is registered.
bool OtherWidthIsRegistered(ClassRoot root, const ControlClass& control) {
    constexpr REGSAM otherView = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
    // The whole path is used: a key that was opened in one registry view may stay in that view for its subkeys.
    const auto [base, place] = PlaceOf(root);
    const std::wstring path =
        place + (place.empty() ? L"" : L"\\") + L"CLSID\\" + Spell(*control.id) + L"\\InprocServer32";
    RegistryKey key;
    return RegOpenKeyExW(base, path.c_str(), 0, KEY_READ | otherView, key.put()) == ERROR_SUCCESS;
}

HRESULT RegisterLibrary(ClassRoot root) {
    const auto library = LoadOwnTypeLibrary();
    Text path = ModulePath(ThisModule());
    return root == ClassRoot::user ? RegisterTypeLibForUser(library.get(), WideBuffer(path), nullptr)
                                   : RegisterTypeLib(library.get(), WideBuffer(path), nullptr);
}

HRESULT UnregisterLibrary(ClassRoot root, HKEY classes) {
    // Unregistering twice is not a failure.
    RegistryKey registered;
    const std::wstring path = L"TypeLib\\" + Spell(LIBID_Qvx);
    if (RegOpenKeyExW(classes, path.c_str(), 0, KEY_READ, registered.put()) != ERROR_SUCCESS) return S_OK;
    const SYSKIND kind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
    return root == ClassRoot::user ? UnRegisterTypeLibForUser(LIBID_Qvx, 1, 0, LOCALE_NEUTRAL, kind)
                                   : UnRegisterTypeLib(LIBID_Qvx, 1, 0, LOCALE_NEUTRAL, kind);
}

}  // namespace

std::vector<RegistryValue> RegistrationEntries() {
    std::vector<RegistryValue> entries;
    const Text path = ModulePath(ThisModule());
    const std::wstring server(Wide(TextView(path)));
    for (const ControlClass& control : AllControls()) {
        const std::wstring id = Spell(*control.id);
        const std::wstring plain = std::wstring(libraryName) + L"." + control.name;
        const std::wstring versioned = plain + L".1";
        const std::wstring description = control.description;
        const std::wstring base = L"CLSID\\" + id;
        entries.insert(entries.end(), {
                                          {plain, L"", description},
                                          {plain + L"\\CLSID", L"", id},
                                          {plain + L"\\CurVer", L"", versioned},
                                          {versioned, L"", description},
                                          {versioned + L"\\CLSID", L"", id},
                                          {base, L"", description},
                                          {base + L"\\ProgID", L"", versioned},
                                          {base + L"\\VersionIndependentProgID", L"", plain},
                                          {base + L"\\InprocServer32", L"", server},
                                          {base + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
                                          {base + L"\\Control", L"", L""},
                                          {base + L"\\MiscStatus", L"", L"0"},
                                          {base + L"\\MiscStatus\\1", L"", Wide(IntegerToText(control.miscStatus))},
                                          {base + L"\\ToolboxBitmap32", L"",
                                           server + L", " + Wide(IntegerToText(control.toolboxBitmap))},
                                          {base + L"\\TypeLib", L"", Spell(LIBID_Qvx)},
                                          {base + L"\\Version", L"", libraryVersion},
                                      });
    }
    for (const PageClass& page : AllPages()) {
        const std::wstring base = L"CLSID\\" + Spell(*page.id);
        entries.insert(entries.end(), {
                                          {base, L"", page.description},
                                          {base + L"\\InprocServer32", L"", server},
                                          {base + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
                                      });
    }
    return entries;
}

HRESULT RegisterServer(ClassRoot root) {
    const std::vector<RegistryValue> entries = RegistrationEntries();
    RegistryKey classes;
    Open(root, classes);
    const std::vector<RegistryValue> before = Present(classes.get(), entries);
    try {
        for (const RegistryValue& entry : entries) Write(classes.get(), entry);
        Check(RegisterLibrary(root));
    } catch (...) {
        Remove(classes.get(), entries);
        for (const RegistryValue& entry : before) Contain([&] { Write(classes.get(), entry); });
        throw;
    }
    return S_OK;
}

HRESULT UnregisterServer(ClassRoot root) {
    RegistryKey classes;
    Open(root, classes);
    std::vector<RegistryValue> names = RegistrationEntries();
    const auto firstClass = std::stable_partition(names.begin(), names.end(), std::not_fn(IsClassEntry));
    // The classes are removed first: where both kinds share them, the names are no longer needed then.
    Remove(classes.get(), {firstClass, names.end()});
    names.erase(firstClass, names.end());
    const auto controls = AllControls();
    const bool shared = std::any_of(controls.begin(), controls.end(),
                                    [&](const ControlClass& control) { return OtherWidthIsRegistered(root, control); });
    if (!shared) Remove(classes.get(), names);
    return UnregisterLibrary(root, classes.get());
}

}  // namespace qvx
