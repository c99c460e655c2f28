// The registry entries that the server writes and removes.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace qvx {

// Where classes are written: for all users, for the current user, or wherever HKEY_CLASSES_ROOT leads (for all users if
// the caller may, as registration tools expect).
enum class ClassRoot { standard, machine, user };

// One value; an empty name is the key's default value.
struct RegistryValue {
    std::wstring key;  // below the class root
    std::wstring name;
    std::wstring data;
};

// Returns everything that RegisterServer writes besides the type library's own keys, in order.
std::vector<RegistryValue> RegistrationEntries();

// Registers all or nothing: after a failure, the previous state is restored, whether it was none or an earlier
// registration.
HRESULT RegisterServer(ClassRoot root = ClassRoot::standard);
// Removes the same values, and the keys that are empty then; keys with others' entries stay.
HRESULT UnregisterServer(ClassRoot root = ClassRoot::standard);

}  // namespace qvx
