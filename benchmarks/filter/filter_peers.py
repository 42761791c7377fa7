#!/usr/bin/env python3
"""SciPy's `signal.lfilter` and NumPy's `diff` on the arrays of the benchmarks of filter. `lfilter` computes in the type
of its input; integers of `diff` wrap where ours clamp.

usage: filter_peers.py [--json FILE] [RESULTS...]
"""
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from peers import constant, filled, main, need, numpy, peer  # noqa: E402

signal = need("scipy.signal")
LARGE, SAMPLES = constant("largeCount", "support/bench.hpp"), 1 << 24


@peer("lfilter", "iirFilter")
def recursive(T, order, columns, layout):
    b = numpy.array([1 / (i + 1) for i in range(order + 1)], T)
    a = numpy.array([1] + order * [0.5 / order], T)
    x = numpy.random.default_rng(1).integers(-1000, 1001, SAMPLES).astype(T)
    if layout == "interleaved":
        return SAMPLES, lambda: signal.lfilter(b, a, x.reshape(-1, columns), 0)
    return SAMPLES, lambda: signal.lfilter(b, a, x.reshape(columns, -1), 1)


@peer("diff", "diff")
def difference(T, stride, length):
    groups = LARGE // (stride * length)
    array = filled(T, groups, length + 1, stride)
    return groups * stride * length, lambda: numpy.diff(array, axis=1)


if __name__ == "__main__":
    main(__file__)
