// The keys of the cell editor's text box, as a table.
#pragma once

#include "basket/commands/keys.h"
#include "basket/edit/cell_editor.h"

namespace demovex {

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
