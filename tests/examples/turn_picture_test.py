"""Runs the demo on the shipped photograph, on small pictures of every kind of PNG and on files that are none.

usage: turn_picture_test.py PROGRAM
"""

import os
import random
import struct

from pngfiles import (GREY, GREY_ALPHA, PALETTE, RGB, RGB_ALPHA, SIGNATURE, STORED_CHANNELS, chunk, cut, read_png,
                      write_png)
from programtest import ProgramTest, disk_of, main


class TurnPicture(ProgramTest):
    def check_result(self, pixels, color, depth):
        """The sheet shows `pixels` as they are, turned, mirrored, and a band of them along a ramp."""
        rows, result_color, result_depth = read_png(self.output)
        self.assertEqual((result_color, result_depth), (color, depth))
        height, width = len(pixels), len(pixels[0])
        gap = max(2, (width + height) // 40)
        self.assertEqual(len(rows[0]), width + 2 * height + 4 * gap)
        transposed = [list(column) for column in zip(*pixels)]
        clockwise = [row[::-1] for row in transposed]
        self.assertEqual(cut(rows, gap, gap, width, height), pixels)
        self.assertEqual(cut(rows, width + 2 * gap, gap, height, width), clockwise)
        self.assertEqual(cut(rows, width + height + 3 * gap, gap, height, width), transposed)

        # From 0.35 at the left to 1 at the right; alpha stays.
        band_height = next(n for n, row in enumerate(rows[height + 2 * gap:]) if row[gap] == rows[0][0])
        first = (height - band_height) // 2
        colors = 3 if color in (RGB, RGB_ALPHA) else 1
        for row, source in zip(cut(rows, gap, height + 2 * gap, width, band_height), pixels[first:]):
            for x, (pixel, original) in enumerate(zip(row, source)):
                ramp = 0.35 + 0.65 * x / (width - 1)
                for page, (sample, value) in enumerate(zip(pixel, original)):
                    expected = value * ramp if page < colors else value
                    self.assertLessEqual(abs(sample - expected), 0.51, (x, page))
        largest = 2**depth - 1
        for corner in (rows[0][0], rows[0][-1], rows[-1][0], rows[-1][-1]):
            self.assertEqual(corner, (int(largest * 0.9),) * colors + (largest,) * (len(corner) - colors))

    def test_every_kind_of_png(self):
        numbers = random.Random(5)
        kinds = [(GREY, 1), (GREY, 2), (GREY, 4), (GREY, 8), (GREY, 16), (RGB, 8), (RGB, 16), (PALETTE, 1), (PALETTE, 2),
                 (PALETTE, 4), (PALETTE, 8), (GREY_ALPHA, 8), (GREY_ALPHA, 16), (RGB_ALPHA, 8), (RGB_ALPHA, 16)]
        for number, (color, depth) in enumerate(kinds):
            for interlaced in (False, True):
                # Broad and tall ones by turns, with sides below, at and above a tile's.
                width, height = [(53, 19), (16, 33), (7, 40), (48, 1)][(number + interlaced) % 4]
                with self.subTest(color=color, depth=depth, interlaced=interlaced, width=width, height=height):
                    stored = [[tuple(numbers.randrange(2**depth) for _ in range(STORED_CHANNELS[color]))
                               for _ in range(width)] for _ in range(height)]
                    palette = [tuple(numbers.randrange(256) for _ in range(3)) for _ in range(2**min(depth, 8))]
                    extra = chunk(b"PLTE", b"".join(map(bytes, palette))) if color == PALETTE else b""
                    write_png(self.path("in.png"), stored, color, depth, interlaced, extra)
                    done = self.run_program("--no-timing", "--output", self.output, "in.png")
                    self.assertEqual((done.returncode, done.stderr), (0, ""))
                    if color == PALETTE:
                        expected = [[palette[index] for index, in row] for row in stored]
                    else:
                        factor = 255 // (2**depth - 1) if depth < 8 else 1
                        expected = [[tuple(factor * sample for sample in pixel) for pixel in row] for row in stored]
                    self.check_result(expected, RGB if color == PALETTE else color, max(depth, 8))

    def test_transparent_palette_becomes_alpha(self):
        extra = chunk(b"PLTE", bytes(range(9))) + chunk(b"tRNS", b"\x10\x80")
        indices = [[(x * y % 3,) for x in range(20)] for y in range(17)]
        write_png(self.path("in.png"), indices, PALETTE, 8, extra=extra)
        self.assertEqual(self.run_program("--no-timing", "--output=" + self.output, "in.png").returncode, 0)
        colors = [(0, 1, 2, 0x10), (3, 4, 5, 0x80), (6, 7, 8, 255)]
        self.check_result([[colors[index] for index, in row] for row in indices], RGB_ALPHA, 8)

    def test_shipped_photograph(self):
        done = self.run_program()
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for word in ("Device", "451 x 300", "Rot90", "Transpose", "Linspace", "of copy"):
            self.assertIn(word, done.stdout)
        self.assertEqual(os.listdir(self.folder), ["turned.png"])

    def check_failure(self, done, status, *words):
        super().check_failure(done, status, *words)
        self.assertEqual(done.stdout, "")

    def test_files_that_are_no_picture(self):
        write_png(self.path("good.png"), [[(x * y % 256,) for x in range(200)] for y in range(100)], GREY, 8)
        with open(self.path("good.png"), "rb") as file:
            good = file.read()
        middle = len(good) // 2
        flipped = good[:middle] + bytes([good[middle] ^ 0x40]) + good[middle + 1:]
        bad = {
            "empty": (b"", "is empty"),
            "text": (b"This is not a picture.\n", "not a PNG"),
            "short": (good[:5], "not a PNG"),
            "header only": (good[:20], "damaged"),
            "half": (good[:middle], "damaged"),
            "without end": (good[:-12], "damaged"),
            "flipped bit": (flipped, "damaged"),
            "too large": (SIGNATURE + chunk(b"IHDR", struct.pack(">IIBBBBB", 70000, 1, 8, GREY, 0, 0, 0)) + good[33:],
                          "70000 x 1"),
            "too many": (SIGNATURE + chunk(b"IHDR", struct.pack(">IIBBBBB", 60000, 60000, 8, GREY, 0, 0, 0)) + good[33:],
                         "60000 x 60000"),
            "promises": (SIGNATURE + chunk(b"IHDR", struct.pack(">IIBBBBB", 8000, 8000, 8, RGB, 0, 0, 0)) + good[33:],
                         "too short"),
            "no size": (SIGNATURE + chunk(b"IHDR", struct.pack(">IIBBBBB", 0, 8, 8, GREY, 0, 0, 0)) + good[33:],
                        "damaged"),
        }
        for name, (content, words) in bad.items():
            with self.subTest(name):
                with open(self.path(name), "wb") as file:
                    file.write(content)
                self.check_failure(self.run_program("--output", self.output, name), 1, f"'{name}'", words)
        self.check_failure(self.run_program("--output", self.output, "missing.png"), 1, "'missing.png'", "No such file")
        self.check_failure(self.run_program("--output", self.output, self.folder), 1, "directory")

    def test_outputs_that_cannot_be_written(self):
        noise = random.Random(7)
        pixels = [[(noise.randrange(256),) for _ in range(200)] for _ in range(200)]
        write_png(self.path("in.png"), pixels, GREY, 8)
        os.mkdir(self.path("folder"))
        for output, words in (("nowhere/result.png", "No such file"), ("in.png/result.png", "Not a directory"),
                              ("folder", "not a regular file"), ("/dev/null", "not a regular file"),
                              ("./in.png", "overwrite")):
            with self.subTest(output):
                self.check_failure(self.run_program("--output", output, "in.png"), 1, output, words)

        # The disk is full in the middle of the large one's rows, and when the small one is closed.
        write_png(self.path("small.png"), cut(pixels, 0, 0, 12, 12), GREY, 8)
        for name in ("in.png", "small.png"):
            done = self.run_program("--output", self.output, name, preexec_fn=disk_of(300))
            self.check_failure(done, 1, "result.png", "File too large")
        self.assertEqual(sorted(os.listdir(self.folder)), ["folder", "in.png", "small.png"])
        self.assertEqual(read_png(self.path("in.png"))[0], pixels)

    def test_an_earlier_result(self):
        write_png(self.path("in.png"), [[(x,) for x in range(30)]] * 20, GREY, 8)
        with open(self.path("earlier.png"), "w") as file:
            file.write("earlier")
        os.symlink("earlier.png", self.path("link.png"))
        self.assertEqual(self.run_program("--output", "link.png", "missing.png").returncode, 1)
        with open(self.path("earlier.png")) as file:
            self.assertEqual(file.read(), "earlier")
        self.assertEqual(self.run_program("--no-timing", "--output", "link.png", "in.png").returncode, 0)
        self.assertTrue(os.path.islink(self.path("link.png")))
        self.assertEqual(len(read_png(self.path("earlier.png"))[0][0]), 30 + 2 * 20 + 4 * 2)

    def test_options(self):
        self.check_failure(self.run_program("--colour", "in.png"), 2, "'--colour'")
        self.check_failure(self.run_program("in.png", "--output"), 2, "--output")
        self.check_failure(self.run_program("one.png", "two.png"), 2, "'two.png'")
        self.check_failure(self.run_program("--output", self.output, "--", "--missing"), 1, "'--missing'")
        self.check_help()


if __name__ == "__main__":
    main()
