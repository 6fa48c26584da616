// Runs the steps of a script against the host's window and its plug-ins, and writes down what came
// of each.
#pragma once

#include <windows.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "host/frame_win.h"
#include "host/script.h"

namespace demovex::host {

// A log of lines in UTF-8: standard output where there is one, and a file when asked.
class Log {
  public:
    Log();
    ~Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
    bool AlsoTo(const std::wstring& path);
    void Line(const std::wstring& text);

  private:
    HANDLE output_;
    HANDLE file_ = INVALID_HANDLE_VALUE;
};

class ScriptRunner {
  public:
    ScriptRunner(Frame& frame, Log& log);
    ~ScriptRunner();
    ScriptRunner(const ScriptRunner&) = delete;
    ScriptRunner& operator=(const ScriptRunner&) = delete;

    enum class End { kQuit, kStay };
    // Runs all steps; the first one that fails ends the script.
    End Run(const std::vector<Step>& steps);
    // 0 when every step did what it should.
    int ExitCode() const { return failed_ ? 1 : 0; }

  private:
    static LRESULT CALLBACK WatchProcedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept;
    static BOOL CALLBACK AnswerBox(HWND window, LPARAM self) noexcept;

    // What the script has for the next dialog.
    struct Awaited {
        bool file_dialog;
        int button;
        std::wstring name;  // of the file to choose
    };

    void RunStep(const Step& step);
    // Gives a dialog that takes input what the script has for it.
    void AnswerDialog(HWND dialog);
    // The same for steps about the basket's window and what can be seen of it.
    bool RunWindowStep(const Step& step);
    void Check(const Step& step, const Outcome& outcome);
    void CheckEqual(const Step& step, const std::wstring& is, const std::wstring& should);
    void Fail(const std::wstring& why);
    void DumpBasket(const std::wstring& path);
    void SavePictureOf(const std::wstring& name, const std::wstring& path);
    void CloseCurrent();
    // Shows an article and sends it real input: a click on its link, or the Enter key.
    void SendInputTo(const std::wstring& number, bool click);
    void PressKeys(const std::wstring& keys);
    // Handles messages until none has come for a moment.
    void Settle();

    Frame& frame_;
    Log& log_;
    HWND watch_ = nullptr;
    std::deque<Awaited> answers_;
    HWND answered_ = nullptr;     // the box that has its answer already
    HWND file_dialog_ = nullptr;  // the file dialog that has it
    std::optional<HRESULT> expected_;
    bool failed_ = false;
    bool stay_ = false;
};

}  // namespace demovex::host
