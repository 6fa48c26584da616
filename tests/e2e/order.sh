#!/usr/bin/env bash
# A person's order in the user's locale: links, merged quantities, totals, saving, opening, several
# baskets, closing; and what a bad link or host must not break.
. "$(dirname "$0")/lib.sh"
locale=${DEMOVEX_LOCALE:-de_AT}
begin "order_$locale" "$1"
ok "regsvr32" timeout 60 wine regsvr32 /s "$win\\DemoVexClient.dll"

case $locale in de_*) d=, ;; *) d=. ;; esac
position='http://www.vexmart.example/vex/katalog.html?artno='
head=$'ArtNr\tBezeichnung\tMenge\tPreis ATS\tPreis EURO\tGesamt ATS\tGes. EURO'

# three links, two of them for one article: 2 x 159 + 189 schillings, 2 x 11.55 + 13.74 euros
printf 'DemoVexClient.Client\r\n' > "$here/korb.bsk"
host /basket /caption "Vexmart Demo Warenkorb 1.1" /open "$win\\korb.bsk" \
  /follow 4711 /follow 4711 /follow 4712 /position 4712 /references 2 \
  /dump-basket "$win\\korb.txt" /command 103 /close /windows 0 /clients 0 /quit
same "the basket" "$(tr -d '\r' < "$here/korb.txt")" "$head
4711	Schlosserhammer 300 g Esche	2	159${d}00	11${d}55	318${d}00	23${d}10
4712	Schlosserhammer 500 g Esche	1	189${d}00	13${d}74	189${d}00	13${d}74
Gesamt				507${d}00	36${d}84"
printf 'DemoVexClient.Client\r\n4711\tSchlosserhammer 300 g Esche\t2\t159%s00\t11%s55\tWerkzeug\t%s4711\t318%s00\t23%s10\r\n4712\tSchlosserhammer 500 g Esche\t1\t189%s00\t13%s74\tWerkzeug\t%s4712\t189%s00\t13%s74\r\n' \
  "$d" "$d" "$position" "$d" "$d" "$d" "$d" "$position" "$d" "$d" > "$here/soll.bsk"
ok "the saved file, byte for byte" cmp "$here/korb.bsk" "$here/soll.bsk"

# the saved basket comes back the same, and is not modified
host /basket /open "$win\\korb.bsk" /dump-basket "$win\\wieder.txt" /close /windows 0 /quit
ok "the basket loaded again" cmp "$here/korb.txt" "$here/wieder.txt"

# a person's hand: the first click opens a basket; Enter orders too; the basket shows where an article
# stands in the catalogue
host /click 4711 /click 4712 /enter 4712 /windows 1 /clients 1 /dump-basket "$win\\hand.txt" \
  /show 1101 /position 1101 /command 301 /position 4712 /answer 7 /close /quit
same "the basket made by hand" "$(cut -f 1,3 "$here/hand.txt" | tr -d '\r' | tr '\n' ' ')" \
  $'ArtNr\tMenge 4711\t1 4712\t2 Gesamt\t '

# a changed basket asks; cancel keeps it, no throws it away
host /basket /follow 4711 /answer 2 /close /windows 1 /clients 1 /answer 7 /close /windows 0 \
  /clients 0 /unload 0 /quit
contains "the question" "$(cat "$here/host.log")" \
  "Möchten Sie die Änderungen im aktuellen Warenkorb speichern ?"

# two clients at once; a window that its host has forgotten stays open and usable
host /basket /follow 4711 /basket /follow 4712 /windows 2 /clients 2 /dump-basket "$win\\zwei.txt" \
  /client 1 /dump-basket "$win\\eins.txt" /release /clients 1 /windows 2 /unload 1 \
  /answer 7 /close /windows 1 /quit
contains "the first basket" "$(cat "$here/eins.txt")" "4711"
contains "the second basket" "$(cat "$here/zwei.txt")" "4712"
same "they are apart" "$(grep -c 4711 "$here/zwei.txt")" 0

