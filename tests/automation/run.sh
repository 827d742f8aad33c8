#!/usr/bin/env bash
# Usage: run.sh TEST WINDOWS_BUILD FOLDER REFERENCE
#
# Runs one of the automation server's tests under Wine. WINDOWS_BUILD is a build by the preset windows-x86_64, FOLDER
# the place for Wine's files and the tests' own, REFERENCE the program that writes what has to be seen.

set -euo pipefail

test=$1
windows=$2
folder=$3
reference=$4
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
dll=$windows/automation/VnZEL10cmn.dll
expected=$folder/expected

export WINEPREFIX=$folder/wine WINEDEBUG=-all LC_ALL=C.UTF-8 TZ=UTC
# Neither asks for a browser engine or .NET, which nothing here needs, nor makes menu entries.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"

fail() {
  echo "automation/$test: $*" >&2
  exit 1
}

for candidate in wine64 /usr/lib/wine/wine64 wine; do
  if wine=$(command -v "$candidate"); then
    break
  fi
done
[[ -n ${wine-} ]] || fail "Wine isn't there"

# Runs a program of Windows with a virtual display, which COM needs for its windows.
windows() {
  xvfb-run -a "$wine" "$@" 2>"$folder/wine.log"
}

# A path as programs of Windows write it.
path() {
  echo "Z:${1//\//\\}"
}

registry() {
  local root
  for root in HKEY_LOCAL_MACHINE HKEY_CURRENT_USER; do
    windows reg export "$root\\Software\\Classes" "$(path "$folder/$1-$root.reg")" /y >/dev/null
  done
}

# register_and_back ROOT [OPTION...]: registers in that part of the registry, unregisters, and looks for what is left.
register_and_back() {
  local root=$1
  shift
  local key=$root\\Software\\Classes\\VnZEL10cmn.clsZelTransAct\\CLSID
  registry before
  windows regsvr32 /s "$@" "$(path "$dll")" || fail "registering failed"
  windows reg query "$key" >/dev/null || fail "nothing is registered in $root"
  registry between
  windows regsvr32 /u /s "$(path "$dll")" || fail "unregistering failed"
  registry after
  local changed=0
  for root in HKEY_LOCAL_MACHINE HKEY_CURRENT_USER; do
    cmp "$folder/before-$root.reg" "$folder/after-$root.reg" || fail "unregistering leaves something in $root"
    cmp -s "$folder/before-$root.reg" "$folder/between-$root.reg" || changed=$((changed + 1))
  done
  ((changed > 0)) || fail "registering changed nothing"
}

script() {
  windows cscript //nologo "$(path "$1")" "${@:2}"
}

case $test in
  prefix)
    rm -rf "$folder/wine"
    mkdir -p "$folder"
    "$reference" "$expected"
    windows wineboot -i >/dev/null
    # A new user has no classes of its own.
    windows reg add 'HKCU\Software\Classes' /f >/dev/null
    # German characters in numbers and dates.
    for setting in 'sDecimal ,' 'sThousand .' 'sDate .' 'sTime :' 'sShortDate dd.MM.yyyy'; do
      windows reg add 'HKCU\Control Panel\International' /v "${setting% *}" /d "${setting#* }" /f >/dev/null
    done
    ;;
  stop)
    wineserver=$(command -v wineserver64 wineserver /usr/lib/wine/wineserver64 | head -n 1)
    "$wineserver" -k || true
    ;;
  registration)
    windows reg query 'HKCR\VnZEL10cmn.clsZelTransAct' >/dev/null 2>&1 && fail "registered before"
    # Without registration, by manifests beside program and DLL.
    rm -rf "$folder/beside"
    mkdir -p "$folder/beside"
    cp "$dll" "$windows/automation/generated/VnZEL10cmn.manifest" "$windows/tests/automation/compare.exe" \
      "$folder/beside"
    ! windows "$folder/beside/compare.exe" "$(path "$expected/answers.bin")" "$(path "$folder/beside.txt")" \
      >/dev/null || fail "classes are found without registration and manifest"
    version=$(sed -n 's/.*name="VnZEL10cmn" version="\([^"]*\)".*/\1/p' "$folder/beside/VnZEL10cmn.manifest")
    sed "s/@VERSION@.0/$version/" "$here/compare.exe.manifest" >"$folder/beside/compare.exe.manifest"
    windows "$folder/beside/compare.exe" "$(path "$expected/answers.bin")" "$(path "$folder/beside.txt")"
    cmp "$expected/expected.txt" "$folder/beside.txt"
    register_and_back HKEY_LOCAL_MACHINE
    register_and_back HKEY_CURRENT_USER /n /i:user
    windows regsvr32 /s "$(path "$dll")" || fail "registering failed"
    ;;
  type_library)
    # Every identifier stands in the manual.
    while read -r identifier; do
      grep -qi "$identifier" "$here/../../docs/automation.md" || fail "$identifier is missing in docs/automation.md"
    done < <(grep -oE 'uuid\([-0-9a-f]{36}\)' "$here/../../automation/VnZEL10cmn.idl" | sed 's/uuid(//; s/)//')
    windows "$windows/tests/automation/type_library_test.exe" "$(path "$dll")" "$(path "$here/contract.txt")"
    # A list with something else in it is told from the right one.
    for change in 's/ErrMsg: String/ErrMsg: Long/' 's/= 9204/= 9205/' '/TurnoverThrd/d' 's/Intent: Long = 4/Intent: Long = 5/'; do
      sed "$change" "$here/contract.txt" >"$folder/changed.txt"
      ! windows "$windows/tests/automation/type_library_test.exe" "$(path "$dll")" "$(path "$folder/changed.txt")" \
        >/dev/null || fail "$change isn't noticed"
    done
    ;;
  early_bound)
    windows "$windows/tests/automation/early_bound_test.exe" "$(path "$folder/early_bound.log")"
    ;;
  arrays)
    windows "$windows/tests/automation/${test}_test.exe"
    ;;
  scenario)
    windows "$windows/tests/automation/compare.exe" "$(path "$expected/answers.bin")" "$(path "$folder/found.txt")"
    cmp "$expected/expected.txt" "$folder/found.txt"
    grep -c '^BOOKING\|^REPORT\|^DATA RECORD' "$folder/found.txt" | sed 's/$/ documents are the same byte for byte/'
    grep -c '^HasError: True' "$folder/found.txt" | sed 's/$/ failures among what was compared/'
    ;;
  vbscript)
    script "$here/script.vbs" "$(path "$expected")" >"$folder/vbscript.txt"
    diff "$expected/script.expected" "$folder/vbscript.txt"
    ;;
  jscript)
    script "$here/script.js" "$(path "$expected")" >"$folder/jscript.txt"
    diff "$expected/script_js.expected" "$folder/jscript.txt"
    ;;
  example)
    # The example's booking isn't the one of the answer, but read it can be.
    script "$here/../../examples/automation/booking.vbs" "$(path "$expected/booking.response")" >"$folder/example.txt"
    grep -q '^Request: zQQgJhEhzgIIBcYFTWVpZXLH' "$folder/example.txt" || fail "no request"
    grep -q '^Sequence number: 1' "$folder/example.txt" || fail "no sequence number"
    grep -q 'Kassen-Belegausgabe' "$folder/example.txt" || fail "no receipt"
    grep -q '<transactionEncoded>' "$folder/example.txt" || fail "no document"
    ;;
  *) fail "there is no such test" ;;
esac
