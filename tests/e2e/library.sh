#!/usr/bin/env bash
# The library and the host as files: small, importing only what Windows 7 has in every process and
# what nobody can replace beside a program, exporting what they must, with every guard that costs
# nothing, and the same from the same sources.
. "$(dirname "$0")/lib.sh"
dll=$1/DemoVexClient.dll
here=$(mktemp -d)
trap 'rm -rf "$here"' EXIT
objdump=i686-w64-mingw32-objdump

[ -e "$dll" ] || { echo "missing: $dll"; exit 1; }
i686-w64-mingw32-strip -o "$here/stripped.dll" "$dll"
size=$(stat -c %s "$here/stripped.dll")
echo "stripped: $size bytes"
ok "smaller than a megabyte" test "$size" -lt 1000000

$objdump -p "$dll" > "$here/headers"
modules=$(sed -n 's/^\tDLL Name: //p' "$here/headers" | tr 'A-Z' 'a-z' | sort -u)
echo "imports from:" $modules
ok "it imports something" test -n "$modules"
# Libraries that are looked for in the program's folder first, where others may have put one of their
# own: what is needed of them is loaded late. (What is left are those that Windows protects.)
allowed=" advapi32.dll comctl32.dll comdlg32.dll gdi32.dll kernel32.dll msvcrt.dll ole32.dll oleaut32.dll
shell32.dll shlwapi.dll user32.dll "
for module in $modules; do
  case " $(echo $allowed) " in *" $module "*) pass ;; *) fail "$module is not a protected library" ;; esac
done

# What a host without a manifest has: version 5.82 of the common controls knows these names and a few
# more, but neither those of window procedures (ordinals there) nor those of task dialogs and icons
# to measure.
of_5_82='InitCommonControls|InitCommonControlsEx|_TrackMouseEvent|CreateStatusWindowW|CreateToolbarEx|
CreateUpDownControl|MenuHelp|ShowHideMenuCtl|GetEffectiveClientRect|DrawInsert|LBItemFromPt|MakeDragList|
PropertySheetW|CreatePropertySheetPageW|DestroyPropertySheetPage|ImageList_Add|ImageList_AddMasked|
ImageList_BeginDrag|ImageList_Copy|ImageList_Create|ImageList_Destroy|ImageList_DragEnter|ImageList_DragLeave|
ImageList_DragMove|ImageList_DragShowNolock|ImageList_Draw|ImageList_DrawEx|ImageList_DrawIndirect|
ImageList_Duplicate|ImageList_EndDrag|ImageList_GetBkColor|ImageList_GetDragImage|ImageList_GetIcon|
ImageList_GetIconSize|ImageList_GetImageCount|ImageList_GetImageInfo|ImageList_LoadImageW|ImageList_Merge|
ImageList_Read|ImageList_Remove|ImageList_Replace|ImageList_ReplaceIcon|ImageList_SetBkColor|
ImageList_SetDragCursorImage|ImageList_SetIconSize|ImageList_SetImageCount|ImageList_SetOverlayImage|
ImageList_Write'
of_5_82=$(echo "$of_5_82" | tr -d '\n')
# imports FILE MODULE: the names (or ordinals) that a file imports from a library
imports() {
  $objdump -p "$1" | tr -d '\r' | awk -v module="$2" '
    /^\tDLL Name: / {on = tolower($3) == module; next}
    on && /^\t[0-9a-f]+\t? +[0-9]+ / {print $NF}
    /^$/ {on = 0}'
}
for file in "$dll" "$1/DemoVexHost.exe" "$1/DemoVexHostPlain.exe"; do
  common=$(imports "$file" comctl32.dll)
  ok "$(basename "$file"): the common controls' import table was read" test -n "$common"
  same "$(basename "$file"): nothing that version 5.82 of the common controls does not name" \
    "$(echo "$common" | grep -vxE "$of_5_82")" ""
done

