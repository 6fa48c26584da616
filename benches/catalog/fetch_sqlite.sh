#!/usr/bin/env bash
# fetch_sqlite.sh DIR: puts sqlite3.c and sqlite3.h into DIR/sqlite, taken from the npm package
# better-sqlite3, which carries them. When they cannot be had, an empty source and a header that
# says so are left instead, so that the bench builds and goes without.
set -u
to=$1/sqlite
mkdir -p "$to" "$1/npm" || exit 1
cd "$1/npm" || exit 1
rm -f ./*.tgz
if command -v npm > /dev/null && timeout 120 npm pack --silent better-sqlite3 > /dev/null 2>&1 &&
   tar xzf better-sqlite3-*.tgz package/deps/sqlite3/sqlite3.c package/deps/sqlite3/sqlite3.h 2> /dev/null; then
  mv package/deps/sqlite3/sqlite3.c package/deps/sqlite3/sqlite3.h "$to/" && exit 0
fi
echo '/* not available */' > "$to/sqlite3.c"
echo '#define DEMOVEX_NO_SQLITE' > "$to/sqlite3.h"
