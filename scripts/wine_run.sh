#!/usr/bin/env bash
# Runs one Windows program in a prefix, locale and display of its own and passes its exit code on.
#
#   DEMOVEX_SUITE    names the prefix; default: the program's name. Two runs of one suite take turns.
#   DEMOVEX_LOCALE   de_AT (default), de_DE or en_US
#   DEMOVEX_DPI      the user's resolution, default 96
#   DEMOVEX_TIMEOUT  seconds, default 290
. "$(dirname "$0")/wine_env.sh"
suite=${DEMOVEX_SUITE:-$(basename "$1" .exe)}
mkdir -p "$wine_dir"
exec 8> "$wine_dir/$suite.lock"
flock 8
wine_locale "${DEMOVEX_LOCALE:-de_AT}"
wine_prefix "$suite" || exit 1
start_display || exit 1
trap stop_all EXIT
[ -z "${DEMOVEX_DPI:-}" ] || wine_dpi "$DEMOVEX_DPI" 8>&-
start_wine 8>&-
timeout -k 5 "${DEMOVEX_TIMEOUT:-290}" wine "$@" 8>&- < /dev/null
