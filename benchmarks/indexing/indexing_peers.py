#!/usr/bin/env python3
"""NumPy's peers of the benchmarks of indexing. It takes its indices as integers, from 0, and checks them. `isin` does
not tell the places of what it finds, and looks integers of a small range up in a table; `searchsorted`, on values
sorted before, is the search alone. Steps of a chain have no peer.

usage: indexing_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import constant, filled, main, numpy, peer  # noqa: E402

LARGE, COUNT = constant("largeCount", "support/bench.hpp"), constant("indexCount", "support/indexing.hpp")
FIND_COUNT, SIDE = constant("n", "indexing/find_bench.cpp"), constant("side", "indexing/sub2ind2sub_bench.cpp")
QUERIES, VALUES = constant("queries", "indexing/ismember_bench.cpp"), constant("values", "indexing/ismember_bench.cpp")
DOUBLE, BOOL = numpy.float64, numpy.bool_
generator = numpy.random.default_rng(1)


def chosen(choice):
    """Extent of the array, and the places that are chosen of it."""
    if choice == "all":
        return COUNT + 1, slice(1, None)
    if choice == "everyOtherReversed":
        return 2 * COUNT, slice(None, None, -2)
    order = numpy.arange(COUNT)
    if choice == "sorted":
        return COUNT + COUNT // 9 + 1, order + order // 9
    return COUNT, generator.permutation(COUNT)


@peer("copyto a slice or take", "subsref")
def gather(T, kind, choice):
    extent, places = chosen(choice)
    array, out = filled(T, extent), filled(T, COUNT)
    if isinstance(places, slice):
        return COUNT, lambda: numpy.copyto(out, array[places])
    return COUNT, lambda: numpy.take(array, places, out=out, mode="clip")  # Other modes go through a buffer.


@peer("copyto a slice or put", "subsasgn")
def scatter(T, kind, choice):
    extent, places = chosen(choice)
    array, values = filled(T, extent), filled(T, COUNT)
    if isinstance(places, slice):
        return COUNT, lambda: numpy.copyto(array[places], values)
    return COUNT, lambda: numpy.put(array, places, values)


@peer("array[places] =", "subsasgn")
def scatter_by_index(T, kind, choice):
    extent, places = chosen(choice)
    array, values = filled(T, extent), filled(T, COUNT)

    def call():
        array[places] = values
    return None if isinstance(places, slice) else (COUNT, call)


def block(dtype, kind, rows):
    """Rows 2 to rows + 1 of every other column, or of shuffled ones; a column is a row here."""
    columns = COUNT // rows
    listed = kind == "const double*"
    array = filled(dtype, columns if listed else 2 * columns, rows + 2)[:, 1:-1]
    return array, generator.permutation(columns) if listed else slice(None, None, -2), filled(dtype, columns, rows)


@peer("copyto a view", "subsrefOfBlock")
def gather_block(T, kind, rows):
    array, columns, out = block(T, kind, rows)
    return COUNT, lambda: numpy.copyto(out, array[columns])


@peer("array[places] =", "subsasgnToBlock")
def scatter_block(T, kind, rows):
    array, columns, values = block(T, kind, rows)

    def call():
        array[columns] = values
    return COUNT, call


@peer("fill", "subsasgnScalar")
def scatter_scalar(T):
    array = filled(T, COUNT + 1)
    return COUNT, lambda: array[1:].fill(7)


@peer("floor, equal, all, min, max", "checkValidFindMax")
def find_max():
    array = numpy.arange(1, LARGE + 1, dtype=DOUBLE)
    whole, flags = filled(DOUBLE, LARGE), filled(BOOL, LARGE)
    return LARGE, lambda: (numpy.equal(numpy.floor(array, whole), array, flags).all() and array.min() >= 1
                           and array.max())


@peer("floor, equal, greater_equal, logical_and", "indexValidation")
def validate():
    array, whole = filled(DOUBLE, COUNT), filled(DOUBLE, COUNT)
    a, b = filled(BOOL, COUNT), filled(BOOL, COUNT)
    return COUNT, lambda: numpy.logical_and(numpy.equal(numpy.floor(array, whole), array, a),
                                            numpy.greater_equal(array, 1, b), out=a)


@peer("flatnonzero", "find1D")
def find(T, percent, whole_chain):
    array = (generator.integers(0, 100, FIND_COUNT) < percent).astype(T)
    return (FIND_COUNT, lambda: numpy.flatnonzero(array)) if whole_chain else None


def members(dtype):
    return (generator.integers(0, 2 * VALUES, QUERIES).astype(dtype),
            generator.integers(0, 2 * VALUES, VALUES).astype(dtype))


@peer("isin", "isMember2Arg")
def is_member(T, whole_chain):
    queries, values = members(T)
    return (QUERIES, lambda: numpy.isin(queries, values)) if whole_chain else None


@peer("searchsorted", "isMember2Arg")
def search(T, whole_chain):
    queries, values = members(T)
    values.sort()
    return None if whole_chain else (QUERIES, lambda: numpy.searchsorted(values, queries))


peer("searchsorted", "isMember1Arg")(lambda: search(DOUBLE, False))


@peer("isin", "isMember2ArgCmplx")
def is_complex_member(distinct):
    queries, values = (generator.integers(0, distinct, count) + 1j * generator.integers(0, 1000, count)
                       for count in (QUERIES, VALUES))
    return QUERIES, lambda: numpy.isin(queries, values)


peer("isin", "isMember1ArgCmplx")(lambda: is_complex_member(1 << 20))


def to_linear(dimensions):
    subscripts = tuple(filled(numpy.int64, COUNT) for _ in range(dimensions))
    return COUNT, lambda: numpy.ravel_multi_index(subscripts, (SIDE,) * dimensions)


peer("ravel_multi_index", "sub2ind2D", "sub2ind2DChecked")(lambda: to_linear(2))
peer("ravel_multi_index", "sub2ind3D", "sub2ind3DChecked")(lambda: to_linear(3))


def to_subscripts(*sides):
    linear = generator.permutation(COUNT)
    shape = (-(-COUNT // numpy.prod(sides)), *sides)
    return COUNT, lambda: numpy.unravel_index(linear, shape)


peer("unravel_index", "ind2sub2D")(lambda: to_subscripts(SIDE))
peer("unravel_index", "ind2sub3D")(lambda: to_subscripts(100, SIDE))


def selected(dtype, shape, axis):
    matrix = filled(dtype, *shape)
    places = numpy.expand_dims(numpy.resize(generator.permutation(4), COUNT), axis)
    return COUNT, lambda: numpy.take_along_axis(matrix, places, axis)


peer("take_along_axis", "selectFromRows")(lambda T: selected(T, (4, COUNT), 0))
peer("take_along_axis", "selectFromColumns")(lambda T: selected(T, (COUNT, 4), 1))


if __name__ == "__main__":
    main(__file__)
