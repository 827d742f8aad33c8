#!/usr/bin/env bash
# Usage: scripts/fuzz.sh TARGET SECONDS [option of libFuzzer...]
#        scripts/fuzz.sh --list
#        scripts/fuzz.sh --merge [TARGET...]
#        scripts/fuzz.sh --coverage [--fail-under PERCENT]
#
# Builds the fuzzers with clang++ in build/fuzz and runs one of them for so many seconds, or until something does
# not hold. It begins with fuzz/corpus/TARGET; what it finds on the way is kept in build/fuzz/found/TARGET, an
# input that fails in build/fuzz/failed/TARGET. fuzz/README.md says what each target checks.
#
# --list      names the targets.
# --merge     adds inputs of build/fuzz/found that reach code which the corpora don't reach yet to fuzz/corpus.
# --coverage  tells which part of the lines of VnZEL10cmn/ the corpora alone reach; ends with a status other than
#             0 if that is less than PERCENT.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

binary=$root/build/fuzz

list_targets() {
  sed -n 's/^ *Target{"\([a-z_]*\)",.*/\1/p' "$root/fuzz/Targets.cpp"
}

is_target() {
  list_targets | grep -qx -- "$1"
}

dictionary_of() {
  case $1 in
    *xml*) echo documents ;;
    codecs | rounding) echo texts ;;
    *) echo records ;;
  esac
}

run_target() {
  local target=$1 seconds=$2 options=()
  shift 2
  # Counting how often each feature was met takes longer than these inputs themselves.
  if [[ $target == operations || $target == aliases || $target == hosts ]]; then
    options=(-entropic=0)
  fi
  [[ $seconds =~ ^[0-9]+$ ]] || fail "no number of seconds: $seconds"
  mkdir -p "$binary/found/$target" "$binary/failed/$target"
  build fuzz "fuzz_$target"
  exec "$binary/fuzz/fuzz_$target" -max_total_time="$seconds" -max_len=1024 -timeout=10 -print_final_stats=1 \
    -dict="$root/fuzz/dictionaries/$(dictionary_of "$target").dict" -artifact_prefix="$binary/failed/$target/" \
    "${options[@]}" "$@" "$binary/found/$target" "$root/fuzz/corpus/$target"
}

# Only inputs that reach an edge of the program that nothing before them reaches are taken, in their smallest form.
merge() {
  local target
  for target in "$@"; do
    is_target "$target" || fail "no such target: $target (see --list)"
    mkdir -p "$binary/found/$target" "$root/fuzz/corpus/$target"
    build fuzz "fuzz_$target"
    "$binary/fuzz/fuzz_$target" -merge=1 -use_counters=0 -max_len=1024 "$root/fuzz/corpus/$target" \
      "$binary/found/$target"
  done
}

coverage() {
  local target
  build coverage fuzz_replay
  find "$root/build/coverage" -name '*.gcda' -delete
  for target in $(list_targets); do
    "$root/build/coverage/fuzz/fuzz_replay" "$target" "$root/fuzz/corpus/$target"
  done
  mkdir -p "$root/build/coverage/fuzz-report"
  cd "$root"
  gcovr --root . --filter VnZEL10cmn/ --gcov-ignore-parse-errors --exclude-throw-branches \
    --exclude-unreachable-branches -j "$(nproc)" --json-summary build/coverage/fuzz-report/summary.json \
    --html-details build/coverage/fuzz-report/index.html build/coverage >/dev/null
  python3 scripts/lib/coverage_table.py build/coverage/fuzz-report/summary.json "$1"
}

case "${1-}" in
  "" | -h | --help) show_help "$0"; exit 0 ;;
  --list) list_targets; exit 0 ;;
esac

require_packages "${build_packages[@]}"
case $1 in
  --merge)
    shift
    require_packages clang libclang-rt-dev
    if (($# == 0)); then
      mapfile -t targets < <(list_targets)
      set -- "${targets[@]}"
    fi
    merge "$@"
    ;;
  --coverage)
    require_packages gcovr
    least=0
    if [[ ${2-} == --fail-under ]]; then
      least=${3:?--fail-under needs a number}
    fi
    coverage "$least"
    ;;
  *)
    is_target "$1" || fail "no such target: $1 (see --list)"
    require_packages clang libclang-rt-dev
    run_target "$1" "${2:?how many seconds? (see --help)}" "${@:3}"
    ;;
esac
