#!/usr/bin/env python3
"""interp_numpy.py [RESULTS]: NumPy's `interp`, SciPy's `RegularGridInterpolator` and `ndimage.map_coordinates` (order 1)
on inputs like those of the interpolation benchmarks, by one thread. Prints nanoseconds a query and, given a folder of
the benchmarks' JSON files, how many times as fast those are, for each of their cores.

    for unit in interp1d_full interp2d_full interp2d_colonGrid interp3d_full; do
      out/cpu/benchmarks/interp_${unit}_bench --benchmark_out=results/$unit.json; done
    benchmarks/interp/interp_numpy.py results
"""
import json
import pathlib
import statistics
import sys
import time

try:
    import numpy
    from scipy.interpolate import RegularGridInterpolator
    from scipy.ndimage import map_coordinates
except ImportError:
    sys.exit("NumPy or SciPy is missing: install the packages python3-numpy and python3-scipy")

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent.parent / "scripts"))
from benchresults import read, table  # noqa: E402

LINE_QUERIES = 10**7
REPETITIONS = 3


def nanoseconds(call, queries):
    def once():
        start = time.perf_counter()
        call()
        return 1e9 * (time.perf_counter() - start) / queries
    return statistics.median(once() for _ in range(REPETITIONS))


def lines(generator):
    """Benchmark, peer, and its time: one dimension."""
    for n in (100, 10**6):
        for spacing in ("Even", "Uneven"):
            points = numpy.cumsum(1 + generator.integers(0, 16 if spacing == "Uneven" else 1, n)).astype(float)
            points = (points - points[0]) / (points[-1] - points[0])
            values = generator.random(n)
            queries = generator.random(LINE_QUERIES)
            for order in ("shuffled", "sorted"):
                if order == "sorted":
                    queries.sort()
                yield ("interp1d%s<Order::%s, %d>" % (spacing, order, n), "interp",
                       nanoseconds(lambda: numpy.interp(queries, points, values), LINE_QUERIES))


def scattered(name, side, dimensions, count, generator):
    """The same for scattered queries on a cube; SciPy takes rows of coordinates, and columns."""
    values = generator.random((side,) * dimensions)
    queries = generator.random((count, dimensions))
    interpolator = RegularGridInterpolator([numpy.linspace(0, 1, side)] * dimensions, values)
    places = numpy.ascontiguousarray(queries.T) * (side - 1)
    yield name, "RegularGridInterpolator", nanoseconds(lambda: interpolator(queries), count)
    yield name, "map_coordinates", nanoseconds(lambda: map_coordinates(values, places, order=1), count)


def resized(generator):
    values = generator.random((2048, 2048))
    steps = numpy.linspace(0, 2047, 4096)
    places = numpy.array(numpy.meshgrid(steps, steps, indexing="ij"))
    yield "resize<4096>", "map_coordinates", nanoseconds(lambda: map_coordinates(values, places, order=1), 4096**2)


def main():
    if len(sys.argv) > 2 or sys.argv[1:2] == ["--help"]:
        sys.exit(__doc__)
    ours, cores = {}, 1
    if len(sys.argv) == 2:
        ours = {name.replace("gpuruntime::", ""): result for name, result in read(sys.argv[1]).items()}
        context = json.loads(next(pathlib.Path(sys.argv[1]).glob("*.json")).read_text())["context"]
        cores = context["num_cpus"]
    generator = numpy.random.default_rng(1)
    cases = (lines(generator), scattered("interp2dScattered<InterpTypeLinear>", 256, 2, 2**22, generator),
             scattered("interp3dScattered<32>", 32, 3, 2**21, generator),
             scattered("interp3dScattered<256>", 256, 3, 2**21, generator), resized(generator))
    rows = [("benchmark", "peer", "its ns", "ours ns", "a core")]
    for name, peer, its in (row for case in cases for row in case):
        row = [name, peer, "%.2f" % its, "", ""]
        if name in ours:
            own = 1e9 / ours[name].run["items_per_second"]
            row[3:] = "%.2f" % own, "%.1f" % (its / own / cores)
        rows.append(tuple(row))
    print(table(rows))


if __name__ == "__main__":
    main()
