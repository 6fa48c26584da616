#!/usr/bin/env bash
# Configures and builds a preset quietly: build.sh PRESET [TARGET...]. Shows the tail of the log when
# it fails. Quick when nothing has changed.
set -u
cd "$(dirname "$0")/.." || exit 1
preset=${1:?usage: build.sh PRESET [TARGET...]}; shift
mkdir -p build
log=build/$preset.log
fail() {
  echo "build: $preset failed (build/$preset.log):" >&2
  { grep -E -A6 'error|Error|missing' "$log" || tail -n 20 "$log"; } | head -n 40 >&2
  exit 1
}
[ -f "build/$preset/build.ninja" ] || echo "building: $preset (once)"
cmake --preset "$preset" > "$log" 2>&1 || fail
targets=()
for t in "$@"; do targets+=(--target "$t"); done
cmake --build --preset "$preset" "${targets[@]}" >> "$log" 2>&1 || fail
