#!/usr/bin/env bash
# Usage: scripts/sanitize.sh [g++|clang++]
#
# Builds everything with AddressSanitizer and UndefinedBehaviorSanitizer and runs all tests, with both compilers
# unless one is named. The builds stand in build/sanitizers and build/sanitizers-clang.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

case "${1-}" in
  "") presets=(sanitizers sanitizers-clang) ;;
  g++) presets=(sanitizers) ;;
  clang++) presets=(sanitizers-clang) ;;
  -h | --help) show_help "$0"; exit 0 ;;
  *) fail "unknown argument: $1 (see --help)" ;;
esac

require_packages "${build_packages[@]}"
for preset in "${presets[@]}"; do
  if [[ $preset == *clang ]]; then
    require_packages clang libclang-rt-dev
  fi
  build "$preset"
  run_tests "$preset"
done
