#!/usr/bin/env python3
"""Writes frame/case_mapping_table.inc: Unicode's simple lower-case mapping as compact ranges.

Usage: tools/make_case_mapping.py > frame/case_mapping_table.inc
"""
import sys
import unicodedata

# The only code point whose full mapping (i and a combining dot) is longer than its simple one.
LONGER_IN_FULL = {0x130: 0x69}


def simple_lower(code):
    if code in LONGER_IN_FULL:
        return LONGER_IN_FULL[code]
    text = chr(code).lower()
    if len(text) != 1:
        sys.exit(f"U+{code:04X} has no single lower-case code point")
    return ord(text)


def mapped_code_points():
    for code in range(sys.maxunicode + 1):
        lower = simple_lower(code)
        if lower == code:
            continue
        if (code > 0xFFFF) != (lower > 0xFFFF):
            sys.exit(f"U+{code:04X} changes its length in UTF-16")
        yield code, lower - code


def ranges():
    first = last = stride = delta = None
    for code, difference in mapped_code_points():
        gap = None if last is None else code - last
        if difference == delta and gap <= 2 and stride in (None, gap):
            last, stride = code, gap
            continue
        if first is not None:
            yield first, last, stride or 1, delta
        first, last, stride, delta = code, code, None, difference
    yield first, last, stride or 1, delta


print(f"// Made by tools/make_case_mapping.py from Unicode {unicodedata.unidata_version}: "
      "first, last, stride, delta.")
for first, last, stride, delta in ranges():
    print(f"{{0x{first:04X}, 0x{last:04X}, {stride}, {delta}}},")
