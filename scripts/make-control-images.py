#!/usr/bin/env python3
"""Draws the pictures that the shipped control styles use and writes them as PNG
files into assets/. Standard library only; run it again after changing a shape.

Button backgrounds are nine-patches (cuts of 16 pixels on every side, see
ButtonBackground in assets.conf); icons are 48 x 48 on a transparent ground."""

import math
import os
import struct
import zlib

ASSETS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "assets")
SAMPLES = 4  # per axis, for anti-aliased edges


def write_png(path, width, height, pixels):
    """pixels: rows of (r, g, b, a) tuples, straight alpha."""
    raw = b"".join(b"\x00" + bytes(c for px in row for c in px) for row in pixels)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)

    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    with open(path, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(raw, 9)) +
                  chunk(b"IEND", b""))


def coverage(inside, x, y):
    hits = 0
    for sy in range(SAMPLES):
        for sx in range(SAMPLES):
            if inside(x + (sx + 0.5) / SAMPLES, y + (sy + 0.5) / SAMPLES):
                hits += 1
    return hits / (SAMPLES * SAMPLES)


def rounded_rect(left, top, right, bottom, radius):
    def inside(x, y):
        cx = min(max(x, left + radius), right - radius)
        cy = min(max(y, top + radius), bottom - radius)
        return left <= x <= right and top <= y <= bottom and (x - cx) ** 2 + (y - cy) ** 2 <= radius ** 2
    return inside


def mix(a, b, t):
    return tuple(round(a[i] + (b[i] - a[i]) * t) for i in range(3))


def over(top, alpha, below):
    """Straight-alpha compositing of a colour with coverage `alpha` over a pixel."""
    (r, g, b), (br, bg, bb, ba) = top, below
    out = alpha + ba / 255 * (1 - alpha)
    if out <= 0:
        return (0, 0, 0, 0)
    def channel(c, d):
        return round((c * alpha + d * ba / 255 * (1 - alpha)) / out)
    return (channel(r, br), channel(g, bg), channel(b, bb), round(out * 255))


def button(name, top, bottom, border, highlight):
    size, radius = 48, 14
    outer = rounded_rect(0, 0, size, size, radius)
    inner = rounded_rect(1, 1, size - 1, size - 1, radius - 1)
    shine = rounded_rect(1, 1, size - 1, 3, radius - 1)
    rows = []
    for y in range(size):
        row = []
        for x in range(size):
            pixel = (0, 0, 0, 0)
            pixel = over(border, coverage(outer, x, y), pixel)
            pixel = over(mix(top, bottom, y / (size - 1)), coverage(inner, x, y), pixel)
            pixel = over(highlight, coverage(shine, x, y) * 0.35, pixel)
            row.append(pixel)
        rows.append(row)
    write_png(os.path.join(ASSETS, name), size, size, rows)


def icon(name, inside):
    size, ink = 48, (43, 48, 56)
    rows = [[(*ink, round(255 * coverage(inside, x, y))) for x in range(size)] for y in range(size)]
    write_png(os.path.join(ASSETS, "icons", name), size, size, rows)


def bar(x0, y0, x1, y1, width):
    """A stroke from (x0, y0) to (x1, y1) with round ends."""
    def inside(x, y):
        dx, dy = x1 - x0, y1 - y0
        t = max(0.0, min(1.0, ((x - x0) * dx + (y - y0) * dy) / (dx * dx + dy * dy)))
        return math.hypot(x - (x0 + t * dx), y - (y0 + t * dy)) <= width / 2
    return inside


def ring(cx, cy, radius, width, gap_degrees=0):
    def inside(x, y):
        d = math.hypot(x - cx, y - cy)
        if abs(d - radius) > width / 2:
            return False
        angle = math.degrees(math.atan2(x - cx, cy - y))  # 0 at the top, clockwise
        return abs(angle) >= gap_degrees / 2
    return inside


def union(*shapes):
    return lambda x, y: any(shape(x, y) for shape in shapes)


def main():
    os.makedirs(os.path.join(ASSETS, "icons"), exist_ok=True)
    button("button.png", (246, 247, 249), (226, 229, 233), (190, 196, 204), (255, 255, 255))
    button("button-pressed.png", (206, 211, 217), (196, 201, 208), (168, 175, 185), (230, 233, 237))
    button("button-selected.png", (52, 130, 247), (31, 111, 235), (24, 87, 189), (140, 185, 255))
    icon("power.png", union(ring(24, 26, 14, 4.5, gap_degrees=70), bar(24, 7, 24, 24, 4.5)))
    icon("plus.png", union(bar(12, 24, 36, 24, 5), bar(24, 12, 24, 36, 5)))
    icon("minus.png", bar(12, 24, 36, 24, 5))
    icon("check.png", union(bar(11, 25, 20, 34, 5), bar(20, 34, 37, 15, 5)))


if __name__ == "__main__":
    main()
