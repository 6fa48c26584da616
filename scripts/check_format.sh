#!/usr/bin/env bash
# Every source stands as clang-format writes it. Names those that do not and exits 1.
cd "$(dirname "$0")/.." || exit 1
# looked up without git, which refuses a folder that belongs to another user
mapfile -t files < <(find . \( -path ./build -o -name '.?*' \) -prune -o \
  -type f \( -name '*.h' -o -name '*.cpp' \) -printf '%P\n' | sort)
[ "${#files[@]}" -gt 0 ] || { echo "format: no sources found" >&2; exit 1; }
if out=$(clang-format --dry-run -Werror "${files[@]}" 2>&1); then
  echo "format: ${#files[@]} files stand as they should"
else
  echo "$out" | grep -oE '^[^:]+:[0-9]+' | sort -u -t: -k1,1 | sed 's/$/: not formatted (clang-format -i)/'
  exit 1
fi
