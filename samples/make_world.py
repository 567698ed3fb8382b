#!/usr/bin/env python3
"""Makes world.dxf: a drawing of the world whose entities carry object data.

Usage: make_world.py GEODATA_FOLDER OUTPUT.dxf

The folder holds naturalearth_lowres and naturalearth_cities (.shp and .dbf), airports.csv,
us-state-capitals.json and earthquakes.json. The same input always gives the same bytes.
"""

import collections
import json
import math
import pathlib
import sys

from dxf_writer import MODEL, PAPER, DxfWriter, at
from geodata import (centroid, inside, read_airports, read_countries, read_dbf, read_quakes,
                     read_shapes, signed_area)
from object_data import CHARACTER, INTEGER, POINT, REAL, add_records, add_table_definitions

LONG_NOTE = ("Walked the whole border from the river mouth to the pass; every second mark was "
             "found standing, the others were set anew. Où le chemin quitte la vallée, la borne "
             "nº 17 est tombée; elle fut relevée le même jour. ") * 3
NOTES = (
    "all marks found",
    'the "old" mark is gone',
    "north\tsouth\ttabs between",
    "height^2 over width^2",
    "first line\nsecond line",
    "Überprüft: Grenzstein 42, Łódź, 北極",
    LONG_NOTE[:245] + "^" * 12 + LONG_NOTE[245:],  # carets where it is cut
    "ends with two blanks  ",
    "",
    "50% *done* [maybe], a?b",
)
SCORES = (0.1, -2.5, 7.0, 1e20, 0.0000001, 3.25, 99.999)
INSPECTED = (20180131, 20180207, 0, -1, 2147483647, -2147483648)

# name -> columns of name, type and default
TABLES = {
    "AIRPORT": (("IATA", CHARACTER, "???"), ("NAME", CHARACTER, ""), ("CITY", CHARACTER, ""),
                ("STATE", CHARACTER, "NA"), ("POS", POINT, (0.0, 0.0, 0.0))),
    "CITY": (("NAME", CHARACTER, ""), ("ISO3", CHARACTER, "---"), ("NUMBER", INTEGER, 0),
             ("AT", POINT, (0.0, 0.0, 0.0))),
    "COUNTRY": (("ISO3", CHARACTER, "-99"), ("NAME", CHARACTER, ""), ("CONTINENT", CHARACTER, ""),
                ("POPULATION", REAL, 0.0), ("GDP", INTEGER, 0),
                ("LABEL_AT", POINT, (0.0, 0.0, 0.0))),
    "QUAKE": (("EVENT_ID", CHARACTER, ""), ("MAG", REAL, 0.0), ("DEPTH", REAL, 10.0),
              ("FELT", INTEGER, -1), ("PLACE", CHARACTER, "unknown"),
              ("AT", POINT, (-180.0, -90.0, 0.0)), ("TIME", REAL, 0.0)),
    "SURVEY": (("NOTE", CHARACTER, "not inspected"), ("INSPECTED", INTEGER, 19700101),
               ("SCORE", REAL, 0.5)),
    "TPMNODE_WORLD": (("ID", INTEGER, 0), ("RESISTANCE", REAL, 1.0)),
    "UNUSED_TABLE": (("CODE", CHARACTER, "n/a"), ("COUNT", INTEGER, -1), ("FACTOR", REAL, 1.5),
                     ("ORIGIN", POINT, (1.0, 2.0, 3.0)), ("REMARK", CHARACTER, LONG_NOTE)),
}

