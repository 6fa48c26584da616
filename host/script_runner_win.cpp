#include "host/script_runner_win.h"

#include <objbase.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cwchar>

#include "host/picture_win.h"

namespace demovex::host {

namespace {

// The plug-in's published menu id for copying the whole basket.
constexpr WPARAM kCopyWholeBasket = 114;
// The control of the system's file dialogs that holds the name.
constexpr int kFileNameBox = 0x47C;
constexpr DWORD kQuietMilliseconds = 40;
constexpr DWORD kSettleDeadline = 15000;
constexpr UINT kWatchInterval = 30;

std::wstring Said(const Step& step) {
    std::wstring line = step.name;
    for (const std::wstring& argument : step.arguments) line += L" " + argument;
    return line;
}

std::wstring ClipboardText() {
    std::wstring text;
    if (!OpenClipboard(nullptr)) return text;
    if (const HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
        if (const auto* from = static_cast<const wchar_t*>(GlobalLock(data))) {
            text = from;
            GlobalUnlock(data);
        }
    }
    CloseClipboard();
    return text;
}

std::wstring TextOfWindow(HWND window) {
    std::array<wchar_t, 1024> text{};
    GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
    return text.data();
}

}  // namespace

Log::Log() : output_(GetStdHandle(STD_OUTPUT_HANDLE)) {}

Log::~Log() {
    if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
}

bool Log::AlsoTo(const std::wstring& path) {
    file_ = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                        FILE_ATTRIBUTE_NORMAL, nullptr);
    return file_ != INVALID_HANDLE_VALUE;
}

void Log::Line(const std::wstring& text) {
    const std::string bytes = ToUtf8(text) + "\n";
    DWORD written = 0;
    for (HANDLE to : {output_, file_}) {
        if (to && to != INVALID_HANDLE_VALUE) {
            WriteFile(to, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        }
    }
}

ScriptRunner::ScriptRunner(Frame& frame, Log& log) : frame_(frame), log_(log) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = WatchProcedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"DemoVexHost.Watch";
    RegisterClassExW(&description);
    watch_ = CreateWindowExW(0, description.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE,
                             nullptr, description.hInstance, nullptr);
    SetWindowLongPtrW(watch_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    // the timer's messages reach the watch window even while a message box has the loop
    SetTimer(watch_, 1, kWatchInterval, nullptr);
}

ScriptRunner::~ScriptRunner() {
    DestroyWindow(watch_);
}

LRESULT CALLBACK ScriptRunner::WatchProcedure(HWND window, UINT message, WPARAM w,
                                              LPARAM l) noexcept {
    const LONG_PTR self = GetWindowLongPtrW(window, GWLP_USERDATA);
    if (message == WM_TIMER && self) {
        EnumThreadWindows(GetCurrentThreadId(), AnswerBox, self);
        return 0;
    }
    return DefWindowProcW(window, message, w, l);
}

// Finds the dialog that takes input: one that waits for the answer to another one is disabled.
BOOL CALLBACK ScriptRunner::AnswerBox(HWND window, LPARAM self) noexcept {
    auto& runner = *reinterpret_cast<ScriptRunner*>(self);
    std::array<wchar_t, 16> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    if (lstrcmpW(name.data(), L"#32770") != 0 || !IsWindowVisible(window) ||
        !IsWindowEnabled(window) || window == runner.answered_ || window == runner.file_dialog_) {
        return TRUE;
    }
    try {
        runner.AnswerDialog(window);
    } catch (...) {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
    return FALSE;
}

// A dialog that the script does not expect is a failure and is dismissed, so that the script ends.
void ScriptRunner::AnswerDialog(HWND dialog) {
    const HWND name_box = GetDlgItem(dialog, kFileNameBox);
    const bool is_file_dialog = name_box != nullptr;
    const std::wstring text = TextOfWindow(is_file_dialog ? name_box : GetDlgItem(dialog, 0xFFFF));
    log_.Line((is_file_dialog ? L"file dialog \"" : L"box \"") + TextOfWindow(dialog) + L"\": " +
              text);
    Awaited answer{is_file_dialog, IDCANCEL, {}};
    if (answers_.empty()) {
        Fail(L"nobody expected this");
    } else if (answers_.front().file_dialog != is_file_dialog) {
        Fail(is_file_dialog ? L"a box was expected" : L"a file dialog was expected");
    } else {
        answer = answers_.front();
        answers_.pop_front();
    }
    if (is_file_dialog) {
        if (!answer.name.empty()) {
            SendMessageW(name_box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(answer.name.c_str()));
        }
        file_dialog_ = dialog;
    } else {
        // a file dialog whose question is denied asks for another name
        const bool denied = answer.button != IDYES && GetWindow(dialog, GW_OWNER) == file_dialog_;
        if (denied) file_dialog_ = nullptr;
        answered_ = dialog;
    }
    PostMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(answer.button), 0);
}

void ScriptRunner::Settle() {
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < kSettleDeadline) {
        MSG message;
        bool any = false;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            // the watch's own timer is no sign of life
            any = any || message.hwnd != watch_;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        if (!any) {
            const DWORD from = GetTickCount();
            while (GetTickCount() - from < kQuietMilliseconds) {
                MsgWaitForMultipleObjects(
                    0, nullptr, FALSE, kQuietMilliseconds - (GetTickCount() - from), QS_ALLINPUT);
                if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) continue;
                if (message.message == WM_QUIT) {
                    PostQuitMessage(static_cast<int>(message.wParam));
                    return;
                }
                any = any || message.hwnd != watch_;
                TranslateMessage(&message);
                DispatchMessageW(&message);
                if (any) break;
            }
            if (!any) return;
        }
    }
    Fail(L"the program never came to rest");
}

