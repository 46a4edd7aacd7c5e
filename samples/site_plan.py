#!/usr/bin/env python3
"""Makes plans of the sample's invented quarter: a surveyor's drawing, the same plotted as PDF, and an aerial photograph.

    python3 samples/site_plan.py FOLDER     # site.dxf, site.pdf, photo.png

Drawing and page are in metres from make_sample.py's origin. Nothing is taken from anywhere: houses, trees and meadows are
computed from the streets, by a generator of random numbers that always begins with the same one.
"""
import math
import random
import struct
import sys
import zlib
from pathlib import Path

import make_sample

WEST, SOUTH, EAST, NORTH = -60.0, -80.0, 470.0, 450.0
BROOK = [(470, 178), (446, 150), (432, 118), (412, 88), (404, 52), (410, 14), (402, -24), (408, -58), (398, -80)]
ROAD, PATH = 6.5, 1.8  # width of the carriageway, and of the pavement on each side of it


def along(line, step):
    """Points every so many metres, with the direction there."""
    left = step / 2
    for (x0, y0), (x1, y1) in zip(line, line[1:]):
        run = math.dist((x0, y0), (x1, y1))
        while left < run:
            yield (x0 + (x1 - x0) * left / run, y0 + (y1 - y0) * left / run), ((x1 - x0) / run, (y1 - y0) / run)
            left += step
        left -= run


def distance(p, line):
    best = 1e9
    for (x0, y0), (x1, y1) in zip(line, line[1:]):
        dx, dy = x1 - x0, y1 - y0
        t = max(0.0, min(1.0, ((p[0] - x0) * dx + (p[1] - y0) * dy) / (dx * dx + dy * dy)))
        best = min(best, math.dist(p, (x0 + dx * t, y0 + dy * t)))
    return best


def box(at, direction, length, depth):
    (x, y), (ux, uy) = at, direction
    return [(x + ux * a * length / 2 - uy * b * depth / 2, y + uy * a * length / 2 + ux * b * depth / 2)
            for a, b in ((-1, -1), (1, -1), (1, 1), (-1, 1))]


def offset(line, by):
    """The line beside it, to the left if positive."""
    out = []
    for i, (x, y) in enumerate(line):
        x0, y0 = line[max(0, i - 1)]
        x1, y1 = line[min(len(line) - 1, i + 1)]
        run = math.dist((x0, y0), (x1, y1))
        out.append((x - (y1 - y0) / run * by, y + (x1 - x0) / run * by))
    return out


def smooth(line):
    for _ in range(3):
        cut = [line[0]]
        for (x0, y0), (x1, y1) in zip(line, line[1:]):
            cut += [(0.75 * x0 + 0.25 * x1, 0.75 * y0 + 0.25 * y1), (0.25 * x0 + 0.75 * x1, 0.25 * y0 + 0.75 * y1)]
        line = cut + [line[-1]]
    return line


