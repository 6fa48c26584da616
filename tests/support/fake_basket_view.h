// A basket window without a window: it keeps what the form tells it, behaves like the platform's
// text box where the form relies on that (selection, maximum length for typed and pasted text, a
// change event for a real change), and lets a test play the user.
//
//   FakeBasketView view;
//   TestLibForm form(grid, view, services);
//   view.form = &form;
//   view.send_to_grid = [&](GridKey key) { grid.Key(key, false, false); };
//   view.Type(L"4711");
//   view.Press(FakeBasketView::kDown);  // IPText_KeyDown, then the text box's own handling
//   view.PumpKeys();                    // what was queued for the grid arrives there
#pragma once

#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "basket/test_lib_form.h"
#include "basket/view.h"

namespace demovex {

class FakeBasketView final : public IBasketView, public IEditorView {
  public:
    // Key codes of the platform.
    enum Key : int {
        kBack = 8,
        kTab = 9,
        kReturn = 13,
        kEscape = 27,
        kPageUp = 33,
        kPageDown = 34,
        kEnd = 35,
        kHome = 36,
        kLeft = 37,
        kUp = 38,
        kRight = 39,
        kDown = 40,
        kDelete = 46,
        kF2 = 113,
        kF4 = 115,
    };

    TestLibForm* form = nullptr;                // receives the events; may be null
    std::function<void(GridKey)> send_to_grid;  // where PumpKeys delivers
    // where ShowGridCell scrolls
    std::function<void(std::int32_t row, std::int32_t col)> show_grid_cell;

    // --- the window as it stands
    TwipsRect grid_rect{0, 360, 9600, 6000};
    Twips inner_width = 9600;
    Twips inner_height = 6660;
    Twips status_height = 300;
    bool minimised = false;
    std::wstring caption;
    std::wstring status;
    std::wstring note;                // what it says now; empty for nothing
    std::vector<std::wstring> notes;  // all that it ever said
    bool toolbar_visible = true;
    bool statusbar_visible = true;
    int toolbars_built = 0;
    std::map<Command, MenuItemState> menu_states;
    std::map<Command, std::wstring> menu_captions;
    std::vector<TwipsPoint> popups;
    std::deque<GridKey> grid_keys;   // queued, not yet delivered
    std::vector<EditKey> edit_keys;  // every one ever sent
    std::vector<double> progress;    // every fraction since the last BeginProgress
    int progress_depth = 0;
    int cancel_after = -1;  // Escape is pressed after so many questions; below 0 never
    int cancel_asked = 0;
    int paints = 0;  // calls of KeepPainted
    int about_boxes = 0;
    int close_requests = 0;
    Twips twips_per_character = 100;  // MeasureGridText: bold is a tenth wider

    // --- the editor as it stands
    TwipsRect background_rect;
    bool background_visible = false;
    bool background_held = false;
    bool on_screen = false;  // a held background stays there, though hidden
    int screen_changes = 0;  // how often it came or went there
    TwipsRect text_rect;
    bool text_visible = false;
    std::wstring text;
    std::wstring undo;  // what Undo brings back; a text box remembers one step
    std::int32_t max_length = 0;
    std::int32_t sel_start = 0;
    std::int32_t sel_length = 0;
    Twips button_width = 255;
    TwipsRect button_rect;
    bool button_visible = false;
    bool button_pressed = false;
    int button_draws = 0;
    Twips list_height = 600;
    TwipsPoint list_at;
    bool list_visible = false;
    std::vector<std::wstring> list_entries;
    std::int32_t list_index = -1;
    bool timer_enabled = false;
    enum class FocusPlace { kGrid, kText, kList, kElsewhere } focus = FocusPlace::kGrid;

