#!/usr/bin/env python3
"""NumPy's stable `sort` and `argsort`, and its comparison of neighbours, on the inputs of the benchmarks of sorting. It
orders complex values by their parts, not by magnitude, and its sorts make a new array.

usage: sorting_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import constant, filled, main, numpy, peer  # noqa: E402

COUNT, LARGE = constant("sortCount", "support/sorting.hpp"), constant("largeCount", "support/bench.hpp")
COMPLEX = numpy.complex128


def values(name, dtype):
    generator = numpy.random.default_rng(1)
    array = generator.integers(0, 2**52, COUNT).astype(numpy.float64)
    if name in ("sorted", "reversed"):
        array = numpy.arange(COUNT, dtype=numpy.float64)
        if name == "reversed":
            array = COUNT - array
    elif name == "fewValues":
        array = numpy.mod(array, 16)
    elif name == "someNaN":
        array[generator.integers(0, 100, COUNT) == 0] = numpy.nan
    if dtype is COMPLEX:
        imag = {"random": generator.integers(0, 2**52, COUNT), "someNaN": 1, "fewValues": 1}.get(name, 0)
        return array + 1j * imag
    return array.astype(dtype)


def sorted_by(array, with_index):
    function = numpy.argsort if with_index else numpy.sort
    return array.size, lambda: function(array, axis=-1, kind="stable")


def whole(with_index):
    return lambda T, name, index: sorted_by(values(name, T), index) if index == with_index else None


peer("sort", "sortVector")(whole(False))
peer("argsort", "sortVector")(whole(True))
peer("sort", "simpleSort")(lambda: sorted_by(values("random", numpy.float64), False))


@peer("sort or argsort, axis", "sortColumns")
def columns(T, with_index):
    return sorted_by(values("random", T).reshape(4096, 4096), with_index)


def in_order(array, compare):
    flags = filled(numpy.bool_, array.size - 1)
    return array.size, lambda: compare(array[:-1], array[1:], out=flags).all()


@peer("less_equal, all", "isSorted")
def is_sorted(T):
    return None if T is COMPLEX else in_order(filled(T, LARGE), numpy.less_equal)


peer("less, all", "isStronglySorted")(lambda: in_order(numpy.arange(LARGE, dtype=numpy.float64), numpy.less))


@peer("abs, less_equal, all", "isSortedOfAscendingMagnitudes")
def by_magnitude():
    array, magnitudes = values("sorted", COMPLEX), filled(numpy.float64, COUNT)
    _, compare = in_order(magnitudes, numpy.less_equal)

    def call():
        numpy.abs(array, out=magnitudes)
        compare()
    return COUNT, call


if __name__ == "__main__":
    main(__file__)
