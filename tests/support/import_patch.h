// A function of the system that is replaced in one module's own import table.
#pragma once

#include <windows.h>

#include <cstring>
#include <utility>

namespace qvx::test {

// The real function is restored at the end of the scope.
class ImportPatch {
  public:
    ImportPatch(HMODULE module, const char* name, void* replacement) : slot_(Find(module, name)) {
        if (slot_) real_ = Write(replacement);
    }
    ~ImportPatch() {
        if (slot_) Write(real_);
    }
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

    // Whether the module calls it at all.
    bool Found() const { return slot_ != nullptr; }
    void* Real() const { return real_; }

  private:
    static void** Find(HMODULE module, const char* name) {
        auto* base = reinterpret_cast<BYTE*>(module);
        const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
        const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
        const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
        for (; library->Name != 0; ++library) {
            auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
            auto* slots = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->FirstThunk);
            for (; names->u1.AddressOfData != 0; ++names, ++slots) {
                if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
                const auto* entry = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
                if (std::strcmp(reinterpret_cast<const char*>(entry->Name), name) == 0) {
                    return reinterpret_cast<void**>(&slots->u1.Function);
                }
            }
        }
        return nullptr;
    }

    void* Write(void* function) const {
        DWORD protection = 0;
        VirtualProtect(slot_, sizeof *slot_, PAGE_READWRITE, &protection);
        void* const before = std::exchange(*slot_, function);
        VirtualProtect(slot_, sizeof *slot_, protection, &protection);
        return before;
    }

    void** slot_;
    void* real_ = nullptr;
};

}  // namespace qvx::test
