#!/usr/bin/env python3
"""NumPy's `interp` and SciPy's `RegularGridInterpolator`, `ndimage.map_coordinates` and `ndimage.zoom`, all of order 1,
on inputs like those of the benchmarks of interp. `map_coordinates` and `zoom` know no grid but 0, 1, 2, ...; `zoom`
knows no queries but an even mesh. Where OpenCV is at hand, its `resize` too, whose pixels have their places in their
middles, by one thread.

usage: interp_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import constant, filled, main, need, numpy, opencv, peer  # noqa: E402

interpolate, ndimage = need("scipy.interpolate"), need("scipy.ndimage")
cv2 = opencv()
LARGE, LINE_QUERIES = constant("largeCount", "support/bench.hpp"), constant("lineQueries", "support/interp.hpp")
generator = numpy.random.default_rng(1)


def line(order, n, uneven, low=0.0, high=1.0):
    """Points and queries between low and high."""
    points = numpy.cumsum(1 + generator.integers(0, 16 if uneven else 1, n)).astype(float)
    points = low + (high - low) * (points - points[0]) / (points[-1] - points[0])
    queries = low + (high - low) * generator.random(LINE_QUERIES)
    if order == "sorted":
        queries.sort()
    return points, queries


def on_line(*arguments):
    points, queries = line(*arguments)
    values = generator.random(points.size)
    return LINE_QUERIES, lambda: numpy.interp(queries, points, values)


def in_bins(*arguments):
    points, queries = line(*arguments)
    return LINE_QUERIES, lambda: numpy.searchsorted(points, queries, side="right")


peer("interp", "interp1dEven")(lambda order, n: on_line(order, n, False))
peer("interp", "interp1dUneven")(lambda order, n: on_line(order, n, True))
peer("interp", "interp1dColonGrid")(lambda order, n: on_line(order, n, False, 1.0, float(n)))
peer("searchsorted", "indexSearchEven")(lambda order, n: in_bins(order, n, False))
peer("searchsorted", "indexSearchUneven")(lambda order, n: in_bins(order, n, True))
peer("searchsorted", "indexSearchColonGrid")(lambda: in_bins("shuffled", 1000, False, 1.0, 1000.0))


def columns(order):
    points, _ = line("sorted", 1000, False)
    queries = generator.random(8000)
    if order == "sorted":
        queries.sort()
    on_grid = interpolate.interp1d(points, generator.random((2000, 1000)), axis=1, assume_sorted=True)
    return 8000 * 2000, lambda: on_grid(queries)


peer("interp1d", "interp1dColumns")(columns)
peer("interp1d", "interp1dColumnsColonGrid")(lambda: columns("sorted"))

# Queries by themselves: side of the cube of values, dimensions, queries, method.
SCATTERED = {
    "interp2dScattered": lambda method: (256, 2, 1 << 22, "linear" if method == "InterpTypeLinear" else "nearest"),
    "interp2dColonGridScattered": lambda: (4096, 2, 1 << 22, "linear"),
    "interp3dScattered": lambda side: (side, 3, 1 << 21, "linear"),
    "interp3dColonGridScattered": lambda: (256, 3, 1 << 21, "linear"),
    "interpndScattered": lambda dimensions, side: (side, dimensions, 1 << 20, "linear"),
    "interpndScatteredColonGrid": lambda dimensions, side: (side, dimensions, 1 << 20, "linear"),
}


def on_regular_grid(side, dimensions, count, method):
    on_grid = interpolate.RegularGridInterpolator([numpy.linspace(0, 1, side)] * dimensions,
                                                  generator.random((side,) * dimensions), method)
    queries = generator.random((count, dimensions))
    return count, lambda: on_grid(queries)


def at_coordinates(side, dimensions, count, method):
    values, places = generator.random((side,) * dimensions), (side - 1) * generator.random((dimensions, count))
    order = 1 if method == "linear" else 0
    return count, lambda: ndimage.map_coordinates(values, places, order=order)


for name, shape in SCATTERED.items():
    peer("map_coordinates", name)(lambda *args, shape=shape: at_coordinates(*shape(*args)))
    peer("RegularGridInterpolator", name)(lambda *args, shape=shape: on_regular_grid(*shape(*args)))

# A mesh of queries: dimensions, side of the cube of values, side of the mesh.
MESHES = {
    "resize": lambda to: (2, 2048, to),
    "interp2dMeshFullGrid": lambda: (2, 2048, 4096),
    "interp3dMesh": lambda: (3, 128, 256),
    "interp3dMeshFullGrid": lambda: (3, 128, 256),
    "interpndMesh": lambda dimensions, side, to: (dimensions, side, to),
    "interpndMeshColonGrid": lambda dimensions, side, to: (dimensions, side, to),
}


def mesh_of_coordinates(dimensions, side, to):
    values = generator.random((side,) * dimensions)
    places = numpy.array(numpy.meshgrid(*[numpy.linspace(0, side - 1, to)] * dimensions, indexing="ij"))
    return to**dimensions, lambda: ndimage.map_coordinates(values, places, order=1)


def zoomed(dimensions, side, to):
    values, out = generator.random((side,) * dimensions), filled(numpy.float64, *(to,) * dimensions)
    return out.size, lambda: ndimage.zoom(values, to / side, out, order=1)


for name, shape in MESHES.items():
    peer("zoom", name)(lambda *args, shape=shape: zoomed(*shape(*args)))
    peer("map_coordinates", name)(lambda *args, shape=shape: mesh_of_coordinates(*shape(*args)))


@peer("OpenCV resize", "resize")
def by_opencv(to):
    values, out = generator.random((2048, 2048)), filled(numpy.float64, to, to)
    return None if cv2 is None else (out.size, lambda: cv2.resize(values, (to, to), out, interpolation=cv2.INTER_LINEAR))


@peer("equal, all", "verifyCartesianGrid")
def verify(dimensions):
    side = 1 << 24 // dimensions
    full, grid = filled(numpy.float64, *[side] * dimensions), filled(numpy.float64, side)
    flags = filled(numpy.bool_, *full.shape)
    across = grid.reshape(side, *[1] * (dimensions - 2), 1)
    return full.size, lambda: numpy.equal(full, across, out=flags).all()


@peer("copyto a view", "copyToVector")
def to_vector():
    full, out = filled(numpy.float64, 1 << 21, 16), filled(numpy.float64, 1 << 21)
    return out.size, lambda: numpy.copyto(out, full[:, 0])


@peer("isfinite, all, greater, all", "checkInfNaNAndStrictlyIncreasing")
def increasing():
    grid, flags = numpy.linspace(0, 1, LARGE // 4), filled(numpy.bool_, LARGE // 4)
    return grid.size, lambda: (numpy.isfinite(grid, out=flags).all()
                               and numpy.greater(grid[1:], grid[:-1], out=flags[1:]).all())


if __name__ == "__main__":
    main(__file__)
