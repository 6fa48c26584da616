#!/usr/bin/env bash
# The library as a file: small, importing only what Windows 7 has, exporting what it must.
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
allowed=" advapi32.dll comctl32.dll comdlg32.dll gdi32.dll kernel32.dll msimg32.dll msvcrt.dll ole32.dll
oleacc.dll oleaut32.dll shell32.dll shlwapi.dll user32.dll uxtheme.dll version.dll winmm.dll winspool.drv "
for module in $modules; do
  case " $(echo $allowed) " in *" $module "*) pass ;; *) fail "$module is not Windows' own" ;; esac
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
subsystem=$(sed -n 's/^MajorSubsystemVersion\t*//p' "$here/headers")
ok "the subsystem's version is not beyond Windows 7" test "${subsystem:-99}" -le 6

exports=$(sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/p' "$here/headers" | awk 'NF && /\[/ {print $NF}' |
  grep -x 'Dll[A-Za-z]*' | sort | tr '\n' ' ')
same "the entry points" "$exports" \
  "DllCanUnloadNow DllGetClassObject DllInstall DllRegisterServer DllUnregisterServer "
finish
