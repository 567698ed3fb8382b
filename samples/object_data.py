"""Writes object data as they lie in a drawing: dictionaries and XRECORDs."""

from dxf_writer import at, pieces

INTEGER, REAL, CHARACTER, POINT = 1, 2, 3, 4


def put_value(w, kind, value):
    """A column's default or a record's value, as they lie in an XRECORD."""
    if kind == INTEGER:
        assert -2**31 <= value < 2**31
        w.put(90, value)
    elif kind == REAL:
        w.put(40, value)
    elif kind == CHARACTER:
        *first, last = pieces(value)
        for piece in first:
            w.put(3, piece)
        w.put(1, last)
    else:
        w.put(*at(10, value))


def add_table_definitions(w, tables):
    """Tables are name -> columns of name, type and default."""
    w.dictionary("object data", "root", [(t, "table " + t) for t in sorted(tables)], hard=True)
    for table in sorted(tables):
        w.object("XRECORD", "table " + table, "object data")
        w.put(100, "AcDbXrecord", 280, 1, 90, 1, 2, table)
        for name, kind, default in tables[table]:
            w.put(300, name, 70, kind)
            put_value(w, kind, default)


def add_records(w, tables):
    """Of the entities of w.object_data, with what other programs keep there."""
    for entity, _, dictionary, records, foreign in w.object_data:
        keys = (["ACME_VISITS"] if foreign else []) + (["KORVEL_OD"] if records else [])
        children = [w.new_handle() for _ in keys]
        w.put(0, "DICTIONARY", 5, dictionary, 330, entity, 100, "AcDbDictionary", 280, 1, 281, 1)
        for key, child in zip(keys, children):
            w.put(3, key, 360, child)
        for key, child in zip(keys, children):
            w.put(0, "XRECORD", 5, child, 102, "{ACAD_REACTORS", 330, dictionary, 102, "}",
                  330, dictionary, 100, "AcDbXrecord", 280, 1)
            if key == "ACME_VISITS":
                w.put(1, foreign)
                continue
            for table, values in records:
                w.put(2, table)
                for (_, kind, _), value in zip(tables[table], values, strict=True):
                    put_value(w, kind, value)
