# Short names for what is done often. Each target first installs what it needs (scripts/setup.sh) and then calls CMake
# with a preset; out/PRESET is the build folder.
SHELL := /bin/bash
.SHELLFLAGS := -euo pipefail -c
.DEFAULT_GOAL := help

CUDA_ARCHITECTURE ?= 90
PREFIX ?= /usr/local
BENCH_ARGUMENTS ?=
REPORT_ARGUMENTS ?=
BACKENDS ?= cpu
IMAGE ?=
OUTPUT ?=
NVCC := $(or $(shell command -v nvcc),$(wildcard /usr/local/cuda/bin/nvcc))

setup := scripts/setup.sh
cpu_groups := build test demo bench
build = cmake --preset $(1) $(3) && cmake --build --preset $(1) $(2)
ctest = ctest --preset $(1) --no-tests=error
sources = git ls-files -co --exclude-standard '*.hpp' '*.cpp'

.PHONY: help demo test test-all bench report build-time cuda format tidy check-house exports install check-install \
  offline-bundle check-offline-bundle site clean

help: ## This list
	@grep -E '^[a-z-]+:.*## ' $(MAKEFILE_LIST) | sed -E 's/:.*## /|/' | awk -F'|' '{printf "make %-22s %s\n", $$1, $$2}'

demo: ## Takes a photograph through blurs, edges, resizing: IMAGE=photo.png OUTPUT=out/photograph.png, both optional
	@$(setup) $(cpu_groups)
	@$(call build,cpu,--target photograph)
	out/cpu/examples/photograph --output "$(or $(OUTPUT),out/photograph.png)" $(if $(IMAGE),"$(IMAGE)")

test: ## Builds the cpu backend and runs every test, the digests among them
	@$(setup) $(cpu_groups)
	$(call build,cpu)
	$(call ctest,cpu)

test-all: test ## The tests again: sanitizers, other orders of threads, clang++, another vector level, one thread
	@$(setup) clang
	taskset -c 0 $(call ctest,cpu)
	$(call build,cpu-debug)
	$(call ctest,cpu-debug)
	$(call build,cpu-checking)
	for seed in 0 1 2; do GPURUNTIME_CHECKING_SEED=$$seed $(call ctest,cpu-checking); done
	$(call build,cpu-clang)
	$(call ctest,cpu-clang)
	if [ "$$(uname -m)" = x86_64 ]; then $(call build,cpu-v2) && $(call ctest,cpu-v2); fi

bench: ## Runs the benchmarks and prints their table: BENCH_ARGUMENTS=--benchmark_repetitions=5
	@$(setup) $(cpu_groups)
	@$(call build,cpu)
	@rm -rf out/bench && mkdir -p out/bench
	@find out/cpu/benchmarks -name '*_bench' -type f -executable | sort | while read -r program; do \
	  echo "$${program##*/}"; \
	  "$$program" --benchmark_out="out/bench/$${program##*/}.json" --benchmark_out_format=json $(BENCH_ARGUMENTS) \
	    >out/bench/log.txt 2>&1 \
	    || { cat out/bench/log.txt; exit 1; }; \
	done
	@python3 -B scripts/benchtable.py out/bench

report: ## Measures speed beside NumPy, SciPy and std, and writes docs/benchmarks.md: half an hour, on a quiet machine
	@$(setup) $(cpu_groups) report
	@$(call build,cpu)
	@python3 -B scripts/report.py $(REPORT_ARGUMENTS)

build-time: ## Times a full build of the library without the compiler cache, for the report: BACKENDS=cpu
	@$(setup) build test $(if $(filter cuda,$(BACKENDS)),cuda)
	@python3 -B scripts/buildtime.py $(BACKENDS)

cuda: ## Compiles and links the cuda backend with its tests and benchmarks: CUDA_ARCHITECTURE=90
	@$(setup) $(cpu_groups) cuda
	CUDACXX="$(NVCC)" cmake --preset cuda -DCMAKE_CUDA_ARCHITECTURES=$(CUDA_ARCHITECTURE)
	cmake --build --preset cuda

format: ## Formats every C++ file
	@$(setup) check-house
	@$(sources) | xargs -r clang-format-14 -i

tidy: ## Lints the units
	@$(setup) $(cpu_groups) tidy
	@$(call build,cpu)
	run-clang-tidy -quiet -p out/cpu "$(CURDIR)/src/.*\.cpp"

check-house: ## Checks the rules of the house: layers, names, stems, length, format
	@$(setup) check-house
	@python3 -B scripts/checkhouse.py

exports: ## Writes the list of exported names anew, after a change of the interface
	@python3 -B scripts/exportlist.py

install: ## Installs the cpu backend: PREFIX=/usr/local
	@$(setup) $(cpu_groups)
	$(call build,cpu)
	cmake --install out/cpu --prefix "$(PREFIX)"

check-install: ## Builds and runs a small program against an installed tree
	@$(setup) $(cpu_groups)
	@$(call build,cpu)
	scripts/checkinstall.sh out/cpu run

offline-bundle: ## Collects the dependencies of a build without a package manager in out/offline-bundle
	@$(setup) $(cpu_groups)
	scripts/offlinebundle.sh out/offline-bundle

check-offline-bundle: offline-bundle ## Builds the cuda backend from the bundle, the system's headers hidden (root)
	@$(setup) cuda
	scripts/checkofflinebundle.sh out/offline-bundle

site: ## Makes the site of the documents and the headers, out/site/index.html
	@$(setup) site
	@rm -rf out/site && mkdir -p out/site
	doxygen docs/Doxyfile

clean: ## Removes everything that was built
	rm -rf out
