"""Reads the public-domain geodata of the sample drawing."""

import csv
import json
import struct


def read_dbf(path):
    """Rows as dictionaries; text is ISO-8859-1 although the code-page byte says nothing."""
    data = path.read_bytes()
    rows, first, width = struct.unpack_from("<IHH", data, 4)
    fields, offset = [], 1
    for i in range(32, first - 1, 32):
        name = data[i:i + 11].split(b"\0")[0].decode()
        fields.append((name, chr(data[i + 11]), offset, data[i + 16], data[i + 17]))
        offset += data[i + 16]
    result = []
    for r in range(rows):
        row = {}
        for name, kind, start, size, decimals in fields:
            begin = first + r * width + start
            text = data[begin:begin + size].decode("latin-1").strip()
            if kind in "NF":
                text = int(text) if kind == "N" and decimals == 0 else float(text)
            row[name] = text
        result.append(row)
    return result


def read_shapes(path):
    """Every record as a list of rings; a point record is one ring of one point."""
    data, position, shapes = path.read_bytes(), 100, []
    while position < len(data):
        words, kind = struct.unpack(">4xi", data[position:position + 8])[0], data[position + 8]
        body = position + 12
        if kind == 1:
            shapes.append([[struct.unpack_from("<2d", data, body)]])
        else:
            parts, count = struct.unpack_from("<2i", data, body + 32)
            starts = (*struct.unpack_from(f"<{parts}i", data, body + 40), count)
            xy = struct.unpack_from(f"<{2 * count}d", data, body + 40 + 4 * parts)
            points = list(zip(xy[::2], xy[1::2]))
            shapes.append([points[a:b] for a, b in zip(starts, starts[1:])])
        position += 8 + 2 * words
    return [[[(round(x, 6), round(y, 6)) for x, y in ring] for ring in rings] for rings in shapes]


def signed_area(ring):
    return sum(a[0] * b[1] - b[0] * a[1] for a, b in zip(ring, ring[1:] + ring[:1])) / 2


def centroid(ring):
    # About the first vertex, so that small rings far from the origin keep their digits.
    ox, oy = ring[0]
    local = [(x - ox, y - oy) for x, y in ring]
    six_areas, sx, sy = 6 * signed_area(local), 0.0, 0.0
    for (ax, ay), (bx, by) in zip(local, local[1:] + local[:1]):
        cross = ax * by - bx * ay
        sx, sy = sx + (ax + bx) * cross, sy + (ay + by) * cross
    return (round(ox + sx / six_areas, 4), round(oy + sy / six_areas, 4), 0.0)


def inside(point, rings):
    """Even-odd rule over all rings."""
    x, y = point
    odd = False
    for ring in rings:
        for (ax, ay), (bx, by) in zip(ring, ring[1:] + ring[:1]):
            if (ay > y) != (by > y) and x < ax + (y - ay) * (bx - ax) / (by - ay):
                odd = not odd
    return odd


def read_countries(folder):
    countries = read_dbf(folder / "naturalearth_lowres.dbf")
    for country, rings in zip(countries, read_shapes(folder / "naturalearth_lowres.shp"),
                              strict=True):
        country["rings"] = [ring[:-1] for ring in rings]  # the last point repeats the first
    return countries


def read_airports(folder):
    with open(folder / "airports.csv", encoding="utf-8", newline="") as file:
        airports = sorted(csv.DictReader(file), key=lambda a: a["iata"])
    for airport in airports:
        airport["at"] = (round(float(airport["longitude"]), 6),
                         round(float(airport["latitude"]), 6))
    return airports


def read_quakes(folder):
    features = json.loads((folder / "earthquakes.json").read_text(encoding="utf-8"))["features"]
    return sorted(features, key=lambda f: (f["properties"]["time"], f["id"]))
