#!/usr/bin/env bash
# Proves that the bundle is enough: configures and builds the cuda backend from it in a mount namespace in which the
# system's own headers of the dependencies are hidden. Needs root and nvcc:   checkofflinebundle.sh BUNDLE
set -euo pipefail

bundle=$(realpath "$1")
source=$(cd "$(dirname "$0")/.." && pwd)

if [ "${2:-}" != inside ]; then
  if [ "$(id -u)" -ne 0 ]; then
    echo "checkofflinebundle: hiding the system's headers needs root." >&2
    exit 1
  fi
  exec unshare -m "$0" "$bundle" inside
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/empty"
for hidden in /usr/include/boost /usr/include/Random123 /usr/include/gtest /usr/include/gmock /usr/include/benchmark \
  /usr/src/googletest; do
  if [ -e "$hidden" ]; then mount --bind "$work/empty" "$hidden"; fi
done
if [ -e /usr/include/boost/version.hpp ]; then
  echo "checkofflinebundle: could not hide the system's headers." >&2
  exit 1
fi

nvcc=$(command -v nvcc || echo /usr/local/cuda/bin/nvcc)
export CUDACXX=$nvcc CCACHE_DISABLE=1
cd "$source"
cmake --preset cuda -B "$work/out" -DGPURUNTIME_DEPENDENCIES="$bundle" -DGPURUNTIME_EXAMPLES=OFF \
  -DCMAKE_CUDA_ARCHITECTURES="${CUDA_ARCHITECTURE:-90}" >"$work/log" || { cat "$work/log"; exit 1; }
cmake --build "$work/out" ${JOBS:+-j "$JOBS"}
echo "checkofflinebundle: built from the bundle alone"
