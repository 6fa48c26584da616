#!/usr/bin/env bash
# Runs the programs listed in build/<preset>/benches.txt (or only those named) and prints their rows
# as tables.
set -u
cd "$(dirname "$0")/.." || exit 1
head_row='what | ours | alternative | alternative / ours | bar'
status=0
for preset in native-release win32; do
  list=build/$preset/benches.txt
  [ -s "$list" ] || continue
  echo
  [ $preset = win32 ] && echo "32-bit Windows code under Wine" || echo "native"
  while IFS= read -r program; do
    [ -n "$program" ] || continue
    [ $# = 0 ] || [[ " $* " == *" $(basename "$program" .exe) "* ]] || continue
    echo
    echo "[$(basename "$program" .exe)]"
    if [ $preset = win32 ]; then
      DEMOVEX_SUITE=bench DEMOVEX_TIMEOUT=900 scripts/wine_run.sh "$program"
    else
      "$program" < /dev/null
    fi | { echo "$head_row"; cat; } | column -t -s'|' -o' | '
    [ "${PIPESTATUS[0]}" = 0 ] || { echo "(ended with an error)"; status=1; }
  done < "$list"
done
exit $status
