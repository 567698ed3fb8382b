#!/usr/bin/python3
"""Lets ezdxf judge drawings that KORVEL saved: its auditor may find in them only what it finds in
the originals.

Usage: judge.py ORIGINALS SAVED

ORIGINALS (or KORVEL_SHARED_DRAWINGS in its place) holds drawings, SAVED those of the same names
after saving. Exit status 1 when a saved
drawing is worse, 77 (skipped) when there is no ezdxf or nothing to judge.
"""
import collections
import os
import pathlib
import sys

SKIPPED = 77


def findings(path):
    """What the auditor says, counted; object handles are left out of it."""
    drawing = ezdxf.readfile(path)
    auditor = drawing.audit()
    return collections.Counter(
        (entry.code, entry.entity.dxftype() if entry.entity else "")
        for entry in [*auditor.errors, *auditor.fixes]
    ), drawing


def complaints(original, saved):
    try:
        before, _ = findings(original)
    except Exception as error:  # what ezdxf cannot read itself it cannot judge
        print(f"{original.name}: not judged, the original does not load: {error}")
        return None
    try:
        after, drawing = findings(saved)
    except Exception as error:
        return [f"does not load any more: {error}"]
    worse = [f"{kind}: {count} more" for kind, count in (after - before).items()]
    definitions = drawing.rootdict.get("KORVEL_OBJECT_DATA")
    if definitions is None or definitions.dxftype() != "DICTIONARY" or len(definitions) == 0:
        worse.append("no dictionary of object-data tables")
    carriers = [e for e in drawing.modelspace()
                if e.has_extension_dict and "KORVEL_OD" in e.get_extension_dict().dictionary]
    if not carriers:
        worse.append("no entity with object data")
    return worse


def main():
    originals, saved = map(pathlib.Path, sys.argv[1:])
    originals = pathlib.Path(os.environ.get("KORVEL_SHARED_DRAWINGS", originals))
    judged = failed = 0
    for path in sorted(saved.glob("*.dxf")):
        worse = complaints(originals / path.name, path)
        if worse is None:
            continue
        judged += 1
        failed += bool(worse)
        print(f"{path.name}: {'; '.join(worse) or 'as good as the original'}")
    if judged == 0:
        print("nothing was judged")
        sys.exit(SKIPPED)
    sys.exit(1 if failed else 0)


try:
    import ezdxf
except ImportError:
    print("ezdxf is not installed")
    sys.exit(SKIPPED)
main()
