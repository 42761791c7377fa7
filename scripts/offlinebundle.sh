#!/usr/bin/env bash
# Collects what a build of the cuda backend, its tests and its benchmarks needs beside the CUDA toolkit, for a machine
# that reaches no package registry:   offlinebundle.sh FOLDER
# There, -DGPURUNTIME_DEPENDENCIES=FOLDER points the build at it. (oneTBB and libpng, which the cpu backend and the demo
# need, are not in it: -DGPURUNTIME_EXAMPLES=OFF leaves out the demo.)
set -euo pipefail

target=$(realpath -m "$1")
cd "$(dirname "$0")/.."

find_headers() {
  local folder
  for folder in /usr/include /usr/local/include; do
    if [ -e "$folder/$1" ]; then echo "$folder"; return; fi
  done
  echo "offlinebundle: $1 is missing; install the package $2." >&2
  exit 1
}

boost=$(find_headers boost/version.hpp libboost-dev)
random123=$(find_headers Random123/philox.h librandom123-dev)
googletest=/usr/src/googletest
if [ ! -e "$googletest/CMakeLists.txt" ]; then
  echo "offlinebundle: the sources of GoogleTest are missing; install the package googletest." >&2
  exit 1
fi

rm -rf "$target"
mkdir -p "$target/include" "$target/src"

# Boost: what the sources reach, and the folders whose headers are named by macros.
{
  python3 -B scripts/includeclosure.py "$boost" boost include src tests benchmarks
  (cd "$boost" && find boost/config boost/mpl boost/preprocessor -type f)
} | sort -u | tar -C "$boost" -c -T - | tar -C "$target/include" -x
cp -r "$random123/Random123" "$target/include/"
cp -r "$googletest" "$target/src/"

# Google Benchmark comes built: header, libraries and CMake package under the folders that they have in /usr.
if command -v dpkg-query >/dev/null; then
  { dpkg-query -L libbenchmark-dev libbenchmark1debian 2>/dev/null || true; } | grep -E '^/usr/(include|lib)/' |
    while read -r file; do if [ ! -d "$file" ]; then echo "${file#/usr/}"; fi; done |
    tar -C /usr -c -T - | tar -C "$target" -x
fi
if [ ! -e "$target/include/benchmark/benchmark.h" ]; then
  echo "offlinebundle: Google Benchmark was not found; build with -DGPURUNTIME_BENCHMARKS=OFF there." >&2
fi

echo "offlinebundle: $(du -sh "$target" | cut -f1) in $(find "$target" -type f | wc -l) files"