class Site:
    """Streets, houses, gardens, trees and the brook."""

    def __init__(self):
        make_sample.build()
        chance = random.Random(7)
        self.streets = []
        for name, code, _, _, _, points in make_sample.STREETS:
            line = [make_sample.nodes[p]["at"] if isinstance(p, str) else p for p in points]
            (x0, y0), (x1, y1) = line[1], line[0]
            run = math.dist((x0, y0), (x1, y1))
            line.insert(0, (x1 + (x1 - x0) / run * 18, y1 + (y1 - y0) / run * 18))
            self.streets.append((name, smooth(line)))
        self.brook = smooth(BROOK)
        self.houses, self.gardens, self.drives, self.trees, self.taken = [], [], [], [], []
        for key, size in (("MUEHLE", (19, 12)), ("PW1", (9, 7))):
            at = make_sample.nodes[key]["at"]
            self.houses.append((box(at, (0.93, -0.37), *size), key))
            self.taken.append((at, size[0] * 0.7))
        for name, line in self.streets:
            number = {1: 1, -1: 2}
            for at, direction in along(line, 21.0):
                for side in (1, -1):
                    self.build(at, direction, side, chance, number)
        self.plant(chance)

    def clear_of_streets(self, p):
        return min(distance(p, line) for _, line in self.streets)

    def build(self, at, direction, side, chance, number):
        away = 15.5 + chance.uniform(-1.0, 1.5)
        nx, ny = -direction[1] * side, direction[0] * side
        middle = (at[0] + nx * away, at[1] + ny * away)
        size = (chance.choice((11, 12.5, 14)), chance.choice((8.5, 9.5, 10.5)))
        reach = math.hypot(*size) / 2
        if (self.clear_of_streets(middle) < 12.5 or distance(middle, self.brook) < 16 or
                any(math.dist(middle, other) < reach + far + 2 for other, far in self.taken) or chance.random() < 0.08):
            return
        self.taken.append((middle, reach))
        self.houses.append((box(middle, direction, *size), str(number[side])))
        number[side] += 2
        garden = box((at[0] + nx * 18.5, at[1] + ny * 18.5), direction, 20.4, 27)
        self.gardens.append(garden)
        drive = (at[0] + nx * 7.5 + direction[0] * (size[0] / 2 + 2), at[1] + ny * 7.5 + direction[1] * (size[0] / 2 + 2))
        self.drives.append(box(drive, direction, 3, 9))

    def plant(self, chance):
        for _ in range(5200):
            p = (chance.uniform(WEST, EAST), chance.uniform(SOUTH, NORTH))
            radius = chance.uniform(1.4, 3.6)
            wood = p[0] > 425 + 12 * math.sin(p[1] / 23) or (p[0] < -18 and p[1] < 190 + 20 * math.sin(p[0] / 9))
            near_brook = distance(p, self.brook) < 11
            lived_in = self.clear_of_streets(p) < 34
            if not (wood or near_brook or (lived_in and chance.random() < 0.28)):
                continue
            if (self.clear_of_streets(p) < 5.5 + radius or distance(p, self.brook) < 3.5 or
                    any(math.dist(p, other) < far + radius for other, far in self.taken) or
                    any(math.dist(p, q) < 0.75 * (r + radius) for q, r in self.trees)):
                continue
            self.trees.append((p, radius))


def contours(level, step=10.0):
    """Where the ground has this height, as pieces within the squares of a grid."""
    pieces = []
    ys = [SOUTH + step * j for j in range(int((NORTH - SOUTH) / step) + 1)]
    xs = [WEST + step * i for i in range(int((EAST - WEST) / step) + 1)]
    for x, x2 in zip(xs, xs[1:]):
        for y, y2 in zip(ys, ys[1:]):
            corners = [(x, y), (x2, y), (x2, y2), (x, y2)]
            heights = [make_sample.ground(*c) - level for c in corners]
            cuts = []
            for k in range(4):
                a, b = heights[k], heights[(k + 1) % 4]
                if (a < 0) != (b < 0):
                    t = a / (a - b)
                    (px, py), (qx, qy) = corners[k], corners[(k + 1) % 4]
                    cuts.append((px + (qx - px) * t, py + (qy - py) * t))
            pieces += [cuts[k:k + 2] for k in range(0, len(cuts) - 1, 2)]
    return pieces


# --- the drawing ---------------------------------------------------------------------------------------------------

LAYERS = {"KERB": 8, "AXIS": 9, "HOUSE": 16, "HATCH": 31, "GARDEN": 94, "TREE": 84, "WATER": 150, "CONTOUR": 33, "TEXT": 250,
          "GRID": 253, "FRAME": 250}


def pairs(*items):
    return "".join(f"{code}\n{value:.3f}\n" if isinstance(value, float) else f"{code}\n{value}\n" for code, value in items)


