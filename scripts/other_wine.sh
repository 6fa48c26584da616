#!/usr/bin/env bash
# Runs the built Windows tests once more on another Wine: Debian 13's, in a root of its own below
# build/other-wine. Not part of ./test: the root takes 2 GB and some minutes, once.
#
#   scripts/build.sh win32              builds what is to be tested
#   scripts/other_wine.sh [ARGUMENT...] makes the root if there is none and runs the tests;
#                                       arguments go to ctest (-R keys)
#   scripts/other_wine.sh --in COMMAND  runs one command there instead, as in
#                                       --in scripts/wine_run.sh build/win32/tests/grid_test.exe
#   scripts/other_wine.sh --remove      takes the root and all that it wrote away
#
# Everything of the root is mounted in a namespace of its own and ends with the script, however that
# ends. The checkout is read-only there, and over build/win32 lies a layer that takes what tests
# write: prefixes, logs and results lie in build/other-wine (results in written), and nothing that an
# ordinary run left is touched. The closing table tells every test, and of those that fail which
# cases that Wine is to blame for: scripts/other_wine_table.py lists them, docs/other-wine.md tells
# what was seen.
set -u
cd "$(dirname "$0")/.." || exit 1
checkout=$PWD
home=$checkout/build/other-wine
root=$home/root
release=trixie

# libxi6: without it that Wine never comes to rest once a window covers the display
packages=(
  wine wine32:i386 fonts-wine fonts-liberation
  xvfb xauth openbox xdotool xclip imagemagick
  x11-utils x11-xserver-utils libxinerama1:i386 libxi6:i386
  ghostscript poppler-utils locales python3 procps cmake
)

fail() { echo "other_wine: $*" >&2; exit 1; }

# A script of this file in namespaces of its own: its mounts and processes end with it.
apart() { unshare --mount --pid --fork --kill-child --mount-proc "$@"; }

inside() {
  env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    "${settings[@]}" chroot "$root" "$@"
}
settings=(TERM=dumb)

mount_system() {
  mount -t proc proc "$root/proc" && mount --rbind /dev "$root/dev" &&
    mount -t tmpfs -o mode=1777 tmp "$root/tmp"
}

# The mirror that this machine uses, without a password's worth of options.
mirror() {
  grep -rhE '^(deb |URIs:)' /etc/apt/sources.list /etc/apt/sources.list.d 2>/dev/null |
    grep -oE '[a-z]+://[^ ]+/debian/?( |$)' | head -n 1 | tr -d ' '
}

make_root() {
  local uri
  uri=$(mirror)
  [ -n "$uri" ] || { echo "no Debian mirror in the machine's sources"; return 1; }
  # what an installation that broke off has left serves the next attempt
  if [ "$(cat "$home/base" 2> /dev/null)" != "$release $uri" ]; then
    rm -rf --one-file-system "$root"
    mkdir -p "$root"
    debootstrap --variant=minbase --arch=amd64 "$release" "$root" "$uri" || return 1
    echo "$release $uri" > "$home/base"
  fi
  mount_system || return 1
  printf 'deb %s %s main\n' "$uri" "$release" > "$root/etc/apt/sources.list"
  cp /etc/resolv.conf "$root/etc/resolv.conf"
  # manuals, other languages and services are not needed, nor is a root that survives a power cut
  printf '%s\n' 'path-exclude /usr/share/doc/*' 'path-exclude /usr/share/man/*' \
    'path-exclude /usr/share/locale/*' force-unsafe-io > "$root/etc/dpkg/dpkg.cfg.d/small"
  printf '#!/bin/sh\nexit 101\n' > "$root/usr/sbin/policy-rc.d"
  chmod +x "$root/usr/sbin/policy-rc.d"
  inside dpkg --add-architecture i386 &&
    inside apt-get -q update &&
    inside apt-get -q -y --no-install-recommends install "${packages[@]}" &&
    inside apt-get -q clean || return 1
  rm -rf "$root"/var/lib/apt/lists/*
}

# The checkout as the tests see it there.
mount_checkout() {
  local over=$root$checkout/build/win32
  mount_system || return 1
  mkdir -p "$root$checkout" "$home/written"
  mount --bind "$checkout" "$root$checkout" &&
    mount -o remount,bind,ro "$root$checkout" &&
    mount --bind "$home/wine" "$root$home/wine" || return 1
  mkdir -p "$home/written/files" "$home/written/work"
  mount -t overlay written \
    -o "lowerdir=$checkout/build/win32,upperdir=$home/written/files,workdir=$home/written/work" \
    "$over" || return 1
  settings=(TERM=dumb "DEMOVEX_WINE_DIR=$home/wine")
  inside wine --version > "$home/version" 2>&1
}

run_tests() {
  # what an earlier run wrote would cover what has been built since
  rm -rf "$home/written"
  mount_checkout || return 1
  # the library as a file is the same on any Wine, and looked at with this machine's tools
  inside ctest --test-dir "$checkout/build/win32" --output-on-failure -E win32/e2e_library "$@"
}

run_command() {
  mount_checkout || return 1
  inside bash -c 'cd "$0" && exec "$@"' "$checkout" "$@"
}

# Read as a whole before it runs, so that the file may change while the tests do.
main() {
  local wanted
  case ${1:-} in
    --make-root) make_root; return ;;
    --run-tests) shift; run_tests "$@"; return ;;
    --run-command) shift; run_command "$@"; return ;;
  esac

  [ "$(id -u)" = 0 ] || fail "a root of its own needs root"
  mkdir -p "$home/wine"
  exec 7> "$checkout/build/other-wine.lock"
  flock 7

  if [ "${1:-}" = --remove ]; then
    rm -rf --one-file-system "$home" "$checkout/build/other-wine.lock"
    return
  fi

  # quick when the root is whole and has what this file lists
  wanted="$release ${packages[*]}"
  if [ "$(cat "$home/made" 2> /dev/null)" != "$wanted" ]; then
    echo "other_wine: making a root with Debian's $release (once)"
    if ! command -v debootstrap > /dev/null; then
      apt-get -q -y install debootstrap > "$home/make.log" 2>&1 ||
        fail "debootstrap could not be installed (build/other-wine/make.log)"
    fi
    # prefixes and results of another Wine are none of this one's
    rm -rf --one-file-system "$home/made" "$home/wine" "$home/written"
    mkdir -p "$home/wine"
    apart "$checkout/scripts/other_wine.sh" --make-root > "$home/make.log" 2>&1 7>&- ||
      fail "no root could be made (the end of build/other-wine/make.log):
$(tail -n 5 "$home/make.log")"
    echo "$wanted" > "$home/made"
    echo "other_wine: $(du -sm "$root" | cut -f 1) MB in build/other-wine/root"
  fi

  [ -e build/win32/CTestTestfile.cmake ] || fail "nothing to test: scripts/build.sh win32 comes first"
  # a display's and a server's names in that root are its own without the machine's network, too
  if [ "${1:-}" = --in ]; then
    shift
    apart --net "$checkout/scripts/other_wine.sh" --run-command "$@" 7>&-
    return
  fi
  apart --net "$checkout/scripts/other_wine.sh" --run-tests "$@" 7>&- 2>&1 | tee "$home/run.log"
  echo
  echo "On $(cat "$home/version"):"
  python3 scripts/other_wine_table.py "$home/run.log"
}

main "$@"; exit