# functions that came after Windows 7, as far as a program like this could be tempted
newer='GetDpiForWindow|GetDpiForSystem|GetDpiForMonitor|GetSystemMetricsForDpi|AdjustWindowRectExForDpi|
SystemParametersInfoForDpi|SetProcessDpiAwareness|SetProcessDpiAwarenessContext|SetThreadDpiAwarenessContext|
EnableNonClientDpiScaling|GetSystemTimePreciseAsFileTime|CreateFile2|CopyFile2|GetTempPath2W|
SetThreadDescription|GetThreadDescription|WaitOnAddress|WakeByAddressSingle|WakeByAddressAll|
PathCchCombine|PathCchAppend|PathCchCanonicalize|PathAllocCombine|GetCurrentThreadStackLimits|
PrefetchVirtualMemory|MapViewOfFile3|VirtualAlloc2|CreateFileMappingFromApp|MapViewOfFileFromApp|
RoInitialize|RoGetActivationFactory|WindowsCreateString|CoIncrementMTAUsage|RegisterSuspendResumeNotification|
SetWindowFeedbackSetting|RegisterTouchHitTestingWindow|GetPointerType|GetPointerInfo|EnableMouseInPointer|
SkipPointerFrameMessages|GetFirmwareType|IsNativeVhdBoot|GetOverlappedResultEx|UnregisterWaitUntilOOBECompleted|
GetProcessMitigationPolicy|SetProcessMitigationPolicy|OpenPackageInfoByFullName|GetCurrentPackageId|
IsWow64Process2|GetMachineTypeAttributes|FindFirstStreamTransactedW|RegLoadAppKey2|DiscardVirtualMemory|
InitializeCriticalSectionEx2|TryAcquireSRWLockForever|GetSystemCpuSetInformation|SetProcessInformation|
GetProcessInformation|SetThreadInformation|GetThreadInformation|AddDllDirectory2|ucrtbase'
newer=$(echo "$newer" | tr -d '\n')
# a line of the import table is address, ordinal or hint, name
names=$(awk '/^\tvma:  Hint\/Ord Member-Name/ {on = 1; next} /^$/ {on = 0} on {print $3}' "$here/headers" | sort -u)
echo "functions imported: $(echo "$names" | wc -l)"
ok "the import table was read" grep -qx CreateWindowExW <(echo "$names")
bad=$(echo "$names" | grep -xE "$newer")
same "nothing newer than Windows 7" "$bad" ""

# header FIELD FILE
header() { $objdump -p "$2" | sed -n "s/^$1[\t ]*//p" | head -n 1; }
# the time of linking in the file's header
timestamp() {
  local header
  header=$(od -An -t u4 -j 60 -N 4 "$1" | tr -d ' ')
  od -An -t u4 -j $((header + 8)) -N 4 "$1" | tr -d ' '
}
# the project's version as four numbers
version=$(sed -n 's/^project(DemoVexClient VERSION \([0-9.]*\).*/\1.0.0.0/p' "$root/CMakeLists.txt" |
  cut -d . -f 1-4)
ok "the project has a version" test -n "$version"
for file in "$dll" "$1/DemoVexHost.exe" "$1/DemoVexHostPlain.exe"; do
  name=$(basename "$file")
  $objdump -p "$file" > "$here/file"
  same "$name is for Windows 7 and later" \
    "$(header MajorSubsystemVersion "$file").$(header MinorSubsystemVersion "$file")" 6.1
  same "$name: the same sources give the same file" "$(timestamp "$file")" 0
  for guard in DYNAMIC_BASE NX_COMPAT NO_SEH; do
    ok "$name: $guard" grep -qE "^[[:space:]]*$guard" "$here/file"
  done
  resources=$(i686-w64-mingw32-windres -J coff -i "$file" -O rc 2> /dev/null | tr -d '\0')
  contains "$name: its version" "$resources" "FILEVERSION ${version//./, }"
  contains "$name: its version for people" "$resources" "VALUE \"FileVersion\", \"$version"
  contains "$name: an icon" "$resources" "ICON"
  manifests=$(echo "$resources" | grep -c RT_MANIFEST)
  case $name in DemoVexHost.exe) should=1 ;; *) should=0 ;; esac
  same "$name: manifests" "$manifests" $should
done
ok "an overrun buffer ends in the guard of the stack" grep -qx RaiseFailFastException <(echo "$names")
same "no run-time of a compiler's is needed" \
  "$(echo "$modules" | grep -E 'libgcc|libstdc|pthread|libssp')" ""
exports=$(sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/p' "$here/headers" | awk 'NF && /\[/ {print $NF}' |
  grep -x 'Dll[A-Za-z]*' | sort | tr '\n' ' ')
same "the entry points" "$exports" \
  "DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer "
finish
