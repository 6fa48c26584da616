#!/usr/bin/env bash
# Registering and unregistering, for the machine and for the user alone; a host of its own creates
# the component by its programmatic identifier in between. What was not there before is gone after.
. "$(dirname "$0")/lib.sh"
begin registration "$1"
not_registered=0x800401F3

# the user's place for classes, which every Windows has
ok "the user's classes" timeout 60 wine reg add 'HKCU\Software\Classes' /f
before=$(registry)
contains "the registry can be read" "$before" "[HKEY_LOCAL_MACHINE\\Software\\Classes\\CLSID"
host /expect $not_registered /create /quit

ok "regsvr32" timeout 60 wine regsvr32 /s "$win\\DemoVexClient.dll"
registered=$(registry)
contains "the class is there" "$registered" \
  '[HKEY_LOCAL_MACHINE\Software\Classes\CLSID\{CEEF0286-8A5C-4758-8F46-73D09F214B95}\InprocServer32]'
contains "the programmatic identifier is there" "$registered" \
  '[HKEY_LOCAL_MACHINE\Software\Classes\DemoVexClient.Client\CLSID]'
contains "the type library is there" "$registered" \
  '[HKEY_LOCAL_MACHINE\Software\Classes\TypeLib\{CEEF0284-8A5C-4758-8F46-73D09F214B95}\1.1\0\win32]'
contains "the threading model" "$registered" '"ThreadingModel"="Apartment"'
same "nothing of the host's is registered" "$(echo "$registered" | grep -ci 7bf72f3)" 0
host /create /references 1 /basket /windows 1 /close /quit

ok "regsvr32 once more" timeout 60 wine regsvr32 /s "$win\\DemoVexClient.dll"
same "registering twice is as good as once" "$(registry)" "$registered"

ok "regsvr32 /u" timeout 60 wine regsvr32 /u /s "$win\\DemoVexClient.dll"
same "no key is left" "$(registry)" "$before"
host /expect $not_registered /create /quit
ok "regsvr32 /u on what is not registered" timeout 60 wine regsvr32 /u /s "$win\\DemoVexClient.dll"
same "still no key" "$(registry)" "$before"

ok "regsvr32 /n /i:user" timeout 60 wine regsvr32 /s /n /i:user "$win\\DemoVexClient.dll"
user=$(registry)
contains "the class is the user's" "$user" \
  '[HKEY_CURRENT_USER\Software\Classes\CLSID\{CEEF0286-8A5C-4758-8F46-73D09F214B95}\InprocServer32]'
same "the machine has nothing of it" \
  "$(echo "$user" | sed '/^== HKCU/,$d')" "$(echo "$before" | sed '/^== HKCU/,$d')"
# Wine looks for classes in the machine's place alone, so no object is created here; what is written
# is what the machine's place got, which was seen to work
added() {
  diff <(echo "$before") <(echo "$1") | sed -n 's/^> //p' | grep -viE 'classes.(clsid|interface|typelib)\]$'
}
same "the user's keys are the machine's" \
  "$(added "$user" | sed 's/HKEY_CURRENT_USER/HKEY_LOCAL_MACHINE/' | tr A-Z a-z | sort -u)" \
  "$(added "$registered" | tr A-Z a-z | sort -u)"
ok "regsvr32 /u /n /i:user" timeout 60 wine regsvr32 /s /u /n /i:user "$win\\DemoVexClient.dll"
same "no key of the user's is left" "$(registry)" "$before"

# without any registration, by the manifest beside the library
host /unregistered /create /basket /follow 4711 /windows 1 /answer 7 /close /quit
same "that registered nothing" "$(registry)" "$before"
finish
