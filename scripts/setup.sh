#!/usr/bin/env bash
# Installs everything that building, running and testing need on a fresh Debian 12 (root).
# Quick and silent when all is there. Says in one line what is missing when it cannot be had.
#
# What each package is for:
#   mingw, wine, fonts, xvfb ...   the 32-bit Windows build and the machine that runs it
#   cmake, ninja, g++, clang       the native build, static analysis and the fuzzers
#   ghostscript, poppler-utils     printed pages read back as PDF
#   xdotool, xclip, imagemagick    real input, the X clipboard, pictures of the window
#   x11-utils ..., libxinerama     displays with several monitors and with bars at their edges
#   bsdextrautils                  column, which sets the tables of ./bench
set -u
here=$(cd "$(dirname "$0")/.." && pwd)

packages=(
  g++ g++-mingw-w64-i686-posix mingw-w64-tools
  wine wine32:i386 fonts-wine fonts-liberation
  xvfb xauth openbox xdotool xclip imagemagick
  x11-utils x11-xserver-utils libxinerama1:i386
  ghostscript poppler-utils locales bsdextrautils
  cmake ninja-build make python3 git
  googletest libbenchmark-dev
  clang clang-tidy clang-format libclang-rt-14-dev
  libabsl-dev libboost1.81-dev
)

missing() {
  local p name arch state
  for p in "${packages[@]}"; do
    state=$(dpkg-query -W -f='${db:Status-Abbrev}' "$p" 2>/dev/null) || state=
    case "$state" in ii*) ;; *) echo "$p" ;; esac
  done
}

fail() { echo "setup: $*" >&2; exit 1; }

need=$(missing)
[ -z "$need" ] && exit 0

command -v apt-get >/dev/null || fail "apt-get is missing: this needs a Debian machine"
[ "$(id -u)" = 0 ] || fail "missing packages ($(echo $need)); run as root to install them"

echo "setup: installing $(echo "$need" | wc -l) packages (once)"
export DEBIAN_FRONTEND=noninteractive
log=$here/build/setup.log
mkdir -p "$here/build"
: > "$log"

dpkg --print-foreign-architectures | grep -qx i386 || dpkg --add-architecture i386 >> "$log" 2>&1

# another installation that is under way is waited for
wait_for_lock="-o DPkg::Lock::Timeout=300"

ordinary() {
  apt-get -q update >> "$log" 2>&1 || return 1
  apt-get -q -y $wait_for_lock --no-install-recommends install $need >> "$log" 2>&1
}

# The security suite's i386 index can be out of step with amd64's: then only the release and its
# updates suite of the same mirror are used, through a private apt configuration.
release_only() {
  local dir uri codename key options status
  dir=$(mktemp -d)
  mkdir -p "$dir/parts" "$dir/lists/partial"
  codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
  uri=$(grep -rhE '^(deb |URIs:)' /etc/apt/sources.list /etc/apt/sources.list.d 2>/dev/null |
        grep -oE '[a-z]+://[^ ]+/debian/?( |$)' | head -n 1 | tr -d ' ')
  [ -n "$uri" ] || { rm -rf "$dir"; return 1; }
  key=$(ls /usr/share/keyrings/debian-archive-keyring.gpg 2>/dev/null)
  options=${key:+[signed-by=$key]}
  printf 'deb %s %s %s main\ndeb %s %s %s-updates main\n' \
    "$options" "$uri" "$codename" "$options" "$uri" "$codename" > "$dir/parts/only.list"
  options="-o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts=$dir/parts -o Dir::State::Lists=$dir/lists"
  apt-get -q $options update >> "$log" 2>&1 &&
    apt-get -q -y $wait_for_lock --no-install-recommends --allow-downgrades $options install $need \
      >> "$log" 2>&1
  status=$?
  rm -rf "$dir"
  return $status
}

ordinary || release_only || ordinary ||
  fail "could not install: $(missing | tr '\n' ' ')(see build/setup.log)"
need=$(missing)
[ -z "$need" ] || fail "still missing: $(echo $need)"
