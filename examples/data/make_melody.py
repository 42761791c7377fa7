#!/usr/bin/env python3
"""Makes melody.wav: plucked notes, with the hum of the mains and hiss, as an old tape has them.

usage: make_melody.py FILE
"""

import math
import random
import struct
import sys
import wave

RATE, SECONDS = 22050, 4.2
# Beginning in seconds, half tones above 220 Hz, and loudness.
NOTES = [(0.30, 7, 1.0), (0.65, 12, 0.8), (1.00, 15, 0.9), (1.35, 14, 0.7), (1.70, 10, 0.9), (2.05, 12, 0.6),
         (2.40, 19, 1.0), (2.40, 3, 0.7), (2.75, 17, 0.7), (3.10, 12, 0.9), (3.10, 0, 0.8)]


def pluck(seconds, pitch):
    """A string: harmonics of which the higher ones are weaker and fade sooner."""
    frequency = 220 * 2 ** (pitch / 12)
    attack = min(1, seconds / 0.004)
    return attack * sum(math.sin(2 * math.pi * n * frequency * seconds) * math.exp(-(2.2 + 1.6 * n) * seconds) / n**1.3
                        for n in range(1, 9))


def main():
    count = int(RATE * SECONDS)
    samples = [0.0] * count
    for begin, pitch, loudness in NOTES:
        first = int(begin * RATE)
        for i in range(first, count):
            samples[i] += 0.2 * loudness * pluck((i - first) / RATE, pitch)
    noise = random.Random(1961)
    for i in range(count):
        turn = 2 * math.pi * 50 * i / RATE
        samples[i] += 0.09 * math.sin(turn) + 0.03 * math.sin(2 * turn + 1) + 0.02 * math.sin(3 * turn + 2)
        samples[i] += noise.gauss(0, 0.015)
    if max(map(abs, samples)) >= 1:
        sys.exit("too loud")
    with wave.open(sys.argv[1], "wb") as file:
        file.setparams((1, 2, RATE, count, "NONE", ""))
        file.writeframes(b"".join(struct.pack("<h", round(32767 * sample)) for sample in samples))


if __name__ == "__main__":
    main()
