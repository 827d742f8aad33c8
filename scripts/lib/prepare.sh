# shellcheck shell=bash disable=SC2034

# Sourced by the scripts beside it: finds the checkout, installs what is missing, builds.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

fail() {
  echo "$(basename "$0"): $*" >&2
  exit 1
}

# What a build of everything needs on Debian.
build_packages=(
  cmake g++ ninja-build pkg-config libgtest-dev libgmock-dev librapidcheck-dev libbenchmark-dev libcli11-dev
  nlohmann-json3-dev libssl-dev libsqlite3-dev
)

# What a build of the automation server needs on Debian, and what its tests need besides.
windows_packages=(
  cmake ninja-build g++ python3 g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools libwine-dev libwine zip unzip
)
wine_packages=(wine wine64 xvfb xauth)

# What its tests need for 32 bits, and in other languages.
wine32_packages=(debootstrap debian-archive-keyring)
pascal_packages=(fp-compiler fpc-source)
csharp_packages=(mono-mcs)

# Options that build hands to cmake.
cmake_options=()

# require_packages <package>...: installs those that are missing; silent when none is.
require_packages() {
  if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    echo "$(basename "$0"): not a Debian system; these packages (or their like) must be there: $*" >&2
    return 0
  fi
  local package missing=() administrator=()
  for package in "$@"; do
    if [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) != installed ]]; then
      missing+=("$package")
    fi
  done
  if ((${#missing[@]} == 0)); then
    return 0
  fi
  if ((EUID != 0)); then
    command -v sudo >/dev/null || fail "run this as root once, or install: ${missing[*]}"
    administrator=(sudo)
  fi
  echo "Installing ${missing[*]}"
  "${administrator[@]}" apt-get update -qq || fail "apt-get update failed"
  "${administrator[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null || fail "apt-get install failed"
}

# build <preset> [target...]: configures and builds with all processors.
build() {
  local preset=$1
  shift
  (
    cd "$root" || exit
    cmake --preset "$preset" ${cmake_options[@]+"${cmake_options[@]}"}
    if (($# > 0)); then
      cmake --build --preset "$preset" --parallel "$(nproc)" --target "$@"
    else
      cmake --build --preset "$preset" --parallel "$(nproc)"
    fi
  )
}

# run_tests <preset> [ctest option...]
run_tests() {
  local preset=$1
  shift
  (cd "$root" && ctest --preset "$preset" --parallel "$(nproc)" "$@")
}

# show_help <script>: the comment at the top of the script is its help.
show_help() {
  sed -n '2,/^$/s/^# \{0,1\}//p' "$1"
}

# no_arguments "$@": for scripts that know --help only.
no_arguments() {
  case "${1-}" in
    "") ;;
    -h | --help) show_help "$0"; exit 0 ;;
    *) fail "unknown argument: $1 (see --help)" ;;
  esac
}
