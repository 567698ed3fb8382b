#!/usr/bin/env python3
"""Makes doors.dxf: block references whose attributes and object data belong together.

Usage: make_doors.py BLANK.dxf OUTPUT.dxf

What is not said here (styles, layouts and the like) is that of the blank drawing, which is
host/standalone/blank.dxf. The dynamic block has its variants and what names them, but no parameters
that would make further ones.
"""

import pathlib
import re
import sys

from dxf_writer import MODEL, DxfWriter, at
from object_data import CHARACTER, INTEGER, POINT, REAL, add_records, add_table_definitions

ORIGIN = (0.0, 0.0, 0.0)

TABLES = {
    "DOORS": (("NUMBER", INTEGER, -1), ("WIDTH", REAL, 0.9), ("NOTE", CHARACTER, "none")),
    "TPMNODE_PLAN": (("ID", INTEGER, 0),),
    "WINDOWS": (("NUMBER", INTEGER, 0), ("SIZE", REAL, 0.0), ("AT", POINT, ORIGIN)),
}

# block -> attributes: tag, prompt
BLOCKS = {
    "Door": (("NUM", "Number"), ("WIDTH", "Clear width"), ("NOTE", "Note")),
    "Sign": (("LINES", "Lines of the sign"),),
    "Tree": (),
    "Window": (("NUM", "Number"), ("SIZE", "Glass area"), ("AT", "Measured at")),
}
DYNAMIC = "Window"
VARIANTS = ("*U1", "*U2")

LOCKED = 4

# block, layer, layer of the attributes, their texts, records
REFERENCES = (
    ("Door", "PLAN", "PLAN", ("101", "0.9", "oak"), ()),
    ("Door", "PLAN", "PLAN", ("102a", "wide", "glass\nsteel ^ frame"),
     (("DOORS", (7, 2.5, "as it was")),)),
    ("Door", "PLAN", "CHECKED", ("103", "1.1", ""), (("DOORS", (13, 3.0, "checked")),)),
    ("Door", "CHECKED", "PLAN", ("104", "1.2", "heavy"),
     (("DOORS", (14, 0.1, "first")), ("TPMNODE_PLAN", (1,)), ("DOORS", (15, 1e20, "second")))),
    ("Window", "PLAN", "PLAN", ("1", "2.25", "1,2,3"), ()),
    ("*U1", "PLAN", "PLAN", ("2", "", "1;2;3"), (("WINDOWS", (22, 0.125, (1.0, 2.0, 3.0))),)),
    ("*U2", "PLAN", "PLAN", ("3", "1e1", " 4.5, 5.5, -6.5"), ()),
    ("Sign", "PLAN", "PLAN", ("Mind\\Pthe step",), (("DOORS", (30, 1.0, "Way out")),)),
    ("Tree", "PLAN", "PLAN", (), (("DOORS", (99, 1.5, "no door at all")),)),
)


def attributes_of(block):
    return BLOCKS[DYNAMIC if block in VARIANTS else block]


def add_tables(w):
    w.section = "LAYER"
    for name, flags in (("PLAN", 0), ("CHECKED", LOCKED)):
        w.put(0, "LAYER", 5, w.new_handle(), 330, 0x2, 100, "AcDbSymbolTableRecord",
              100, "AcDbLayerTableRecord", 2, name, 70, flags, 62, 7, 6, "Continuous", 370, -3,
              390, 0xF)
    w.section = "APPID"
    for name in ("AcDbBlockRepBTag", "AcDbDynamicBlockTrueName"):
        w.put(0, "APPID", 5, w.new_handle(), 330, 0x9, 100, "AcDbSymbolTableRecord",
              100, "AcDbRegAppTableRecord", 2, name, 70, 0)
    w.section = "BLOCK_RECORD"
    for name in (*BLOCKS, *VARIANTS):
        w.put(0, "BLOCK_RECORD", 5, w.define("BLOCK_RECORD " + name), 330, 0x1,
              100, "AcDbSymbolTableRecord", 100, "AcDbBlockTableRecord", 2, name, 340, 0, 70, 4,
              280, 1, 281, 0)
        if name == DYNAMIC:
            w.put(1001, "AcDbDynamicBlockTrueName", 1000, name)
        if name in VARIANTS:
            w.put(1001, "AcDbBlockRepBTag", 1070, 1, 1005, w.ref("BLOCK_RECORD " + DYNAMIC))