    // --- the user
    // A key in the text box. Answers whether the form left it to the text box.
    bool Press(int key, int shift = 0) {
        int code = key;
        if (form != nullptr) form->IPText_KeyDown(code, shift);
        if (code == 0) return false;
        const auto length = static_cast<std::int32_t>(text.size());
        switch (code) {
            case kLeft:
                Caret(std::max(0, sel_length > 0 ? sel_start : sel_start - 1));
                break;
            case kRight:
                Caret(std::min(length, sel_length > 0 ? sel_start + sel_length : sel_start + 1));
                break;
            case kHome:
                Caret(0);
                break;
            case kEnd:
                Caret(length);
                break;
            case kBack:
                Erase();
                break;
            case kDelete:
                if (sel_length == 0 && sel_start < length) sel_length = 1;
                if (sel_length > 0) Replace(L"");
                break;
            default:
                break;
        }
        return true;
    }
    // Characters typed one by one; a character that a handler swallows is not entered.
    void Type(std::wstring_view characters) {
        for (const wchar_t character : characters) {
            int code = character;  // the key's code does not matter for a character key
            if (code >= L'a' && code <= L'z') code -= L'a' - L'A';
            if (code < L'0' || code > L'Z') code = 190;
            if (form != nullptr) form->IPText_KeyDown(code, 0);
            int ascii = character;
            if (form != nullptr) form->IPText_KeyPress(ascii);
            if (ascii == kBack) {
                Erase();
            } else if (ascii != 0) {
                Replace(std::wstring(1, static_cast<wchar_t>(ascii)));
            }
        }
    }
    // Text pasted over the selection, cut to the maximum length like the text box does.
    void Paste(std::wstring_view pasted) { Replace(pasted); }
    // Ctrl+Z in the text box.
    void Undo() {
        if (undo.empty()) return;
        const std::wstring back = std::exchange(undo, text);
        text = back;
        if (form != nullptr) form->IPText_Change();
    }
    // The timer's tick, when it is enabled.
    void Tick() {
        if (timer_enabled && form != nullptr) form->SetFocusTimer_Timer();
    }
    // Delivers the queued keys to the grid, including those queued meanwhile.
    void PumpKeys() {
        while (!grid_keys.empty()) {
            const GridKey key = grid_keys.front();
            grid_keys.pop_front();
            if (send_to_grid) send_to_grid(key);
        }
    }
    bool EditorOpen() const { return background_visible; }
    bool Checked(Command item) const {
        const auto state = menu_states.find(item);
        return state != menu_states.end() && state->second.checked;
    }

    // --- IEditorView
    void Open(const Cell& cell) override {
        Realign(cell);
        max_length = cell.max_length;
        SetText(cell.text);
        undo.clear();
        text_visible = true;
        button_visible = cell.offers_list;
        if (button_visible) DrawButton(false);
        background_visible = true;
        PutOnScreen(true);
        Select(0, static_cast<std::int32_t>(text.size()));
        timer_enabled = true;
    }
    void Hold(bool hold) override {
        background_held = hold;
        if (!hold && !background_visible) PutOnScreen(false);
    }
    void Realign(const Cell& cell) override {
        const EditorLayout layout = LayOutEditor(cell.rect, cell.offers_list ? button_width : 0);
        background_rect = cell.rect;
        text_rect = layout.text;
        if (cell.offers_list) button_rect = layout.button;
    }
    void Close() override {
        timer_enabled = false;
        background_visible = false;
        if (!background_held) PutOnScreen(false);
    }
    bool IsOpen() const override { return background_visible; }
    std::wstring Text() const override { return text; }
    void SetText(std::wstring_view new_text) override {
        if (text == new_text) return;
        // a text box holds a text up to its first NUL, and tells of a change whenever it is set
        text = new_text.substr(0, new_text.find(L'\0'));
        sel_start = 0;
        sel_length = 0;
        if (form != nullptr) form->IPText_Change();
    }
    Range Selection() const override { return {sel_start, sel_length}; }
    void Select(std::int32_t start, std::int32_t length) override {
        const auto size = static_cast<std::int32_t>(text.size());
        sel_start = std::clamp(start, 0, size);
        sel_length = std::clamp(length, 0, size - sel_start);
    }
    void Focus() override { focus = FocusPlace::kText; }
    void StopSetFocusTimer() override { timer_enabled = false; }
    void TakeKey(int key_code) override { Press(key_code); }
    void TakeCharacter(wchar_t character) override { Type(std::wstring(1, character)); }
    bool OffersList() const override { return button_visible && background_visible; }
    Twips ListHeight() const override { return list_height; }
    std::vector<std::wstring> ListEntries() const override { return list_entries; }
    void OpenList(const TwipsPoint& at, std::int32_t selected) override {
        list_at = at;
        list_index = selected;
        list_visible = true;
        focus = FocusPlace::kList;
        DrawButton(true);
        timer_enabled = true;
    }
    void CloseList() override {
        list_visible = false;
        DrawButton(false);
    }
    bool ListIsOpen() const override { return list_visible; }
    std::int32_t ListIndex() const override { return list_index; }
    void SetListIndex(std::int32_t index) override { list_index = index; }
    bool ListHasFocus() const override { return focus == FocusPlace::kList; }

