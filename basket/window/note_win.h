// The note "DemoVexClient.Note" at the right end of the status bar: a window of its own over the
// bar, as wide as its text and no wider. What it says when is decided by Note.
//
// It is a live region for assistive programs: a static text whose name is what it says, announced
// whenever something is said, also while there is no status bar to show it on. Without text or bar
// it has no extent; it is never hidden, because hidden windows are not listened to.
#pragma once

#include <string_view>

#include "basket/window/handles_win.h"
#include "basket/window/note.h"

namespace demovex {

class WindowNote {
  public:
    static void RegisterWindowClass(HINSTANCE module);
    static void UnregisterWindowClass(HINSTANCE module) noexcept;

    // Creates the note without extent. To lie above the status bar it is made before it. `font`
    // is observed. Raises 7.
    WindowNote(HWND parent, HINSTANCE module, const Scale& scale, HFONT font);
    ~WindowNote();
    WindowNote(const WindowNote&) = delete;
    WindowNote& operator=(const WindowNote&) = delete;

    // Another screen, with a font of that screen (observed).
    void SetScale(const Scale& scale, HFONT font);

    // An empty text takes back what was said.
    void Say(std::wstring_view text);

    // Where the status bar shows its text, in the parent's client area; empty where the note has no
    // room.
    void SetBar(const RECT& bar);

    HWND Handle() const noexcept { return window_; }

  private:
    static LRESULT CALLBACK Procedure(HWND, UINT, WPARAM, LPARAM) noexcept;
    void Show();
    void Place();
    void Announce();
    void Paint();
    void OnTimer();
    int Room() const noexcept { return scale_.ToPixels(60); }

    HWND window_ = nullptr;
    Scale scale_;
    HFONT font_;
    Note note_;
    RECT bar_{};
    bool live_ = false;  // assistive programs know that it is a live region
};

}  // namespace demovex