def add_blocks(w):
    w.section = "BLOCKS"
    for name in (*BLOCKS, *VARIANTS):
        attributes = attributes_of(name)
        flags = (1 if name in VARIANTS else 0) | (2 if attributes else 0)
        w.entity("BLOCK", "0", space=name)
        w.put(100, "AcDbBlockBegin", 2, name, 70, flags, *at(10, ORIGIN), 3, name, 1, "")
        w.entity("CIRCLE", "0", space=name)
        w.put(100, "AcDbCircle", *at(10, ORIGIN), 40, 0.5 if name == VARIANTS[1] else 0.4)
        for row, (tag, prompt) in enumerate(attributes):
            w.entity("ATTDEF", "0", space=name)
            w.put(100, "AcDbText", *at(10, (0.6, -0.3 * row, 0.0)), 40, 0.2, 1, "",
                  100, "AcDbAttributeDefinition", 280, 0, 3, prompt, 2, tag, 70, 0, 280, 1)
        w.entity("ENDBLK", "0", space=name)
        w.put(100, "AcDbBlockEnd")


def put_attribute(w, place, tag, text):
    if tag != "LINES":
        w.put(100, "AcDbText", *at(10, place), 40, 0.2, 1, text,
              100, "AcDbAttribute", 280, 0, 2, tag, 70, 0, 280, 1)
        return
    # A multi-line attribute; its text is that of the paragraph text in it.
    w.put(100, "AcDbText", *at(10, place), 40, 0.2, 1, "", 74, 3, *at(11, place),
          100, "AcDbAttribute", 280, 0, 2, tag, 70, 0, 74, 3, 280, 1, 71, 2, 72, 0, *at(11, place),
          101, "Embedded Object", *at(10, place), 40, 0.2, 41, 0.0, 46, 0.0, 71, 1, 72, 5,
          1, text, 73, 1, 44, 1.0)


def add_entities(w):
    w.section = "ENTITIES"
    for number, (block, layer, attribute_layer, texts, records) in enumerate(REFERENCES):
        position = (3.0 * number, 0.0, 0.0)
        insert = w.entity("INSERT", layer, records)
        w.put(100, "AcDbBlockReference")
        if texts:
            w.put(66, 1)
        w.put(2, block, *at(10, position))
        for row, ((tag, _), text) in enumerate(zip(attributes_of(block), texts, strict=True)):
            w.part_of(insert, "ATTRIB", attribute_layer)
            put_attribute(w, (position[0] + 0.6, -0.3 * row, 0.0), tag, text)
        if texts:
            w.part_of(insert, "SEQEND", layer)
    w.entity("LINE", "PLAN")
    w.put(100, "AcDbLine", *at(10, ORIGIN), *at(11, (30.0, 0.0, 0.0)))


def inserted(drawing, before, text):
    """The drawing with the text in front of the first match of the pattern's group."""
    place = re.search(before, drawing, re.DOTALL).start(1)
    return drawing[:place] + text + drawing[place:]


def main():
    blank, output = map(pathlib.Path, sys.argv[1:])
    drawing = blank.read_text(encoding="utf-8")
    seed = re.compile(r"(\$HANDSEED\n  5\n)(\w+)\n")
    w = DxfWriter()
    w.last_handle = int(seed.search(drawing)[2], 16) - 1
    for name, handle in (("BLOCK_RECORD " + MODEL, 0x1F), ("root", 0xC)):
        w.handles[name] = handle
        w.defined.add(name)
    add_tables(w)
    add_blocks(w)
    add_entities(w)
    w.section = "OBJECTS"
    add_table_definitions(w, TABLES)
    add_records(w, TABLES)
    w.section = "root"
    w.put(3, "KORVEL_OBJECT_DATA", 350, w.ref("object data"))
    assert set(w.handles) == w.defined, set(w.handles) - w.defined

    end = {table: rf"TABLE\n  2\n{table}\n.*?(  0\nENDTAB\n)"
           for table in ("LAYER", "APPID", "BLOCK_RECORD")}
    end |= {section: rf"SECTION\n  2\n{section}\n.*?(  0\nENDSEC\n)"
            for section in ("BLOCKS", "ENTITIES", "OBJECTS")}
    end["root"] = r"SECTION\n  2\nOBJECTS\n  0\nDICTIONARY\n.*?(  0\n)"
    for part, pattern in end.items():
        drawing = inserted(drawing, pattern, "".join(w.sections[part]))
    output.write_text(seed.sub(rf"\g<1>{w.last_handle + 1:X}\n", drawing), encoding="utf-8",
                      newline="\n")


if __name__ == "__main__":
    main()
