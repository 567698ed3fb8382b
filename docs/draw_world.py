#!/usr/bin/env python3
"""Draws world.png from the sample drawing; countries are coloured by the CONTINENT they carry.

Usage: draw_world.py DRAWING.dxf OUTPUT.png (needs ezdxf, matplotlib and Pillow)
"""

import sys

import ezdxf
import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np
from ezdxf.path import make_path
from matplotlib.collections import LineCollection
from matplotlib.patches import Polygon
from PIL import Image

CONTINENT_COLOURS = {
    "Africa": "#e7c98b", "Antarctica": "#eef2f5", "Asia": "#d9b5a0", "Europe": "#b9c7a3",
    "North America": "#c7b6d2", "Oceania": "#a9cdbf", "South America": "#d6d08f",
}


def texts_of_first_record(entity):
    """The Character values of the first record, no value longer than one piece."""
    if not entity.has_extension_dict or "KORVEL_OD" not in entity.get_extension_dict():
        return []
    return [t.value for t in entity.get_extension_dict()["KORVEL_OD"].tags if t.code == 1]


def on_layer(space, kinds, layer):
    return space.query(f'{kinds}[layer=="{layer}"]')


def scatter(axes, entities, **look):
    points = [e.dxf.insert if e.dxftype() == "INSERT" else e.dxf.location for e in entities]
    axes.scatter([p.x for p in points], [p.y for p in points], linewidths=0, **look)


def draw(space, axes):
    for line in on_layer(space, "LINE", "GRATICULE"):
        axes.plot(*zip(line.dxf.start.vec2, line.dxf.end.vec2), color="#c3d2dc", lw=0.5, zorder=0)
    for country in on_layer(space, "LWPOLYLINE", "COUNTRIES"):
        colour = next((CONTINENT_COLOURS[t] for t in texts_of_first_record(country)
                       if t in CONTINENT_COLOURS), "#dddddd")
        axes.add_patch(Polygon(list(country.vertices()), fc=colour, ec="#7d7468", lw=0.3))
    flights = on_layer(space, "ARC LWPOLYLINE POLYLINE", "FLIGHTS")
    ways = [[p.vec2 for p in make_path(f).flattening(0.05)] for f in flights]
    axes.add_collection(LineCollection(ways, colors="#2f6da3", linewidths=0.6))
    scatter(axes, on_layer(space, "INSERT POINT", "AIRPORTS"), s=1.2, color="#2f6da3")
    scatter(axes, on_layer(space, "INSERT", "CITIES"), s=2.5, color="#33302b")
    scatter(axes, on_layer(space, "INSERT", "CAPITALS"), s=5, marker="*", color="#b3261e")
    scatter(axes, on_layer(space, "POINT", "EARTHQUAKES"), s=8, color="#e4572e", alpha=0.6)
    for text in on_layer(space, "TEXT", "LABELS"):
        is_country = text.dxf.height < 3
        axes.text(text.dxf.insert.x, text.dxf.insert.y, text.dxf.text,
                  fontsize=3.6 if is_country else 5.5, ha="center" if is_country else "left",
                  color="#33302b" if is_country else "#6f8fa6")


def main(drawing, picture):
    figure = plt.figure(figsize=(6, 3.1), dpi=150, facecolor="white")
    axes = figure.add_axes((0, 0, 1, 1))
    axes.set(xlim=(-181, 181), ylim=(-94, 93))
    axes.set_aspect("equal")
    axes.set_facecolor("#e6eff4")
    axes.set_xticks([])
    axes.set_yticks([])
    draw(ezdxf.readfile(drawing).modelspace(), axes)
    figure.canvas.draw()
    pixels = Image.fromarray(np.asarray(figure.canvas.buffer_rgba())).convert("RGB")
    pixels.quantize(96, Image.Quantize.MEDIANCUT, dither=Image.Dither.NONE).save(
        picture, optimize=True)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
