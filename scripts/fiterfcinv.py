#!/usr/bin/env python3
"""Prints the coefficients of the polynomial behind erfcinv on the cpu backend (src/platform/cpu/transcendental.hpp).

With w = -log(x * (2 - x)), the ratio erfcinv(x) / (1 - x) is a smooth function of w. On 0 <= w <= END it is
approximated by a polynomial of DEGREE in w - END / 2, with the least largest relative error (Lawson's iteration over
weighted least squares). Lowest power first. Needs the Python package mpmath.
"""
import mpmath as mp

END, DEGREE, POINTS, ROUNDS = mp.mpf(5), 21, 120, 20
mp.mp.dps = 40


def ratio(w):
    distance = mp.sqrt(-mp.expm1(-w))  # 1 - x
    return mp.erfinv(distance) / distance if w else mp.sqrt(mp.pi) / 2


def main():
    turns = [mp.cos(mp.pi * (2 * i + 1) / (2 * POINTS)) for i in range(POINTS)]
    wanted = [ratio((1 - t) * END / 2) for t in turns]
    powers = [[(-t) ** k for k in range(DEGREE + 1)] for t in turns]
    weights = [mp.mpf(1)] * POINTS
    best = None
    for _ in range(ROUNDS):
        rows = mp.matrix([[w * p / v for p in row] for w, v, row in zip(weights, wanted, powers)])
        found = list(mp.qr_solve(rows, mp.matrix(weights))[0])
        errors = [abs(mp.fdot(found, row) / v - 1) for row, v in zip(powers, wanted)]
        if best is None or max(errors) < best[0]:
            best = (max(errors), found)
        weights = [w * (mp.sqrt(e / max(errors)) + mp.mpf("0.02")) for w, e in zip(weights, errors)]
        scale = POINTS / sum(weights)
        weights = [w * scale for w in weights]
    print("largest relative error: 2^%s" % mp.nstr(mp.log(best[0], 2), 4))
    for power, value in enumerate(best[1]):
        print("%.17g," % float(value / (END / 2) ** power))


if __name__ == "__main__":
    main()
