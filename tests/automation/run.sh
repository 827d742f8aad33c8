#!/usr/bin/env bash
# Usage: run.sh TEST WINDOWS_BUILD FOLDER EXPECTED
#
# Runs one of the automation server's tests under Wine. WINDOWS_BUILD is a build by one of the windows presets, FOLDER
# the place for Wine's files and the tests' own, EXPECTED the folder with what has to be seen, of which the tests take a
# copy.

set -euo pipefail

test=$1
windows=$2
folder=$3
expected=$folder/expected
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
dll=$windows/automation/VnZEL10cmn.dll

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

stop_wine() {
  local wineserver
  wineserver=$(command -v wineserver64 wineserver /usr/lib/wine/wineserver64 | head -n 1)
  "$wineserver" -k || true
}

# The 32-bit system's processes end with each test: before that, what Wine's server holds has to be written.
if [[ ${WINEARCH-} == win32 ]]; then
  trap stop_wine EXIT
fi

# COM needs a display for its windows: a virtual one, for the whole test.
if [[ -z ${VNZEL_DISPLAY-} ]]; then
  VNZEL_DISPLAY=virtual exec xvfb-run -a "${BASH_SOURCE[0]}" "$@"
fi

# Runs a program of Windows.
windows() {
  "$wine" "$@" 2>"$folder/wine.log"
}

# Wine's own processes start with the first program and end with the last. A program that waits for its input keeps them
# until this script ends: starting them takes longer than most programs run.
keep_wine() {
  exec 8> >("$wine" cmd >/dev/null 2>&1)
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

# Compiles a program beside this script for Windows.
pascal() {
  fpc @"$folder/pascal/fpc.cfg" "-FE$folder/booking" "${@:2}" "$here/$1" >"$folder/booking/compiler.log" 2>&1 ||
    { cat "$folder/booking/compiler.log" >&2; fail "$1 isn't compiled"; }
}

case $test in
  prefix | stop | pascal_units) ;;
  *) keep_wine ;;
esac

case $test in
  prefix)
    rm -rf "$folder/wine"
    mkdir -p "$folder"
    rm -rf "$expected"
    cp -r "$4" "$expected"
    windows wineboot -i >/dev/null
    keep_wine
    # A new user has no classes of its own.
    windows reg add 'HKCU\Software\Classes' /f >/dev/null
    # German characters in numbers and dates.
    for setting in 'sDecimal ,' 'sThousand .' 'sDate .' 'sTime :' 'sShortDate dd.MM.yyyy'; do
      windows reg add 'HKCU\Control Panel\International' /v "${setting% *}" /d "${setting#* }" /f >/dev/null
    done
    ;;
  stop)
    stop_wine
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
  pascal_units)
    "$here/pascal.sh" "$folder/pascal"
    ;;
  pascal)
    # The unit for early binding is imported from the DLL, as Delphi does it.
    rm -rf "$folder/booking"
    mkdir -p "$folder/booking"
    pascal import.pas
    windows "$folder/booking/import.exe" "$(path "$dll")" "$(path "$folder/booking/VnZEL10cmn_TLB.pas")"
    pascal ../../examples/automation/booking.pas "-Fu$folder/booking"
    # Both ways of binding do what the example in VBScript does, with a sale and with a failure.
    for response in booking report; do
      failures=0
      script "$here/../../examples/automation/booking.vbs" "$(path "$expected/$response.response")" \
        >"$folder/booking/script.txt" || failures=$((failures + 1))
      for binding in early late; do
        windows "$folder/booking/booking.exe" "$binding" "$(path "$expected/$response.response")" \
          >"$folder/booking/$binding.txt" || failures=$((failures + 1))
        # One writes in the code page of consoles, the other in that of programs with windows.
        diff <(iconv -f CP437 -t UTF-8 "$folder/booking/script.txt") \
          <(iconv -f CP1252 -t UTF-8 "$folder/booking/$binding.txt")
      done
      case $response:$failures in
        booking:0 | report:3) ;;
        *) fail "$failures programs failed with the $response's response" ;;
      esac
    done
    ;;
  *) fail "there is no such test" ;;
esac
