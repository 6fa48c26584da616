// The keys of the cell editor's text box, as a table.
#pragma once

#include "basket/cell_editor.h"

namespace demovex {

// Key codes of the platform that the editor knows.
namespace key_code {
inline constexpr int kReturn = 13;
inline constexpr int kEscape = 27;
inline constexpr int kPageUp = 33;
inline constexpr int kPageDown = 34;
inline constexpr int kLeft = 37;
inline constexpr int kUp = 38;
inline constexpr int kRight = 39;
inline constexpr int kDown = 40;
inline constexpr int kF2 = 113;
inline constexpr int kF4 = 115;
}  // namespace key_code

struct EditorKeyRow {
    int shift;  // the exact shift state: 0 none, 1 Shift, 2 Ctrl, 4 Alt
    int key;
    bool (*applies)(CellEditor& editor);
    void (*act)(CellEditor& editor);
};

// The first row whose shift state and key are these and whose condition holds; null when the key
// belongs to the text box.
const EditorKeyRow* FindEditorKey(CellEditor& editor, int key, int shift);

}  // namespace demovex