FROZEN, LOCKED = 1, 4
# name, flags, colour (negative: off), linetype
LAYERS = (
    ("0", 0, 7, "Continuous"), ("AIRPORTS", 0, 5, "Continuous"),
    ("ARCHIVE", FROZEN, 9, "Continuous"), ("CAPITALS", 0, 1, "Continuous"),
    ("CITIES", 0, 30, "Continuous"), ("COUNTRIES", 0, 94, "Continuous"),
    ("DRAFT", 0, -32, "DASHED"),
    ("EARTHQUAKES", 0, 10, "Continuous"), ("FLIGHTS", 0, 140, "CENTER"),
    ("GRATICULE", 0, 253, "DASHED"), ("LABELS", 0, 7, "Continuous"),
    ("SURVEY_MARKS", LOCKED, 6, "Continuous"),
)
LINETYPES = (("ByBlock", "", ()), ("ByLayer", "", ()), ("Continuous", "Solid line", ()),
             ("CENTER", "Center ____ _ ____ _ ____", (1.25, -0.25, 0.25, -0.25)),
             ("DASHED", "Dashed __ __ __ __ __ __", (0.5, -0.25)))

# block -> attributes: tag, prompt, offset from the insertion point, height, flags (1: invisible)
BLOCKS = {
    "AIRPORT": (),
    "CAPITAL": (("STATE", "State", (0.6, -0.9), 0.5, 0), ("CITY", "City", (0.6, 0.2), 0.6, 0)),
    "CITY": (("NAME", "Name of the city", (0.5, 0.2), 0.6, 0),
             ("COUNTRY_CODE", "ISO code of its country", (0.5, -0.7), 0.4, 1)),
}

HUBS = ("ATL", "DEN", "DFW", "JFK", "LAX", "MIA", "ORD", "SEA")


# --- entities --------------------------------------------------------------------------------


def add_point(w, layer, position, records=(), **where):
    w.entity("POINT", layer, records, points=[position], **where)
    w.put(100, "AcDbPoint", *at(10, position))


def add_polyline(w, layer, vertices, records=(), closed=True, bulge=0.0, **where):
    w.entity("LWPOLYLINE", layer, records, points=vertices, **where)
    w.put(100, "AcDbPolyline", 90, len(vertices), 70, int(closed), 43, 0.0)
    for vertex in vertices:
        w.put(*at(10, vertex))
        if bulge:
            w.put(42, bulge)


def add_text(w, layer, position, height, text, records=(), **where):
    w.entity("TEXT", layer, records, points=[position], **where)
    w.put(100, "AcDbText", *at(10, (*position, 0.0)), 40, height, 1, text, 100, "AcDbText")


def add_circle(w, layer, centre, radius):
    x, y = centre
    w.entity("CIRCLE", layer, points=((x - radius, y - radius), (x + radius, y + radius)))
    w.put(100, "AcDbCircle", *at(10, (*centre, 0.0)), 40, radius)


def add_insert(w, block, layer, position, values=(), records=(), foreign=None):
    insert = w.entity("INSERT", layer, records, foreign=foreign, points=[position])
    w.put(100, "AcDbBlockReference")
    if values:
        w.put(66, 1)
    w.put(2, block, *at(10, (*position, 0.0)))
    for (tag, _, offset, height, flags), value in zip(BLOCKS[block], values, strict=True):
        w.part_of(insert, "ATTRIB", layer)
        corner = (round(position[0] + offset[0], 6), round(position[1] + offset[1], 6), 0.0)
        w.put(100, "AcDbText", *at(10, corner), 40, height, 1, value,
              100, "AcDbAttribute", 280, 0, 2, tag, 70, flags, 280, 1)
    if values:
        w.part_of(insert, "SEQEND", layer)


# --- layers ----------------------------------------------------------------------------------


def survey(number):
    return ("SURVEY", (NOTES[number % len(NOTES)], INSPECTED[number % len(INSPECTED)],
                       SCORES[number % len(SCORES)]))


def node(number):
    return ("TPMNODE_WORLD", (number, 1.0 + number / 8))