# before Initialize, and with a parent that is none
host /create /expect 0x800A005B /caption x /expect 0x800A005B /open "$win\\korb.bsk" \
  /expect 0x800A000D /initialize null /expect 0x800A000D /initialize foreign /windows 0 \
  /references 1 /initialize host /windows 1 /references 2 /follow 4711 \
  /initialize host /windows 2 /references 3 /quit

# links that are none, unknown numbers, very long ones, null strings: the host goes on
host /basket /follow-link "http://www.other.example/vex/basket.html?prodno=4711" /follow-null \
  /follow-link "HTTP://WWW.VEXMART.EXAMPLE/VEX/BASKET.HTML?PRODNO=4711" \
  /expect 0x800A000D /follow 99999 /expect 0x800A000D /follow-long 100000 /windows 1 \
  /references 2 /answer 7 /close /windows 0 /quit
contains "the error says what happened" "$(cat "$here/host.log")" \
  "follow 99999: 0x800A000D DemoVexClient: Type mismatch"

# a component without its article master reports it, leaves nothing, and works later
mv "$here/artikel.db" "$here/weg.db"
host /create /expect 0xFFFFFFFF /initialize host /windows 0 /references 1 /quit
contains "the error names the file" "$(cat "$here/host.log")" \
  "Artikelstamm::OpenFile: Artikelstamm ($win\\artikel.db) kann nicht geladen werden: Datei nicht gefunden"
mv "$here/weg.db" "$here/artikel.db"

# printing where no printer is installed says so and changes nothing
host /basket /follow 4711 /dump-basket "$win\\vor.txt" /answer 1 /command 108 \
  /dump-basket "$win\\nach.txt" /answer 7 /close /quit
contains "no printer" "$(cat "$here/host.log")" \
  "Der Warenkorb kann nicht gedruckt werden da kein Drucker installiert ist."
ok "the basket after printing" cmp "$here/vor.txt" "$here/nach.txt"

# the view settings in the real registry: shown by default, only the exact text "True" counts,
# switching is kept when the window closes
settings='HKCU\Software\VB and VBA Program Settings\DemoVexClient\View'
setting() {
  timeout 60 wine reg query "$settings" /v "$1" 2> /dev/null 8>&- < /dev/null | tr -d '\r' |
    awk '$2 == "REG_SZ" { print $3 }'
}
timeout 60 wine reg delete "$settings" /f > /dev/null 2>&1 8>&- < /dev/null
host /basket /close /quit
same "the toolbar by default" "$(setting Toolbarvisible)" True
same "the status bar by default" "$(setting Statusbarvisible)" True
ok "reg add" timeout 60 wine reg add "$settings" /v Toolbarvisible /d true /f
host /basket /close /quit
same "a toolbar set to a lower-case text is hidden" "$(setting Toolbarvisible)" False
host /basket /command 308 /command 309 /close /quit
same "the toolbar switched on" "$(setting Toolbarvisible)" True
same "the status bar switched off" "$(setting Statusbarvisible)" False

# what reaches the system's player: once for each order that was taken, nothing for any other link
WINEDEBUG=trace+winmm timeout -k 5 100 wine "$here/$host_exe" /basket /follow 4711 /follow 4711 /follow 4712 \
  /follow-link "http://www.vexmart.example/vex/katalog.html?artno=4711" /follow-null \
  /expect 0x800A000D /follow 99999 /answer 7 /close /quit \
  > "$here/player.log" 2>&1 8>&- < /dev/null
same "the host that ordered three times" $? 0
same "calls of the player" "$(grep -ac 'MULTIMEDIA_PlaySound pszSound=' "$here/player.log")" 3
same "all in the background, from a file name" \
  "$(grep -a 'MULTIMEDIA_PlaySound pszSound=' "$here/player.log" | grep -aoE 'fdwSound=[0-9A-F]+' | sort -u)" \
  "fdwSound=00000001"

# without its sound
rm -f "$here/Order.wav"
host /basket /follow 4711 /answer 7 /close /quit
finish
