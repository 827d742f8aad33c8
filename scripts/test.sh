#!/usr/bin/env bash
# Usage: scripts/test.sh [ctest option...]
#
# Installs what is missing (Debian packages, as root or by sudo), builds everything in build/release and runs
# all tests. Options go to ctest: scripts/test.sh -R codec runs the tests whose names contain "codec".
# The automation server is built in build/windows-x86_64 and tested under Wine; where the packages for that can't be
# had these tests are skipped, which is said. VNZEL_SKIP_WINDOWS=1 skips them as well.
# Ends with status 0 only if there were tests and all of them passed.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

case "${1-}" in
  -h | --help) show_help "$0"; exit 0 ;;
esac

require_packages "${build_packages[@]}"
if [[ -n ${VNZEL_SKIP_WINDOWS-} ]]; then
  skipped="VNZEL_SKIP_WINDOWS is set"
elif [[ $(uname -m) != x86_64 ]]; then
  skipped="they need an x86-64 processor"
elif ! (require_packages "${windows_packages[@]}" "${wine_packages[@]}"); then
  skipped="the packages for them can't be installed"
else
  skipped=
  build windows-x86_64
  cmake_options=("-DVNZEL_WINDOWS_BUILD=$root/build/windows-x86_64")
fi
if [[ -n $skipped ]]; then
  cmake_options=("-DVNZEL_WINDOWS_BUILD=")
  echo "SKIPPED: the tests of the automation server under Wine: $skipped"
fi

build release
status=0
run_tests release "$@" || status=$?
if [[ -n $skipped ]]; then
  echo "SKIPPED: the tests of the automation server under Wine: $skipped"
fi
exit "$status"