def add_countries(w, countries):
    number = 0
    for country in countries:
        for ring in country["rings"]:
            if signed_area(ring) > 0:  # a hole
                add_polyline(w, "COUNTRIES", ring)
                continue
            records = [("COUNTRY", (country["iso_a3"], country["name"], country["continent"],
                                    country["pop_est"], country["gdp_md_est"], centroid(ring)))]
            if number % 9 == 4:
                records.append(survey(number // 9))
            add_polyline(w, "COUNTRIES", ring, records)
            number += 1


def add_graticule(w):
    lines = [((x, -90.0), (x, 90.0)) for x in range(-180, 181, 30)]
    lines += [((-180.0, y), (180.0, y)) for y in range(-60, 61, 30)]
    for start, end in lines:
        w.entity("LINE", "GRATICULE", points=(start, end))
        w.put(100, "AcDbLine", *at(10, (*start, 0.0)), *at(11, (*end, 0.0)))


def add_cities(w, folder, countries):
    names = [row["name"] for row in read_dbf(folder / "naturalearth_cities.dbf")]
    for number, (name, shape) in enumerate(
            zip(names, read_shapes(folder / "naturalearth_cities.shp"), strict=True), 1):
        position = shape[0][0]
        iso = next((c["iso_a3"] for c in countries if inside(position, c["rings"])), "")
        record = ("CITY", (name, iso or "---", number, (*position, 0.0)))
        records = [record]
        if number % 40 == 7:
            records = [record, survey(number // 40), record]
        elif number % 40 == 23:
            records = [survey(number // 40)]
        elif number % 40 == 31:
            records = []
        add_insert(w, "CITY", "CITIES", position, (name, iso), records)


def airport_record(airport):
    return ("AIRPORT", (airport["iata"], airport["name"], airport["city"], airport["state"],
                        (*airport["at"], 0.0)))


def is_international(airport):
    return "International" in airport["name"] or "Intl" in airport["name"]


def add_airports(w, airports):
    """References for the international ones, points for every eighth of the others."""
    others = [a for a in airports if not is_international(a) and a["iata"].isalpha()]
    chosen = others[::8] + [a for a in airports if '"' in a["name"]]
    number = 0
    for airport in airports:
        record = airport_record(airport)
        if is_international(airport):
            records = [record]
            if airport["iata"] in HUBS:
                records.append(node(1 + HUBS.index(airport["iata"])))
            add_insert(w, "AIRPORT", "AIRPORTS", airport["at"], (), records)
        elif airport in chosen:
            number += 1
            renamed = ("AIRPORT", (airport["iata"], airport["name"] + " (old)", *record[1][2:]))
            records = {50: [record, record], 100: [renamed, record],
                       150: [record, survey(number), renamed], 199: [record] * 3}
            add_point(w, "AIRPORTS", (*airport["at"], 0.0), records.get(number, [record]))
    return others[1::250]


def add_capitals(w, folder):
    capitals = json.loads((folder / "us-state-capitals.json").read_text(encoding="utf-8"))
    for number, capital in enumerate(capitals):
        add_insert(w, "CAPITAL", "CAPITALS",
                   (round(capital["lon"], 6), round(capital["lat"], 6)),
                   (capital["state"], capital["city"]),
                   [survey(number)] if number % 5 == 0 else (),
                   f"visited {1990 + number}" if number % 20 < 2 else None)


def quake_record(quake):
    facts, (x, y, depth) = quake["properties"], quake["geometry"]["coordinates"]
    felt = -1 if facts["felt"] is None else facts["felt"]
    return ("QUAKE", (quake["id"], facts["mag"], depth, felt, facts["place"], (x, y, -depth),
                      facts["time"]))


def add_quake(w, layer, quake, records):
    x, y, depth = quake["geometry"]["coordinates"]
    add_point(w, layer, (x, y, -depth), records)


def add_quakes(w, quakes):
    """Magnitude 4 and above, and what many people felt."""
    number = 0
    for quake in quakes:
        if quake["properties"]["mag"] >= 4.0 or (quake["properties"]["felt"] or 0) >= 10:
            records = [quake_record(quake)]
            if number % 30 == 3:
                records.insert(0, survey(number))
            add_quake(w, "EARTHQUAKES", quake, records)
            number += 1


def great_circle(start, end, legs, height):
    """Points of the shortest way, rising to the height half way."""
    def unit(lon, lat):
        lon, lat = math.radians(lon), math.radians(lat)
        return (math.cos(lat) * math.cos(lon), math.cos(lat) * math.sin(lon), math.sin(lat))
    a, b = unit(*start), unit(*end)
    angle = math.acos(sum(p * q for p, q in zip(a, b)))
    for leg in range(legs + 1):
        t = leg / legs
        x, y, z = (p * math.sin((1 - t) * angle) + q * math.sin(t * angle) for p, q in zip(a, b))
        yield (round(math.degrees(math.atan2(y, x)), 6),
               round(math.degrees(math.atan2(z, math.hypot(x, y))), 6),
               round(height * math.sin(math.pi * t), 6))


def add_flights(w, airports):
    """Arcs between hubs, one route with bulges, two flights in space with their way points."""
    position = {a["iata"]: a["at"] for a in airports}
    start = position[HUBS[0]]
    for hub in HUBS[1:]:
        end = position[hub]
        chord = math.dist(start, end)
        direction = math.atan2(end[1] - start[1], end[0] - start[0])
        # The arc spans 60 degrees, so its radius is the chord and the centre lies off the middle.
        side = chord * math.sqrt(3) / 2
        centre = ((start[0] + end[0]) / 2 - side * math.sin(direction),
                  (start[1] + end[1]) / 2 + side * math.cos(direction))
        first = math.degrees(math.atan2(start[1] - centre[1], start[0] - centre[0])) % 360
        w.entity("ARC", "FLIGHTS")
        w.put(100, "AcDbCircle", *at(10, (round(centre[0], 6), round(centre[1], 6), 0.0)),
              40, round(chord, 6),
              100, "AcDbArc", 50, round(first, 6), 51, round((first + 60) % 360, 6))
    add_polyline(w, "FLIGHTS", [position[h] for h in ("SEA", "DEN", "ATL", "MIA")], closed=False,
                 bulge=0.2)
    number = 100
    for end in ((-0.454295, 51.470020), (139.779694, 35.552258)):
        way = list(great_circle(position["JFK"], end, 24, 11.0))
        if any(abs(p[0] - q[0]) > 180 for p, q in zip(way, way[1:])):
            # Crosses the antimeridian: the flight ends at the map's edge.
            way = way[:next(i for i in range(24) if abs(way[i][0] - way[i + 1][0]) > 180) + 1]
        polyline = w.entity("POLYLINE", "FLIGHTS", points=way)
        w.put(100, "AcDb3dPolyline", 66, 1, 10, 0.0, 20, 0.0, 30, 0.0, 70, 8)
        for vertex in way:
            w.part_of(polyline, "VERTEX", "FLIGHTS")
            w.put(100, "AcDbVertex", 100, "AcDb3dPolylineVertex", *at(10, vertex), 70, 32)
        w.part_of(polyline, "SEQEND", "FLIGHTS")
        for vertex in way[4:-1:4]:
            records = [node(number)] if number != 102 else [node(number), node(number + 100)]
            add_point(w, "FLIGHTS", vertex, records)
            number += 1


def add_labels(w, countries, quakes):
    for text, x, y in (("PACIFIC OCEAN", -150.0, -20.0), ("ATLANTIC OCEAN", -62.0, 25.0),
                       ("INDIAN OCEAN", 70.0, -20.0), ("Océan Austral", 20.0, -62.0)):
        add_text(w, "LABELS", (x, y), 4.0, text)
    for country in countries:
        if country["pop_est"] > 1e8 or not country["name"].isascii():
            x, y, _ = centroid(max(country["rings"], key=lambda ring: abs(signed_area(ring))))
            add_text(w, "LABELS", (x, y), 2.0, country["name"])
    for quake in sorted(quakes, key=lambda q: -q["properties"]["mag"])[:5]:
        add_circle(w, "LABELS", quake["geometry"]["coordinates"][:2], quake["properties"]["mag"])


def add_unusable(w, quakes, draft_airports):
    """What a search must leave out: a locked, a frozen and an off layer."""
    for number in range(7):
        add_point(w, "SURVEY_MARKS", (-150.0 + 50.0 * number, 0.0, 0.0), [survey(number)])
    for number, quake in enumerate([q for q in quakes if 3.5 <= q["properties"]["mag"] < 4.0][:8]):
        add_quake(w, "ARCHIVE", quake, [quake_record(quake)] * (2 if number == 0 else 1))
    for airport in draft_airports:
        add_insert(w, "AIRPORT", "DRAFT", airport["at"], (), [airport_record(airport)])


def add_paper(w):
    for number, height, centre, view_height, name in (
            (1, 231.0, (148.5, 105.0), 231.0, "VIEWPORT paper"),
            (2, 140.0, (148.5, 110.0), 190.0, "VIEWPORT world")):
        w.handles[name] = w.entity("VIEWPORT", "0", space=PAPER)
        w.defined.add(name)
        target = centre if number == 1 else (0.0, 0.0)
        w.put(100, "AcDbViewport", *at(10, (*centre, 0.0)), 40, 2 * height, 41, height,
              68, number, 69, number, *at(12, target), 13, 0.0, 23, 0.0, 14, 10.0, 24, 10.0,
              15, 10.0, 25, 10.0, *at(16, (0.0, 0.0, 1.0)), *at(17, (0.0, 0.0, 0.0)), 42, 50.0,
              43, 0.0, 44, 0.0, 45, view_height, 50, 0.0, 51, 0.0, 72, 1000, 90, 819232, 1, "",
              281, 0, 71, 1, 74, 0, *at(110, (0.0, 0.0, 0.0)), *at(111, (1.0, 0.0, 0.0)),
              *at(112, (0.0, 1.0, 0.0)), 79, 0, 146, 0.0, 170, 0)
    add_polyline(w, "0", [(8.5, 30.0), (288.5, 30.0), (288.5, 190.0), (8.5, 190.0)],
                 [survey(1)], space=PAPER)
    add_text(w, "LABELS", (10.0, 18.0), 7.0, "The world, with object data",
             [survey(5), survey(6)], space=PAPER)


# --- the rest of the drawing -----------------------------------------------------------------


def add_header(w):
    w.section = "HEADER"
    zero, low, high = (0.0, 0.0, 0.0), w.low, w.high
    variables = (
        ("ACADVER", 1, "AC1032"), ("ACADMAINTVER", 90, 329), ("DWGCODEPAGE", 3, "ANSI_1252"),
        ("REQUIREDVERSIONS", 160, 0), ("INSBASE", *at(10, zero)),
        ("EXTMIN", *at(10, low)), ("EXTMAX", *at(10, high)), ("LIMMIN", 10, -180.0, 20, -90.0),
        ("LIMMAX", 10, 180.0, 20, 90.0), ("ORTHOMODE", 70, 0), ("FILLMODE", 70, 1),
        ("LTSCALE", 40, 1.0), ("ATTMODE", 70, 1), ("TEXTSIZE", 40, 2.0),
        ("TEXTSTYLE", 7, "Standard"), ("CLAYER", 8, "0"), ("CELTYPE", 6, "ByLayer"),
        ("CECOLOR", 62, 256), ("CELTSCALE", 40, 1.0), ("DIMSTYLE", 2, "Standard"),
        ("LUNITS", 70, 2), ("LUPREC", 70, 4), ("AUNITS", 70, 0), ("AUPREC", 70, 2),
        ("ANGBASE", 50, 0.0), ("ANGDIR", 70, 0), ("PDMODE", 70, 34), ("PDSIZE", 40, 0.5),
        ("HANDSEED", 5, w.last_handle + 1), ("TILEMODE", 70, 1), ("PEXTMIN", *at(10, zero)),
        ("PEXTMAX", *at(10, (297.0, 210.0, 0.0))), ("PLIMMIN", 10, 0.0, 20, 0.0),
        ("PLIMMAX", 10, 297.0, 20, 210.0), ("CMLSTYLE", 2, "Standard"), ("CMLJUST", 70, 0),
        ("CMLSCALE", 40, 1.0), ("MEASUREMENT", 70, 1), ("CELWEIGHT", 370, -1),
        ("INSUNITS", 70, 0), ("PSTYLEMODE", 290, 1), ("SORTENTS", 280, 127))
    for name, *groups in variables:
        w.put(9, "$" + name, *groups)


def add_classes(w):
    w.section = "CLASSES"
    for name, cpp_name, flags, count in (
            ("ACDBDICTIONARYWDFLT", "AcDbDictionaryWithDefault", 0, 1),
            ("ACDBPLACEHOLDER", "AcDbPlaceHolder", 0, 1), ("MATERIAL", "AcDbMaterial", 1153, 3),
            ("SCALE", "AcDbScale", 1153, 1)):
        w.put(0, "CLASS", 1, name, 2, cpp_name, 3, "ObjectDBX Classes", 90, flags, 91, count,
              280, 0, 281, 0)


def begin_table(w, name, count):
    w.put(0, "TABLE", 2, name, 5, w.define("TABLE " + name), 330, 0, 100, "AcDbSymbolTable",
          70, count)


def begin_record(w, table, subclass, name, flags=0):
    w.put(0, table, 105 if table == "DIMSTYLE" else 5, w.define(f"{table} {name}"),
          330, w.ref("TABLE " + table), 100, "AcDbSymbolTableRecord", 100, subclass, 2, name)
    if table != "BLOCK_RECORD":
        w.put(70, flags)


def add_tables(w):
    w.section = "TABLES"
    end = (0, "ENDTAB")
    begin_table(w, "VPORT", 1)
    begin_record(w, "VPORT", "AcDbViewportTableRecord", "*Active")
    w.put(10, 0.0, 20, 0.0, 11, 1.0, 21, 1.0, 12, 0.0, 22, 0.0, 13, 0.0, 23, 0.0, 14, 10.0,
          24, 10.0, 15, 10.0, 25, 10.0, *at(16, (0.0, 0.0, 1.0)), *at(17, (0.0, 0.0, 0.0)),
          40, 190.0, 41, 2.0, 42, 50.0, 43, 0.0, 44, 0.0, 50, 0.0, 51, 0.0, 71, 0, 72, 1000,
          73, 1, 74, 3, 75, 0, 76, 0, 77, 0, 78, 0, 281, 0, 65, 1, *at(110, (0.0, 0.0, 0.0)),
          *at(111, (1.0, 0.0, 0.0)), *at(112, (0.0, 1.0, 0.0)), 79, 0, 146, 0.0, *end)
    begin_table(w, "LTYPE", len(LINETYPES))
    for name, description, dashes in LINETYPES:
        begin_record(w, "LTYPE", "AcDbLinetypeTableRecord", name)
        w.put(3, description, 72, 65, 73, len(dashes), 40, sum(map(abs, dashes)))
        for dash in dashes:
            w.put(49, dash, 74, 0)
    w.put(*end)
    begin_table(w, "LAYER", len(LAYERS))
    for name, flags, colour, linetype in LAYERS:
        begin_record(w, "LAYER", "AcDbLayerTableRecord", name, flags)
        w.put(62, colour, 6, linetype, 370, -3, 390, w.ref("plot style"),
              347, w.ref("material Global"))
    w.put(*end)
    begin_table(w, "STYLE", 1)
    begin_record(w, "STYLE", "AcDbTextStyleTableRecord", "Standard")
    w.put(40, 0.0, 41, 1.0, 50, 0.0, 71, 0, 42, 2.0, 3, "txt", 4, "", *end)
    begin_table(w, "VIEW", 0)
    w.put(*end)
    begin_table(w, "UCS", 0)
    w.put(*end)
    begin_table(w, "APPID", 1)
    begin_record(w, "APPID", "AcDbRegAppTableRecord", "ACAD")
    w.put(*end)
    begin_table(w, "DIMSTYLE", 1)
    w.put(100, "AcDbDimStyleTable", 71, 1, 340, w.ref("DIMSTYLE Standard"))
    begin_record(w, "DIMSTYLE", "AcDbDimStyleTableRecord", "Standard")
    w.put(340, w.ref("STYLE Standard"), *end)
    begin_table(w, "BLOCK_RECORD", 2 + len(BLOCKS))
    for name in (MODEL, PAPER, *BLOCKS):
        begin_record(w, "BLOCK_RECORD", "AcDbBlockTableRecord", name)
        layout = {MODEL: "LAYOUT Model", PAPER: "LAYOUT Layout1"}.get(name)
        w.put(340, w.ref(layout) if layout else 0, 70, 0, 280, 1, 281, 0)
    w.put(*end)


def add_block_contents(w, block):
    if block == "AIRPORT":
        w.entity("CIRCLE", "0", [survey(2)], space=block)
        w.put(100, "AcDbCircle", 10, 0.0, 20, 0.0, 30, 0.0, 40, 0.3)
    elif block == "CAPITAL":
        star = [(round(r * math.sin(i * math.pi / 5), 6), round(r * math.cos(i * math.pi / 5), 6))
                for i, r in enumerate((0.5, 0.2) * 5)]
        add_polyline(w, "0", star, space=block)
    else:
        add_polyline(w, "0", [(-0.2, -0.2), (0.2, -0.2), (0.2, 0.2), (-0.2, 0.2)], space=block)
    for tag, prompt, offset, height, flags in BLOCKS[block]:
        w.entity("ATTDEF", "0", space=block)
        w.put(100, "AcDbText", *at(10, (*offset, 0.0)), 40, height, 1, "",
              100, "AcDbAttributeDefinition", 280, 0, 3, prompt, 2, tag, 70, flags, 280, 1)


def add_blocks(w):
    w.section = "BLOCKS"
    for name in (MODEL, PAPER, *BLOCKS):
        w.entity("BLOCK", "0", space=name)
        w.put(100, "AcDbBlockBegin", 2, name, 70, 2 if BLOCKS.get(name) else 0,
              10, 0.0, 20, 0.0, 30, 0.0, 3, name, 1, "")
        if name in BLOCKS:
            add_block_contents(w, name)
        w.entity("ENDBLK", "0", space=name)
        w.put(100, "AcDbBlockEnd")


def add_layout(w, name, order, block, size, viewport):
    w.object("LAYOUT", "LAYOUT " + name, "layouts")
    w.put(100, "AcDbPlotSettings", 1, "", 2, "none_device", 4, "ISO_A4_(210.00_x_297.00_MM)",
          6, "", 40, 7.5, 41, 20.0, 42, 7.5, 43, 20.0, 44, 210.0, 45, 297.0, 46, 0.0, 47, 0.0,
          48, 0.0, 49, 0.0, 140, 0.0, 141, 0.0, 142, 1.0, 143, 1.0, 70, 688 if order else 1712,
          72, 1, 73, 1, 74, 5 if order else 0, 7, "", 75, 16, 147, 1.0, 76, 0, 77, 2, 78, 300,
          148, 0.0, 149, 0.0, 100, "AcDbLayout", 1, name, 70, 1, 71, order, 10, 0.0, 20, 0.0,
          11, size[0], 21, size[1], *at(12, (0.0, 0.0, 0.0)), *at(14, (0.0, 0.0, 0.0)),
          *at(15, (*size, 0.0)), 146, 0.0, *at(13, (0.0, 0.0, 0.0)), *at(16, (1.0, 0.0, 0.0)),
          *at(17, (0.0, 1.0, 0.0)), 76, 0, 330, w.ref("BLOCK_RECORD " + block),
          331, w.ref(viewport))


def add_objects(w):
    w.section = "OBJECTS"
    # AutoCAD sorts keys without case.
    root = (("ACAD_COLOR", "colours"), ("ACAD_GROUP", "groups"), ("ACAD_LAYOUT", "layouts"),
            ("ACAD_MATERIAL", "materials"), ("ACAD_MLINESTYLE", "mline styles"),
            ("ACAD_PLOTSETTINGS", "plot settings"), ("ACAD_PLOTSTYLENAME", "plot styles"),
            ("ACAD_SCALELIST", "scales"), ("KORVEL_OBJECT_DATA", "object data"))
    w.put(0, "DICTIONARY", 5, w.define("root"), 330, 0, 100, "AcDbDictionary", 281, 1)
    for key, name in root:
        w.put(3, key, 350, w.ref(name))
    for name in ("colours", "groups", "plot settings"):
        w.dictionary(name, "root", ())
    w.dictionary("layouts", "root", [(n, "LAYOUT " + n) for n in ("Layout1", "Model")])
    add_layout(w, "Layout1", 1, PAPER, (297.0, 210.0), "VIEWPORT paper")
    add_layout(w, "Model", 0, MODEL, (12.0, 9.0), "VPORT *Active")
    materials = ("ByBlock", "ByLayer", "Global")
    w.dictionary("materials", "root", [(n, "material " + n) for n in materials])
    for name in materials:
        w.object("MATERIAL", "material " + name, "materials")
        w.put(100, "AcDbMaterial", 1, name, 94, 63)
    w.dictionary("mline styles", "root", [("Standard", "mline style")])
    w.object("MLINESTYLE", "mline style", "mline styles")
    w.put(100, "AcDbMlineStyle", 2, "STANDARD", 70, 0, 3, "", 62, 256, 51, 90.0, 52, 90.0, 71, 2,
          49, 0.5, 62, 256, 6, "BYLAYER", 49, -0.5, 62, 256, 6, "BYLAYER")
    w.object("ACDBDICTIONARYWDFLT", "plot styles", "root")
    w.put(100, "AcDbDictionary", 281, 1, 3, "Normal", 350, w.ref("plot style"),
          100, "AcDbDictionaryWithDefault", 340, w.ref("plot style"))
    w.object("ACDBPLACEHOLDER", "plot style", "plot styles")
    w.dictionary("scales", "root", [("A0", "scale")])
    w.object("SCALE", "scale", "scales")
    w.put(100, "AcDbScale", 70, 0, 300, "1:1", 140, 1.0, 141, 1.0, 290, 1)
    add_table_definitions(w, TABLES)
    add_records(w, TABLES)


def print_summary(w):
    entities, tables = collections.Counter(), collections.Counter()
    for _, layer, _, records, _ in w.object_data:
        entities[layer] += bool(records)
        tables.update(table for table, _ in records)
    for title, counts in (("entities with object data", entities), ("records", tables)):
        print(f"{title}: {counts.total()}")
        for name in sorted(counts):
            print(f"  {name:15}{counts[name]:6}")


def main():
    folder, output = pathlib.Path(sys.argv[1]), sys.argv[2]
    countries, airports, quakes = read_countries(folder), read_airports(folder), read_quakes(folder)
    w = DxfWriter()
    add_tables(w)
    add_blocks(w)
    w.section = "ENTITIES"
    add_graticule(w)
    add_countries(w, countries)
    add_cities(w, folder, countries)
    draft_airports = add_airports(w, airports)
    add_capitals(w, folder)
    add_quakes(w, quakes)
    add_flights(w, airports)
    add_labels(w, countries, quakes)
    add_unusable(w, quakes, draft_airports)
    add_paper(w)
    add_objects(w)
    add_classes(w)
    add_header(w)
    w.save(output)
    print_summary(w)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main()
