// DemoVexHost: a small catalogue program that offers IVEXHost and lets the basket plug-in collect
// what its user orders. Without options it is a program to try out; with options it carries out
// steps (see script.h) and its exit code says whether all of them did what they should.
#include <windows.h>

#include <ole2.h>
#include <shellapi.h>

#include "host/catalogue.h"
#include "host/frame_win.h"
#include "host/script.h"
#include "host/script_runner_win.h"

namespace demovex::host {
namespace {

std::wstring OwnFolder() {
    std::wstring path(0x8000, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.find_last_of(L'\\'));
}

std::optional<std::string> ReadFile(const std::wstring& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return std::nullopt;
    std::string bytes(GetFileSize(file, nullptr), '\0');
    DWORD read = 0;
    const bool done =
        ::ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
    CloseHandle(file);
    if (!done) return std::nullopt;
    bytes.resize(read);
    return bytes;
}

// The steps of the command line, with scripts in the place of their names.
std::optional<std::vector<Step>> AllSteps(std::wstring& error) {
    int count = 0;
    LPWSTR* words = CommandLineToArgvW(GetCommandLineW(), &count);
    const std::vector<std::wstring> arguments(words + (count > 0 ? 1 : 0), words + count);
    LocalFree(words);
    const auto given = ParseArguments(arguments, error);
    if (!given) return std::nullopt;
    std::vector<Step> steps;
    for (const Step& step : *given) {
        if (step.name != L"script") {
            steps.push_back(step);
            continue;
        }
        const auto text = ReadFile(step.arguments[0]);
        if (!text) {
            error = step.arguments[0] + L" cannot be read";
            return std::nullopt;
        }
        const auto read = ParseScript(FromUtf8(*text), error);
        if (!read) return std::nullopt;
        steps.insert(steps.end(), read->begin(), read->end());
    }
    return steps;
}

int Loop() {
    // nothing but these three: a plug-in has to work in any host
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

int Run(HINSTANCE instance, int show) {
    Log log;
    std::wstring error;
    auto steps = AllSteps(error);
    if (!steps) {
        log.Line(error);
        for (const Option& option : Options()) {
            log.Line(L"  /" + std::wstring(option.name) + L"  " + std::wstring(option.help));
        }
        return 2;
    }
    std::wstring catalogue_path = OwnFolder() + L"\\Katalog.txt";
    std::wstring manifest;
    std::erase_if(*steps, [&](const Step& step) {
        if (step.name == L"catalogue") catalogue_path = step.arguments[0];
        if (step.name == L"unregistered") manifest = OwnFolder() + L"\\DemoVexClient.X.manifest";
        if (step.name == L"log" && !log.AlsoTo(step.arguments[0])) {
            error = step.arguments[0] + L" cannot be written";
        }
        return step.name == L"catalogue" || step.name == L"unregistered" || step.name == L"log";
    });
    if (!error.empty()) {
        log.Line(error);
        return 2;
    }
    const auto text = ReadFile(catalogue_path);
    if (!text) log.Line(catalogue_path + L" cannot be read: the catalogue is empty");

    Frame frame(instance, Catalogue::Parse(text.value_or(std::string())), !steps->empty());
    if (!frame.Handle()) return 2;
    frame.Plugs().UseManifest(manifest);
    frame.Show(show);
    if (steps->empty()) return Loop();
    {
        ScriptRunner runner(frame, log);
        if (runner.Run(*steps) == ScriptRunner::End::kQuit) return runner.ExitCode();
    }
    // from here on the program is a person's
    frame.SpeakUp();
    return Loop();
}

}  // namespace
}  // namespace demovex::host

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, LPWSTR, int show) {
    if (FAILED(OleInitialize(nullptr))) return 2;
    const int code = demovex::host::Run(instance, show);
    OleUninitialize();
    return code;
}
