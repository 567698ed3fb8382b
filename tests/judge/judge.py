#!/usr/bin/env python3
"""Lets ezdxf judge drawings that KORVEL changed and saved: its auditor may find in them only what it
finds in the originals.

Usage: judge.py KORVEL SCRIPT FOLDER...

Every .dxf file of the folders, and a new drawing, is changed by the script. Drawings that cannot
hold object data are judged as well. Exit status 1 when a saved drawing is worse, 77 (skipped)
without ezdxf.
"""
import collections
import pathlib
import subprocess
import sys
import tempfile

SKIPPED = 77
NO_PLACE_FOR_OBJECT_DATA = "AC1012"  # versions before this one


def findings(path):
    """What the auditor says, counted by kind and type of object, and the drawing."""
    drawing = ezdxf.readfile(path)
    auditor = drawing.audit()
    entries = [*auditor.errors, *auditor.fixes]
    return collections.Counter((entry.code, entry.entity.dxftype() if entry.entity else "")
                               for entry in entries), drawing


def complaints(before, saved):
    try:
        after, drawing = findings(saved)
    except Exception as error:  # whatever it is, the saved drawing does not load
        return [f"does not load: {error}"]
    worse = [f"{kind}: {count} more" for kind, count in (after - before).items()]
    if drawing.dxfversion >= NO_PLACE_FOR_OBJECT_DATA:
        definitions = drawing.rootdict.get("KORVEL_OBJECT_DATA")
        if definitions is None or "JUDGED_ROADS" not in definitions:
            worse.append("no definition of the new table")
        last = list(drawing.modelspace())[-1]
        if not last.has_extension_dict or "KORVEL_OD" not in last.get_extension_dict().dictionary:
            worse.append("no record on the new entity")
    return worse


def save_changed(korvel, script, original, saved):
    command = [korvel, "--no-progress", "-s", script, "-o", saved, *([original] if original else [])]
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def main():
    korvel, script, *folders = sys.argv[1:]
    originals = [None, *(path for folder in folders
                         for path in sorted(pathlib.Path(folder).glob("*.dxf")))]
    passed = failed = 0
    for original in originals:
        name = original.name if original else "new drawing"
        try:
            before = findings(original)[0] if original else collections.Counter()
        except Exception as error:
            print(f"{name}: not judged, the original does not load: {error}")
            continue
        with tempfile.TemporaryDirectory() as folder:
            saved = pathlib.Path(folder) / "saved.dxf"
            save_changed(korvel, script, original, saved)
            worse = complaints(before, saved)
        print(f"{name}: {'; '.join(worse) or 'as good as the original'}")
        failed += bool(worse)
        passed += not worse
    print(f"{passed} passed, {failed} failed")
    sys.exit(1 if failed or not passed else 0)


try:
    import ezdxf
except ImportError:
    print("ezdxf is not installed")
    sys.exit(SKIPPED)
main()