class Drawing:
    def __init__(self):
        self.entities = []
        self.handle = 256

    def add(self, kind, layer, *items):
        self.handle += 1
        self.entities.append(pairs((0, kind), (5, f"{self.handle:X}"), (8, layer), *items))

    def line(self, layer, a, b):
        self.add("LINE", layer, (10, float(a[0])), (20, float(a[1])), (11, float(b[0])), (21, float(b[1])))

    def path(self, layer, points, closed=False):
        vertices = [item for x, y in points for item in ((10, float(x)), (20, float(y)))]
        self.add("LWPOLYLINE", layer, (90, len(points)), (70, int(closed)), *vertices)

    def text(self, layer, at, height, words, angle=0.0):
        words = words.replace("ä", "\\U+00E4").replace("ß", "\\U+00DF").replace("ü", "\\U+00FC")
        self.add("TEXT", layer, (10, float(at[0])), (20, float(at[1])), (40, float(height)), (1, words), (50, float(angle)),
                 (72, 1), (11, float(at[0])), (21, float(at[1])))

    def write(self, path):
        layers = "".join(pairs((0, "LAYER"), (2, name), (70, 0), (62, colour), (6, "CONTINUOUS"))
                         for name, colour in LAYERS.items())
        tree = (pairs((0, "BLOCK"), (8, "0"), (2, "TREE"), (70, 0), (10, 0.0), (20, 0.0)) +
                pairs((0, "CIRCLE"), (8, "0"), (10, 0.0), (20, 0.0), (40, 1.0)) +
                pairs((0, "LINE"), (8, "0"), (10, -0.25), (20, 0.0), (11, 0.25), (21, 0.0)) +
                pairs((0, "LINE"), (8, "0"), (10, 0.0), (20, -0.25), (11, 0.0), (21, 0.25)) + pairs((0, "ENDBLK"), (8, "0")))
        section = lambda name, inner: pairs((0, "SECTION"), (2, name)) + inner + pairs((0, "ENDSEC"))
        path.write_text(section("HEADER", pairs((9, "$ACADVER"), (1, "AC1015"), (9, "$INSUNITS"), (70, 6))) +
                        section("TABLES", pairs((0, "TABLE"), (2, "LAYER"), (70, len(LAYERS))) + layers + pairs((0, "ENDTAB"))) +
                        section("BLOCKS", tree) + section("ENTITIES", "".join(self.entities)) + pairs((0, "EOF")))


def upright(direction):
    angle = math.degrees(math.atan2(direction[1], direction[0]))
    return angle - 180 if angle > 90 else angle + 180 if angle < -90 else angle


def street_names(site):
    for name, line in site.streets:
        steps = list(along(line, math.fsum(math.dist(a, b) for a, b in zip(line, line[1:])) * 0.37))
        yield name, steps[0][0], upright(steps[0][1])


