#!/usr/bin/env python3
"""subsref_numpy.py [RESULTS...]: NumPy's take and put by the lists of subsref_bench and subsasgn_bench, by one thread.
Prints nanoseconds an element and, given JSON files of these, how many times as fast they are, in all and for each of
their cores. NumPy takes its indices as integers.

    out/cpu/benchmarks/indexing_subsref_bench --benchmark_out=subsref.json
    out/cpu/benchmarks/indexing_subsasgn_bench --benchmark_out=subsasgn.json
    benchmarks/indexing/subsref_numpy.py subsref.json subsasgn.json
"""
import json
import pathlib
import re
import statistics
import sys
import time

try:
    import numpy
except ImportError:
    sys.exit("NumPy is missing: install the package python3-numpy")

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / "scripts"))
from benchresults import read, table  # noqa: E402

COUNT = 2**24
TYPES = {"double": numpy.float64, "float": numpy.float32, "unsigned char": numpy.uint8, "double2": numpy.complex128}
REPETITIONS = 3


def nanoseconds(call):
    def once():
        start = time.perf_counter()
        call()
        return 1e9 * (time.perf_counter() - start) / COUNT
    once()
    return statistics.median(once() for _ in range(REPETITIONS))


def main():
    if sys.argv[1:2] == ["--help"]:
        sys.exit(__doc__)
    ours, cores = {}, 1
    for name in sys.argv[1:]:
        ours.update({re.sub(r"\s*,\s*", ", ", key).replace("Choice::", ""): result for key, result in read(name).items()})
        cores = json.loads(pathlib.Path(name).read_text())["context"]["num_cpus"]
    order = numpy.arange(COUNT)
    lists = {"sorted": order + order // 9, "shuffled": numpy.random.default_rng(1).permutation(COUNT)}
    rows = [("benchmark", "NumPy ns", "ours ns", "ratio", "a core")]
    for type_name, dtype in TYPES.items():
        for choice, indices in lists.items():
            array = numpy.full(COUNT + COUNT // 9 + 1, 7, dtype)
            values = numpy.full(COUNT, 7, dtype)
            for benchmark, call in (("subsref", lambda: numpy.take(array, indices, out=values)),
                                    ("subsasgn", lambda: numpy.put(array, indices, values))):
                name = "%s<%s, const double*, %s>" % (benchmark, type_name, choice)
                numpys = nanoseconds(call)
                row = [name, "%.2f" % numpys, "", "", ""]
                if name in ours:
                    own = 1e9 * ours[name].median / COUNT
                    row[2:] = "%.2f" % own, "%.1f" % (numpys / own), "%.1f" % (numpys / own / cores)
                rows.append(tuple(row))
    print(table(rows))


if __name__ == "__main__":
    main()
