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

#include <shellapi.h>

#include <cstdlib>
#include <string>

#include "base/error.h"
#include "platform/file_system_tools.h"
#include "platform/files_win.h"
#include "platform/text_win.h"
#include "tests/support/import_table_win.h"

namespace {

using demovex::PatchImport;

int calls_until_end = 0;
bool armed = false;

[[noreturn]] void EndNow() {
    TerminateProcess(GetCurrentProcess(), 77);
    std::abort();
}

bool EndsHere() {
    return armed && --calls_until_end == 0;
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
    PatchImport(name, reinterpret_cast<ULONG_PTR>(&Caught<Slot, R, A...>::Call));
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

decltype(&SetFileInformationByHandle) real_set = nullptr;

// Also ends after a rename, when the new file is in its place and nobody knows yet.
BOOL WINAPI SetAndTell(HANDLE file, FILE_INFO_BY_HANDLE_CLASS what, LPVOID value, DWORD length) {
    if (EndsHere()) EndNow();
    const BOOL done = real_set(file, what, value, length);
    if (what == FileRenameInfo && EndsHere()) EndNow();
    return done;
}

void CatchAll() {
    real_write = &WriteFile;  // before the patch: the address is read from the table
    PatchImport("WriteFile", reinterpret_cast<ULONG_PTR>(&TornWrite));
    real_set = &SetFileInformationByHandle;
    PatchImport("SetFileInformationByHandle", reinterpret_cast<ULONG_PTR>(&SetAndTell));
    Catch<0>("CreateFileW", &CreateFileW);
    Catch<1>("CloseHandle", &CloseHandle);
    Catch<2>("FlushFileBuffers", &FlushFileBuffers);
    Catch<3>("GetFinalPathNameByHandleW", &GetFinalPathNameByHandleW);
    Catch<4>("GetFileAttributesW", &GetFileAttributesW);
    Catch<5>("GetFileInformationByHandle", &GetFileInformationByHandle);
    Catch<6>("GetFileInformationByHandleEx", &GetFileInformationByHandleEx);
    Catch<7>("GetFullPathNameW", &GetFullPathNameW);
    Catch<8>("SetFilePointerEx", &SetFilePointerEx);
    Catch<9>("SetEndOfFile", &SetEndOfFile);
    Catch<10>("GetFileType", &GetFileType);
    Catch<11>("GetKernelObjectSecurity", &GetKernelObjectSecurity);
    Catch<12>("SetKernelObjectSecurity", &SetKernelObjectSecurity);
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
