#!/usr/bin/env bash
# Usage: csharp.sh IDL PROGRAM.cs FOLDER
#
# Compiles a program in C# against the declarations that importing the type library makes. It can't run here: Wine hosts
# no .NET that Debian has.

set -euo pipefail

idl=$1
program=$2
folder=$3
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

rm -rf "$folder"
mkdir -p "$folder"
g++ -E -P -x c "$idl" >"$folder/interface.idl"
python3 "$here/interop.py" "$folder/interface.idl" >"$folder/VnZEL10cmn.cs"
mcs -target:library "-out:$folder/VnZEL10cmn.dll" "$folder/VnZEL10cmn.cs"

compile() {
  mcs -warnaserror "-r:$folder/VnZEL10cmn.dll" "-out:$folder/program.exe" "$1"
}
compile "$program"
# A call that the interface doesn't have is noticed.
for change in s/AddItem/AddItems/ s/ZELSerialType.Request/ZELSerialType.Requests/ 's/"Meier"/5/'; do
  sed "$change" "$program" >"$folder/changed.cs"
  if compile "$folder/changed.cs" >/dev/null 2>&1; then
    echo "$change isn't noticed" >&2
    exit 1
  fi
done
