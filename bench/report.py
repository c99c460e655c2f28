#!/usr/bin/env python3
"""Turns the benchmarks' lines (work, rows, peer, value or "cut", runs, samples; separated by tabs) into a Markdown report.

    bench/report.py RESULTS... > report.md

Operations in seconds: load, sum, scan, insert_top, insert_block, remove_half, duplicates, product, product_set, validate,
remove_empty, load_cells, paste, undo_paste, first_frame. In bytes per cell: memory. In frames per second: frames, scroll.
"""
import sys
from collections import defaultdict

OURS = "Qvx rules"
WINDOW = "Qvx window"
# The toolkits' own tables are the peers. The others use the program's own storage: they are baselines for operations on
# data.
TOOLKITS = ["wxWidgets grid table", "wxWidgets grid", "Qt table widget", "Qt standard item model"]
FLOORS = ["Bare arrays", "Qt model over arrays", "Qt view over arrays"]
LIST_VIEWS = ["List view, report", "List view, owner data"]
HIGHER_IS_BETTER = {"frames", "scroll"}

NAMES = {
    "load": "load R rows, one tab-separated text a row",
    "memory": "memory per short cell",
    "sum": "sum of a column",
    "scan": "scan of every cell by a rule",
    "remove_half": "remove every second row",
    "duplicates": "search for equal rows where none are",
    "product": "product of two columns",
    "product_set": "product of two columns, written into a third",
    "validate": "check of clean cells: all required, two columns above 0",
    "remove_empty": "remove the half of the rows that is empty",
    "load_cells": "load R rows, a call a cell",
    "paste": "paste over R rows, each cell through its column and into the history",
    "undo_paste": "undo that paste",
    "insert_top": "insert 1,000 rows at the top, a call a row",
    "insert_block": "insert 1,000 rows at the top, in as few calls as can be",
    "first_frame": "first painted frame with 100,000 rows, load included",
    "frames": "full repaint while scrolling, 800 x 600",
    "scroll": "scrolling by a row, painting what is needful",
}
# work: (goal beside the best toolkit, goal beside the list view)
GOALS = {
    "load": (12, 100),
    "memory": (10, None),
    "sum": (12, 100),
    "scan": (12, 100),
    "remove_half": (80, 200),
    "duplicates": (8, None),
    "product": (12, None),
    "product_set": (12, None),
    "validate": (12, None),
    "remove_empty": (50, None),
    "insert_top": (100, 150),
    "frames": (4, 6),
    "first_frame": (4, 40),
}


def read(paths):
    """native[work][rows][peer] = (value or None when cut, runs), and the same for the Windows process."""
    tables = {"native": {}, "windows": {}}
    for path in paths:
        with open(path, encoding="utf-8") as lines:
            rows = [line.rstrip("\r\n").split("\t") for line in lines]
        kind = "windows" if any(len(r) >= 5 and r[2].startswith("List view") for r in rows) else "native"
        table = tables[kind]
        for row in rows:
            if len(row) < 5:
                continue
            work, count, peer, value, runs = row[:5]
            entry = (None, float(runs)) if value == "cut" else (float(value), int(runs))
            table.setdefault(work, {}).setdefault(int(count), {})[peer] = entry
    return tables["native"], tables["windows"]


def amount(work, value):
    if value is None:
        return "cut"
    if work == "memory":
        return f"{value:.1f} bytes"
    if work in HIGHER_IS_BETTER:
        return f"{value:.0f} /s"
    for unit, size in (("s", 1), ("ms", 1e-3)):
        if value >= size:
            return f"{value / size:.3g} {unit}"
    return f"{value / 1e-6:.3g} µs"


def ratio(work, ours, theirs):
    return ours / theirs if work in HIGHER_IS_BETTER else theirs / ours


def best(work, entries, names):
    known = [(entries[n][0], n) for n in names if n in entries and entries[n][0] is not None]
    if not known:
        return None
    return max(known) if work in HIGHER_IS_BETTER else min(known)


def compare(title, table, ours_table, peers, goal_index, works):
    print(f"## {title}\n")
    print("| work | rows | Qvx | best peer | | ratio | goal |")
    print("|---|---:|---:|---:|---|---:|---:|")
    for work in works:
        sizes = table.get(work, {})
        # The large tables, and the largest that the peers could handle.
        largest = max((n for n in sizes if best(work, sizes[n], peers)), default=0)
        for rows in sorted(sizes):
            if rows < 100_000 and rows != largest:
                continue
            entries = table[work][rows]
            name = WINDOW if work in ("first_frame", "frames", "scroll") else OURS
            ours = ours_table.get(work, {}).get(rows, {}).get(name, (None, 0))[0]
            peer = best(work, entries, peers)
            goal = GOALS.get(work, (None, None))[goal_index]
            if ours is None:
                continue
            if peer is None:
                print(f"| {NAMES[work]} | {rows:,} | {amount(work, ours)} | cut | | | {goal or ''} |")
                continue
            times = ratio(work, ours, peer[0])
            short = " (short)" if goal and times < goal else ""
            print(f"| {NAMES[work]} | {rows:,} | {amount(work, ours)} | {amount(work, peer[0])} | {peer[1]} "
                  f"| {times:.3g} | {goal or ''}{short} |")
    print()


