#include "platform/clipboard_win.h"

#include <cstring>
#include <memory>

#include "base/error.h"

namespace demovex {
namespace {

constexpr DWORD kPause = 10;

struct GlobalFreer {
    void operator()(void* memory) const noexcept { GlobalFree(memory); }
};

struct WindowDestroyer {
    using pointer = HWND;
    void operator()(HWND window) const noexcept { DestroyWindow(window); }
};
using UniqueWindow = std::unique_ptr<HWND, WindowDestroyer>;

// Holds the clipboard open.
class OpenedClipboard {
  public:
    explicit OpenedClipboard(HWND owner) {
        const ULONGLONG begin = GetTickCount64();
        while (!OpenClipboard(owner)) {
            if (GetTickCount64() - begin >= WinClipboard::kPatience) {
                RaiseRuntimeError(runtime_error::kCantOpenClipboard);
            }
            Sleep(kPause);
        }
    }
    ~OpenedClipboard() { CloseClipboard(); }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
};

}  // namespace

void WinClipboard::SetText(std::wstring_view text) {
    // the memory first, so that nothing has been emptied when there is none
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    std::unique_ptr<void, GlobalFreer> memory(GlobalAlloc(GMEM_MOVEABLE, bytes));
    void* place = memory ? GlobalLock(memory.get()) : nullptr;
    if (place == nullptr) RaiseRuntimeError(runtime_error::kOutOfMemory);
    std::memcpy(place, text.data(), bytes - sizeof(wchar_t));
    static_cast<wchar_t*>(place)[text.size()] = L'\0';
    GlobalUnlock(memory.get());

    // Emptying a clipboard that was opened for no window would leave it without an owner, and then
    // nothing can be put on it.
    HWND owner = CurrentOwner(owner_);
    const UniqueWindow stand_in(owner != nullptr
                                    ? nullptr
                                    : CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0,
                                                      HWND_MESSAGE, nullptr, nullptr, nullptr));
    if (owner == nullptr) owner = stand_in.get();
    const OpenedClipboard opened(owner);
    if (!EmptyClipboard() || SetClipboardData(CF_UNICODETEXT, memory.get()) == nullptr) {
        RaiseRuntimeError(runtime_error::kCantOpenClipboard);
    }
    static_cast<void>(memory.release());  // it is the system's now
}

}  // namespace demovex