void ScriptRunner::Fail(const std::wstring& why) {
    log_.Line(L"FAILED: " + why);
    failed_ = true;
}

void ScriptRunner::Check(const Step& step, const Outcome& outcome) {
    const std::wstring line = Said(step).substr(0, 120) + L": " + outcome.Say();
    log_.Line(line);
    const HRESULT should = expected_.value_or(S_OK);
    expected_.reset();
    if (outcome.code != should) {
        Fail(L"another result was expected");
    } else if (outcome.Failed() && outcome.description.empty()) {
        Fail(L"the error has no description");
    }
}

void ScriptRunner::CheckEqual(const Step& step, const std::wstring& is,
                              const std::wstring& should) {
    log_.Line(Said(step) + L": " + is);
    if (is != should) Fail(L"it is \"" + is + L"\"");
}

void ScriptRunner::DumpBasket(const std::wstring& path) {
    const HWND basket = frame_.Plugs().CurrentWindow();
    if (!basket) return Fail(L"no basket window");
    SendMessageW(basket, WM_COMMAND, kCopyWholeBasket, 0);
    Settle();
    const std::wstring text = ClipboardText();
    if (path == L"-") return log_.Line(text);
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return Fail(path + L" cannot be written");
    const std::string bytes = ToUtf8(text);
    DWORD written = 0;
    const bool done =
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    if (!CloseHandle(file) || !done) Fail(path + L" cannot be written");
}

void ScriptRunner::SavePictureOf(const std::wstring& name, const std::wstring& path) {
    RECT area = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    if (name == L"save-picture") {
        const HWND basket = frame_.Plugs().CurrentWindow();
        if (!basket) return Fail(L"no basket window");
        SetForegroundWindow(basket);
        BringWindowToTop(basket);
        Settle();
        GetWindowRect(basket, &area);
    }
    GdiFlush();
    if (!SavePicture(area, path)) Fail(path + L" cannot be written");
}

void ScriptRunner::CloseCurrent() {
    const HWND basket = frame_.Plugs().CurrentWindow();
    if (!basket) return Fail(L"no basket window");
    SendMessageW(basket, WM_CLOSE, 0, 0);
}

