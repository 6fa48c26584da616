#!/usr/bin/env bash
# Each shortcut of the basket window, pressed for real in the host's process, whose message loop knows
# nothing of them.
. "$(dirname "$0")/lib.sh"
begin keys "$1"
ok "regsvr32" timeout 60 wine regsvr32 /s "$win\\DemoVexClient.dll"

# FILE: numbers, descriptions and quantities of a dumped basket
rows() { cut -f 1-3 "$here/$1" | tr -d '\r' | sed '1d;$d' | tr '\t\n' ',;'; }

# catalogue: Ctrl+G, and the context menu from the keyboard, whose first item is the same
host /basket /follow 4711 /show 1101 /keys "Ctrl+G" /position 4711 \
  /show 1101 /keys "Shift+F10 Down Enter" /position 4711 \
  /show 1101 /keys "Apps Down Enter" /position 4711 /answer 7 /close /quit

# rows: append, insert above, move up and down, delete; none of them types a character (a copied line
# writes nothing for an empty first cell)
host /basket /follow 4711 /keys "Ctrl+N A B C" /dump-basket "$win\\n.txt" \
  /keys "Ctrl+E D E F" /dump-basket "$win\\e.txt" \
  /keys "Ctrl+U" /dump-basket "$win\\u.txt" /keys "Ctrl+D" /dump-basket "$win\\d.txt" \
  /keys "Ctrl+L" /dump-basket "$win\\l.txt" /answer 7 /close /quit
article='4711,Schlosserhammer 300 g Esche,1'
same "Ctrl+N appends" "$(rows n.txt)" "$article;abc,,;"
same "Ctrl+E inserts above" "$(rows e.txt)" "$article;def,,;abc,,;"
same "Ctrl+U moves up" "$(rows u.txt)" "def,,;$article;abc,,;"
same "Ctrl+D moves down" "$(rows d.txt)" "$article;def,,;abc,,;"
same "Ctrl+L deletes" "$(rows l.txt)" "$article;abc,,;"

# Tab goes from cell to cell and back, and what closes the editor leaves a cell that takes the next key
host /basket /follow 4711 /keys "Ctrl+N A B C Shift+Tab 4 7 1 2 Tab 5 Tab Shift+Tab 2 Enter" \
  /dump-basket "$win\\tab.txt" /file-dialog tab.bsk /keys "Ctrl+S" /keys "7 Enter" \
  /dump-basket "$win\\typed.txt" /answer 7 /close /quit
same "Tab and Shift+Tab" "$(rows tab.txt)" \
  "4711,Schlosserhammer 300 g Esche,2;4712,Schlosserhammer 500 g Esche,5;"
same "a digit after Ctrl+S" "$(rows typed.txt)" \
  "4711,Schlosserhammer 300 g Esche,7;4712,Schlosserhammer 500 g Esche,5;"

# files and the printer that is not there
host /basket /follow 4711 /file-dialog tasten.bsk /keys "Ctrl+S" \
  /caption "Vexmart Demo Warenkorb 1.1 - tasten.bsk" /follow 4712 /keys "Ctrl+S" \
  /file-dialog tasten.bsk /keys "Ctrl+O" /answer 1 /keys "Ctrl+P" \
  /dump-basket "$win\\o.txt" /close /windows 0 /quit
same "Ctrl+S and Ctrl+O" "$(rows o.txt)" "$article;4712,Schlosserhammer 500 g Esche,1;"
same "the file that Ctrl+S saved" "$(wc -l < "$here/tasten.bsk" | tr -d ' ')" 3

not_ok "unknown keys" timeout -k 5 60 wine "$here/$host_exe" /basket /keys "Strg+N" /quit
finish
