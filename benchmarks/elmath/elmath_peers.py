#!/usr/bin/env python3
"""NumPy's peers of the benchmarks of elmath, with an output that is there where NumPy takes one. Its casts truncate and
do not saturate; it divides `float` by `double` in `float`. Its arrays are row-major: dimensions stand the other way
round, and our lower triangle is its upper one. Where OpenCV is at hand, its transposes too, by one thread.

usage: elmath_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import constant, filled, main, numpy, opencv, peer  # noqa: E402

cv2 = opencv()
LARGE, SIDE = constant("largeCount", "support/bench.hpp"), constant("largeSide", "support/bench.hpp")
REPEATED_BYTES = constant("outputBytes", "elmath/repmat_bench.cpp")
DOUBLE, BOOL = numpy.float64, numpy.bool_
REAL = {numpy.complex64: numpy.float32, numpy.complex128: DOUBLE}


def values(dtype):
    """Of every size from 0.6 to 2, as those of abs_bench."""
    parts = 2 if dtype in REAL else 1
    return numpy.linspace(0.6, 2, parts * LARGE, dtype=REAL.get(dtype, dtype)).view(dtype)


def elementwise(source, out, *functions):
    """Each function takes the array of the one before, and all write to `out`."""
    def call():
        array = source
        for function in functions:
            array = function(array, out)
    return LARGE, call


@peer("abs", "abs")
def magnitude(T):
    return elementwise(values(T), filled(REAL.get(T, T), LARGE), numpy.abs)


peer("square", "absPowerSquare")(lambda: elementwise(values(DOUBLE), filled(DOUBLE, LARGE), numpy.square))
peer("abs, power", "absPowerFraction")(lambda: elementwise(values(DOUBLE), filled(DOUBLE, LARGE), numpy.abs,
                                                          lambda array, out: numpy.power(array, 1.7, out)))


@peer("copyto, as astype", "cast")
def cast(T, U):
    array, out = filled(U, LARGE), filled(T, LARGE)
    return LARGE, lambda: numpy.copyto(out, array, casting="unsafe")


peer("copyto, as astype", "castToBool")(lambda: cast(BOOL, DOUBLE))


def cast_blocks(dtype, to):
    array, out = filled(dtype, LARGE), filled(to, 2 * LARGE)
    whole, rest = divmod(LARGE, 1000)
    blocks = out[:whole * 2000].reshape(whole, 2000)[:, :1000]

    def call():
        numpy.copyto(blocks, array[:whole * 1000].reshape(whole, 1000), casting="unsafe")
        numpy.copyto(out[whole * 2000:whole * 2000 + rest], array[whole * 1000:], casting="unsafe")
    return LARGE, call


peer("copyto, by blocks", "castBlocks")(lambda: cast_blocks(DOUBLE, numpy.float32))
peer("copyto, by blocks", "castBlocksToComplex")(lambda: cast_blocks(numpy.complex128, numpy.complex64))


@peer("equal", "compare")
def compare(A, B):
    a, b, out = filled(A, LARGE), filled(B, LARGE), filled(BOOL, LARGE)
    return LARGE, lambda: numpy.equal(a, b, out=out)


def flags(dtype, out_dtype, *functions):
    return elementwise(filled(dtype, LARGE), filled(out_dtype, LARGE), *functions)


def not_zero(array, out):
    return numpy.not_equal(array, 0, out=out)


peer("not_equal 0", "flagNonZero")(lambda T: flags(T, DOUBLE, not_zero))
peer("less 0", "flagNegative")(lambda: flags(DOUBLE, DOUBLE, lambda array, out: numpy.less(array, 0, out=out)))
peer("isnan", "isNaN")(lambda T: flags(T, BOOL, numpy.isnan))
peer("isinf", "isInf")(lambda T: flags(T, BOOL, numpy.isinf))
peer("isfinite", "isNaNOrInf")(lambda T: flags(T, BOOL, numpy.isfinite))
peer("not_equal 0", "isNonZero")(lambda T: flags(T, BOOL, not_zero))


@peer("not_equal, equal, logical_and", "isNeitherZeroNorNaN")
def neither(T):
    array, a, b = filled(T, LARGE), filled(BOOL, LARGE), filled(BOOL, LARGE)
    return LARGE, lambda: numpy.logical_and(not_zero(array, a), numpy.equal(array, array, out=b), out=a)


def some(array, function):
    flagged = filled(BOOL, LARGE)
    return LARGE, lambda: function(array, flagged).any()


peer("isnan, any", "checkNaN")(lambda: some(filled(DOUBLE, LARGE), numpy.isnan))
peer("isinf, any", "checkInf")(lambda: some(filled(DOUBLE, LARGE), numpy.isinf))
peer("isfinite, all", "checkNotFinite")(lambda: some(filled(DOUBLE, LARGE), numpy.isfinite))
peer("greater_equal, any", "checkNotStronglySortedAscending")(lambda: some(
    numpy.arange(LARGE, dtype=DOUBLE), lambda array, flagged: numpy.greater_equal(array[:-1], array[1:], flagged[1:])))


def diagonal(out_of_matrix):
    line, vector = filled(DOUBLE, SIDE * SIDE)[::SIDE + 1], filled(DOUBLE, SIDE)
    pair = (vector, line) if out_of_matrix else (line, vector)
    return SIDE, lambda: numpy.copyto(*pair)


peer("copyto, diagonal", "diagMatToVec")(lambda: diagonal(True))
peer("copyto, diagonal", "diagVecToMat")(lambda: diagonal(False))


def powers(base, exponent):
    """One of them is a vector: a power for each column, which is a row here."""
    side = 4096
    matrix, out = filled(DOUBLE, side, side), filled(DOUBLE, side, side)
    vector = numpy.linspace(0.5, 2, side)
    return side * side, lambda: numpy.multiply(
        matrix, numpy.power(vector if base is None else base, vector if exponent is None else exponent)[:, None], out)


peer("power, multiply", "mpowerMatrixScalar")(lambda: powers(None, 2.5))
peer("power, multiply", "mpowerScalarMatrix")(lambda: powers(2.5, None))


def permuted(dtype, size, order):
    """Sizes and order are column-major and counted from 1."""
    array = filled(dtype, *size[::-1])
    turned = numpy.transpose(array, [len(size) - dim for dim in reversed(order)])
    out = filled(dtype, *turned.shape)
    return array.size, lambda: numpy.copyto(out, turned)


@peer("copyto, transpose", "permute")
def permute(T, *order):
    exponent = (2**29 // numpy.dtype(T).itemsize).bit_length() - 1
    rank = len(order)
    return permuted(T, [2 ** ((exponent + rank - 1 - k) // rank) for k in range(rank)], order)


peer("copyto, transpose", "permuteOddSizes")(lambda T, *order: permuted(T, (453, 469, 469), order))
peer("copyto, transpose", "permuteToPlanes")(lambda T: permuted(T, (3, 4096, 4096), (2, 3, 1)))
peer("copyto, transpose", "permuteFromPlanes")(lambda T: permuted(T, (4096, 4096, 3), (3, 1, 2)))


def repeated(dtype, shape, source):
    """A broadcast, which is faster than `tile`."""
    out = filled(dtype, *shape)
    return out.size, lambda: numpy.copyto(out, source)


@peer("copyto, broadcast", "repmatColumnVector")
def repeat_column(T, length):
    repeats = REPEATED_BYTES // numpy.dtype(T).itemsize // length
    return repeated(T, (repeats, length), filled(T, length))


@peer("copyto, broadcast", "repmatMatrixRows")
def repeat_rows(T, rows, repeats):
    columns = REPEATED_BYTES // numpy.dtype(T).itemsize // rows // repeats
    return repeated(T, (columns, repeats, rows), filled(T, columns, 1, rows))


@peer("copyto, broadcast", "repmatRowVector")
def repeat_row(T, rows):
    pages = REPEATED_BYTES // numpy.dtype(T).itemsize // rows // 1000
    return repeated(T, (pages, 1000, rows), filled(T, 1000, 1))


def turned(dtype, side, view):
    array, out = filled(dtype, side, side), filled(dtype, side, side)
    return side * side, lambda: numpy.copyto(out, view(array))


peer("copyto, rot90", "rot90")(lambda T, clockwise: turned(T, SIDE, lambda a: numpy.rot90(a, 1 if clockwise else -1)))
peer("copyto, transpose", "transpose")(lambda T: turned(T, SIDE, numpy.transpose))
peer("copyto, transpose", "transposeOfOddSide")(lambda: turned(DOUBLE, SIDE - 1, numpy.transpose))


def by_opencv(dtype, function):
    if cv2 is None or dtype is numpy.complex128:
        return None
    array, out = filled(dtype, SIDE, SIDE), filled(dtype, SIDE, SIDE)
    return SIDE * SIDE, lambda: function(array, out)


peer("OpenCV transpose", "transpose")(lambda T: by_opencv(T, lambda array, out: cv2.transpose(array, out)))
peer("OpenCV rotate", "rot90")(lambda T, clockwise: by_opencv(T, lambda array, out: cv2.rotate(
    array, cv2.ROTATE_90_COUNTERCLOCKWISE if clockwise else cv2.ROTATE_90_CLOCKWISE, out)))


@peer("a[...] = a.T", "transposeInPlace")
def transpose_in_place():
    array = filled(DOUBLE, SIDE, SIDE)
    return SIDE * SIDE, lambda: numpy.copyto(array, array.T)


@peer("conjugate, transpose", "ctransposeDouble2")
def conjugate_transpose():
    array, out = filled(numpy.complex128, SIDE, SIDE), filled(numpy.complex128, SIDE, SIDE)
    return SIDE * SIDE, lambda: numpy.conjugate(array.T, out=out)


def scaled(dtype):
    array = filled(dtype, LARGE)
    divisor = dtype(1)
    return LARGE, lambda: numpy.divide(array, divisor, out=array)


peer("divide", "scaleInplace")(scaled)
peer("divide", "scaleByDoubleInplace")(lambda: scaled(numpy.float32))


def triangle(dtype, function, finish=None):
    array = filled(dtype, SIDE, SIDE)

    def call():
        found = function(array)
        if finish is not None:
            finish(array, found)
    return SIDE * SIDE, call


peer("tril", "triLower")(lambda T: triangle(T, numpy.triu))
peer("triu", "triUpper")(lambda: triangle(DOUBLE, numpy.tril))
peer("a[...] = tril(a)", "triLowerInPlace")(lambda: triangle(DOUBLE, numpy.triu, numpy.copyto))
peer("tril, diagonal[:] = 1", "triLowerOneOnDiag")(lambda: triangle(
    DOUBLE, numpy.triu, lambda _, found: found.reshape(-1)[::SIDE + 1].fill(1)))


if __name__ == "__main__":
    main(__file__)
