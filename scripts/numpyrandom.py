#!/usr/bin/env python3
"""numpyrandom.py PROGRAM: random numbers of the library beside NumPy's and the standard library's, on one core.

PROGRAM is the compiled benchmark of the random arrays, out/cpu/benchmarks/build_rand_bench. It and NumPy run on the same
core, one after the other, over 2^26 elements; medians of five runs each. Needs the Python package numpy.
"""
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

import numpy

from benchresults import read, table

COUNT = 1 << 26
RUNS = 5


def numpy_rates():
    for name in ("Philox", "PCG64"):
        generator = numpy.random.Generator(getattr(numpy.random, name)(12345))
        for kind, draw in (("random", generator.random), ("standard_normal", generator.standard_normal)):
            for dtype in (numpy.float64, numpy.float32):
                out = numpy.zeros(COUNT, dtype)
                seconds = []
                for _ in range(RUNS):
                    start = time.perf_counter()
                    draw(out=out, dtype=dtype)
                    seconds.append(time.perf_counter() - start)
                yield "numpy %s %s %s" % (name, kind, numpy.dtype(dtype).name), COUNT / statistics.median(seconds)


def library_rates(program):
    with tempfile.TemporaryDirectory() as folder:
        result = pathlib.Path(folder) / "rand.json"
        subprocess.run([program, "--benchmark_filter=^(standardLibrary|rand|boxMuller|inversion)<",
                        "--benchmark_out=%s" % result, "--benchmark_out_format=json"], check=True, capture_output=True)
        for name, measured in read(result).items():
            yield name, COUNT / measured.median


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    os.sched_setaffinity(0, {min(os.sched_getaffinity(0))})
    rates = dict(library_rates(sys.argv[1]))
    rates.update(numpy_rates())
    rows = [("one core, 2^26 elements", "M samples/s", "ns a sample")]
    rows += [(name, "%.0f" % (rate / 1e6), "%.2f" % (1e9 / rate)) for name, rate in rates.items()]
    print(table(rows))


if __name__ == "__main__":
    main()
