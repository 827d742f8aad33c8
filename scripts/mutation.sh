#!/usr/bin/env bash
# Usage: scripts/mutation.sh [--seed N] [--count N] [--jobs N] [--only REGEX] [--least PERCENT]
#
# Tells whether the tests would see a mistake: changes one operator, constant or character of a text at a time
# somewhere in VnZEL10cmn/, builds that library and runs the tests until one fails. A change that no test sees has
# survived. It works in build/mutation on a copy of the sources.
#
# --seed N         draws other places (default: 1)
# --count N        so many changes that compile to something else (default: 200)
# --jobs N         so many at once (default: one per processor)
# --only REGEX     in files whose path from the top of the checkout contains this
# --least PERCENT  ends with a status other than 0 when less were killed (default: 95)
#
# What was found is kept in build/mutation/results.jsonl: an interrupted run goes on where it was, and one after a
# change of the tests tries the survivors again. scripts/mutation_equivalent.txt lists changes that change nothing
# that can be seen; they are run as well, and don't count when they survive.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

case "${1-}" in
  -h | --help) show_help "$0"; exit 0 ;;
esac

require_packages cmake clang ninja-build python3 libgtest-dev libgmock-dev librapidcheck-dev libssl-dev
exec python3 -B "$root/scripts/lib/mutation/check.py" "$root" "$@"
