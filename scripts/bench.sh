#!/usr/bin/env bash
# Usage: scripts/bench.sh [option of Google Benchmark...]
#
# Builds the benchmarks in build/release and runs them. Options go to the program:
# scripts/bench.sh --benchmark_filter=SHA runs those whose names contain "SHA".

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

case "${1-}" in
  -h | --help) show_help "$0"; exit 0 ;;
esac

require_packages "${build_packages[@]}"
build release vnzel_bench
exec "$root/build/release/bench/vnzel_bench" "$@"
