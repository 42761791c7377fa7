#!/usr/bin/env bash
# Builds a small program against the tree that `cmake --install` lays down, found by CMake, by pkg-config, and with the
# headers of the CUDA toolkit in sight.
#   checkinstall.sh BUILD_FOLDER run|link     link leaves the programs unstarted
set -euo pipefail

build=$1
what=$2
source=$(cd "$(dirname "$0")/../tests/install" && pwd)
cmake=${CMAKE:-cmake}
cxx=${CXX:-c++}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

start() {
  echo "$1"
  if [ "$what" = run ]; then LD_LIBRARY_PATH=$libraries "$2"; fi
}

"$cmake" --install "$build" --prefix "$prefix" >"$work/log" || { cat "$work/log"; exit 1; }
libraries=$(dirname "$(find "$prefix" -name libzqgpuruntime.so)")
if [ -e "$prefix/include/gpuruntime/launcher" ]; then
  echo "internal headers were installed"
  exit 1
fi

{ "$cmake" -S "$source" -B "$work/bycmake" -DCMAKE_PREFIX_PATH="$prefix" && "$cmake" --build "$work/bycmake"; } \
  >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
start "found by CMake" "$work/bycmake/caller"
if [ -e "$work/bycmake/recipescaller" ]; then start "found by CMake, with the recipes" "$work/bycmake/recipescaller"; fi

# The tree is found where it lies now, not where it was laid down.
mv "$prefix" "$work/moved"
libraries=$work/moved${libraries#"$prefix"}
export PKG_CONFIG_PATH=$libraries/pkgconfig
read -ra flags <<<"$(pkg-config --cflags --libs gpuruntime)"
"$cxx" -std=c++17 "$source/caller.cpp" "${flags[@]}" -o "$work/bypkgconfig"
start "found by pkg-config" "$work/bypkgconfig"

# Vector types and the stream are the toolkit's own then, under the same mangled names.
nvcc=$(command -v nvcc || echo /usr/local/cuda/bin/nvcc)
if [ -x "$nvcc" ]; then
  toolkit=$(dirname "$(dirname "$(readlink -f "$nvcc")")")
  "$cxx" -std=c++17 -isystem "$toolkit/include" "$source/caller.cpp" "${flags[@]}" -o "$work/withtoolkit"
  start "with the headers of the CUDA toolkit" "$work/withtoolkit"
fi
