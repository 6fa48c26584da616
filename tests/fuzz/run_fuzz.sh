#!/usr/bin/env bash
# Builds the fuzz preset and runs every target for SECONDS, one after the other; fails on a finding.
#
#   tests/fuzz/run_fuzz.sh SECONDS [TARGET...]    e.g. 30, or 1800 parameter_text
#
# New inputs that reach more code are kept in build/fuzz/corpus; an input that found something lands
# in tests/fuzz/corpus/<target>/ so that it is replayed by every test run from then on.
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
seconds=${1:?usage: run_fuzz.sh SECONDS [TARGET...]}
shift
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(parameter_text parameter_cells article_master basket)
command -v clang++ > /dev/null || { echo "fuzz: clang is missing, nothing is fuzzed" >&2; exit 1; }
mkdir -p "$root/build/fuzz"
log=$root/build/fuzz/build.log
{ cmake -S "$root" --preset fuzz && cmake --build "$root/build/fuzz" --target fuzzers; } > "$log" 2>&1 ||
  { tail -n 30 "$log" >&2; echo "fuzz: the targets could not be built" >&2; exit 1; }
# who allocated what is told by the replay of an input that found something, not by each case
export ASAN_OPTIONS=malloc_context_size=0:max_malloc_fill_size=0:quarantine_size_mb=8${ASAN_OPTIONS:+:$ASAN_OPTIONS}
failed=0
for target in "${targets[@]}"; do
  # a basket's case is dear: short ones reach what long ones do, and weighing how rare each path is
  # took longer than the case itself
  options=(-max_len=4096)
  [ "$target" != basket ] || options=(-max_len=384 -entropic=0)
  found=$root/build/fuzz/corpus/$target
  seeds=$root/tests/fuzz/corpus/$target
  mkdir -p "$found"
  out=$root/build/fuzz/$target.log
  if "$root/build/fuzz/tests/fuzz/fuzz_$target" -max_total_time="$seconds" "${options[@]}" -timeout=20 \
       -rss_limit_mb=2048 -artifact_prefix="$seeds/found-" -print_final_stats=1 \
       "$found" "$seeds" > "$out" 2>&1; then
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$out")
    echo "fuzz: $target: $runs inputs in $seconds s, nothing found"
  else
    tail -n 40 "$out" >&2
    echo "fuzz: $target: FOUND something, see above and $seeds" >&2
    failed=1
  fi
done
exit $failed
