#!/usr/bin/env bash
# Tries the tree as a newcomer meets it: in a fresh Debian or Ubuntu with nothing but git and make, `make demo` and
# `make test` do the rest. Needs root and debootstrap.
#   checkfresh.sh [SUITE [MIRROR]]     bookworm, from where this machine's apt gets it, unless told otherwise
# TARGETS names other make targets to try. The folder is left behind if one fails.
set -euo pipefail

suite=${1:-bookworm}
# shellcheck disable=SC2016
mirror=${2:-$(apt-get indextargets --format '$(REPO_URI)' 'Identifier: Packages' "Codename: $suite" | head -n 1)}
if [ -z "$mirror" ]; then
  echo "checkfresh: apt knows no place of $suite; name one: checkfresh.sh $suite MIRROR" >&2
  exit 1
fi
cd "$(dirname "$0")/.."

root=$(mktemp -d)
echo "checkfresh: $suite in $root"
debootstrap --variant=minbase --include=git,make,ca-certificates "$suite" "$root" "$mirror" >"$root.log" 2>&1 ||
  { tail -n 20 "$root.log"; exit 1; }
if [ "$suite" != bookworm ]; then echo "deb $mirror $suite main universe" >"$root/etc/apt/sources.list"; fi
cp /etc/resolv.conf "$root/etc/"

mkdir "$root/gpuruntime"
git ls-files -co --exclude-standard -z | while IFS= read -r -d '' file; do
  if [ -e "$file" ]; then printf '%s\0' "$file"; fi
done | tar -c --null -T - | tar -C "$root/gpuruntime" -x

# The namespace takes the mounts away with it.
export root
# shellcheck disable=SC2016
unshare -m bash -euc 'mount -t proc proc "$root/proc"; mount --rbind /dev "$root/dev"; mount -t tmpfs tmpfs "$root/dev/shm"
  exec chroot "$root" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin bash -euc "cd /gpuruntime; make $0"' \
  "${TARGETS:-demo test}"
echo "checkfresh: ${TARGETS:-demo test} passed on $suite"
rm -rf "$root" "$root.log"
