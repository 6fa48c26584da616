#!/usr/bin/env bash
# Pictures of the basket window for people to look at, in build/pictures: the states a user meets it
# in at 96, 120, 144 and 192 dpi, and in a scheme of high contrast. Arguments choose among
# 96 120 144 192 contrast contrast144.
set -u
cd "$(dirname "$0")/.." || exit 1
scripts/build.sh win32 basket_pictures || exit 1
. scripts/wine_env.sh
out=$root/build/pictures
mkdir -p "$out"
exe=$root/build/win32/tests/pictures/basket_pictures.exe
trap stop_all EXIT
DEMOVEX_SCREEN=1920x1400x24
status=0
mkdir -p "$wine_dir"
wine_locale "${DEMOVEX_LOCALE:-de_AT}"
start_display || exit 1
for set in ${*:-96 120 144 192 contrast contrast144}; do
  dpi=96 scheme=plain
  case $set in contrast*) dpi=${set#contrast}; dpi=${dpi:-96}; scheme=contrast ;; *) dpi=$set ;; esac
  # a prefix of its own for each set: resolution and colours are the user's settings
  rm -rf "$wine_dir/prefix-pictures_$set"
  wine_prefix "pictures_$set" || exit 1
  timeout 60 wineserver -p > /dev/null 2>&1
  timeout 60 wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$dpi" /f \
    > /dev/null 2>&1 < /dev/null
  # schemes of high contrast have no theme of bitmaps
  [ $scheme = plain ] ||
    timeout 60 wine reg add 'HKCU\Software\Microsoft\Windows\CurrentVersion\ThemeManager' \
      /v ThemeActive /d 0 /f > /dev/null 2>&1 < /dev/null
  timeout 60 wineserver -k; timeout 60 wineserver -w
  start_wine
  [ $scheme = plain ] || timeout 60 wine "$exe" contrast < /dev/null || status=1
  timeout -k 5 120 wine "$exe" "Z:$(echo "$out" | tr / '\\')" "$set" < /dev/null || status=1
  timeout 60 wineserver -k; timeout 60 wineserver -w
done
for picture in "$out"/*.bmp; do
  [ -e "$picture" ] || continue
  convert "$picture" -alpha off +dither -colors 255 PNG8:"${picture%.bmp}.png" && rm "$picture"
done
exit $status
