#!/usr/bin/env python3
"""Writes common/case_folding_table.inc: simple case folding of all of Unicode as ranges.

A character folds to its one-character full folding if there is one, otherwise to its one-character lower form; characters
whose only foldings are longer than one character stay as they are. Run it from the root of the source tree:

    python3 tools/make_case_folding.py > common/case_folding_table.inc
"""
import sys
import unicodedata


def fold(code):
    char = chr(code)
    for folded in (char.casefold(), char.lower()):
        if len(folded) == 1:
            return ord(folded)
    return code


def main():
    # Runs of characters that are `step` apart and fold by the same distance.
    runs = []
    for code in range(sys.maxunicode + 1):
        if 0xD800 <= code <= 0xDFFF:
            continue
        distance = fold(code) - code
        if distance == 0:
            continue
        if runs:
            first, last, step, previous = runs[-1]
            if previous == distance and (code - last == step or (first == last and code - last <= 2)):
                runs[-1] = (first, code, code - last, distance)
                continue
        runs.append((code, code, 1, distance))
    print(f"// Made by tools/make_case_folding.py from Unicode {unicodedata.unidata_version}; do not edit.")
    print("// First and last character of a run, the step within it, the distance to the folded character.")
    for first, last, step, distance in runs:
        print(f"{{0x{first:04X}, 0x{last:04X}, {step}, {distance}}},")


main()
