#!/usr/bin/env bash
# A person's work with basket files in the host's process, through the system's file dialogs: save as,
# new, open, save again, recent files, sending, exit; and what refusals must not break.
. "$(dirname "$0")/lib.sh"
locale=${DEMOVEX_LOCALE:-de_AT}
begin "files_$locale" "$1"
ok "regsvr32" timeout 60 wine regsvr32 /s "$win\\DemoVexClient.dll"

# the menu's numbers
new=101 open=102 save=103 save_as=104 recent1=116 recent2=117 quit=121 send_to1=605 send_to_other=609
yes=6 no=7 cancel=2 ok=1

case $locale in de_*) d=, ;; *) d=. ;; esac
position='http://www.vexmart.example/vex/katalog.html?artno='
# NAME: the bytes of a basket file's parts
part() {
  case $1 in
    header) printf 'DemoVexClient.Client\r\n' ;;
    4711) printf '4711\tSchlosserhammer 300 g Esche\t1\t159%s00\t11%s55\tWerkzeug\t%s4711\t159%s00\t11%s55\r\n' \
      "$d" "$d" "$position" "$d" "$d" ;;
    4712) printf '4712\tSchlosserhammer 500 g Esche\t1\t189%s00\t13%s74\tWerkzeug\t%s4712\t189%s00\t13%s74\r\n' \
      "$d" "$d" "$position" "$d" "$d" ;;
  esac
}
# FILE PART...: the file consists of these parts, byte for byte
is() {
  local file=$1 p
  shift
  for p in "$@"; do part "$p"; done > "$here/soll.bsk"
  ok "$file is $*" cmp "$here/$file" "$here/soll.bsk"
}
# the names of the recent files as stored
recent() {
  rm -f "$here/recent.reg"
  timeout 60 wine reg export 'HKCU\Software\VB and VBA Program Settings\DemoVexClient\LRU' \
    "$win\\recent.reg" /y > /dev/null 2>&1 8>&- < /dev/null
  iconv -f UTF-16 -t UTF-8 "$here/recent.reg" | tr -d '\r' | sort |
    sed -n 's/^"File[1-4]"=.*\\\([^\]*\)"$/\1/p' | tr '\n' ' '
}
# STEP...: a script of the host that must fail
host_fails() {
  not_ok "host $*" timeout -k 5 100 wine "$here/$host_exe" /log "$win\\host.log" "$@"
}

# ordered, saved under a name of the component's folder, emptied, opened again, appended to and saved
host /basket /follow 4711 /caption "Vexmart Demo Warenkorb 1.1" \
  /file-dialog "für März.bsk" /command $save_as /caption "Vexmart Demo Warenkorb 1.1 - für März.bsk" \
  /command $new /caption "Vexmart Demo Warenkorb 1.1" /dump-basket "$win\\leer.txt" \
  /file-dialog "$win\\für März.bsk" /command $open \
  /caption "Vexmart Demo Warenkorb 1.1 - für März.bsk" /dump-basket "$win\\offen.txt" /quit
is "für März.bsk" header 4711
same "an emptied basket" "$(grep -c 4711 "$here/leer.txt")" 0
same "the basket opened again" "$(cut -f 1,3 "$here/offen.txt" | tr -d '\r' | tr '\n' ' ')" \
  $'ArtNr\tMenge 4711\t1 Gesamt\t '
host /basket /file-dialog "für März.bsk" /command $open /follow 4712 /command $save /close \
  /windows 0 /quit
is "für März.bsk" header 4711 4712

# an existing file is replaced only when the question is answered with yes
part header > "$here/da.bsk"
host /basket /follow 4712 /file-dialog "da.bsk" /answer $no /file-dialog "neu.bsk" /command $save_as \
  /caption "Vexmart Demo Warenkorb 1.1 - neu.bsk" \
  /file-dialog "da.bsk" /answer $no /cancel-dialog /command $save_as \
  /caption "Vexmart Demo Warenkorb 1.1 - neu.bsk" /close /quit
is da.bsk header
is neu.bsk header 4712
host /basket /follow 4711 /file-dialog "da.bsk" /answer $yes /command $save_as /close /quit
is da.bsk header 4711
same "the recent files" "$(recent)" "da.bsk neu.bsk für März.bsk "

# a recent file by its entry, for opening and for sending: the first row is sent
host /basket /command $recent2 /caption "Vexmart Demo Warenkorb 1.1 - neu.bsk" \
  /dump-basket "$win\\vor.txt" /command $send_to1 /file-dialog "ziel.bsk" /command $send_to_other \
  /file-dialog "ziel.bsk" /answer $yes /command $send_to_other \
  /cancel-dialog /command $send_to_other /dump-basket "$win\\nach.txt" /close /windows 0 /quit
ok "the sending basket" cmp "$here/vor.txt" "$here/nach.txt"
is da.bsk header 4711 4712
is neu.bsk header 4712
is ziel.bsk 4712 4712
same "the recent files after sending" "$(recent | cut -d ' ' -f 1-3)" "ziel.bsk neu.bsk da.bsk"

# changes: cancelled, thrown away, saved through the dialog of a basket without a name
host /basket /follow 4711 /answer $cancel /command $open /answer $yes /cancel-dialog /command $open \
  /caption "Vexmart Demo Warenkorb 1.1" /answer $no /cancel-dialog /command $open \
  /answer $yes /cancel-dialog /command $quit /windows 1 \
  /answer $yes /file-dialog "letzter.bsk" /command $quit /windows 0 /quit
is letzter.bsk header 4711

# a target that is read-only, and a recent file that is gone
chmod 444 "$here/neu.bsk" "$here/ziel.bsk"
host /basket /file-dialog "neu.bsk" /command $open /follow 4711 /answer $ok /command $save \
  /caption "Vexmart Demo Warenkorb 1.1 - neu.bsk" /answer $yes /answer $ok /close /windows 1 \
  /answer $no /close /windows 0 /quit
contains "the failed save" "$(cat "$here/host.log")" \
  "box \"Vexmart Demo Warenkorb 1.1 - neu.bsk\": Datei '$win\\neu.bsk' kann nicht gespeichert werden: Path/File access error"
is neu.bsk header 4712
rm -f "$here/letzter.bsk"
host /basket /answer $ok /command $recent2 /caption "Vexmart Demo Warenkorb 1.1" \
  /file-dialog "ziel.bsk" /answer $yes /answer $ok /command $send_to_other /close /quit
contains "the file that is gone" "$(cat "$here/host.log")" \
  "letzter.bsk' kann nicht geöffnet werden: File '$win\\letzter.bsk' not found"
contains "the failed sending" "$(cat "$here/host.log")" \
  "Kann Bestelldaten nicht an '$win\\ziel.bsk' senden: Path/File access error"
is ziel.bsk 4712 4712
chmod 644 "$here/neu.bsk" "$here/ziel.bsk"

# a script whose dialog does not come, or comes unexpected, or is of another kind, fails and ends
host_fails /basket /file-dialog "neu.bsk" /close /quit
contains "no dialog came" "$(cat "$here/host.log")" "a dialog that was expected did not come"
host_fails /basket /command $open /close /quit
contains "an unexpected dialog" "$(cat "$here/host.log")" "nobody expected this"
host_fails /basket /follow 4711 /file-dialog "da.bsk" /close /quit
contains "another kind" "$(cat "$here/host.log")" "a file dialog was expected"
host_fails /basket /follow 4711 /file-dialog "da.bsk" /command $save_as /quit
contains "a question nobody expected" "$(cat "$here/host.log")" "nobody expected this"
is da.bsk header 4711 4712
finish