def everything(title, table):
    print(f"## {title}\n")
    for work in NAMES:
        if work not in table:
            continue
        sizes = sorted(table[work])
        print(f"{NAMES[work]}:\n")
        print("| | " + " | ".join(f"{n:,} rows" for n in sizes) + " |")
        print("|---|" + "---:|" * len(sizes))
        peers = []
        for n in sizes:
            peers += [p for p in table[work][n] if p not in peers]
        for peer in peers:
            cells = []
            for n in sizes:
                value, runs = table[work][n].get(peer, (None, None))
                if runs is None:
                    cells.append("")
                elif value is None:
                    cells.append(f"cut (about {runs:.0f} s)" if runs else "cut")
                else:
                    cells.append(amount(work, value) + ("" if runs >= 5 else f" ({runs} run)"))
            print(f"| {peer} | " + " | ".join(cells) + " |")
        print()


def growth(table):
    print("## Growth of our rules with the number of rows\n")
    print("Time a row (insertion: in all) at each size, beside the size before; 1 is linear growth (insertion: none).\n")
    sizes = sorted(table.get("load", {}))
    print("| work | " + " | ".join(f"{n:,}" for n in sizes) + " |")
    print("|---|" + "---:|" * len(sizes))
    for work in ("load", "memory", "sum", "scan", "remove_half", "insert_top", "insert_block", "duplicates", "product", "product_set",
                 "validate", "remove_empty", "load_cells", "paste", "undo_paste"):
        cells, last = [], None
        for n in sizes:
            value = table.get(work, {}).get(n, {}).get(OURS, (None, 0))[0]
            if value is None:
                cells.append("cut")
                continue
            each = value if work in ("memory", "insert_top", "insert_block") else value / n
            cells.append(amount(work, each) + (f" ({each / last:.2f})" if last else ""))
            last = each
        print(f"| {NAMES[work]} | " + " | ".join(cells) + " |")
    print()


def main():
    native, windows = read(sys.argv[1:])
    print("# Benchmarks\n")
    print("Ten columns of short texts (0 to 11 characters). Medians of five runs (more where one is too short for the\n"
          "clock, fewer where one takes seconds), all of one run of `./qvx bench`. Works on data are measured in the\n"
          "thread's processor time natively and in elapsed time in the Windows process; painting in elapsed time; memory\n"
          "as what the allocator has handed out, natively.\n"
          "`cut` stands where a work was expected to take too long. A ratio says how many times better Qvx is.\n")
    data = ["load", "memory", "sum", "scan", "remove_half", "insert_top", "insert_block", "duplicates", "product", "product_set",
            "validate", "remove_empty"]
    paint = ["frames", "scroll", "first_frame"]
    if native:
        compare("Beside the best toolkit", native, native, TOOLKITS, 0, data)
    if native and windows:
        print("Painting: our window runs under Wine, the toolkits natively, on the same display, with the same window\n"
              "size, cell size, headers and share of selected cells. A full repaint draws every cell again. For frames\n"
              "Qt's view over a programmer's own arrays is a peer too, for the first frame it is not: its store is not\n"
              "the toolkit's.\n")
        peers = defaultdict(lambda: TOOLKITS + ["Qt view over arrays"], first_frame=TOOLKITS)
        for index, work in enumerate(paint):
            compare("Painting beside the best toolkit" if index == 0 else NAMES[work].capitalize(), native, windows,
                    peers[work], 0, [work])
    if windows:
        compare("Beside the system's list view in report mode", windows, windows, LIST_VIEWS[:1], 1, data + paint)
        compare("Beside the system's list view over owner data", windows, windows, LIST_VIEWS[1:], 1, data + paint)
        load = windows.get("load", {})
        print("Loading through automation, a call a row (goal: 5 times the list view in report mode):\n")
        print("| rows | dual interface | late bound | list view, report | ratio, dual | ratio, late bound |")
        print("|---:|---:|---:|---:|---:|---:|")
        for rows in sorted(load):
            dual, late, view = (load[rows].get(p, (None, 0))[0]
                                for p in ("Qvx automation, dual", "Qvx automation, late bound", LIST_VIEWS[0]))
            times = [f"{view / v:.3g}" if view and v else "" for v in (dual, late)]
            print(f"| {rows:,} | {amount('load', dual)} | {amount('load', late)} | {amount('load', view)} "
                  f"| {times[0]} | {times[1]} |")
        print()
    if native:
        growth(native)
        everything("All figures, natively", native)
    if windows:
        everything("All figures, in one Windows process", windows)


main()
