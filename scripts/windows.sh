#!/usr/bin/env bash
# Usage: scripts/windows.sh
#
# Cross-builds the automation server for 64 and 32 bits (Debian's mingw-w64, installed where missing, as root or by sudo)
# and packs what Windows needs as build/VnZEL10cmn-VERSION-windows.zip: both DLLs, each with its type library and
# manifest, notes on registering, the manual, and the examples.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

no_arguments "$@"

require_packages "${windows_packages[@]}"
version=$(sed -n 's/^project(VnZEL10cmn VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
name=VnZEL10cmn-$version-windows
folder=$root/build/$name
rm -rf "$folder" "$folder.zip"

for pair in x86_64:x64 i686:x86; do
  preset=windows-${pair%:*}
  target=$folder/${pair#*:}
  build "$preset" VnZEL10cmn_automation
  mkdir -p "$target"
  cp "$root/build/$preset/automation/VnZEL10cmn.dll" "$target"
  cp "$root/build/$preset/automation/generated/VnZEL10cmn."{tlb,manifest} "$target"
done
mkdir -p "$folder/examples"
cp "$root"/examples/automation/* "$folder/examples"
cp "$root/docs/automation.md" "$root/automation/VnZEL10cmn.idl" "$folder"
sed 's/$/\r/' >"$folder/README.txt" <<NOTES
VnZEL10cmn $version for Windows

x64\\VnZEL10cmn.dll is for 64-bit programs, x86\\VnZEL10cmn.dll for 32-bit ones.

Register (as administrator for all users, else for yourself alone):
  C:\\Windows\\System32\\regsvr32.exe x64\\VnZEL10cmn.dll
  C:\\Windows\\SysWOW64\\regsvr32.exe x86\\VnZEL10cmn.dll    (on 32-bit Windows: System32)
Unregister with /u in front of the file.

Then try:
  cscript //nologo examples\\booking.vbs

automation.md is the manual: use without registration, references, failures, all classes.
NOTES
(cd "$root/build" && zip -qr "$name.zip" "$name")
rm -rf "$folder"
echo "build/$name.zip"
unzip -l "$root/build/$name.zip"
