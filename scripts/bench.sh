#!/usr/bin/env bash
# Usage: scripts/bench.sh [option of Google Benchmark...]
#        scripts/bench.sh --counts
#
# Builds the benchmarks in build/release. Without options all of docs/performance.md is measured in one run, and a
# table of the ratios is written; it takes some minutes, and wants a machine that has nothing else to do.
# With options the benchmark program runs alone: scripts/bench.sh --benchmark_filter=Sha runs those whose names
# contain "Sha", and with --instructions=ssse3,avx2 as well the library uses no other ones of the processor than
# these. --counts counts the instructions of a 10-item booking with callgrind.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

case "${1-}" in
  -h | --help) show_help "$0"; exit 0 ;;
esac

require_packages "${build_packages[@]}"
bench=$root/build/release/bench

# The instructions of a path alone: of many times, less those of none.
count() {
  local times=1000 many none
  many=$(instructions "$1" "$times")
  none=$(instructions "$1" 0)
  echo "$1: $(((many - none) / times)) instructions"
}
instructions() {
  valgrind --tool=callgrind --callgrind-out-file=/dev/null "$bench/vnzel_paths" "$1" "$2" 2>&1 |
    sed -n 's/.*Collected : \([0-9]*\).*/\1/p'
}

if [[ ${1-} == --counts ]]; then
  require_packages valgrind
  build release vnzel_paths
  for path in request-new request-kept import; do
    count "$path"
  done
  exit 0
fi
if (($# > 0)); then
  build release vnzel_bench
  exec "$bench/vnzel_bench" "$@"
fi

require_packages python3
build release vnzel_bench vnzel_item_memory zel >&2
results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT
# The allocator keeps its memory: otherwise long lists measure how fast the system hands out pages.
GLIBC_TUNABLES=glibc.malloc.trim_threshold=4000000000:glibc.malloc.top_pad=400000000 \
  "$bench/vnzel_bench" --benchmark_repetitions=15 --benchmark_enable_random_interleaving=true \
  --benchmark_min_time=0.03 --benchmark_out_format=json --benchmark_out="$results/bench.json" >/dev/null
"$bench/vnzel_item_memory" >"$results/memory.txt"

# 10,000 documents: those of the day at the bakery, again and again.
"$root/scripts/day.sh" >/dev/null 2>&1
find "$root/build/demo" -name '*.xml' | sort >"$results/day.txt"
for ((i = 0; i < 10000; i += $(wc -l <"$results/day.txt"))); do cat "$results/day.txt"; done |
  head -n 10000 >"$results/documents.txt"
verify() {
  local begin=$EPOCHREALTIME
  "$root/build/release/tools/zel" verify --files-from "$results/documents.txt" --jobs "$1" \
    --device "$root/build/demo/device.db" >/dev/null 2>&1
  local end=$EPOCHREALTIME
  echo "$1 $(((${end/[.,]/} - ${begin/[.,]/}) / 1000))"
}
for _ in 1 2 3 4 5; do
  verify 1
  verify "$(nproc)"
done >"$results/verify.txt"

python3 "$root/scripts/lib/bench_table.py" "$results"