def draw(site, path):
    drawing = Drawing()
    for _, line in site.streets:
        for by in (ROAD / 2, -ROAD / 2, ROAD / 2 + PATH, -ROAD / 2 - PATH):
            others = [other for _, other in site.streets if other is not line]
            run = []
            for p, _ in along(offset(line, by), 1.0):
                # Kerbs end where another street comes in.
                if min(distance(p, other) for other in others) > ROAD / 2 + PATH:
                    run.append(p)
                elif run:
                    drawing.path("KERB", run[::3] + run[-1:])
                    run = []
            if run:
                drawing.path("KERB", run[::3] + run[-1:])
    for corners in site.gardens:
        drawing.path("GARDEN", corners, True)
    for corners, number in site.houses:
        drawing.path("HOUSE", corners, True)
        (ax, ay), (bx, by), (cx, cy), (dx, dy) = corners
        for k in range(1, 8):
            t = k / 8
            drawing.line("HATCH", (ax + (bx - ax) * t, ay + (by - ay) * t), (ax + (dx - ax) * t, ay + (dy - ay) * t))
            drawing.line("HATCH", (dx + (cx - dx) * t, dy + (cy - dy) * t), (bx + (cx - bx) * t, by + (cy - by) * t))
        if number.isdigit():
            middle = ((ax + cx) / 2, (ay + cy) / 2 - 1.2)
            drawing.text("TEXT", middle, 2.4, number)
    for (x, y), radius in site.trees:
        drawing.add("INSERT", "TREE", (2, "TREE"), (10, x), (20, y), (41, radius), (42, radius))
    for by in (2.6, -2.6):
        drawing.path("WATER", offset(site.brook, by))
    for level in range(36, 62):
        for a, b in contours(level):
            drawing.line("CONTOUR", a, b)
    for name, at, angle in street_names(site):
        drawing.text("TEXT", at, 4.0, name, angle)
    drawing.text("TEXT", (428, 60), 4.0, "Mühlbach", -80)
    frame = [(WEST, SOUTH), (EAST, SOUTH), (EAST, NORTH), (WEST, NORTH)]
    drawing.path("FRAME", frame, True)
    for x in range(0, 451, 50):
        for y in range(-50, 451, 50):
            drawing.line("GRID", (x - 2, y), (x + 2, y))
            drawing.line("GRID", (x, y - 2), (x, y + 2))
    drawing.write(path)


# --- the page ------------------------------------------------------------------------------------------------------

class Page:
    """One page of PDF, 1 : 1000, so that a metre is 72 / 25.4 points."""

    def __init__(self):
        self.unit = 72 / 25.4
        self.out = []

    def at(self, p):
        return f"{(p[0] - WEST) * self.unit:.2f} {(p[1] - SOUTH) * self.unit:.2f}"

    def shape(self, points, fill=None, stroke=None, width=0.3, closed=True):
        colours = (f"{fill} rg " if fill else "") + (f"{stroke} RG {width * self.unit:.2f} w " if stroke else "")
        way = f"{self.at(points[0])} m " + " ".join(f"{self.at(p)} l" for p in points[1:])
        end = ("h B" if fill and stroke else "h f" if fill else "h S" if closed else "S")
        self.out.append(f"{colours}{way} {end}")

    def disc(self, middle, radius, fill, stroke):
        ring = [(middle[0] + radius * math.cos(k * math.pi / 8), middle[1] + radius * math.sin(k * math.pi / 8))
                for k in range(16)]
        self.shape(ring, fill, stroke, 0.2)

    def text(self, at, height, words, angle=0.0, colour="0 0 0", font="F1"):
        wide = 0.5 * height * len(words)
        c, s = math.cos(math.radians(angle)), math.sin(math.radians(angle))
        begin = self.at((at[0] - c * wide / 2 + s * height * 0.35, at[1] - s * wide / 2 - c * height * 0.35))
        coded = words.encode("cp1252").replace(b"(", b"\\(").replace(b")", b"\\)").decode("latin1")
        self.out.append(f"BT {colour} rg /{font} {height * self.unit:.2f} Tf {c:.4f} {s:.4f} {-s:.4f} {c:.4f} {begin} Tm "
                        f"({coded}) Tj ET")

    def write(self, path):
        stream = zlib.compress("\n".join(["1 J 1 j"] + self.out).encode("latin1"))
        size = f"{(EAST - WEST) * self.unit:.2f} {(NORTH - SOUTH) * self.unit:.2f}"
        font = "<< /Type /Font /Subtype /Type1 /BaseFont /{} /Encoding /WinAnsiEncoding >>"
        objects = ["<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                   f"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 {size}] /Contents 4 0 R "
                   "/Resources << /Font << /F1 5 0 R /F2 6 0 R >> >> >>",
                   None, font.format("Helvetica"), font.format("Helvetica-Bold")]
        data, places = b"%PDF-1.4\n", []
        for number, inner in enumerate(objects, 1):
            places.append(len(data))
            body = inner.encode() if inner else (f"<< /Length {len(stream)} /Filter /FlateDecode >>\nstream\n".encode() +
                                                 stream + b"\nendstream")
            data += f"{number} 0 obj\n".encode() + body + b"\nendobj\n"
        table = "".join(f"{place:010d} 00000 n \n" for place in places)
        data += (f"xref\n0 {len(places) + 1}\n0000000000 65535 f \n{table}trailer\n<< /Size {len(places) + 1} /Root 1 0 R >>\n"
                 f"startxref\n{len(data)}\n%%EOF\n").encode()
        path.write_bytes(data)


