#!/usr/bin/env bash
# fetch_sqlite.sh DIR    puts SQLite's one-file source (sqlite3.c, sqlite3.h) into DIR, for benches
# that compare with it. It comes out of the npm package better-sqlite3, is kept in build/peers and
# never committed. Where it cannot be had, both files say so (SQLITE_MISSING) and compile all the
# same: the comparison is left out then.
set -u
here=$(cd "$(dirname "$0")/.." && pwd)
target=$1
package=better-sqlite3@11.10.0
kept=$here/build/peers
mkdir -p "$target" "$kept"

(
  flock 9
  if [ ! -s "$kept/sqlite3.c" ]; then
    work=$(mktemp -d "$kept/fetch.XXXXXX")
    if (cd "$work" && timeout 120 npm pack "$package" --silent > /dev/null 2>&1 &&
        tar xzf ./*.tgz package/deps/sqlite3/sqlite3.c package/deps/sqlite3/sqlite3.h); then
      mv "$work/package/deps/sqlite3/sqlite3.h" "$kept/"
      mv "$work/package/deps/sqlite3/sqlite3.c" "$kept/"
    fi
    rm -rf "$work"
  fi
) 9> "$kept/sqlite.lock"

if [ -s "$kept/sqlite3.c" ]; then
  cp "$kept/sqlite3.c" "$kept/sqlite3.h" "$target/"
else
  echo "SQLite could not be fetched (npm package $package): comparisons with it are left out" >&2
  echo '#define SQLITE_MISSING 1' > "$target/sqlite3.h"
  echo 'typedef int nothing_here;' > "$target/sqlite3.c"
fi
