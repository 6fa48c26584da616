// neighbour FOLDER SEED NAME...
//
// A program in the same folder that means no good: until the file "stop" is there, it takes one of
// the names at random and creates a file or a folder under it, gives it as a second name to one of
// the files "victim1" to "victim3", renames a file of its own to it, or tries to delete, rename and
// write whatever stands there. What it has made itself it removes in the end. Exit codes: 0 done,
// 2 wrong use.
#include <windows.h>

#include <shellapi.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {

std::wstring folder;
std::mt19937 dice;

std::wstring In(const std::wstring& name) {
    return folder + L"\\" + name;
}

bool Create(const std::wstring& path, DWORD disposition) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    WriteFile(file, "neighbour's", 11, &written, nullptr);
    CloseHandle(file);
    return true;
}

void Meddle(const std::wstring& path) {
    switch (dice() % 8) {
        case 0:
            Create(path, CREATE_NEW);
            break;
        case 1:
            CreateDirectoryW(path.c_str(), nullptr);
            break;
        case 2:
            CreateHardLinkW(path.c_str(), In(L"victim" + std::to_wstring(dice() % 3 + 1)).c_str(),
                            nullptr);
            break;
        case 3:
            Create(In(L"own"), CREATE_ALWAYS);
            MoveFileExW(In(L"own").c_str(), path.c_str(),
                        dice() % 2 != 0 ? MOVEFILE_REPLACE_EXISTING : 0);
            break;
        case 4:
            MoveFileExW(path.c_str(), In(L"moved").c_str(), 0);
            RemoveDirectoryW(In(L"moved").c_str());
            DeleteFileW(In(L"moved").c_str());
            break;
        default:
            RemoveDirectoryW(path.c_str());
            DeleteFileW(path.c_str());
            break;
    }
}

}  // namespace

int main() {
    int count = 0;
    LPWSTR* arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (arguments == nullptr || count < 4) return 2;
    folder = arguments[1];
    dice.seed(static_cast<unsigned>(_wtoi(arguments[2])));
    std::vector<std::wstring> names;
    for (int i = 3; i < count; ++i) names.push_back(In(arguments[i]));
    LocalFree(arguments);

    Create(In(L"begun"), CREATE_NEW);
    while (GetFileAttributesW(In(L"stop").c_str()) == INVALID_FILE_ATTRIBUTES) {
        for (int i = 0; i < 20; ++i) Meddle(names[dice() % names.size()]);
    }
    for (const std::wstring& name : names) {
        RemoveDirectoryW(name.c_str());
        DeleteFileW(name.c_str());
    }
    for (const wchar_t* own : {L"own", L"moved", L"begun"}) {
        RemoveDirectoryW(In(own).c_str());
        DeleteFileW(In(own).c_str());
    }
    return 0;
}
