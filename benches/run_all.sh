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

# the component as a file; what it imports is checked in ./test
if [ $# = 0 ]; then
  dll=build/win32/bin/DemoVexClient.dll
  stripped=build/win32/size.dll
  if i686-w64-mingw32-strip -o "$stripped" "$dll"; then
    modules=$(i686-w64-mingw32-objdump -p "$stripped" | grep -c 'DLL Name:')
    echo
    echo "[DemoVexClient.dll]"
    { echo 'what | ours | bar'
      echo "size, stripped | $(stat -c %s "$stripped") bytes | below 1,000,000 bytes"
      echo "imported modules | $modules | Windows' own only"
    } | column -t -s'|' -o' | '
  else
    status=1
  fi
fi
exit $status