def plot(site, path):
    page = Page()
    page.shape([(WEST, SOUTH), (EAST, SOUTH), (EAST, NORTH), (WEST, NORTH)], "0.93 0.95 0.88")
    for level in range(36, 62):
        for a, b in contours(level):
            page.shape([a, b], None, "0.80 0.70 0.52", 0.5 if level % 5 == 0 else 0.25, False)
    for corners in site.gardens:
        page.shape(corners, "0.85 0.92 0.76", "0.70 0.78 0.62", 0.25)
    page.shape(site.brook, None, "0.45 0.66 0.85", 6.0, False)
    for width, colour in ((ROAD + 2 * PATH + 0.6, "0.62 0.62 0.60"), (ROAD + 2 * PATH, "0.90 0.89 0.86"),
                          (ROAD, "1 1 1")):
        for _, line in site.streets:
            page.shape(line, None, colour, width, False)
    for corners in site.drives:
        page.shape(corners, "0.90 0.89 0.86")
    for middle, radius in site.trees:
        page.disc(middle, radius, "0.66 0.82 0.55", "0.42 0.60 0.36")
    for corners, number in site.houses:
        page.shape(corners, "0.88 0.66 0.56", "0.48 0.26 0.20", 0.4)
        if number.isdigit():
            page.text(((corners[0][0] + corners[2][0]) / 2, (corners[0][1] + corners[2][1]) / 2), 3.2, number)
    for name, at, angle in street_names(site):
        page.text(at, 5.0, name, angle, "0.25 0.25 0.25", "F2")
    page.text((421, 62), 5.0, "Mühlbach", -80, "0.15 0.38 0.62", "F2")
    legend = [(WEST + 8, SOUTH + 8), (WEST + 128, SOUTH + 8), (WEST + 128, SOUTH + 50), (WEST + 8, SOUTH + 50)]
    page.shape(legend, "1 1 1", "0.2 0.2 0.2", 0.5)
    page.text((WEST + 68, SOUTH + 39), 9, "Mühlenviertel", 0, "0 0 0", "F2")
    page.text((WEST + 68, SOUTH + 27), 6, "Site plan 1 : 1000", 0)
    page.text((WEST + 68, SOUTH + 16), 4.5, "an invented quarter", 0, "0.35 0.35 0.35")
    page.write(path)


# --- the photograph ------------------------------------------------------------------------------------------------

PIXEL = 0.32  # metres


