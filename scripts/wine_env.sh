# Sourced: functions that make Wine prefixes, locales and displays below build/. Nothing outside is
# touched; no ~/.wine is made.
#
#   wine_prefix NAME      a prefix made from the template (made once); exports WINEPREFIX
#   wine_locale NAME      exports LC_ALL and LOCPATH for de_AT, de_DE or en_US
#   start_display         a private Xvfb; exports DISPLAY, sets display_pid. DEMOVEX_SCREEN is its
#                         size; DEMOVEX_MONITORS ("800x700+0+0 560x300+800+200") divides it into
#                         monitors from left to right, DEMOVEX_WORKAREA ("X, Y, WIDTH, HEIGHT") is
#                         what bars at its edges leave free
#   wine_dpi N            the user's resolution in the prefix, in dots per inch
#   stop_all              ends the prefix's server and the display

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
wine_dir=${DEMOVEX_WINE_DIR:-$root/build/wine}
export WINEARCH=win32 WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
display_pid=

wine_locale() {
  local name=$1.UTF-8 dir=$wine_dir/locale
  (
    mkdir -p "$dir"
    flock 9
    [ -d "$dir/$name" ] || localedef -i "$1" -f UTF-8 "$dir/$name" 2>/dev/null
  ) 9> "$wine_dir/locale.lock"
  export LOCPATH=$dir
  { export LC_ALL=$name; } 2> /dev/null  # the shell itself has no use for it
}

# The template: settings that make runs repeatable (see the comments beside each).
make_template() {
  local t=$wine_dir/template
  rm -rf "$t" "$t.new"
  mkdir -p "$wine_dir"
  export WINEPREFIX=$t.new
  # without a display only for the set-up, so that no window of it ever shows
  DISPLAY= timeout 120 wineboot -i > "$wine_dir/template.log" 2>&1
  cat > "$wine_dir/template.reg" <<'REG'
REGEDIT4

; windows without decorations of a window manager: exact positions, quick closing
[HKEY_CURRENT_USER\Software\Wine\X11 Driver]
"Managed"="N"
; monitors as the display names them (DEMOVEX_MONITORS), which the newer protocol does not tell
"UseXRandR"="N"

; no sound device, so no search for one
[HKEY_CURRENT_USER\Software\Wine\Drivers]
"Audio"=""

; a crash ends the process at once instead of waiting in a dialog
[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\AeDebug]
"Debugger"="false"

; free fonts with the same widths as the usual ones
[HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements]
"Times New Roman"="Liberation Serif"
"Arial"="Liberation Sans"
REG
  DISPLAY= timeout 60 wine regedit /S "Z:$(echo "$wine_dir/template.reg" | tr / '\\')" \
    >> "$wine_dir/template.log" 2>&1
  timeout 60 wineserver -k; timeout 60 wineserver -w
  [ -e "$t.new/system.reg" ] || { echo "wine: no prefix could be made (see build/wine/template.log)" >&2; return 1; }
  mv "$t.new" "$t"
}

# A tree of hard links: the system's files, 590 MB, stand on the disk once. What a program may write
# into in place is a real copy (the registry, settings files, all that is the user's).
copy_template() {
  cp -al "$wine_dir/template" "$1" || return 1
  find "$1" -type f -links +1 \
    \( -name '*.reg' -o -iname '*.ini' -o -iname '*.inf' -o -name '.*' -o -path "$1/drive_c/users/*" \
       -o -path '*/spool/*' -o ! -path "$1/drive_c/*" \) -print0 |
    while IFS= read -r -d '' file; do
      cp -p "$file" "$file.own" && mv "$file.own" "$file" || return 1
    done
}

wine_prefix() {
  local p=$wine_dir/prefix-$1
  mkdir -p "$wine_dir"
  (
    flock 9
    [ -e "$wine_dir/template/system.reg" ] || make_template
  ) 9> "$wine_dir/template.lock" || return 1
  if [ ! -e "$p/system.reg" ]; then
    # under its own name only when whole: a copy that was broken off is not taken for a prefix
    rm -rf "$p" "$p.new"
    copy_template "$p.new" && mv "$p.new" "$p" ||
      { echo "wine: the prefix $p could not be made" >&2; return 1; }
  fi
  export WINEPREFIX=$p
}

start_display() {
  local fifo monitor name options=() output=screen
  # a display without clients would forget its monitors
  [ -z "${DEMOVEX_MONITORS:-}" ] || options=(-noreset)
  fifo=$(mktemp -u)
  mkfifo "$fifo"
  Xvfb -displayfd 3 -screen 0 "${DEMOVEX_SCREEN:-1280x1024x24}" -nolisten tcp "${options[@]}" 3> "$fifo" > /dev/null 2>&1 &
  display_pid=$!
  read -r -t 20 number < "$fifo"
  rm -f "$fifo"
  [ -n "${number:-}" ] || { echo "Xvfb did not start" >&2; return 1; }
  export DISPLAY=:$number
  for monitor in ${DEMOVEX_MONITORS:-}; do
    # WIDTHxHEIGHT+X+Y becomes WIDTH/MMxHEIGHT/MM+X+Y; the first monitor has the display's output
    name=monitor-${monitor#*+}
    xrandr --setmonitor "$name" "$(echo "$monitor" | sed -E 's,x,/200x,; s,\+,/200+,')" "$output" \
      > /dev/null || { echo "no monitor $monitor" >&2; return 1; }
    output=none
  done
  [ -z "${DEMOVEX_WORKAREA:-}" ] ||
    xprop -root -f _NET_WORKAREA 32c -set _NET_WORKAREA "$DEMOVEX_WORKAREA" || return 1
}

# The user's resolution in the prefix at hand, in dots per inch; before start_wine.
wine_dpi() {
  timeout 60 wineserver -p > /dev/null 2>&1
  timeout 60 wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f \
    > /dev/null 2>&1 < /dev/null
  timeout 60 wineserver -k; timeout 60 wineserver -w
}

# A persistent server and one warm-up program whose services hold no pipe of ours open.
start_wine() {
  timeout 60 wineserver -p > /dev/null 2>&1
  timeout 60 wine cmd /c exit > /dev/null 2>&1 < /dev/null
}

stop_all() {
  # never the server of a prefix that is not ours, as long as none of ours has been made
  case ${WINEPREFIX:-} in "$wine_dir"/*) timeout 20 wineserver -k > /dev/null 2>&1 ;; esac
  [ -n "$display_pid" ] && kill "$display_pid" > /dev/null 2>&1
  wait > /dev/null 2>&1
}
