// Catching a program's own calls to the system in its import table: whatever code it is linked
// from, however it calls.
//
//   real_write = &WriteFile;   // before the patch: the address is read from the table
//   PatchImport("WriteFile", reinterpret_cast<ULONG_PTR>(&Mine));
//
//   const CaughtImport caught("WriteFile", &Mine, &real_write);   // until the end of the scope
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <utility>

namespace demovex {

// Puts `replacement` into the import table in `name`'s place and answers what was there, 0 when the
// program does not import it.
inline ULONG_PTR PatchImport(const char* name, ULONG_PTR replacement) {
    auto* const base = reinterpret_cast<std::byte*>(GetModuleHandleW(nullptr));
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    ULONG_PTR found = 0;
    for (auto* import = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
         import->Name != 0; ++import) {
        auto* names = reinterpret_cast<IMAGE_THUNK_DATA*>(base + import->OriginalFirstThunk);
        auto* entries = reinterpret_cast<IMAGE_THUNK_DATA*>(base + import->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++entries) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* by_name =
                reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(by_name->Name), name) != 0) continue;
            DWORD before = 0;
            VirtualProtect(entries, sizeof *entries, PAGE_READWRITE, &before);
            found = std::exchange(entries->u1.Function, replacement);
            VirtualProtect(entries, sizeof *entries, before, &before);
        }
    }
    return found;
}

class CaughtImport {
  public:
    template <typename Function>
    CaughtImport(const char* name, Function* mine, Function** real)
        : name_(name), before_(PatchImport(name, reinterpret_cast<ULONG_PTR>(mine))) {
        *real = reinterpret_cast<Function*>(before_);
    }
    ~CaughtImport() {
        if (before_ != 0) PatchImport(name_, before_);
    }
    CaughtImport(const CaughtImport&) = delete;
    CaughtImport& operator=(const CaughtImport&) = delete;

    // Whether the program imports the function at all.
    bool Caught() const { return before_ != 0; }

  private:
    const char* name_;
    ULONG_PTR before_;
};

}  // namespace demovex
