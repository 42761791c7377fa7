#!/usr/bin/env python3
"""SciPy's direct convolutions on arrays of the sizes of the benchmarks of convolutions:
`signal.convolve(method='direct')`, `ndimage.convolve1d` and `ndimage.convolve`. The filters of ndimage compute in
double. Where OpenCV is at hand, its filters too, by one thread.

usage: convolutions_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import constant, main, need, numpy, opencv, peer  # noqa: E402

ndimage, signal = need("scipy.ndimage"), need("scipy.signal")
cv2 = opencv()
SIDE = constant("side", "convolutions/conv2_bench.cpp")


def random(dtype, *shape):
    return numpy.random.default_rng(1).random(shape).astype(dtype)


@peer("signal.convolve", "convolutionVector")
def vector(T, member, taps):
    array, line = random(T, 1 << 24), random(T, taps)
    return array.size, lambda: signal.convolve(array, line, mode="same", method="direct")


@peer("ndimage.convolve1d", "convolutionMatrix")
def matrix(T, taps, direction):
    page, line = random(T, SIDE, SIDE), random(T, taps)
    axis = 1 if direction == "KernelTypeColumn" else 0
    return page.size, lambda: ndimage.convolve1d(page, line, axis=axis, mode="constant")


@peer("ndimage.convolve", "convolutionSquare")
def square(T, side, page_side=SIDE):
    page, filter = random(T, page_side, page_side), random(T, side, side)
    return page.size, lambda: ndimage.convolve(page, filter, mode="constant")


def by_opencv(T, filter):
    if cv2 is None or T not in (numpy.float32, numpy.float64):
        return None
    page, out = random(T, SIDE, SIDE), random(T, SIDE, SIDE)
    return page.size, lambda: cv2.filter2D(page, -1, filter, dst=out, borderType=cv2.BORDER_CONSTANT)


@peer("OpenCV filter2D", "convolutionMatrix")
def matrix_by_opencv(T, taps, direction):
    return by_opencv(T, random(T, *((1, taps) if direction == "KernelTypeColumn" else (taps, 1))))


@peer("OpenCV filter2D", "convolutionSquare")
def square_by_opencv(T, side, page_side=SIDE):
    return by_opencv(T, random(T, side, side)) if page_side == SIDE else None


if __name__ == "__main__":
    main(__file__)