class Photo:
    def __init__(self):
        self.width, self.height = int((EAST - WEST) / PIXEL), int((NORTH - SOUTH) / PIXEL)
        self.rows = [bytearray(3 * self.width) for _ in range(self.height)]
        chance = random.Random(3)
        self.lattice = [chance.random() for _ in range(4096)]
        self.grain = [chance.randint(-9, 9) for _ in range(65537)]

    def noise(self, x, y):
        """Between 0 and 1, smooth over a unit."""
        i, j = math.floor(x), math.floor(y)
        u, v = x - i, y - j
        u, v = u * u * (3 - 2 * u), v * v * (3 - 2 * v)
        at = lambda a, b: self.lattice[(a * 57 + b * 131 + (a * b & 63)) & 4095]
        return ((at(i, j) * (1 - u) + at(i + 1, j) * u) * (1 - v) + (at(i, j + 1) * (1 - u) + at(i + 1, j + 1) * u) * v)

    def place(self, column, row):
        return WEST + (column + 0.5) * PIXEL, NORTH - (row + 0.5) * PIXEL

    def put(self, column, row, colour, opacity=1.0):
        if 0 <= column < self.width and 0 <= row < self.height:
            line, k = self.rows[row], 3 * column
            for c in range(3):
                value = line[k + c] * (1 - opacity) + colour[c] * opacity
                line[k + c] = max(0, min(255, int(value)))

    def meadow(self):
        for row in range(self.height):
            line = self.rows[row]
            for column in range(self.width):
                x, y = self.place(column, row)
                broad = self.noise(x / 37, y / 37)
                fine = self.noise(x / 5 + 91, y / 5)
                red, green, blue = 92 + 30 * broad + 14 * fine, 112 + 22 * broad + 14 * fine, 62 + 14 * broad
                if x < 190 and y < 76 and self.noise(x / 90 + 7, y / 90) > 0.1:  # ploughed fields beside the town
                    stripe = math.sin((x * 0.34 + y * 0.94) * (2.1 if x < 60 else 1.7))
                    red, green, blue = ((150 + 10 * stripe, 130 + 9 * stripe, 92 + 7 * stripe) if x < 60 else
                                        (150 + 14 * stripe, 148 + 12 * stripe, 84 + 6 * stripe))
                speck = self.grain[(column * 7919 + row * 104729) % 65537]
                line[3 * column:3 * column + 3] = bytes(max(0, min(255, int(v + speck))) for v in (red, green, blue))

    def polygon(self, corners, colour, grain=8, opacity=1.0):
        """Convex; colour is a triple, or a function of the place."""
        ys = [p[1] for p in corners]
        for row in range(int((NORTH - max(ys)) / PIXEL), int((NORTH - min(ys)) / PIXEL) + 1):
            y = NORTH - (row + 0.5) * PIXEL
            cuts = sorted(x0 + (y - y0) / (y1 - y0) * (x1 - x0)
                          for (x0, y0), (x1, y1) in zip(corners, corners[1:] + corners[:1]) if (y0 <= y) != (y1 <= y))
            for a, b in zip(cuts[::2], cuts[1::2]):
                for column in range(math.ceil((a - WEST) / PIXEL - 0.5), math.floor((b - WEST) / PIXEL - 0.5) + 1):
                    tone = colour(*self.place(column, row)) if callable(colour) else colour
                    speck = self.grain[(column * 31 + row * 4057) % 65537] * grain / 9
                    self.put(column, row, [c + speck for c in tone], opacity)

    def band(self, line, width, colour, grain=6):
        for a, b in zip(line, line[1:]):
            run = math.dist(a, b)
            if run > 0:
                middle, direction = ((a[0] + b[0]) / 2, (a[1] + b[1]) / 2), ((b[0] - a[0]) / run, (b[1] - a[1]) / run)
                self.polygon(box(middle, direction, run + 0.35 * width, width), colour, grain)

    def tree(self, at, radius, chance):
        tint = chance.uniform(-14, 14)
        reach = int(radius / PIXEL) + 2
        for pass_, (dx, dy) in enumerate(((radius * 0.75, -radius * 0.75), (0.0, 0.0))):
            column0 = int((at[0] + dx - WEST) / PIXEL)
            row0 = int((NORTH - at[1] - dy) / PIXEL)
            for row in range(row0 - reach, row0 + reach + 1):
                for column in range(column0 - reach, column0 + reach + 1):
                    x, y = (column - column0) * PIXEL / radius, (row0 - row) * PIXEL / radius
                    edge = 0.82 + 0.36 * self.noise(column / 2.3 + at[0], row / 2.3 + at[1])
                    if x * x + y * y > edge * edge:
                        continue
                    if pass_ == 0:
                        self.put(column, row, (30, 38, 34), 0.55)
                        continue
                    light = 0.62 + 0.30 * (y - x) / 1.4 + 0.35 * (self.noise(column / 1.7, row / 1.7) - 0.5)
                    self.put(column, row, ((84 + tint) * light + 8, (122 + tint * 0.6) * light + 8, 58 * light + 8))

    def house(self, corners, chance):
        (ax, ay), (bx, by), (cx, cy), (dx, dy) = corners
        self.polygon([(x + 2.6, y - 2.6) for x, y in corners], (34, 36, 38), 3, 0.6)
        roof = chance.choice(((168, 88, 66), (150, 78, 60), (178, 104, 80), (104, 98, 96), (128, 74, 60)))
        ridge = ((ax + dx) / 2, (ay + dy) / 2), ((bx + cx) / 2, (by + cy) / 2)
        long = math.dist((ax, ay), (bx, by))
        ux, uy = (bx - ax) / long, (by - ay) / long
        for half in ([(ax, ay), (bx, by), ridge[1], ridge[0]], [ridge[0], ridge[1], (cx, cy), (dx, dy)]):
            mx, my = (half[0][0] + half[2][0]) / 2, (half[0][1] + half[2][1]) / 2
            rx, ry = (ridge[0][0] + ridge[1][0]) / 2, (ridge[0][1] + ridge[1][1]) / 2
            lit = ((my - ry) - (mx - rx)) / (math.dist((mx, my), (rx, ry)) * math.sqrt(2))
            light = 1.0 + 0.24 * lit
            tiles = lambda x, y: [c * light * (0.96 + 0.05 * math.sin((x * ux + y * uy) * 4.5)) for c in roof]
            self.polygon(half, tiles, 6)

    def write(self, path):
        chunk = lambda name, data: (struct.pack(">I", len(data)) + name + data +
                                    struct.pack(">I", zlib.crc32(name + data)))
        head = struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)
        lines = zlib.compress(b"".join(b"\0" + bytes(row) for row in self.rows), 6)
        path.write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", lines) + chunk(b"IEND", b""))


