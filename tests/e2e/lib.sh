# Sourced by the end-to-end tests: NAME BIN. Makes a prefix, a display and a folder with a copy of
# the component for one test, and counts what was checked.
#
#   begin NAME BIN        the folder is $here, as Windows programs see it $win
#   host STEP...          runs the demonstration host; its log is $here/host.log; fails the test when
#                         a step does not end as it should. $host_exe is the program: DemoVexHost.exe,
#                         or what DEMOVEX_HOST names (DemoVexHostPlain.exe has no manifest)
#   same WHAT IS SHOULD   compares texts
#   ok WHAT COMMAND...    a command that must succeed;  not_ok for one that must fail
#   finish
set -u
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/wine_env.sh"
checks=0
failures=0
host_exe=${DEMOVEX_HOST:-DemoVexHost.exe}

begin() {
  local name=$1 bin
  bin=$(cd "$2" && pwd) || exit 1
  [ "$host_exe" = DemoVexHost.exe ] || name=${name}_${host_exe%.exe}
  for file in DemoVexClient.dll "$host_exe"; do
    [ -e "$bin/$file" ] || { echo "missing: $bin/$file"; exit 1; }
  done
  mkdir -p "$wine_dir"
  exec 8> "$wine_dir/$name.lock"
  flock 8
  wine_locale "${DEMOVEX_LOCALE:-de_AT}"
  rm -rf "$wine_dir/prefix-$name"
  wine_prefix "$name" || exit 1
  here="$(dirname "$bin")/e2e/$name/Vexmart Höfer"
  rm -rf "$here"
  mkdir -p "$here"
  cp "$bin"/* "$here/"
  win="Z:$(echo "$here" | tr / '\\')"
  start_display || exit 1
  trap stop_all EXIT
  start_wine 8>&-
}

pass() { checks=$((checks + 1)); }
fail() { checks=$((checks + 1)); failures=$((failures + 1)); echo "FAILED: $*"; }

ok() {
  local what=$1; shift
  if "$@" > "$here/command.log" 2>&1 8>&- < /dev/null; then pass; else
    fail "$what (exit code $?)"; tail -n 20 "$here/command.log"
  fi
}

not_ok() {
  local what=$1; shift
  if "$@" > "$here/command.log" 2>&1 8>&- < /dev/null; then fail "$what: it succeeded"; else pass; fi
}

same() {
  if [ "$2" = "$3" ]; then pass; else
    fail "$1"; diff <(echo "$3") <(echo "$2") | head -n 20
  fi
}

# letter case is ignored, as the registry does
contains() {
  local nocase
  nocase=$(shopt -p nocasematch)
  shopt -s nocasematch
  case "$2" in *"$3"*) pass ;; *) fail "$1: no \"$3\" in: $(echo "$2" | head -n 20)" ;; esac
  $nocase
}

host() {
  if timeout -k 5 100 wine "$here/$host_exe" /log "$win\\host.log" "$@" \
      > /dev/null 2>&1 8>&- < /dev/null; then pass; else
    fail "host $* (exit code $?)"; cat "$here/host.log"
  fi
}

# All keys and values below Software\Classes of the machine and of the user, as text.
registry() {
  local root file
  for root in HKLM HKCU; do
    file=$here/registry.reg
    rm -f "$file"
    timeout 60 wine reg export "$root\\Software\\Classes" "$win\\registry.reg" /y \
      > /dev/null 2>&1 8>&- < /dev/null
    echo "== $root"
    [ -e "$file" ] && iconv -f UTF-16 -t UTF-8 "$file" | tr -d '\r'
  done
}

finish() {
  echo "$checks checks, $failures failed"
  [ "$failures" = 0 ] && [ "$checks" -gt 0 ]
  exit
}
