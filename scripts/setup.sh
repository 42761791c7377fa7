#!/usr/bin/env bash
# Installs what a group of make targets needs on Debian 12 and Ubuntu 24.04, and says what and why.
# With everything there it does nothing and says nothing. GPURUNTIME_SKIP_SETUP=1 leaves the machine as it is.
#   setup.sh GROUP...      groups: build test demo bench report clang cuda check-house tidy site
set -euo pipefail

if [ "${GPURUNTIME_SKIP_SETUP:-0}" = 1 ]; then exit 0; fi

have_cuda_toolkit() {
  command -v nvcc >/dev/null || [ -x /usr/local/cuda/bin/nvcc ]
}

wanted=()
need() { wanted+=("$1|$2"); }

for group in "$@"; do
  case "$group" in
    build)
      need g++ "compiles the library"
      need cmake "configures the build"
      need ninja-build "runs the build"
      need libboost-dev "size lists, arrays and checked conversions (headers)"
      need librandom123-dev "counter-based random numbers (headers)"
      need libtbb-dev "runs blocks on all cores"
      have_cuda_toolkit || need libthrust-dev "sorts, searches and scans on the cpu (headers)"
      ;;
    test)
      need libgtest-dev "the framework of the tests"
      need python3 "runs the checks of exports and digests"
      need binutils "lists the exported names"
      need pkg-config "one of the two ways to find an installed library, tried by a test"
      ;;
    demo)
      need libpng-dev "reads and writes the pictures of the demo"
      ;;
    bench)
      need libbenchmark-dev "the framework of the benchmarks"
      need python3 "prints the table of results"
      ;;
    report)
      need python3-numpy "the peer of most families"
      need python3-scipy "the peer of convolutions, filters and interpolation"
      need python3-matplotlib "draws the pictures of the report"
      need binutils "tells the size of the library"
      ;;
    clang)
      need clang "the second compiler that results are compared with"
      ;;
    cuda)
      if ! have_cuda_toolkit; then
        echo "setup: the cuda backend needs nvcc of the CUDA toolkit (12 or newer), on PATH or in its default folder." >&2
        exit 1
      fi
      ;;
    check-house)
      need clang-format-14 "the formatter; the version is fixed, for others format differently"
      need git "lists the files to check"
      need python3 "runs the checks"
      ;;
    tidy)
      need clang-tidy "the linter"
      need python3 "runs the linter over all units"
      ;;
    site)
      need doxygen "makes the site of the documents and the headers"
      need python3 "fits the sources to the site"
      ;;
    *)
      echo "setup: no group is called '$group'." >&2
      exit 2
      ;;
  esac
done

installed=$(dpkg-query -W -f '/${Package} ${db:Status-Status}/' "${wanted[@]%%|*}" 2>/dev/null || true)
missing=()
reasons=()
for entry in "${wanted[@]}"; do
  package=${entry%%|*}
  if [[ $installed == *"/$package installed/"* || " ${missing[*]-} " == *" $package "* ]]; then continue; fi
  missing+=("$package")
  reasons+=("$(printf '  %-18s %s' "$package" "${entry#*|}")")
done
if [ ${#missing[@]} -eq 0 ]; then exit 0; fi

echo "setup: these packages are missing:"
printf '%s\n' "${reasons[@]}"

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [ -t 0 ]; }; then
    as_root=(sudo)
  else
    echo "setup: installing them needs root. Have them installed (apt-get install ${missing[*]}) and start again." >&2
    exit 1
  fi
fi
if ! command -v apt-get >/dev/null; then
  echo "setup: there is no apt-get here. Install them in this system's own way, then set GPURUNTIME_SKIP_SETUP=1." >&2
  exit 1
fi
echo "setup: installing them with apt-get."
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
