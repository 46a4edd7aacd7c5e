#!/usr/bin/env python3
"""Makes a street map of the sample's invented quarter, as a folder of tiles.

    python3 samples/street_tiles.py FOLDER     # FOLDER/Z/X/Y.png, levels 10 and 15 to 18

The level 10 is open country: beyond the quarter finer levels are cut out of it.
"""
import math
import sys
from pathlib import Path

import make_sample
import site_plan

EDGE = 256
LAND, GARDEN, HOUSE, WATER = (242, 239, 230), (222, 234, 208), (217, 203, 190), (170, 211, 223)
WOOD, KERB, STREET = (184, 214, 172), (176, 172, 164), (255, 255, 255)


class StreetMap(site_plan.Photo):
    """The raster that tiles are cut from, in the plan's metres."""

    def __init__(self, site):
        super().__init__()
        self.rows = [bytearray(bytes(LAND) * self.width) for _ in range(self.height)]
        for corners in site.gardens:
            self.polygon(corners, GARDEN, 0)
        for at, radius in site.trees:
            self.disc(at, radius * 1.3, WOOD)
        self.band(site.brook, 6.5, WATER, 0)
        for corners, _ in site.houses:
            self.polygon(corners, HOUSE, 0)
        for width, colour in ((site_plan.ROAD + 2 * site_plan.PATH, KERB), (site_plan.ROAD + 1.6, STREET)):
            for _, line in site.streets:
                self.band(line, width, colour, 0)

    def disc(self, at, radius, colour):
        corners = [(at[0] + radius * math.cos(k * math.pi / 5), at[1] + radius * math.sin(k * math.pi / 5))
                   for k in range(10)]
        self.polygon(corners, colour, 0)

    def colour(self, x, y):
        column = int((x - site_plan.WEST) / site_plan.PIXEL)
        row = int((site_plan.NORTH - y) / site_plan.PIXEL)
        if 0 <= column < self.width and 0 <= row < self.height:
            return self.rows[row][3 * column:3 * column + 3]
        return LAND


def utm32(longitude, latitude):
    """Easting and northing in EPSG:25832: Krueger's series to the third order, a millimetre here."""
    f = 1 / 298.257222101
    n = f / (2 - f)
    radius = 6378137.0 / (1 + n) * (1 + n * n / 4 + n ** 4 / 64)
    alpha = (n / 2 - 2 * n * n / 3 + 5 * n ** 3 / 16, 13 * n * n / 48 - 3 * n ** 3 / 5, 61 * n ** 3 / 240)
    e = 2 * math.sqrt(n) / (1 + n)
    phi, lam = math.radians(latitude), math.radians(longitude - 9.0)
    t = math.sinh(math.atanh(math.sin(phi)) - e * math.atanh(e * math.sin(phi)))
    xi, eta = math.atan2(t, math.cos(lam)), math.atanh(math.sin(lam) / math.sqrt(1 + t * t))
    east = eta + sum(a * math.cos(2 * j * xi) * math.sinh(2 * j * eta) for j, a in enumerate(alpha, 1))
    north = xi + sum(a * math.sin(2 * j * xi) * math.cosh(2 * j * eta) for j, a in enumerate(alpha, 1))
    return 500000.0 + 0.9996 * radius * east, 0.9996 * radius * north


def place(level, x, y):
    """Longitude and latitude of a point of the map, counted in tiles."""
    world = 2.0 ** level
    return x / world * 360.0 - 180.0, math.degrees(math.atan(math.sinh(math.pi * (1 - 2 * y / world))))


def plan_point(level, x, y):
    easting, northing = utm32(*place(level, x, y))
    return easting - make_sample.EASTING, northing - make_sample.NORTHING


def tile(street_map, level, x, y):
    """Its rows. Three corners are projected, the rest lies between them: 11 cm off at worst at level 15, 2 mm at 18."""
    (ax, ay), (bx, by), (cx, cy) = plan_point(level, x, y), plan_point(level, x + 1, y), plan_point(level, x, y + 1)
    rows = []
    for row in range(EDGE):
        line = bytearray()
        for column in range(EDGE):
            colours = []
            for u, v in ((0.25, 0.25), (0.75, 0.25), (0.25, 0.75), (0.75, 0.75)):
                s, t = (column + u) / EDGE, (row + v) / EDGE
                colours.append(street_map.colour(ax + s * (bx - ax) + t * (cx - ax), ay + s * (by - ay) + t * (cy - ay)))
            line += bytes(sum(c[k] for c in colours) // 4 for k in range(3))
        rows.append(line)
    return rows


def write(folder, level, x, y, rows):
    picture = site_plan.Photo.__new__(site_plan.Photo)
    picture.width, picture.height, picture.rows = EDGE, EDGE, rows
    path = folder / str(level) / str(x) / f"{y}.png"
    path.parent.mkdir(parents=True, exist_ok=True)
    picture.write(path)


def tile_of(level, x, y):
    """The tile in which a point of the plan lies, by going there in steps of what is missing."""
    column, row = 2.0 ** level * (0.5 + 9.9 / 360.0), 2.0 ** level * 0.33
    for _ in range(20):
        ax, ay = plan_point(level, column, row)
        step = 1e-3
        bx, by = plan_point(level, column + step, row)[0], plan_point(level, column, row + step)[1]
        column += (x - ax) / ((bx - ax) / step)
        row += (y - ay) / ((by - ay) / step)
    return int(column), int(row)


def main():
    folder = Path(sys.argv[1])
    street_map = StreetMap(site_plan.Site())
    west, east, south, north = site_plan.WEST, site_plan.EAST, site_plan.SOUTH, site_plan.NORTH
    for level in (15, 16, 17, 18):
        (left, top), (right, bottom) = tile_of(level, west, north), tile_of(level, east, south)
        for x in range(left, right + 1):
            for y in range(top, bottom + 1):
                write(folder, level, x, y, tile(street_map, level, x, y))
    x, y = tile_of(10, west, north)
    for dx in (-1, 0, 1):
        for dy in (-1, 0, 1):
            write(folder, 10, x + dx, y + dy, [bytearray(bytes(LAND) * EDGE) for _ in range(EDGE)])


if __name__ == "__main__":
    main()
