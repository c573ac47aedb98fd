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


def polygon(*points):
    """A convex polygon, corners in clockwise order (y down)."""
    def inside(x, y):
        for (ax, ay), (bx, by) in zip(points, points[1:] + points[:1]):
            if (bx - ax) * (y - ay) - (by - ay) * (x - ax) < 0:
                return False
        return True
    return inside


def box(left, top, right, bottom):
    return rounded_rect(left, top, right, bottom, 1.5)


def cover(name, pixel):
    """Album art for the demo's media player: 240 x 240, opaque, one function per picture."""
    size = 240
    rows = [[(*pixel(x / size, y / size), 255) for x in range(size)] for y in range(size)]
    os.makedirs(os.path.join(ASSETS, "covers"), exist_ok=True)
    write_png(os.path.join(ASSETS, "covers", name), size, size, rows)


def clamp(v):
    return max(0, min(255, round(v)))


def coastline(u, v):
    if v > 0.68:  # the sea, with the sun's reflection
        glint = max(0.0, 1 - abs(u - 0.5) * 6) * (0.5 + 0.5 * math.sin(v * 140))
        return mix((22, 28, 70), (250, 170, 90), glint * 0.8)
    sun = math.hypot(u - 0.5, (v - 0.62) * 1.1)
    if sun < 0.2:
        return mix((255, 236, 170), (255, 190, 110), sun / 0.2)
    return mix(mix((40, 22, 88), (214, 72, 112), v / 0.68), (250, 170, 90), max(0.0, (v - 0.45) / 0.23) ** 2)


def towers(u, v):
    sky = mix((14, 20, 60), (108, 62, 170), v)
    for left, width, top in ((0.08, 0.14, 0.35), (0.26, 0.18, 0.18), (0.48, 0.12, 0.45), (0.64, 0.2, 0.28),
                             (0.88, 0.1, 0.55)):
        if left <= u <= left + width and v >= top:
            lit = (int(u * 60) + int(v * 48)) % 5 == 0
            return (255, 214, 120) if lit else mix((28, 30, 64), (50, 44, 96), (u - left) / width)
    return sky


def slow_lane(u, v):
    if v < 0.45:
        return mix((120, 200, 190), (226, 240, 214), v / 0.45)
    road = abs(u - 0.5) < 0.05 + (v - 0.45) * 0.9
    if road:
        stripe = abs(u - 0.5) < 0.008 + (v - 0.45) * 0.03 and int(v * 30) % 2 == 0
        return (250, 246, 230) if stripe else mix((70, 74, 80), (40, 42, 48), v)
    return mix((70, 150, 96), (34, 96, 66), (v - 0.45) / 0.55)


def northern(u, v):
    base = mix((6, 10, 30), (16, 30, 60), v)
    wave = 0.35 + 0.12 * math.sin(u * 7.0) + 0.05 * math.sin(u * 19.0)
    glow = max(0.0, 1 - abs(v - wave) / 0.16)
    colour = mix(base, (80, 240, 170), glow * 0.9)
    if v > 0.8 - 0.06 * math.sin(u * 4):
        return (8, 12, 20)
    return colour


def main():
    os.makedirs(os.path.join(ASSETS, "icons"), exist_ok=True)
    button("button.png", (246, 247, 249), (226, 229, 233), (190, 196, 204), (255, 255, 255))
    button("button-pressed.png", (206, 211, 217), (196, 201, 208), (168, 175, 185), (230, 233, 237))
    button("button-selected.png", (52, 130, 247), (31, 111, 235), (24, 87, 189), (140, 185, 255))
    icon("power.png", union(ring(24, 26, 14, 4.5, gap_degrees=70), bar(24, 7, 24, 24, 4.5)))
    icon("plus.png", union(bar(12, 24, 36, 24, 5), bar(24, 12, 24, 36, 5)))
    icon("minus.png", bar(12, 24, 36, 24, 5))
    icon("check.png", union(bar(11, 25, 20, 34, 5), bar(20, 34, 37, 15, 5)))
    icon("play.png", polygon((15, 9), (39, 24), (15, 39)))
    icon("pause.png", union(box(12, 10, 20, 38), box(28, 10, 36, 38)))
    icon("next.png", union(polygon((9, 10), (31, 24), (9, 38)), box(32, 10, 38, 38)))
    icon("previous.png", union(polygon((39, 10), (39, 38), (17, 24)), box(10, 10, 16, 38)))
    icon("navigate.png", union(polygon((24, 6), (40, 40), (24, 32)), polygon((24, 6), (24, 32), (8, 40))))
    cover("coastline.png", coastline)
    cover("towers.png", towers)
    cover("slowlane.png", slow_lane)
    cover("northern.png", northern)


if __name__ == "__main__":
    main()
