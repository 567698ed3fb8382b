"""Writes a drawing as ASCII DXF, group by group, in the manner of AutoCAD."""

import collections
import math

LONGEST_PIECE = 250
MODEL, PAPER = "*Model_Space", "*Paper_Space"


def is_handle(code):
    return code in (5, 105, 1005) or 320 <= code <= 369 or 390 <= code <= 399


def is_real(code):
    return 10 <= code <= 59 or 110 <= code <= 149 or 210 <= code <= 239


def caret_escaped(text):
    return "".join("^ " if c == "^" else "^" + chr(ord(c) + 64) if c < " " else c for c in text)


def real_text(value):
    text = repr(float(value) + 0.0)
    return f"{value:.15E}" if "e" in text else text


def value_text(code, value):
    if is_handle(code):
        return f"{value:X}"
    if is_real(code):
        return real_text(value)
    if (60 <= code <= 79 or 170 <= code <= 179 or 270 <= code <= 299 or 370 <= code <= 389 or
            code == 1070):
        return f"{value:6d}"
    if code == 160:
        return f"{value:18d}"
    if 90 <= code <= 99:
        return f"{value:9d}"
    return caret_escaped(value)


def at(code, point):
    """The two or three groups of a point."""
    return [part for i, v in enumerate(point) for part in (code + 10 * i, v)]


def pieces(text):
    """Cut so that no piece is longer than allowed once its carets are escaped."""
    result, piece, length = [], "", 0
    for c in text:
        width = len(caret_escaped(c))
        if length + width > LONGEST_PIECE:
            result.append(piece)
            piece, length = "", 0
        piece, length = piece + c, length + width
    return result + [piece]


class DxfWriter:
    """Sections of groups; objects are named, and a name may be referred to before it is written."""

    def __init__(self):
        self.sections = collections.defaultdict(list)
        self.section = None
        self.handles = {}
        self.defined = set()
        self.last_handle = 0
        self.low, self.high = [math.inf] * 3, [-math.inf] * 3
        self.object_data = []  # entity, layer, extension dictionary, records, foreign text

    def new_handle(self):
        self.last_handle += 1
        return self.last_handle

    def ref(self, name):
        if name not in self.handles:
            self.handles[name] = self.new_handle()
        return self.handles[name]

    def define(self, name):
        assert name not in self.defined, name
        self.defined.add(name)
        return self.ref(name)

    def put(self, *groups):
        for code, value in zip(groups[::2], groups[1::2], strict=True):
            self.sections[self.section].append(f"{code:3d}\n{value_text(code, value)}\n")

    def reach(self, points):
        """Widens the extents of the model space."""
        for point in points:
            for i, v in enumerate((*point, 0.0)[:3]):
                self.low[i], self.high[i] = min(self.low[i], v), max(self.high[i], v)

    def entity(self, kind, layer, records=(), space=MODEL, foreign=None, points=()):
        """Begins an entity; records are (table, values), foreign another program's own note."""
        handle = self.new_handle()
        self.put(0, kind, 5, handle)
        if records or foreign:
            dictionary = self.new_handle()
            self.put(102, "{ACAD_XDICTIONARY", 360, dictionary, 102, "}")
            self.object_data.append((handle, layer, dictionary, records, foreign))
        self.put(330, self.ref("BLOCK_RECORD " + space), 100, "AcDbEntity")
        if space == PAPER:
            self.put(67, 1)
        self.put(8, layer)
        if space == MODEL:
            self.reach(points)
        return handle

    def part_of(self, owner, kind, layer):
        """Begins an ATTRIB, VERTEX or SEQEND."""
        self.put(0, kind, 5, self.new_handle(), 330, owner, 100, "AcDbEntity", 8, layer)

    def object(self, kind, name, owner):
        self.put(0, kind, 5, self.define(name), 102, "{ACAD_REACTORS", 330, self.ref(owner),
                 102, "}", 330, self.ref(owner))

    def dictionary(self, name, owner, keys, hard=False):
        """A dictionary of a dictionary; keys are pairs of key and name of the object."""
        self.object("DICTIONARY", name, owner)
        self.put(100, "AcDbDictionary")
        if hard:
            self.put(280, 1)
        self.put(281, 1)
        for key, target in keys:
            self.put(3, key, 360 if hard else 350, self.ref(target))

    def save(self, path):
        missing = set(self.handles) - self.defined
        assert not missing, missing
        with open(path, "w", encoding="utf-8", newline="\n") as file:
            for name in ("HEADER", "CLASSES", "TABLES", "BLOCKS", "ENTITIES", "OBJECTS"):
                file.write(f"  0\nSECTION\n  2\n{name}\n")
                file.writelines(self.sections[name])
                file.write("  0\nENDSEC\n")
            file.write("  0\nEOF\n")