void ScriptRunner::SendInputTo(const std::wstring& number, bool click) {
    if (!frame_.ShowArticle(number)) return Fail(L"no such article: " + number);
    SetForegroundWindow(frame_.Handle());
    SetWindowPos(frame_.Handle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    SetFocus(frame_.Handle());
    Settle();
    std::array<INPUT, 2> input{};
    if (click) {
        const POINT place = frame_.OrderLink();
        SetCursorPos(place.x, place.y);
        for (INPUT& part : input) part.type = INPUT_MOUSE;
        input[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
        input[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    } else {
        for (INPUT& part : input) {
            part.type = INPUT_KEYBOARD;
            part.ki.wVk = VK_RETURN;
        }
        input[1].ki.dwFlags = KEYEVENTF_KEYUP;
    }
    if (SendInput(static_cast<UINT>(input.size()), input.data(), sizeof(INPUT)) != input.size()) {
        Fail(L"the system took no input");
    }
}

void ScriptRunner::PressKeys(const std::wstring& keys) {
    const auto strokes = ParseKeys(keys);
    if (!strokes) return Fail(L"unknown keys: " + keys);
    const HWND basket = frame_.Plugs().CurrentWindow();
    if (!basket) return Fail(L"no basket window");
    SetForegroundWindow(basket);
    Settle();
    // all at once: an open menu has the loop until one of them ends it
    std::vector<INPUT> input(strokes->size());
    for (std::size_t i = 0; i < input.size(); ++i) {
        input[i].type = INPUT_KEYBOARD;
        input[i].ki.wVk = (*strokes)[i].key;
        input[i].ki.dwFlags = (*strokes)[i].down ? 0 : KEYEVENTF_KEYUP;
    }
    const auto count = static_cast<UINT>(input.size());
    if (SendInput(count, input.data(), sizeof(INPUT)) != count) {
        Fail(L"the system took no input");
    }
}

bool ScriptRunner::RunWindowStep(const Step& step) {
    Session& session = frame_.Plugs();
    const std::wstring argument = step.arguments.empty() ? L"" : step.arguments[0];
    if (step.name == L"command") {
        const HWND basket = session.CurrentWindow();
        if (!basket) {
            Fail(L"no basket window");
        } else {
            SendMessageW(basket, WM_COMMAND, std::wcstoul(argument.c_str(), nullptr, 10), 0);
        }
    } else if (step.name == L"keys") {
        PressKeys(argument);
    } else if (step.name == L"show") {
        if (!frame_.ShowArticle(argument)) Fail(L"no such article: " + argument);
    } else if (step.name == L"click" || step.name == L"enter") {
        SendInputTo(argument, step.name == L"click");
    } else if (step.name == L"position") {
        CheckEqual(step, frame_.SelectedArticle(), argument);
        return true;
    } else if (step.name == L"page") {
        CheckEqual(step, frame_.LastPage(), argument);
        return true;
    } else if (step.name == L"windows") {
        CheckEqual(step, std::to_wstring(Session::Windows().size()), argument);
        return true;
    } else if (step.name == L"clients") {
        CheckEqual(step, std::to_wstring(session.Count()), argument);
        return true;
    } else if (step.name == L"answer") {
        answers_.push_back(
            {false, static_cast<int>(std::wcstol(argument.c_str(), nullptr, 10)), {}});
    } else if (step.name == L"file-dialog") {
        answers_.push_back({true, IDOK, argument});
    } else if (step.name == L"cancel-dialog") {
        answers_.push_back({true, IDCANCEL, {}});
    } else if (step.name == L"dump-basket") {
        DumpBasket(argument);
    } else if (step.name == L"save-picture" || step.name == L"save-screen") {
        SavePictureOf(step.name, argument);
    } else if (step.name == L"close") {
        CloseCurrent();
    } else if (step.name == L"unload") {
        CoFreeUnusedLibrariesEx(0, 0);
        CoFreeUnusedLibrariesEx(0, 0);
        CheckEqual(step, GetModuleHandleW(L"DemoVexClient.dll") ? L"1" : L"0", argument);
        return true;
    } else {
        return false;
    }
    log_.Line(Said(step));
    return true;
}

void ScriptRunner::RunStep(const Step& step) {
    if (RunWindowStep(step)) return;
    Session& session = frame_.Plugs();
    const std::wstring argument = step.arguments.empty() ? L"" : step.arguments[0];
    if (step.name == L"create") return Check(step, session.CreateClient());
    if (step.name == L"basket") return Check(step, session.NewBasket());
    if (step.name == L"initialize") {
        const auto parent = argument == L"null"      ? Session::Parent::kNull
                            : argument == L"foreign" ? Session::Parent::kForeign
                                                     : Session::Parent::kHost;
        return Check(step, session.Initialize(parent));
    }
    if (step.name == L"follow") {
        // the article as a person would order it; an unknown one as a stray link
        if (frame_.ShowArticle(argument)) {
            const Article& article = frame_.Shown().Articles()[*frame_.Shown().Find(argument)];
            return Check(step, session.Order(article, frame_.Shown().Groups()[article.group]));
        }
        return Check(step, session.FollowLink(OrderLink(argument), PositionAddress(argument), L""));
    }
    if (step.name == L"follow-link") return Check(step, session.FollowLink(argument, L"", L""));
    if (step.name == L"follow-long") {
        const std::wstring number(std::wcstoul(argument.c_str(), nullptr, 10), L'7');
        return Check(step, session.FollowLink(OrderLink(number), L"", L""));
    }
    if (step.name == L"open") return Check(step, session.OpenFile(argument));
    PlugInClient* current = session.Current();
    if (step.name == L"release") {
        session.ReleaseCurrent();
    } else if (step.name == L"client") {
        if (!session.Select(std::wcstoul(argument.c_str(), nullptr, 10) - 1))
            Fail(L"no such client");
    } else if (!current) {
        Fail(L"no client");
    } else if (step.name == L"follow-null") {
        return Check(step, current->FollowNothing());
    } else if (step.name == L"caption") {
        std::wstring caption;
        const Outcome outcome = current->Caption(caption);
        if (outcome.Failed() || expected_) return Check(step, outcome);
        return CheckEqual(step, caption, argument);
    } else if (step.name == L"references") {
        return CheckEqual(step, std::to_wstring(current->References()), argument);
    }
    log_.Line(Said(step));
}

ScriptRunner::End ScriptRunner::Run(const std::vector<Step>& steps) {
    Settle();
    for (const Step& step : steps) {
        if (step.name == L"quit" || step.name == L"stay") {
            stay_ = step.name == L"stay";
            break;
        }
        if (step.name == L"expect") {
            const auto code = ParseCode(step.arguments[0]);
            if (code) {
                expected_ = static_cast<HRESULT>(*code);
            } else {
                Fail(L"no result code: " + step.arguments[0]);
            }
        } else {
            RunStep(step);
            Settle();
        }
        if (failed_) break;
    }
    if (!answers_.empty() && !failed_) Fail(L"a dialog that was expected did not come");
    log_.Line(failed_ ? L"script failed" : L"script passed");
    return stay_ && !failed_ ? End::kStay : End::kQuit;
}

}  // namespace demovex::host
