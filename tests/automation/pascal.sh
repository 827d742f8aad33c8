#!/usr/bin/env bash
# Usage: pascal.sh FOLDER
#
# Compiles Free Pascal's run-time library for Windows, of which Debian has the sources, and leaves in FOLDER its units
# and fpc.cfg, the options with which programs for Windows are compiled: fpc @FOLDER/fpc.cfg program.pas
# The width is that of the compiler. What is there from an earlier run stays.

set -euo pipefail

folder=$1
version=$(fpc -iV)
sources=/usr/share/fpcsrc/$version
recipe="$version $(sha256sum <"${BASH_SOURCE[0]}")"

if [[ -f $folder/recipe && $(<"$folder/recipe") == "$recipe" ]]; then
  exit 0
fi
if [[ ! -d $sources ]]; then
  echo "$sources isn't there" >&2
  exit 1
fi
rm -rf "$folder"
mkdir -p "$folder/units"

case $(fpc -iTP) in
  x86_64) system=win64 ;;
  i386) system=win32 ;;
  *) echo "Free Pascal isn't for x86 here" >&2; exit 1 ;;
esac
printf '%s\n' "-T$system" -n -l- -v0 -ve "-Fu$folder/units" "-FU$folder/units" >"$folder/fpc.cfg"

rtl=$sources/rtl
places=()
for place in "$system" win inc "$(fpc -iTP)" objpas win/wininc objpas/sysutils objpas/classes; do
  places+=("-Fi$rtl/$place" "-Fu$rtl/$place")
done
compile() {
  fpc @"$folder/fpc.cfg" "$@" >"$folder/log" 2>&1 || { tail "$folder/log" >&2; exit 1; }
}
compile -Us -Sg "${places[@]}" "$rtl/$system/system.pp"
compile "${places[@]}" "$rtl/$system/buildrtl.pp"

# What COM needs besides; compiled with the programs that use it.
for package in winunits-base rtl-objpas/src/inc rtl-objpas/src/win fcl-registry fcl-base fcl-xml fcl-process; do
  place=$sources/packages/$package
  if [[ $package != */* ]]; then
    place+=/src
  fi
  for place in "$place" "$place/win"; do
    if [[ -d $place ]]; then
      printf '%s\n' "-Fi$place" "-Fu$place"
    fi
  done
done >>"$folder/fpc.cfg"
echo "$recipe" >"$folder/recipe"
