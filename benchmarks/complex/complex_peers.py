#!/usr/bin/env python3
"""NumPy's peers of the benchmarks of complex. It has no complex integers, so those have no peer.

usage: complex_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import constant, filled, main, numpy, peer  # noqa: E402

LARGE, SIDE = constant("largeCount", "support/bench.hpp"), constant("largeSide", "support/bench.hpp")
COMPLEX = {numpy.float32: numpy.complex64, numpy.float64: numpy.complex128}
REAL = {cplx: real for real, cplx in COMPLEX.items()}


@peer("fill, copyto", "complexCopyPad")
def pad(T):
    inner = SIDE - 100
    array, out = filled(T, inner, inner), filled(COMPLEX.get(T, T), SIDE, SIDE)

    def call():
        out.fill(0)
        numpy.copyto(out[:inner, :inner], array)
    return SIDE * SIDE, call


def joined(dtype, with_real, with_imag):
    real = filled(dtype, LARGE) if with_real else 2
    imag = filled(dtype, LARGE) if with_imag else 2
    out = filled(COMPLEX[dtype], LARGE)

    def call():
        out.real = real
        out.imag = imag
    return LARGE, call


@peer("out.real =, out.imag =", "complexifyPtrPtr")
def complexify(T):
    return joined(T, True, True) if T in COMPLEX else None


peer("out.real =, out.imag =", "complexifyPtrScalar")(lambda: joined(numpy.float64, True, False))
peer("out.real =, out.imag =", "complexifyScalarPtr")(lambda: joined(numpy.float64, False, True))


@peer("conjugate", "conj")
def conjugate(T):
    array, out = filled(T, LARGE), filled(T, LARGE)
    return LARGE, lambda: numpy.conjugate(array, out=out)


@peer("copyto, of each part", "decomplexify")
def split(T):
    array, real, imag = filled(T, LARGE), filled(REAL[T], LARGE), filled(REAL[T], LARGE)

    def call():
        numpy.copyto(real, array.real)
        numpy.copyto(imag, array.imag)
    return LARGE, call


def one_part(dtype, part):
    array, out = filled(dtype, LARGE), filled(REAL[dtype], LARGE)
    return LARGE, lambda: numpy.copyto(out, getattr(array, part))


peer("copyto, real", "realDouble2")(lambda: one_part(numpy.complex128, "real"))
peer("copyto, imag", "imagFloat2")(lambda: one_part(numpy.complex64, "imag"))


if __name__ == "__main__":
    main(__file__)
