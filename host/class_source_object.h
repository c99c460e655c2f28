// Where the classes of a form's controls come from: the system's registry, or a component file that need not be
// registered.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <vector>

#include "com/pointer.h"
#include "common/text.h"

namespace qvx::host {

class ClassSource {
  public:
    ClassSource() = default;
    ClassSource(const ClassSource&) = delete;
    ClassSource& operator=(const ClassSource&) = delete;
    virtual ~ClassSource();

    // Loads a component file; the classes its type library names come from there from now on. Throws RunTimeError 53
    // when there is no such file and ComError when it holds no components.
    void UseFile(const Text& path);

    // A new object of the class that a form calls "Library.Class". Throws ComError: REGDB_E_CLASSNOTREG for an unknown
    // class.
    virtual ComPtr<IUnknown> Create(const Text& className) const;

    // The same by its identifier, for a class that need not be in any type library, such as a property page.
    ComPtr<IUnknown> CreateById(const CLSID& id) const;

    // A class that can be created from a library: the loaded file's, or that of a registered class.
    struct Known {
        Text className;    // "Library.Class"
        Text description;  // the library's help string, or empty
        CLSID id;
    };
    std::vector<Known> ClassesWith(const Text& registeredClass) const;

  private:
    ComPtr<IUnknown> CreateFromFile(const CLSID& id) const;
    bool FindInFile(const Text& className, CLSID& id) const;

    HMODULE module_ = nullptr;
    ComPtr<ITypeLib> library_;
};

}  // namespace qvx::host
