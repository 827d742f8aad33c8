#!/usr/bin/env bash
# Usage: scripts/check.sh [--format] [source...]
#
# Checks by clang-format that every C++ file has the repository's format, and by clang-tidy the sources of the
# library, the software device and the tools. --format does without clang-tidy, which takes some minutes; sources
# that are named are all that clang-tidy checks then. Nothing is changed. Ends with a status other than 0 when
# something is found. The tools are those of Debian 12; other versions format a little differently.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

# check_format: prints each line that clang-format would write differently.
check_format() {
  require_packages clang-format
  find . \( -path ./build -o -name '.?*' \) -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0 |
    xargs -0 clang-format --dry-run -Werror
}

# tidy <source>: silent unless something is found.
tidy() {
  local output
  output=$(clang-tidy --quiet -p build/release "$1" 2>&1) || {
    grep -Ev '^[0-9]+ warnings? generated\.$' <<<"$output"
    return 1
  }
}
export -f tidy

# check_tidy [source...]
check_tidy() {
  require_packages "${build_packages[@]}" clang-tidy
  cmake --preset release ${cmake_options[@]+"${cmake_options[@]}"} >/dev/null || fail "cmake failed"
  if (($# == 0)); then
    local source
    while read -r source; do
      case $source in
        "$root"/VnZEL10cmn/* | "$root"/softdevice/* | "$root"/tools/*) set -- "$@" "$source" ;;
      esac
    done < <(sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' build/release/compile_commands.json | sort -u)
    (($# > 0)) || fail "no sources to check"
  fi
  printf '%s\0' "$@" | xargs -0 -n 1 -P "$(nproc)" bash -c 'tidy "$1"' tidy
}

format_only=
case "${1-}" in
  -h | --help) show_help "$0"; exit 0 ;;
  --format) format_only=1; shift ;;
  -*) fail "unknown option: $1 (see --help)" ;;
esac
sources=()
for source in "$@"; do
  [[ -f $source ]] || fail "no such file: $source"
  sources+=("$(realpath "$source")")
done

cd "$root"
status=0
check_format || status=1
if [[ -z $format_only ]] || ((${#sources[@]} > 0)); then
  check_tidy ${sources[@]+"${sources[@]}"} || status=1
fi
exit "$status"
