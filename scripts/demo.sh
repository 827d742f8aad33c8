#!/usr/bin/env bash
# Usage: scripts/demo.sh
#
# Installs what is missing (Debian packages, as root or by sudo), builds the tools in build/release and plays a
# day at a till: signs every sale of examples/day with the software signing device, writes the XML documents to
# build/demo, reads each of them back and verifies it, prints the last receipt and the day's totals, and ends
# with a signed closing whose turnover has to be that of the bookings.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

no_arguments "$@"

require_packages "${build_packages[@]}"
build release tools/all
exec "$root/scripts/day.sh"
