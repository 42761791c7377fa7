"""Runs the photograph example on the shipped picture and on small ones, and computes their panels anew.

usage: photograph_test.py PROGRAM
"""

import math
import os
import random
import re

from pngfiles import GREY, GREY_ALPHA, RGB, RGB_ALPHA, STORED_CHANNELS, cut, read_png, write_png
from programtest import ProgramTest, disk_of, main


def gaussian(count, sigma):
    taps = [math.exp(-(i - count // 2)**2 / (2 * sigma**2)) for i in range(count)]
    return [tap / sum(taps) for tap in taps]


def correlated(plane, kernel):
    """The plane with a kernel laid over each pixel, the border repeated; both are lists of rows."""
    height, width, down, right = len(plane), len(plane[0]), len(kernel) // 2, len(kernel[0]) // 2
    return [[sum(tap * plane[min(max(y + r - down, 0), height - 1)][min(max(x + c - right, 0), width - 1)]
                 for r, line in enumerate(kernel) for c, tap in enumerate(line))
             for x in range(width)] for y in range(height)]


def resized(plane, width, height):
    """Linear between the middles of the pixels."""
    def places(count, n):
        for i in range(count):
            at = min(max((i + 0.5) * n / count - 0.5, 0), n - 1)
            low = min(int(at), n - 2)
            yield low, at - low
    return [[(1 - v) * ((1 - u) * plane[y][x] + u * plane[y][x + 1]) +
             v * ((1 - u) * plane[y + 1][x] + u * plane[y + 1][x + 1]) for x, u in places(width, len(plane[0]))]
            for y, v in places(height, len(plane))]


class Photograph(ProgramTest):
    def check_panel(self, panel, planes, slack=0.52):
        """The panel shows these planes, rounded."""
        self.assertEqual((len(panel), len(panel[0])), (len(planes[0]), len(planes[0][0])))
        for y, row in enumerate(panel):
            for x, pixel in enumerate(row):
                for page, sample in enumerate(pixel):
                    self.assertLessEqual(abs(sample - planes[page][y][x]), slack, (x, y, page))

    def check_edges(self, panel, planes, soft, largest, said):
        """Edges stand where the slope of the blurred picture is at least half of the steepest."""
        weights = [0.299, 0.587, 0.114] if len(soft) == 3 else [1]
        brightness = [[sum(w * plane[y][x] for w, plane in zip(weights, soft)) for x in range(len(soft[0][0]))]
                      for y in range(len(soft[0]))]
        across = correlated(brightness, [[-1, 0, 1], [-2, 0, 2], [-1, 0, 1]])
        down = correlated(brightness, [[-1, -2, -1], [0, 0, 0], [1, 2, 1]])
        steep = [[math.hypot(a, b) for a, b in zip(*rows)] for rows in zip(across, down)]
        least = max(map(max, steep)) * 0.5
        bright = [round(share * largest) for share in (1, 0.75, 0.1)] if len(soft) == 3 else [largest]
        drawn = 0
        for y, row in enumerate(panel):
            for x, pixel in enumerate(row):
                # A third of the original is darker than these.
                is_edge = pixel[0] == bright[0]
                drawn += is_edge
                if abs(steep[y][x] - least) > 1e-4 * least:
                    self.assertEqual(is_edge, steep[y][x] > least, (x, y))
                for page in range(len(soft)):
                    expected = bright[page] if is_edge else planes[page][y][x] / 3
                    self.assertLessEqual(abs(pixel[page] - expected), 0.51, (x, y))
                self.assertEqual(pixel[len(soft):], tuple(plane[y][x] for plane in planes[len(soft):]))
        self.assertEqual(drawn, said)
        self.assertGreater(drawn, 0)

    def test_panels(self):
        numbers = random.Random(8)
        kinds = [(GREY, 8, 23, 14), (RGB, 8, 17, 30), (GREY_ALPHA, 16, 12, 9), (RGB_ALPHA, 8, 2, 3),
                 (RGB_ALPHA, 16, 14, 16)]
        for color, depth, width, height in kinds:
            with self.subTest(color=color, depth=depth):
                channels, largest = STORED_CHANNELS[color], 2**depth - 1
                # Light and dark halves, in blue others than in red, and a little noise.
                pixels = [[tuple(int((0.2 + 0.6 * ((x > width // 2, 0, y > height // 2, y % 2)[page]) +
                                      0.1 * numbers.random()) * largest)
                                 for page in range(channels)) for x in range(width)] for y in range(height)]
                write_png(self.path("in.png"), pixels, color, depth)
                done = self.run_program("--output=result.png", "--size", "19x11", "--threshold", "50", "in.png")
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                rows, result_color, result_depth = read_png(self.output)
                self.assertEqual((result_color, result_depth), (color, depth))
                found = re.findall(r" (\d+), *(\d+) +(\d+) x (\d+)$", done.stdout[done.stdout.index("Panels"):],
                                   re.MULTILINE)
                panels = [cut(rows, *map(int, panel)) for panel in found]
                self.assertEqual(len(panels), 6)

                planes = [[[pixel[page] for pixel in row] for row in pixels] for page in range(channels)]
                colors = 3 if channels > 2 else 1
                self.assertEqual(panels[0], pixels)
                line = gaussian(9, 2)
                soft = [correlated(plane, [[a * b for a in line] for b in line]) for plane in planes[:colors]]
                self.check_panel(panels[1], soft + planes[colors:])
                long = gaussian(101, 17)
                softer = [correlated(correlated(plane, [[tap] for tap in long]), [long]) for plane in planes[:colors]]
                self.check_panel(panels[2], softer + planes[colors:])
                said = int(re.search(r"(\d+) edge pixels", done.stdout).group(1))
                self.check_edges(panels[3], planes, soft, largest, said)
                # Coordinates are floats.
                self.check_panel(panels[4], [resized(plane, 19, 11) for plane in planes], 0.5 + 1e-5 * largest)
                self.assertEqual(panels[5], [list(column)[::-1] for column in zip(*pixels)])

    def test_shipped_photograph(self):
        done = self.run_program()
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for word in ("451 x 300, RGB, 8 bits", "676 x 450", "edge pixels", "ms", "Written  photograph.png\n"):
            self.assertIn(word, done.stdout)
        self.assertEqual(os.listdir(self.folder), ["photograph.png"])

    def test_plain_picture_has_no_edges(self):
        write_png(self.path("in.png"), [[(0,)] * 10] * 10, GREY, 8)
        done = self.run_program("in.png")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertIn(" 0 edge pixels", done.stdout)

    def test_bad_input(self):
        write_png(self.path("in.png"), [[(x, y) for x in range(40)] for y in range(30)], GREY_ALPHA, 8)
        write_png(self.path("line.png"), [[(x,) for x in range(40)]], GREY, 8)
        with open(self.path("in.png"), "rb") as file:
            good = file.read()
        with open(self.path("half.png"), "wb") as file:
            file.write(good[:len(good) // 2])
        result = ["--output", self.output]
        self.check_failure(self.run_program(*result, "missing.png"), 1, "'missing.png'", "No such file")
        self.check_failure(self.run_program(*result, "half.png"), 1, "'half.png'", "damaged")
        self.check_failure(self.run_program(*result, "line.png"), 1, "'line.png'", "40 x 1")
        self.check_failure(self.run_program("--output", "in.png", "in.png"), 1, "overwrite", "'in.png'")
        self.check_failure(self.run_program("--output", "no/result.png", "in.png"), 1, "'no/result.png'", "No such file")
        self.check_failure(self.run_program(*result, "in.png", preexec_fn=disk_of(300)), 1, "File too large")
        for size, words in (("640", "640x480"), ("640x", "height"), ("x480", "width"), ("0x480", "width"),
                            ("640x480x2", "'480x2'"), ("-3x4", "'-3'"), ("1e9x1", "'1e9'"), ("640x99999", "16384")):
            self.check_failure(self.run_program(*result, "--size", size, "in.png"), 2, "--size", words)
        for percent in ("0", "101", "nan", "much", "20%"):
            self.check_failure(self.run_program(*result, "--threshold", percent, "in.png"), 2, "--threshold", percent)
        self.check_failure(self.run_program("--colour", "in.png"), 2, "'--colour'")
        self.check_failure(self.run_program("in.png", "--output"), 2, "--output")
        self.check_failure(self.run_program("one.png", "two.png"), 2, "'two.png'")
        self.check_help()
        with open(self.path("in.png"), "rb") as file:
            self.assertEqual(file.read(), good)
        self.assertEqual(sorted(os.listdir(self.folder)), ["half.png", "in.png", "line.png"])


if __name__ == "__main__":
    main()
