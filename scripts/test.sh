#!/usr/bin/env bash
# Usage: scripts/test.sh [ctest option...]
#
# Installs what is missing (Debian packages, as root or by sudo), builds everything in build/release and runs
# all tests. Options go to ctest: scripts/test.sh -R codec runs the tests whose names contain "codec".
# The automation server is built for 64 and 32 bits and tested under Wine, by programs in C++, VBScript, JScript and Free
# Pascal; the 32-bit one in a 32-bit Debian, which is made once in /var/cache/VnZEL10cmn (VNZEL_CACHE names another
# folder; root alone can do that). Where something for these tests can't be had, they are skipped, which is said.
# VNZEL_SKIP_WINDOWS=1 skips them all.
# Ends with status 0 only if there were tests and all of them passed.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

case "${1-}" in
  -h | --help) show_help "$0"; exit 0 ;;
esac

skipped=()
skip() {
  skipped+=("SKIPPED: $1: $2")
  echo "${skipped[-1]}"
}

# Builds what the tests under Wine need, and tells cmake of it.
prepare_windows_tests() {
  local wine32=${VNZEL_CACHE:-/var/cache/VnZEL10cmn}/wine32 making=
  if (require_packages "${pascal_packages[@]}"); then
    options+=(-DVNZEL_PASCAL=ON)
  else
    skip "the tests of the automation server in Free Pascal" "its packages can't be installed"
  fi
  if (require_packages "${csharp_packages[@]}"); then
    options+=(-DVNZEL_CSHARP=ON)
  else
    skip "the test that the example in C# is compiled" "its packages can't be installed"
  fi
  # The 32-bit system is made while the builds run.
  if (require_packages "${wine32_packages[@]}"); then
    "$root/scripts/lib/wine32.sh" make "$wine32" >"$root/build/wine32.log" 2>&1 &
    making=$!
  fi
  build windows-x86_64
  build windows-i686
  options+=("-DVNZEL_WINDOWS_BUILD=$root/build/windows-x86_64")
  if [[ -z $making ]]; then
    skip "the tests of the 32-bit automation server" "debootstrap can't be installed"
  elif wait "$making"; then
    options+=("-DVNZEL_WINDOWS32_BUILD=$root/build/windows-i686" "-DVNZEL_WINE32=$wine32")
  else
    skip "the tests of the 32-bit automation server" "$(tail -n 1 "$root/build/wine32.log")"
  fi
}

require_packages "${build_packages[@]}"
mkdir -p "$root/build"
options=(-DVNZEL_WINDOWS_BUILD= -DVNZEL_WINDOWS32_BUILD= -DVNZEL_PASCAL=OFF -DVNZEL_CSHARP=OFF)
if [[ -n ${VNZEL_SKIP_WINDOWS-} ]]; then
  skip "the tests of the automation server" "VNZEL_SKIP_WINDOWS is set"
elif [[ $(uname -m) != x86_64 ]]; then
  skip "the tests of the automation server" "they need an x86-64 processor"
elif ! (require_packages "${windows_packages[@]}" "${wine_packages[@]}"); then
  skip "the tests of the automation server" "the packages for them can't be installed"
else
  prepare_windows_tests
fi

cmake_options=("${options[@]}")
build release
status=0
run_tests release "$@" || status=$?
if ((${#skipped[@]} > 0)); then
  printf '%s\n' "${skipped[@]}"
fi
exit "$status"
