// save_child N FILE CHARACTER COUNT
//
// Saves COUNT times CHARACTER to FILE like the basket does and ends itself at the N-th call to the
// system that concerns files: TerminateProcess, so that no destructor and no handler runs; a write
// writes half of its bytes before. Exit codes: 0 the save was through before the N-th call, 77
// ended at that call, 1 the save raised an error, 2 wrong use.
//
// The calls are caught in the program's own import table, so they are the ones the component makes,
// however it makes them.
#include <windows.h>

#include <aclapi.h>
#include <shellapi.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "base/error.h"
#include "platform/file_system_tools.h"
#include "platform/files_win.h"
#include "platform/text_win.h"

namespace {

int calls_until_end = 0;
bool armed = false;

[[noreturn]] void EndNow() {
    TerminateProcess(GetCurrentProcess(), 77);
    std::abort();
}

bool EndsHere() {
    return armed && --calls_until_end == 0;
}

// Puts `replacement` into the import table in `name`'s place and answers what was there, 0 when the
// program does not import it.
ULONG_PTR Patch(const char* name, ULONG_PTR replacement) {
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

// One caught call; Slot tells functions with the same parameters apart.
template <int Slot, typename R, typename... A>
struct Caught {
    static inline R(WINAPI* real)(A...) = nullptr;
    static R WINAPI Call(A... arguments) {
        if (EndsHere()) EndNow();
        return real(arguments...);
    }
};

template <int Slot, typename R, typename... A>
void Catch(const char* name, R(WINAPI* real)(A...)) {
    Caught<Slot, R, A...>::real = real;
    Patch(name, reinterpret_cast<ULONG_PTR>(&Caught<Slot, R, A...>::Call));
}

decltype(&WriteFile) real_write = nullptr;

BOOL WINAPI TornWrite(HANDLE file, LPCVOID bytes, DWORD length, LPDWORD written,
                      LPOVERLAPPED overlapped) {
    if (EndsHere()) {
        real_write(file, bytes, length / 2, written, overlapped);
        EndNow();
    }
    return real_write(file, bytes, length, written, overlapped);
}

decltype(&MoveFileExW) real_move = nullptr;

// Also ends after the call, when the new file is in its place and nobody knows yet.
BOOL WINAPI MoveAndTell(LPCWSTR from, LPCWSTR to, DWORD flags) {
    if (EndsHere()) EndNow();
    const BOOL moved = real_move(from, to, flags);
    if (EndsHere()) EndNow();
    return moved;
}

void CatchAll() {
    real_write = &WriteFile;  // before the patch: the address is read from the table
    Patch("WriteFile", reinterpret_cast<ULONG_PTR>(&TornWrite));
    real_move = &MoveFileExW;
    Patch("MoveFileExW", reinterpret_cast<ULONG_PTR>(&MoveAndTell));
    Catch<0>("CreateFileW", &CreateFileW);
    Catch<1>("CloseHandle", &CloseHandle);
    Catch<2>("FlushFileBuffers", &FlushFileBuffers);
    Catch<3>("DeleteFileW", &DeleteFileW);
    Catch<4>("GetFileAttributesW", &GetFileAttributesW);
    Catch<5>("SetFileAttributesW", &SetFileAttributesW);
    Catch<6>("GetFileTime", &GetFileTime);
    Catch<7>("SetFileTime", &SetFileTime);
    Catch<8>("SetFilePointerEx", &SetFilePointerEx);
    Catch<9>("SetEndOfFile", &SetEndOfFile);
    Catch<10>("GetFileType", &GetFileType);
    Catch<11>("FindFirstFileW", &FindFirstFileW);
    Catch<12>("FindClose", &FindClose);
    Catch<13>("GetNamedSecurityInfoW", &GetNamedSecurityInfoW);
    Catch<14>("SetNamedSecurityInfoW", &SetNamedSecurityInfoW);
    Catch<15>("ReplaceFileW", &ReplaceFileW);
}

}  // namespace

int main() {
    int count = 0;
    LPWSTR* arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (arguments == nullptr || count != 5) return 2;
    calls_until_end = _wtoi(arguments[1]);
    const std::wstring path = arguments[2];
    const std::wstring content(static_cast<std::size_t>(_wtoi(arguments[4])), arguments[3][0]);
    LocalFree(arguments);

    demovex::WinFileSystem files;
    const demovex::WinTextService text;
    CatchAll();
    armed = true;
    try {
        demovex::SaveFile(files, text, path, content);
    } catch (const demovex::Error&) {
        armed = false;
        return 1;
    }
    armed = false;
    return 0;
}
