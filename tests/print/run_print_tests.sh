#!/usr/bin/env bash
# Prints baskets into queues whose PostScript becomes PDF, checks the pages, and runs the failures.
#
#   run_print_tests.sh PRINT_CASES.EXE FOLDER
#
# Logs, PostScript and PDFs stay in FOLDER; the three-page basket is there as a picture, too.
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../scripts/wine_env.sh"
exe=$1
out=$2
rm -rf "$out"
mkdir -p "$out" "$wine_dir"
out=$(cd "$out" && pwd)
exec 8> "$wine_dir/print_pages.lock"
flock 8
rm -rf "$wine_dir/prefix-print_pages"  # queues of an earlier run are in it
wine_locale "${DEMOVEX_LOCALE:-de_AT}"
wine_prefix print_pages || exit 1
start_display || exit 1
trap stop_all EXIT
start_wine 8>&-

failed=0
passed=0
fail() { echo "FAILED: $*"; failed=$((failed + 1)); }
pass() { echo "ok: $*"; passed=$((passed + 1)); }

winpath() { printf 'Z:%s' "$1" | tr / '\\'; }
run() { timeout 100 wine "$exe" "$@" 8>&- < /dev/null; }

# What the port does with a job: a shell command, or nothing ("-").
port() {
  if [ "$1" = - ]; then
    printf 'REGEDIT4\n\n[-HKEY_CURRENT_USER\\Software\\Wine\\Printing\\Spooler]\n' > "$out/port.reg"
  else
    printf 'REGEDIT4\n\n[HKEY_CURRENT_USER\\Software\\Wine\\Printing\\Spooler]\n"LPT1:"="%s"\n' \
      "$1" > "$out/port.reg"
  fi
  timeout 60 wine regedit /S "$(winpath "$out/port.reg")" 8>&- < /dev/null || fail "port $1"
}

# pages NAME LINES KIND CHECKS...: prints, converts, checks
pages() {
  local name=$1 lines=$2 kind=$3
  shift 3
  export DEMOVEX_PS=$out/$name.ps
  run print "$(winpath "$out/$name.log")" "$lines" "$kind" || { fail "$name: print"; return; }
  [ -s "$DEMOVEX_PS" ] || { fail "$name: nothing printed: $(grep message "$out/$name.log")"; return; }
  ps2pdf -dAutoRotatePages=/PageByPage "$DEMOVEX_PS" "$out/$name.pdf" || { fail "$name: ps2pdf"; return; }
  if python3 "$here/check_pages.py" "$out/$name.log" "$out/$name.pdf" --lines "$lines" \
      --kind "$kind" "$@"; then
    pass "$name"
  else
    fail "$name"
  fi
}

# refused NAME KIND TEXT: printing ends in the message TEXT (a pattern), and no page comes out
refused() {
  local name=$1 kind=$2 text=$3 message
  export DEMOVEX_PS=$out/$name.ps
  run print "$(winpath "$out/$name.log")" 3 "$kind" || { fail "$name: print"; return; }
  message=$(sed -n 's/^message\t//p' "$out/$name.log")
  echo "  $message"
  # one message of exactly this wording, the status bar restored
  if [ "$(wc -l <<< "$message")" = 1 ] && grep -qxE "$text" <<< "$message" &&
      grep -q '^end	vorher' "$out/$name.log" && [ ! -s "$DEMOVEX_PS" ]; then
    pass "$name"
  else
    fail "$name: expected $text"
  fi
}

intro='Der Warenkorb kann nicht gedruckt werden: '

# --- no queue at all
refused no_queue plain 'Der Warenkorb kann nicht gedruckt werden da kein Drucker installiert ist\.'

# --- pages
port '|cat > \"$DEMOVEX_PS\"'
data=$here/../data/print
run register Office "$(winpath "$data/a4.ppd")" || fail "register Office"
pages empty 0 plain --pages 1 --frames
read -r _ _ height text < <(grep '^page' "$out/empty.log")
per_page=$((height / (text + 120) - 6))
pages full_page "$per_page" plain --pages 2
pages one_line_less $((per_page - 1)) plain --pages 1
pages three_pages $((2 * per_page + 19)) plain --pages 3 --frames
pages thousand_lines 1000 plain
pages long_descriptions 30 long --pages 1
pages umlauts_and_euro 12 umlauts --pages 1
pdftotext "$out/umlauts_and_euro.pdf" - | grep -q 'ÄÖÜäöüß € 12' &&
  pass "umlauts and the euro sign can be read" || fail "umlauts and the euro sign"
run register Landscape "$(winpath "$data/a4.ppd")" landscape || fail "register Landscape"
pages landscape 40 plain --frames
pdfinfo "$out/landscape.pdf" | grep -qE 'Page size: +842 x 595|Page rot: +(90|270)' &&
  pass "the landscape queue prints landscape" || fail "landscape: $(pdfinfo "$out/landscape.pdf")"
run register Coarse "$(winpath "$data/coarse.ppd")" || fail "register Coarse"
pages coarse 20 plain --frames

# --- a user who gives up
export DEMOVEX_PS=$out/given_up.ps
run print "$(winpath "$out/given_up.log")" 3 given_up || fail "given_up: print"
if grep -qx 'given up' "$out/given_up.log" && ! grep -q '^message' "$out/given_up.log" &&
    grep -q '^end	vorher' "$out/given_up.log" && [ ! -s "$DEMOVEX_PS" ]; then
  pass "a user who gives up in the printer's dialog sees no message"
else
  fail "given_up: $(cat "$out/given_up.log")"
fi

# --- failures
run register Strip "$(winpath "$data/strip.ppd")" || fail "register Strip"
refused page_too_low plain "${intro}Division by zero"
run register Again "$(winpath "$data/a4.ppd")" || fail "register Again"
queue='HKEY_LOCAL_MACHINE\System\CurrentControlSet\Control\Print\Printers\Again'
timeout 60 wine reg add "$queue" /v Port /d NOWHERE: /f > /dev/null 2>&1 < /dev/null 8>&- ||
  fail "reg add"
refused start_refused plain "${intro}.+"
timeout 60 wine reg add "$queue" /v Port /d LPT1: /f > /dev/null 2>&1 < /dev/null 8>&-
port '|cat > /dev/null; false'
refused failing_command plain "${intro}Printer error"
port -
refused no_spooler_entry plain "${intro}Printer error"
port '|cat > \"$DEMOVEX_PS\"'
run default Gone || fail "default Gone"
refused vanished_printer plain "${intro}.+"

# the picture of docs/print.png
pdftoppm -r 64 -gray -png "$out/three_pages.pdf" "$out/three_pages" &&
  montage "$out"/three_pages-?.png -tile 3x1 -geometry +6+6 -background '#808080' \
    -colors 16 "$out/three_pages.png"
echo "$passed checks passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -ge 18 ]
