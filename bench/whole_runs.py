#!/usr/bin/env python3
"""Measures whole runs of korvel on large drawings, beside ezdxf and GDAL on the same files.

Usage: bench/whole_runs.py [--build FOLDER] [--entities N ...] [--ezdxf-limit N] [--runs N]

The drawings are made in a temporary folder, which is removed at the end.
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent

SEARCHES = 20  # one alone drowns in the noise of opening

EZDXF_OPEN = "import ezdxf, sys; len(ezdxf.readfile(sys.argv[1]).modelspace())"
EZDXF_SAVE = """
import ezdxf, sys
drawing = ezdxf.readfile(sys.argv[1])
drawing.modelspace().add_point((0, 0))
drawing.saveas(sys.argv[2])
"""


class Run:
    """Wall-clock seconds (the median) and peak resident memory of a command."""

    def __init__(self, command, runs, check=None):
        times, peaks = [], []
        for _ in range(runs):
            seconds, peak, output = once(command)
            if check and check not in output:
                sys.exit(f"{' '.join(map(str, command))}: expected {check!r}, got {output[-400:]!r}")
            times.append(seconds)
            peaks.append(peak)
        self.seconds = statistics.median(times)
        self.megabytes = max(peaks) / 1024


def once(command):
    with tempfile.TemporaryFile() as output:
        start = time.perf_counter()
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.STDOUT)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        process.returncode = os.waitstatus_to_exitcode(status)
        output.seek(0)
        text = output.read().decode(errors="replace")
    if process.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}: exit status {process.returncode}\n{text[-2000:]}")
    return seconds, usage.ru_maxrss, text


def korvel_lines(*lines):
    return [part for line in lines for part in ("-c", line)]


def measure(args, entities, folder):
    drawing, saved = folder / f"{entities}.dxf", folder / "saved.dxf"
    subprocess.run([args.build / "bench/make_drawing", "--entities", str(entities), drawing],
                   check=True)
    korvel = [args.build / "host/console/korvel", "--strict", "--no-progress", drawing]
    search = ["KORVEL_HAS_OD", "", "ESC"]
    drawing.read_bytes()  # every program finds it in the page cache

    rows = [("korvel: open", Run([*korvel, *korvel_lines("QUIT")], args.runs))]
    rows.append((f"korvel: open, {SEARCHES} searches",
                 Run([*korvel, *korvel_lines(*search * SEARCHES, "QUIT")], args.runs,
                     f"Selected: {entities}")))
    rows.append(("korvel: open, change, save",
                 Run([*korvel, "--overwrite", "-o", saved, *korvel_lines("POINT", "0,0")],
                     args.runs)))
    if saved.stat().st_size <= drawing.stat().st_size:
        sys.exit("the saved drawing lacks the new point")
    if shutil.which("ogrinfo"):
        rows.append(("ogrinfo: open and count",
                     Run(["ogrinfo", "-ro", "-al", "-so", drawing], args.runs,
                         f"Feature Count: {entities}")))
    if entities <= args.ezdxf_limit:
        rows.append(("ezdxf: open", Run(["/usr/bin/python3", "-c", EZDXF_OPEN, drawing], 1)))
        rows.append(("ezdxf: open, change, save",
                     Run(["/usr/bin/python3", "-c", EZDXF_SAVE, drawing, saved], 1)))

    size = drawing.stat().st_size
    report(entities, size, rows)
    drawing.unlink()


def report(entities, size, rows):
    plain = rows[0][1]
    print(f"\n{entities:,} entities, {entities * 3 // 2:,} records, {size / 1e6:,.0f} MB")
    print(f"{'':28}{'seconds':>9}{'ratio':>8}{'peak MB':>10}{'of file':>9}")
    for name, run in rows:
        print(f"{name:28}{run.seconds:9.2f}{run.seconds / plain.seconds:8.1f}"
              f"{run.megabytes:10,.0f}{run.megabytes * 1024 * 1024 / size:9.1f}")
    search = (rows[1][1].seconds - plain.seconds) / SEARCHES
    print(f"{'one search':28}{search:9.3f}  (from the difference of the first two)", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/bench",
                        help="build folder of the preset bench")
    parser.add_argument("--entities", type=int, nargs="+", default=[100_000, 1_000_000])
    parser.add_argument("--ezdxf-limit", type=int, default=100_000, metavar="N",
                        help="leave ezdxf out above N entities; it needs minutes and gigabytes")
    parser.add_argument("--runs", type=int, default=3, help="runs of which the median counts")
    args = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        for entities in args.entities:
            measure(args, entities, pathlib.Path(folder))


if __name__ == "__main__":
    main()
