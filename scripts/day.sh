#!/usr/bin/env bash
# Usage: scripts/day.sh [PROGRAM]
#
# Plays a day at a till: signs every sale of examples/day with a fresh software signing device in build/demo,
# writes the XML documents there, reads each of them back and verifies it, prints the last receipt and the day's
# totals, and ends with a signed closing whose turnover has to be that of the bookings. PROGRAM is the zel
# to use (default: that of build/release).

set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

case "${1-}" in
  -h | --help)
    sed -n '2,/^$/s/^# \{0,1\}//p' "$0"
    exit 0
    ;;
esac

zel=$(realpath -- "${1:-$root/build/release/tools/zel}")
if [[ ! -x $zel ]]; then
  echo "day.sh: $zel is no program; build it first (scripts/demo.sh does)" >&2
  exit 1
fi

cd "$root"
rm -rf build/demo
"$zel" day examples/day --out build/demo