    // --- IBasketView
    IEditorView& Editor() override { return *this; }
    void SendGridKey(GridKey key) override { grid_keys.push_back(key); }
    void SendEditKey(EditKey key) override { edit_keys.push_back(key); }
    TwipsPoint GridOrigin() const override { return {grid_rect.left, grid_rect.top}; }
    void ShowGridCell(std::int32_t row, std::int32_t col) override {
        if (show_grid_cell) show_grid_cell(row, col);
    }
    void MoveGrid(const TwipsRect& rect) override { grid_rect = rect; }
    Twips InnerWidth() const override { return inner_width; }
    Twips InnerHeight() const override { return inner_height; }
    bool Minimised() const override { return minimised; }
    void SetCaption(std::wstring_view new_caption) override { caption = new_caption; }
    void SetStatusText(std::wstring_view new_text) override { status = new_text; }
    std::wstring StatusText() const override { return status; }
    void ShowNote(std::wstring_view new_text) override {
        note = new_text;
        if (!note.empty()) notes.push_back(note);
    }
    Twips StatusbarHeight() const override { return status_height; }
    void SetToolbarVisible(bool visible) override { toolbar_visible = visible; }
    void SetStatusbarVisible(bool visible) override { statusbar_visible = visible; }
    void SetMenuState(Command item, const MenuItemState& state) override {
        menu_states[item] = state;
    }
    void SetMenuCaption(Command item, std::wstring_view new_caption) override {
        menu_captions[item] = new_caption;
    }
    void BuildToolbar() override { ++toolbars_built; }
    void PopupContextMenu(const TwipsPoint& at) override { popups.push_back(at); }
    Twips MeasureGridText(std::wstring_view measured, bool bold) override {
        const auto width = static_cast<Twips>(measured.size()) * twips_per_character;
        return bold ? width + width / 10 : width;
    }
    void BeginProgress(std::wstring_view) override {
        ++progress_depth;
        progress.clear();
    }
    void SetProgress(double fraction) override { progress.push_back(fraction); }
    void EndProgress() override { --progress_depth; }
    bool Cancelled() override { return cancel_after >= 0 && cancel_asked++ >= cancel_after; }
    void KeepPainted() override { ++paints; }
    void ShowAboutBox() override { ++about_boxes; }
    void RequestClose() override { ++close_requests; }

  private:
    void PutOnScreen(bool visible) {
        if (visible != on_screen) ++screen_changes;
        on_screen = visible;
        if (!visible && focus == FocusPlace::kText) focus = FocusPlace::kGrid;
    }
    void DrawButton(bool pressed) {
        button_pressed = pressed;
        ++button_draws;
    }
    void Erase() {
        if (sel_length == 0 && sel_start > 0) {
            --sel_start;
            sel_length = 1;
        }
        if (sel_length > 0) Replace(L"");
    }
    void Caret(std::int32_t position) {
        sel_start = position;
        sel_length = 0;
    }
    void Replace(std::wstring_view with) {
        std::wstring changed = text;
        std::size_t room = with.size();
        if (max_length > 0) {
            const std::size_t kept = text.size() - static_cast<std::size_t>(sel_length);
            const auto limit = static_cast<std::size_t>(max_length);
            room = std::min(room, limit > kept ? limit - kept : 0);
        }
        changed.replace(static_cast<std::size_t>(sel_start), static_cast<std::size_t>(sel_length),
                        with.substr(0, room));
        const bool different = changed != text;
        if (different) undo = text;
        text = changed;
        sel_start += static_cast<std::int32_t>(room);
        sel_length = 0;
        if (different && form != nullptr) form->IPText_Change();
    }
};

}  // namespace demovex
