#!/usr/bin/env bash
# Usage: scripts/docs.sh
#
# Builds the API reference from the public headers and the pages of the repository: build/docs/html/index.html.
# Fails when a public class, member or enumeration value has no description, or a link leads nowhere.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/lib/prepare.sh"

no_arguments "$@"

require_packages doxygen python3
version=$(sed -n 's/^project(VnZEL10cmn VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")
[[ -n $version ]] || fail "no version in CMakeLists.txt"
cd "$root"
rm -rf build/docs
mkdir -p build/docs
{
  cat docs/Doxyfile
  echo "PROJECT_NUMBER = $version"
} | doxygen -
python3 "$root/scripts/lib/check_links.py" build/docs/html
echo "API reference: $root/build/docs/html/index.html"