def take_photo(site, path):
    photo, chance = Photo(), random.Random(11)
    photo.meadow()
    for corners in site.gardens:
        tone = chance.uniform(-12, 12)
        photo.polygon(corners, lambda x, y: (104 + tone + 22 * photo.noise(x / 4, y / 4), 132 + tone, 70 + tone * 0.5), 8)
    photo.band(site.brook, 10.5, (86, 104, 62), 9)
    photo.band(site.brook, 5.2, (62, 84, 84), 5)
    for width, colour in ((ROAD + 2 * PATH, (172, 168, 160)), (ROAD, (116, 116, 118))):
        for _, line in site.streets:
            photo.band(line, width, colour)
    for corners in site.drives:
        photo.polygon(corners, (158, 150, 140))
    for _, line in site.streets:
        for at, direction in along(line, 13.0):
            if chance.random() < 0.35:
                side = chance.choice((-1, 1)) * (ROAD / 2 - 1.1)
                middle = (at[0] - direction[1] * side, at[1] + direction[0] * side)
                body = chance.choice(((214, 214, 216), (52, 56, 62), (140, 32, 30), (48, 74, 122), (168, 170, 172)))
                photo.polygon(box((middle[0] + 0.5, middle[1] - 0.5), direction, 4.4, 1.8), (40, 40, 42), 2, 0.6)
                photo.polygon(box(middle, direction, 4.4, 1.8), body, 3)
                photo.polygon(box(middle, direction, 1.9, 1.5), (44, 50, 56), 3)
    for corners, _ in site.houses:
        photo.house(corners, chance)
    for at, radius in sorted(site.trees, key=lambda tree: tree[1]):
        photo.tree(at, radius, chance)
    photo.write(path)


def main():
    folder = Path(sys.argv[1])
    site = Site()
    draw(site, folder / "site.dxf")
    plot(site, folder / "site.pdf")
    take_photo(site, folder / "photo.png")


if __name__ == "__main__":
    main()
