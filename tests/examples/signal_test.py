"""Runs the signal example on the shipped melody and on small sounds, and computes their results anew.

usage: signal_test.py PROGRAM
"""

import math
import os
import random
import re
import struct

from pngfiles import RGB, read_png
from programtest import ProgramTest, disk_of, main

INTEGERS, FLOATS, EXTENDED = 1, 3, 0xFFFE


def chunk(name, data, size=None):
    return name + struct.pack("<I", len(data) if size is None else size) + data + b"\0" * (len(data) % 2)


def format_chunk(code, channels, rate, bits, **wrong):
    per_moment = wrong.get("per_moment", channels * bits // 8)
    return chunk(b"fmt ", struct.pack("<HHIIHH", code, channels, rate, rate * per_moment, per_moment, bits))


def riff(*chunks):
    return chunk(b"RIFF", b"WAVE" + b"".join(chunks))


def stored(samples, code, bits):
    """Samples from -1 to 1 as bytes, and what these say again."""
    if code == FLOATS:
        data = struct.pack("<%df" % len(samples), *samples)
        return data, list(struct.unpack("<%df" % len(samples), data))
    scale = 2**(bits - 1)
    whole = [min(max(round(sample * scale), -scale), scale - 1) for sample in samples]
    shift = 128 if bits == 8 else 0
    data = b"".join((number + shift).to_bytes(bits // 8, "little", signed=bits > 8) for number in whole)
    return data, [number / scale for number in whole]


def read_wav(path):
    """(code, channels, rate, bits) and the samples of a file of two chunks."""
    with open(path, "rb") as file:
        data = file.read()
    assert data[:4] == b"RIFF" and data[8:16] == b"WAVEfmt " and data[36:40] == b"data"
    assert struct.unpack("<I", data[4:8])[0] == len(data) - 8
    code, channels, rate, per_second, per_moment, bits = struct.unpack("<HHIIHH", data[20:36])
    assert per_moment == channels * bits // 8 and per_second == rate * per_moment
    data = data[44:44 + struct.unpack("<I", data[40:44])[0]]
    if code == FLOATS:
        return (code, channels, rate, bits), list(struct.unpack("<%df" % (len(data) // 4), data))
    width, shift = bits // 8, 128 if bits == 8 else 0
    return (code, channels, rate, bits), [
        (int.from_bytes(data[i:i + width], "little", signed=bits > 8) - shift) / 2**(bits - 1)
        for i in range(0, len(data), width)]


def cleaned(samples, rate, to_rate, hum, cutoff):
    """One channel through three notches, a windowed sinc and a linear resampling."""
    for harmonic in (1, 2, 3):
        w = math.tan(math.pi * harmonic * hum / rate)
        b = [1 + w * w, 2 * (w * w - 1), 1 + w * w]
        a = [1 + w / 10 + w * w, 2 * (w * w - 1), 1 - w / 10 + w * w]
        x = [0, 0] + samples
        y = [0, 0]
        for t in range(2, len(x)):
            y.append((b[0] * x[t] + b[1] * x[t - 1] + b[2] * x[t - 2] - a[1] * y[t - 1] - a[2] * y[t - 2]) / a[0])
        samples = y[2:]
    taps = []
    for t in range(-50, 51):
        sinc = math.sin(2 * math.pi * cutoff / rate * t) / t if t else 2 * math.pi * cutoff / rate
        taps.append(sinc * (0.54 + 0.46 * math.cos(math.pi * t / 50)))
    total = sum(taps)
    samples = [sum(taps[k] * samples[t + 50 - k] for k in range(101) if 0 <= t + 50 - k < len(samples)) / total
               for t in range(len(samples))]
    result = []
    for i in range((len(samples) - 1) * to_rate // rate + 1):
        whole, rest = divmod(i * rate, to_rate)
        upper = samples[min(whole + 1, len(samples) - 1)]
        result.append(samples[whole] + (upper - samples[whole]) * rest / to_rate)
    return result


class Signal(ProgramTest):
    def setUp(self):
        super().setUp()
        self.outputs = ["--output", self.path("result.wav"), "--picture", self.path("result.png")]

    def write(self, name, data):
        with open(self.path(name), "wb") as file:
            file.write(data)

    def test_every_format(self):
        numbers = random.Random(3)
        kinds = [(INTEGERS, 8, 1), (INTEGERS, 16, 2), (INTEGERS, 24, 1), (INTEGERS, 32, 2), (FLOATS, 32, 2)]
        for (code, bits, channels), length, to_rate in zip(kinds, (700, 331, 2, 60, 400), (9000, 3000, 8000, 800, 500)):
            with self.subTest(code=code, bits=bits, channels=channels):
                data, samples = stored([numbers.uniform(-0.8, 0.8) for _ in range(length * channels)], code, bits)
                # A chunk of odd length that nobody needs stands between, and the sound does not end the file.
                self.write("in.wav", riff(format_chunk(code, channels, 8000, bits), chunk(b"LIST", b"abc"),
                                          chunk(b"data", data), chunk(b"note", b"end")))
                done = self.run_program(*self.outputs, "--hum=60", "--cutoff", "240", "--rate", str(to_rate), "in.wav")
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                kind, result = read_wav(self.path("result.wav"))
                self.assertEqual(kind, (code, channels, to_rate, bits))
                slack = 1e-7 if code == FLOATS else 0.51 / 2**(bits - 1)
                for channel in range(channels):
                    expected = cleaned(samples[channel::channels], 8000, to_rate, 60, 240)
                    self.assertEqual(len(result[channel::channels]), len(expected))
                    for i, (one, other) in enumerate(zip(result[channel::channels], expected)):
                        self.assertLessEqual(abs(one - other), slack, (channel, i))

    def test_levels_and_plots(self):
        # A hum and a note of known amplitudes, and a little of a tone beyond the cutoff.
        tones = ((0.25, 50), (0.5, 1000), (0.1, 9000))
        samples = [sum(a * math.sin(2 * math.pi * f * t / 44100) for a, f in tones) for t in range(2 * 44100)]
        self.write("in.wav", riff(struct.pack("<4sIHHIIHHHHI", b"fmt ", 40, EXTENDED, 1, 44100, 88200, 2, 16, 22, 16, 0) +
                                  struct.pack("<H", INTEGERS) + bytes(14), chunk(b"data", stored(samples, 1, 16)[0])))
        done = self.run_program(*self.outputs, "in.wav")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        before, after, less = map(float, re.search(r"hum, 50 Hz +(\S+) dB +(\S+) dB +(\S+) dB", done.stdout).groups())
        self.assertAlmostEqual(before, 20 * math.log10(0.25), delta=0.1)
        self.assertLess(after, before - 35)
        self.assertAlmostEqual(less, after - before, delta=0.11)
        # The note stays, the tone goes; away from the ends.
        _, result = read_wav(self.path("result.wav"))
        for i in range(16000, 24000):
            self.assertLess(abs(result[i] - 0.5 * math.sin(2 * math.pi * 1000 * i / 16000)), 0.02)

        rows, color, depth = read_png(self.path("result.png"))
        self.assertEqual((color, depth), (RGB, 8))
        # Curves and axes take a share of each of the four plots.
        half_height, half_width = len(rows) // 2, len(rows[0]) // 2
        for top in (0, half_height):
            for left in (0, half_width):
                pixels = [pixel for row in rows[top:top + half_height] for pixel in row[left:left + half_width]]
                self.assertGreater(pixels.count((0, 0, 0)), 1000)
                self.assertGreater(sum(max(pixel) - min(pixel) > 80 for pixel in pixels), 400)

    def test_shipped_melody(self):
        done = self.run_program()
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(sorted(os.listdir(self.folder)), ["signal.png", "signal.wav"])
        for words, most in (("hum, 50 Hz", -40), ("hum, 100 Hz", -40), ("hum, 150 Hz", -40), ("hiss", -50)):
            change = re.search(words + r".* ([-+]\S+) dB$", done.stdout, re.MULTILINE).group(1)
            self.assertLess(float(change), most, words)
        self.assertRegex(done.stdout, r"between, 250 to 3000 Hz .* [-+]0\.[0-2] dB\n")

    def test_damaged_files(self):
        good_format, good_data = format_chunk(INTEGERS, 1, 8000, 16), chunk(b"data", bytes(100))
        good = riff(good_format, good_data)
        bad = {
            "empty": (b"", "is empty"),
            "text": (b"This is not a sound at all.\n", "no WAV"),
            "head": (good[:30], "ends too early"),
            "cut": (good[:-10], "ends too early"),
            "no samples": (riff(good_format), "has no samples"),
            "none": (riff(good_format, chunk(b"data", b"")), "holds no samples"),
            "one": (riff(good_format, chunk(b"data", bytes(2))), "single sample"),
            "samples first": (riff(good_data, good_format), "before their format"),
            "short format": (riff(chunk(b"fmt ", bytes(12)), good_data), "format is cut off"),
            "odd": (riff(good_format, chunk(b"data", bytes(99))), "a sample is cut off"),
            "promises": (riff(good_format, chunk(b"LIST", bytes(9), 0xFFFFFFF0), good_data), "ends too early"),
            "compressed": (riff(format_chunk(6, 1, 8000, 8), good_data), "format 6"),
            "doubles": (riff(format_chunk(FLOATS, 1, 8000, 64), good_data), "64 bits"),
            "surround": (riff(format_chunk(INTEGERS, 6, 8000, 16), good_data), "6 channels"),
            "contradicts": (riff(format_chunk(INTEGERS, 2, 8000, 16, per_moment=2), good_data), "contradicts"),
            "stands still": (riff(format_chunk(INTEGERS, 1, 0, 16), good_data), "contradicts"),
            "no number": (riff(format_chunk(FLOATS, 1, 8000, 32),
                               chunk(b"data", struct.pack("<3f", 0, math.nan, 0))), "sample 2"),
        }
        for name, (content, words) in bad.items():
            with self.subTest(name):
                self.write(name, content)
                self.check_failure(self.run_program(*self.outputs, name), 1, f"'{name}'", words)
        self.check_failure(self.run_program(*self.outputs, "missing.wav"), 1, "'missing.wav'", "No such file")
        self.check_failure(self.run_program(*self.outputs, self.folder), 1, "directory")

    def test_options_and_outputs(self):
        self.write("in.wav", riff(format_chunk(INTEGERS, 1, 8000, 16), chunk(b"data", bytes(4000))))
        run = lambda *arguments, **options: self.run_program(*self.outputs, *arguments, **options)
        self.check_failure(run("--hum", "1400", "in.wav"), 2, "--hum", "from 1 to 1000")
        self.check_failure(run("--hum", "fifty", "in.wav"), 2, "--hum", "'fifty'")
        self.check_failure(run("--cutoff", "4000", "in.wav"), 2, "--cutoff", "8000 Hz")
        self.check_failure(run("--cutoff", "3000", "--rate", "6000", "in.wav"), 2, "--cutoff", "result's")
        self.check_failure(run("--rate", "16e3", "in.wav"), 2, "--rate", "'16e3'")
        self.check_failure(run("--volume", "in.wav"), 2, "'--volume'")
        good = ["--cutoff", "1000", "in.wav"]
        self.check_failure(run(*good, "--picture", self.path("result.wav")), 2, "same file")
        self.check_failure(run(*good, "--output", "in.wav"), 1, "overwrite")
        self.check_failure(run(*good, "--picture", "no/plots.png"), 1, "'no/plots.png'")
        # There is room for the sound, but not for the picture: neither comes about.
        self.check_failure(run(*good, preexec_fn=disk_of(9000)), 1, "result.png", "File too large")
        self.check_help()
        self.assertEqual(os.listdir(self.folder), ["in.wav"])


if __name__ == "__main__":
    main()
