#!/usr/bin/env bash
# Usage: scripts/test.sh [ctest option...]
#
# Installs what is missing (Debian packages, as root or by sudo), builds everything in build/release and runs
# all tests. Options go to ctest: scripts/test.sh -R codec runs the tests whose names contain "codec".
# Ends with status 0 only if there were tests and all of them passed.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

case "${1-}" in
  -h | --help) show_help "$0"; exit 0 ;;
esac

require_packages "${build_packages[@]}"
build release
run_tests release "$@"
