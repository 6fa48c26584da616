#!/usr/bin/env bash
# Addresses that a basket file brings along: the host shows what is not its own catalogue only after
# asking, and what is no page of the web not at all.
. "$(dirname "$0")/lib.sh"
begin foreign_pages "$1"
ok "regsvr32" timeout 60 wine regsvr32 /s "$win\\DemoVexClient.dll"

show=301 # the command that shows the current line's position
yes=6 no=7
# ADDRESS: a basket that somebody has sent
sent() { printf 'DemoVexClient.Client\r\n4711\t\t1\t\t\tK\t%s\r\n' "$1" > "$here/mail.bsk"; }

page=http://www.other.example/page?a=1
sent "$page"
host /basket /open "$win\\mail.bsk" /answer $no /command $show /page "" \
  /answer $yes /command $show /page "$page" /close /quit
contains "the question names the page" "$(cat "$here/host.log")" "$page"

# an address of the catalogue needs no question
sent 'http://www.vexmart.example/vex/katalog.html?artno=4712'
host /basket /show 1101 /open "$win\\mail.bsk" /command $show /position 4712 /page "" /close /quit

# programs, files and scripts are not even asked about
for address in 'C:\\windows\\notepad.exe' 'file:///C:/windows/notepad.exe' 'javascript:alert(1)' \
  '\\\\server\\share\\x.exe' 'http://a b'; do
  sent "$address"
  host /basket /show 1101 /open "$win\\mail.bsk" /command $show /page "" /position 1101 /close /quit
done
finish
