#!/usr/bin/env bash
# A late-bound host that knows nothing but the programmatic identifier: the system's script host.
. "$(dirname "$0")/lib.sh"
begin script_host "$1"
ok "regsvr32" timeout 60 wine regsvr32 /s "$win\\DemoVexClient.dll"

cat > "$here/host.vbs" <<'VBS'
Dim client
Set client = CreateObject("DemoVexClient.Client")
WScript.Echo "created"
WScript.Echo "description=" & client.Description
WScript.Echo "producer=" & client.Producer
WScript.Echo "prefixes=[" & client.EnumURLPrefixes(True) & client.EnumURLPrefixes(False) & client.EnumURLPrefixes() & "]"
If client.moParent Is Nothing Then WScript.Echo "no parent yet"
On Error Resume Next
WScript.Echo "caption=" & client.Caption
WScript.Echo "caption failed=" & Hex(Err.Number) & " " & Err.Source & ": " & Err.Description
Err.Clear
client.Initialize Nothing
WScript.Echo "initialize failed=" & Hex(Err.Number) & " " & Err.Description
Err.Clear
client.OpenFile "x.bsk"
WScript.Echo "open failed=" & Hex(Err.Number)
Set client = Nothing
WScript.Echo "done"
VBS
out=$(timeout 60 wine cscript //nologo "$win\\host.vbs" 2> /dev/null 8>&- < /dev/null | tr -d '\r')
contains "the object is created" "$out" "created"
contains "its description" "$out" "description=Vexmart Test Client"
contains "its producer" "$out" "producer=K.O.L.M."
contains "no prefixes" "$out" "prefixes=[]"
contains "no parent yet" "$out" "no parent yet"
contains "the caption fails before the set-up" "$out" \
  "DemoVexClient: Object variable or With block variable not set"
contains "no parent is a type mismatch" "$out" "Type mismatch"
contains "opening fails before the set-up" "$out" "open failed="
contains "the script reached its end" "$out" "done"
echo "$out"
finish
