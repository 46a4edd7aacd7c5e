#!/usr/bin/env python3
"""Draws the icons of kxviewer into this folder: 128 pixels square, each a plate with a sign. Needs nothing but Python."""

import os
import struct
import zlib

SIZE = 128
SAMPLES = 3

PAPER, INK, ACCENT, WHITE = (251, 250, 248), (35, 40, 45), (11, 110, 119), (255, 255, 255)


def segment(x, y, ax, ay, bx, by):
    """Distance from a point to a segment."""
    dx, dy = bx - ax, by - ay
    t = max(0.0, min(1.0, ((x - ax) * dx + (y - ay) * dy) / (dx * dx + dy * dy)))
    return ((x - ax - t * dx) ** 2 + (y - ay - t * dy) ** 2) ** 0.5


def plate(x, y):
    dx, dy = max(abs(x - 0.5) - 0.36, 0), max(abs(y - 0.5) - 0.36, 0)
    return (dx * dx + dy * dy) ** 0.5 < 0.1


def glass(x, y):
    ring = abs(((x - 0.44) ** 2 + (y - 0.44) ** 2) ** 0.5 - 0.23) < 0.032
    return ring or segment(x, y, 0.62, 0.62, 0.78, 0.78) < 0.05


def minus(x, y):
    return glass(x, y) or segment(x, y, 0.34, 0.44, 0.54, 0.44) < 0.03


def plus(x, y):
    return minus(x, y) or segment(x, y, 0.44, 0.34, 0.44, 0.54) < 0.03


def cross(x, y):
    if segment(x, y, 0.25, 0.5, 0.75, 0.5) < 0.03 or segment(x, y, 0.5, 0.25, 0.5, 0.75) < 0.03:
        return True
    for u, v in ((x, y), (1 - x, y), (y, x), (1 - y, x)):
        if 0.16 < u < 0.28 and abs(v - 0.5) < (u - 0.16):
            return True
    return False


def turn(x, y):
    dx, dy = x - 0.5, y - 0.5
    ring = abs((dx * dx + dy * dy) ** 0.5 - 0.25) < 0.035 and not (dx > 0 and -dx < dy < 0.02)
    return ring or arrow(x, y, 0.74, 0.4, 0.76, 0.56)


def compass(x, y):
    """A needle whose filled half points north."""
    dx, dy = abs(x - 0.5), y - 0.5
    ring = abs((dx * dx + dy * dy) ** 0.5 - 0.36) < 0.025
    inside = dx < 0.12 * (1 - abs(dy) / 0.28) and abs(dy) < 0.28
    edge = inside and dx > 0.12 * (1 - abs(dy) / 0.28) - 0.035
    letter = 0.44 < x < 0.56 and 0.06 < y < 0.2 and (abs(x - 0.45) < 0.016 or abs(x - 0.55) < 0.016
                                                     or segment(x, y, 0.45, 0.07, 0.55, 0.19) < 0.016)
    return ring and not 0.4 < x < 0.6 or inside and dy < 0 or edge or letter


def split(x, y):
    frame = (abs(abs(x - 0.5) - 0.3) < 0.025 and abs(y - 0.5) < 0.26) or (abs(abs(y - 0.5) - 0.24) < 0.025
                                                                          and abs(x - 0.5) < 0.32)
    return frame or abs(x - 0.5) < 0.02 and abs(y - 0.5) < 0.24 or 0.52 < x < 0.78 and abs(y - 0.5) < 0.22 and (
        int((x + y) * 14) % 2 == 0)


def turn_or_move(x, y):
    return turn(x * 1.5 - 0.02, y * 1.5 - 0.02) or cross(x * 1.7 - 0.72, y * 1.7 - 0.72)


def pipe(x, y):
    """Two walls with their ends, seen from the side."""
    if abs(abs(y - 0.62) - 0.11) < 0.025 and 0.18 < x < 0.82:
        return True
    return any(abs(((x - end) / 0.045) ** 2 + ((y - 0.62) / 0.11) ** 2 - 1) < 0.45 for end in (0.18, 0.82))


