#!/usr/bin/env python3
"""Every conversation quoted in the documents must stand, line for line, in a tested transcript.

Usage: quotes.py REPOSITORY
A quote is a fenced block whose first line begins with "Command: ", "dialog> " or "palette> ".
"""

import pathlib
import re
import sys

QUOTE = re.compile(r"^```\n((?:Command: |dialog> |palette> ).*?)^```$", re.MULTILINE | re.DOTALL)


def main():
    root = pathlib.Path(sys.argv[1])
    seen = [golden.read_text(encoding="utf-8")
            for golden in sorted((root / "tests" / "transcripts").glob("*/*.golden"))]
    quotes = [(page, block)
              for page in sorted((root / "docs").glob("*.md"))
              for block in QUOTE.findall(page.read_text(encoding="utf-8"))]
    if not quotes:
        sys.exit("no document quotes a conversation")
    stale = [(page, block) for page, block in quotes if not any(block in text for text in seen)]
    for page, block in stale:
        print(f"{page}: no transcript has this:\n{block}", file=sys.stderr)
    print(f"{len(quotes) - len(stale)} passed, {len(stale)} failed")
    sys.exit(1 if stale else 0)


main()
