// What the server writes about itself into the registry, and removes again.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace qvx {

// Where classes are written: for all users, for the current user, or wherever HKEY_CLASSES_ROOT leads (for all users as
// far as the caller may, which is what registration tools expect).
enum class ClassRoot { standard, machine, user };

// One value; an empty name is the key's default value.
struct RegistryValue {
    std::wstring key;  // below the class root
    std::wstring name;
    std::wstring data;
};

// Everything RegisterServer writes beside the type library's own keys, in order.
std::vector<RegistryValue> RegistrationEntries();

// All or nothing: a failure puts back what was there before, be it nothing or an earlier registration.
HRESULT RegisterServer(ClassRoot root = ClassRoot::standard);
// Removes the same values, and the keys that are empty then: keys that others put something into stay.
HRESULT UnregisterServer(ClassRoot root = ClassRoot::standard);

}  // namespace qvx