def arrow(x, y, ax, ay, bx, by):
    """A shaft from a to b with a head at b."""
    length = ((bx - ax) ** 2 + (by - ay) ** 2) ** 0.5
    ux, uy = (bx - ax) / length, (by - ay) / length
    along, across = (bx - x) * ux + (by - y) * uy, abs((bx - x) * uy - (by - y) * ux)
    return 0 <= along < 0.14 and across < along * 0.75 or 0.1 <= along < length and across < 0.03


def go_pipe(x, y):
    return pipe(x, y) or arrow(x, y, 0.5, 0.16, 0.5, 0.47)


def vehicle(x, y):
    body = 0.34 < x < 0.62 and 0.56 < y < 0.66 or segment(x, y, 0.62, 0.58, 0.68, 0.56) < 0.03
    wheels = any((x - at) ** 2 + (y - 0.68) ** 2 < 0.035 ** 2 for at in (0.4, 0.56))
    return pipe(x, y) or body or wheels or arrow(x, y, 0.5, 0.16, 0.5, 0.42)


def manhole(x, y, at):
    return abs(((x - at) ** 2 + (y - 0.66) ** 2) ** 0.5 - 0.12) < 0.03


def upstream(x, y):
    return manhole(x, y, 0.26) or segment(x, y, 0.4, 0.66, 0.82, 0.66) < 0.03 or arrow(x, y, 0.74, 0.34, 0.3, 0.34)


def downstream(x, y):
    return upstream(1 - x, y)


def pin(x, y):
    head = abs(((x - 0.5) ** 2 + (y - 0.38) ** 2) ** 0.5 - 0.17) < 0.035
    tip = min(segment(x, y, 0.36, 0.49, 0.5, 0.8), segment(x, y, 0.64, 0.49, 0.5, 0.8)) < 0.035
    return (head and y < 0.52) or tip or (x - 0.5) ** 2 + (y - 0.38) ** 2 < 0.05 ** 2


def pen(x, y):
    small = pin(x * 1.25 + 0.02, y * 1.25 + 0.02)
    return small or segment(x, y, 0.6, 0.78, 0.8, 0.5) < 0.04


def house(x, y):
    roof = min(segment(x, y, 0.2, 0.5, 0.5, 0.24), segment(x, y, 0.8, 0.5, 0.5, 0.24)) < 0.035
    walls = min(segment(x, y, 0.28, 0.46, 0.28, 0.78), segment(x, y, 0.72, 0.46, 0.72, 0.78),
                segment(x, y, 0.28, 0.78, 0.72, 0.78)) < 0.03
    return roof or walls or 0.45 < x < 0.55 and 0.6 < y < 0.78


def colour(sign, active, x, y):
    if not plate(x, y):
        return None
    if sign(x, y):
        return WHITE if active else INK
    return ACCENT if active else PAPER


def pixel(sign, active, column, row):
    total, hits = [0, 0, 0], 0
    for i in range(SAMPLES * SAMPLES):
        x = (column + (i % SAMPLES + 0.5) / SAMPLES) / SIZE
        y = (row + (i // SAMPLES + 0.5) / SAMPLES) / SIZE
        found = colour(sign, active, x, y)
        if found:
            hits += 1
            total = [a + b for a, b in zip(total, found)]
    if not hits:
        return bytes(4)
    return bytes([round(value / hits) for value in total] + [round(230 * hits / SAMPLES ** 2)])


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def write(name, sign, active):
    rows = b"".join(b"\0" + b"".join(pixel(sign, active, column, row) for column in range(SIZE)) for row in range(SIZE))
    header = struct.pack(">IIBBBBB", SIZE, SIZE, 8, 6, 0, 0, 0)
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), name + ".png"), "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9))
                   + chunk(b"IEND", b""))


for name, sign in (("zoom-plus", plus), ("zoom-minus", minus), ("position-mode", cross), ("rotation-mode", turn), ("compass", compass), ("split-view", split),
                   ("turn-or-move", turn_or_move), ("goto-camera", vehicle),
                   ("goto-section", go_pipe), ("goto-upstream", upstream), ("goto-downstream", downstream),
                   ("goto-gps", pin), ("edit-gps", pen), ("goto-address", house)):
    write(name, sign, False)
    write(name + "-active", sign, True)
