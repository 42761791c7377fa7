"""PNG files of every kind, written and read with nothing but the standard library."""

import struct
import zlib

SIGNATURE = b"\x89PNG\r\n\x1a\n"
GREY, RGB, PALETTE, GREY_ALPHA, RGB_ALPHA = 0, 2, 3, 4, 6
STORED_CHANNELS = {GREY: 1, RGB: 3, PALETTE: 1, GREY_ALPHA: 2, RGB_ALPHA: 4}
# First column and row, and steps in both, of the seven passes of an interlaced picture.
PASSES = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]


def chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))


def packed(rows, depth):
    """Rows of pixels, each a tuple of samples, as the bytes of a PNG stream without filters."""
    stream = b""
    for row in rows:
        bits = "".join(format(sample, f"0{depth}b") for pixel in row for sample in pixel)
        bits += "0" * (-len(bits) % 8)
        stream += b"\0" + int(bits, 2).to_bytes(len(bits) // 8, "big")
    return stream


def write_png(path, pixels, color, depth, interlaced=False, extra=b""):
    height, width = len(pixels), len(pixels[0])
    stream = b""
    for x, y, step_x, step_y in PASSES if interlaced else [(0, 0, 1, 1)]:
        if x < width:
            stream += packed([row[x::step_x] for row in pixels[y::step_y]], depth)
    header = struct.pack(">IIBBBBB", width, height, depth, color, 0, 0, int(interlaced))
    with open(path, "wb") as file:
        file.write(SIGNATURE + chunk(b"IHDR", header) + extra + chunk(b"IDAT", zlib.compress(stream)) +
                   chunk(b"IEND", b""))


def read_png(path):
    """Rows of pixels, each a tuple of samples, and (color, depth) of a PNG of 8 or 16 bits."""
    with open(path, "rb") as file:
        data = file.read()
    assert data[:8] == SIGNATURE
    at, stream = 8, b""
    while at < len(data):
        length, name = struct.unpack(">I4s", data[at:at + 8])
        body = data[at + 8:at + 8 + length]
        assert zlib.crc32(name + body) == struct.unpack(">I", data[at + 8 + length:at + 12 + length])[0]
        if name == b"IHDR":
            width, height, depth, color, _, _, interlaced = struct.unpack(">IIBBBBB", body)
        elif name == b"IDAT":
            stream += body
        at += 12 + length
    assert name == b"IEND" and interlaced == 0
    stream = zlib.decompress(stream)
    channels, width_of_sample = STORED_CHANNELS[color], depth // 8
    back = channels * width_of_sample
    row_bytes = width * back
    rows, above = [], bytes(row_bytes)
    for y in range(height):
        line = bytearray(stream[y * (row_bytes + 1):(y + 1) * (row_bytes + 1)])
        kind, line = line[0], line[1:]
        for i in range(row_bytes if kind else 0):
            a = line[i - back] if i >= back else 0
            b = above[i]
            c = above[i - back] if i >= back else 0
            nearest = min((a, b, c), key=lambda value: abs(a + b - c - value))
            line[i] = (line[i] + (0, a, b, (a + b) // 2, nearest)[kind]) & 0xFF
        samples = struct.unpack(f">{width * channels}{'BH'[width_of_sample - 1]}", bytes(line))
        rows.append([samples[x:x + channels] for x in range(0, len(samples), channels)])
        above = line
    return rows, color, depth


def cut(rows, x, y, width, height):
    return [row[x:x + width] for row in rows[y:y + height]]
