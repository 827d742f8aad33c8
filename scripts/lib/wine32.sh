#!/usr/bin/env bash
# Usage: scripts/lib/wine32.sh make SYSTEM
#        scripts/lib/wine32.sh run SYSTEM FOLDER... -- COMMAND [ARGUMENT...]
#
# A 32-bit Debian with Wine and Free Pascal, in the folder SYSTEM, for the tests of the 32-bit automation server: the
# machine's own Wine runs 64-bit programs only. Root alone can make and use it.
#
# make installs it from the package mirror that the machine uses, unless a complete one is there. It is made beside
# SYSTEM and gets that name at the end, so that a half-made one is never used; one that doesn't run is made anew.
# run runs a command in it, which sees the FOLDERs at their own paths. Mounts and processes live in namespaces of their
# own, which end with the command, whatever ends it.

set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/prepare.sh"

packages=(wine wine32 xvfb xauth fp-compiler)
codename=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
# How SYSTEM was made: another recipe makes another system.
recipe="$codename $(sha256sum <"${BASH_SOURCE[0]}")"

# In front of a command: nothing that it mounts or starts outlives it, nor it this script.
own_namespaces=(setpriv --pdeathsig KILL unshare --mount --propagation private --pid --ipc --fork --kill-child)

# What is done in the namespaces: mounts, then the command.
# shellcheck disable=SC2016
enter='
set -eu
system=$1 folders=$2
shift 2
mount -t proc proc "$system/proc"
mount --rbind /dev "$system/dev"
mount -t tmpfs -o mode=1777 tmpfs "$system/tmp"
while IFS= read -r folder; do
  [ -n "$folder" ] || continue
  mkdir -p "$system$folder"
  mount --bind "$folder" "$system$folder"
done <<FOLDERS
$folders
FOLDERS
# Not by exec: programs expect that the first process is no parent of theirs.
status=0
chroot "$system" "$@" || status=$?
exit "$status"'

# in_system NETWORK SYSTEM FOLDERS COMMAND...: ends this shell. NETWORK is offline or online, FOLDERS a text with a
# folder a line.
in_system() {
  local network=()
  if [[ $1 == offline ]]; then
    network=(--net)
  fi
  exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive WINEARCH=win32 \
    ${http_proxy:+"http_proxy=$http_proxy"} \
    "${own_namespaces[@]}" ${network[@]+"${network[@]}"} /bin/sh -c "$enter" sh "${@:2}"
}

# works SYSTEM: runs each of the programs that the tests need.
works() {
  (in_system offline "$1" "" sh -ec 'wine --version; fpc -iV; command -v Xvfb; command -v xauth')
}

# The address of the mirror from which the machine's own packages come, as apt knows it.
mirror() {
  # shellcheck disable=SC2016
  apt-get indextargets --format '$(REPO_URI)' 'Identifier: Packages' "Release: $codename" 'Component: main' | head -n 1
}

make_system() {
  local system=$1 part=$1.part address server=
  ((EUID == 0)) || fail "only root can make a 32-bit system"
  "${own_namespaces[@]}" --net true 2>/dev/null || fail "namespaces can't be made here"
  mkdir -p "$(dirname "$system")"
  exec 9>"$system.lock"
  flock 9
  if [[ -f $system/recipe && $(<"$system/recipe") == "$recipe" ]] && works "$system" >/dev/null 2>&1; then
    return 0
  fi
  require_packages "${wine32_packages[@]}"
  address=$(mirror)
  if [[ -z $address ]]; then
    apt-get update -qq || true
    address=$(mirror)
  fi
  [[ -n $address ]] || fail "apt names no mirror of Debian $codename"
  eval "$(apt-config shell server Acquire::http::Proxy)"
  if [[ -n $server ]]; then
    export http_proxy=$server
  fi

  echo "Making a 32-bit Debian $codename in $system"
  umask 022
  rm -rf --one-file-system "$system" "$part"
  # shellcheck disable=SC2064
  trap "rm -rf --one-file-system '$part'" EXIT
  "${own_namespaces[@]}" --mount-proc debootstrap --arch=i386 --variant=minbase "$codename" "$part" "$address" \
    >"$system.log" 2>&1 || fail "debootstrap failed: $(tail -n 1 "$system.log")"
  apt-config dump Acquire >"$part/etc/apt/apt.conf.d/10acquire"
  # A system for tests may be lost, so nothing waits for the disk; and manuals have no reader.
  printf '%s\n' force-unsafe-io 'path-exclude=/usr/share/doc/*' 'path-exclude=/usr/share/locale/*' \
    'path-exclude=/usr/share/man/*' >"$part/etc/dpkg/dpkg.cfg.d/tests"
  (in_system online "$part" "" sh -c 'apt-get update -qq && apt-get install -y -qq --no-install-recommends "$@" &&
    apt-get clean' sh "${packages[@]}") </dev/null >>"$system.log" 2>&1 ||
    fail "its packages can't be installed: $(grep '^E:' "$system.log" | head -n 1)"
  works "$part" >>"$system.log" 2>&1 || fail "Wine or Free Pascal doesn't run in it: $(tail -n 1 "$system.log")"
  echo "$recipe" >"$part/recipe"
  mv "$part" "$system"
}

case ${1-} in
  make)
    (($# == 2)) || fail "make takes the system's folder (see --help)"
    make_system "$2"
    ;;
  run)
    system=${2-}
    shift 2
    folders=
    while (($# > 0)) && [[ $1 != -- ]]; do
      folders+=$1$'\n'
      shift
    done
    (($# > 1)) || fail "run takes a command after -- (see --help)"
    exec 9>"$system.lock"
    flock --shared 9
    in_system offline "$system" "$folders" "${@:2}"
    ;;
  -h | --help) show_help "$0" ;;
  *) fail "unknown command: ${1-} (see --help)" ;;
esac
