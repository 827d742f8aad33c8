#!/usr/bin/env bash
# Usage: scripts/coverage.sh [--fail-under PERCENT]
#
# Builds everything with coverage counters in build/coverage, runs all tests but the replay of the fuzz corpora
# (scripts/fuzz.sh --coverage does that) and prints which part of the lines, branches and functions of each file
# of VnZEL10cmn/ they reach. Branches that only an exception takes are not counted. A page that shows each line is
# written to build/coverage/report/index.html.
# Ends with a status other than 0 if a test fails, or if less than PERCENT of all lines are reached.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

least=0
case "${1-}" in
  "") ;;
  --fail-under) least=${2:?--fail-under needs a number} ;;
  -h | --help) show_help "$0"; exit 0 ;;
  *) fail "unknown argument: $1 (see --help)" ;;
esac

require_packages "${build_packages[@]}" gcovr
build coverage
binary=$root/build/coverage
find "$binary" -name '*.gcda' -delete
tests=passed
run_tests coverage --label-exclude fuzz_replay || tests=failed

mkdir -p "$binary/report"
cd "$root"
# All objects are read, not the library's alone: functions of its headers are compiled into those that call them.
gcovr --root . --filter VnZEL10cmn/ --gcov-ignore-parse-errors --exclude-throw-branches --exclude-unreachable-branches -j "$(nproc)" \
  --json-summary "$binary/report/summary.json" --html-details "$binary/report/index.html" "$binary" >/dev/null
python3 "$root/scripts/lib/coverage_table.py" "$binary/report/summary.json" "$least"
[[ $tests == passed ]] || fail "tests failed, see above"
