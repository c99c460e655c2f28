#!/usr/bin/env python3
"""Turns the results of a full run into a Markdown report.

    bench/report.py NATIVE,... WINDOWS,... HOSTS,... "MACHINE" > report.md

NATIVE, WINDOWS and HOSTS are files of results, the last of what hosts, forms, the designer and the archivers do; MACHINE is a sentence about the machine, the date and the sources.
"""
import math
import os
import sys

from results import KEY_LIMIT, KEYS, SECTIONS, STEPS, WORKS, amount, higher_is_better, read, title

OURS = "Qvx rules"
WINDOW = "Qvx window"
FLOOR = "Floor"
# The toolkits' own tables are the peers. The others use the program's own storage.
TOOLKITS = ["wxWidgets grid table", "wxWidgets grid", "Qt table widget", "Qt standard item model"]
LIST_VIEWS = ["List view, report", "List view, owner data"]
PAINTED = ["frames", "scroll", "first_frame", "frames_large", "scroll_large", "first_frame_large"]
DATA = ["load", "memory", "sum", "sum_texts", "scan", "remove_half", "insert_top", "insert_block", "duplicates",
        "product", "product_set", "validate", "remove_empty", "load_cells", "paste", "undo_paste"]

shortfalls = []


def value(table, work, rows, peer):
    entry = table.get(work, {}).get(rows, {}).get(peer)
    return entry.value if entry else None


def ours(table, work, rows):
    return value(table, work, rows, WINDOW if work in PAINTED else OURS)


def best(table, work, rows, peers):
    known = [(value(table, work, rows, peer), peer) for peer in peers if value(table, work, rows, peer) is not None]
    if not known:
        return None
    return max(known) if higher_is_better(work) else min(known)


def times_better(work, own, other):
    return own / other if higher_is_better(work) else other / own


def heading(text):
    print(f"## {text}\n")


def table_head(*columns):
    print("| " + " | ".join(columns) + " |")
    print("|---|" + "---:|" * (len(columns) - 1))


def goal_of(goal, met, what):
    """Returns a goal's cell, and remembers one that is not met."""
    if goal is None:
        return ""
    if met:
        return f"{goal:g}"
    shortfalls.append(what)
    return f"{goal:g} (short)"


def beside_peers(text, table, own_table, peers, works, goal, least_rows=100_000):
    """One line a work and size: how many times better Qvx is than the best of these peers."""
    heading(text)
    table_head("work", "rows", "Qvx", "best peer", "", "ratio", "goal")
    for work in works:
        sizes = sorted(table.get(work, {}))
        largest = max((rows for rows in sizes if best(table, work, rows, peers)), default=0)
        for rows in sizes:
            own = ours(own_table, work, rows)
            present = [peer for peer in peers if peer in table[work][rows]]
            if own is None or not present or (rows < least_rows and rows != largest):
                continue
            peer = best(table, work, rows, peers)
            if peer is None:
                print(f"| {title(work)} | {rows:,} | {amount(work, own)} | cut | | | |")
                continue
            ratio = times_better(work, own, peer[0])
            least = getattr(WORKS[work], goal) if goal else None
            cell = goal_of(least, least is None or ratio >= least,
                           f"{title(work)}, {rows:,} rows, beside {peer[1]}: {ratio:.3g} instead of {least or 0:g} times")
            print(f"| {title(work)} | {rows:,} | {amount(work, own)} | {amount(work, peer[0])} | {peer[1]} "
                  f"| {ratio:.3g} | {cell} |")
    print()


def beside_floor(native, windows):
    heading("Beside the floor")
    print("The floor is what a work costs at the least: rows packed into one array by a program that knows them, one pass\n"
          "over as few bytes as possible, without checks, events or a table around them; for painting, one `ExtTextOutW`\n"
          "a cell at a fixed place and one copy to the window, in the same process under the same system. A ratio of 1\n"
          "means that Qvx takes as long.\n")
    for table, where in ((native, "natively"), (windows, "in a Windows process")):
        table_head(f"work, {where}", "rows", "Qvx", "floor", "ratio", "goal, at most")
        for work in WORKS:
            for rows in sorted(table.get(work, {})):
                own, floor = ours(table, work, rows), value(table, work, rows, FLOOR)
                if own is None or floor is None or rows < 100_000:
                    continue
                ratio = 1 / times_better(work, own, floor)
                most = WORKS[work].floor
                cell = goal_of(most, most is None or ratio <= most,
                               f"{title(work)}, {rows:,} rows, {where}: {ratio:.3g} times the floor instead of {most or 0:g}")
                print(f"| {title(work)} | {rows:,} | {amount(work, own)} | {amount(work, floor)} | {ratio:.3g} | {cell} |")
        print()


def other_goals(native, windows):
    """The goals that are not ratios to a peer."""
    heading("Other goals")
    table_head("what", "measured", "goal")

    def line(what, measured, goal, met):
        if not met:
            shortfalls.append(f"{what}: {measured} instead of {goal}")
        print(f"| {what} | {measured} | {goal}{'' if met else ' (short)'} |")

    for rows in (100_000, 1_000_000):
        memory = ours(native, "memory", rows)
        if memory is not None:
            line(f"memory per short cell, {rows:,} rows", amount("memory", memory), "at most 8.5 bytes", memory <= 8.5)
        load = ours(native, "load", rows)
        for work in ("paste", "undo_paste"):
            own = ours(native, work, rows)
            if own is not None and load is not None:
                line(f"{title(work)}, {rows:,} rows", f"{own / load:.2f} times a load of whole rows", "at most 2 times",
                     own <= 2 * load)
    first, frames = ours(windows, "first_frame", 100_000), ours(windows, "frames", 100_000)
    load = value(windows, "load", 100_000, OURS)
    if first is not None and frames is not None and load is not None:
        ratio = first / (load + 1 / frames)
        line("first painted frame", f"{ratio:.2f} times a load and one repaint", "at most 1.5 times", ratio <= 1.5)
    held = ours(windows, "scroll_large", 100_000)
    if held is not None:
        line(title("scroll_large"), amount("scroll_large", held), "at least 60 /s", held >= 60)
    print()


def automation(windows):
    heading("Loading through automation")
    print("A call a row, beside the system's list view in report mode (goal: 5 times).\n")
    table_head("rows", "dual interface", "late bound", "list view, report", "ratio, dual", "ratio, late bound")
    for rows in sorted(windows.get("load", {})):
        dual, late, view = (value(windows, "load", rows, peer)
                            for peer in ("Qvx automation, dual", "Qvx automation, late bound", LIST_VIEWS[0]))
        if dual is None or late is None:
            continue
        ratios = [f"{view / own:.3g}" if view else "" for own in (dual, late)]
        print(f"| {rows:,} | {amount('load', dual)} | {amount('load', late)} | {amount('load', view)} "
              f"| {ratios[0]} | {ratios[1]} |")
    print()


def exponent(points):
    """The slope of the line through the logarithms of sizes and times, by least squares."""
    xs = [math.log(rows) for rows, _ in points]
    ys = [math.log(taken) for _, taken in points]
    mean_x, mean_y = sum(xs) / len(xs), sum(ys) / len(ys)
    across = sum((x - mean_x) ** 2 for x in xs)
    return sum((x - mean_x) * (y - mean_y) for x, y in zip(xs, ys)) / across


def growth(native):
    heading("Growth with the number of rows")
    print("The exponent is that of the power of the number of rows with which a work grows from 10,000 rows on: 1 is\n"
          "linear, 0 is the same at every size.\n")
    sizes = sorted(native.get("load", {}))
    table_head("work", *(f"{rows:,}" for rows in sizes), "exponent")
    for work in DATA:
        points = [(rows, ours(native, work, rows)) for rows in sorted(native.get(work, {}))]
        points = [(rows, taken) for rows, taken in points if taken is not None]
        if not points:
            continue
        known = dict(points)
        fitted = [(rows, taken) for rows, taken in points if rows >= 10_000]
        power = f"{exponent(fitted):.2f}" if len(fitted) > 1 else ""
        print(f"| {title(work)} | " + " | ".join(amount(work, known[rows]) if rows in known else "" for rows in sizes)
              + f" | {power} |")
    print()


def everything(text, table):
    heading(text)
    for work in WORKS:
        if work not in table:
            continue
        sizes = sorted(table[work])
        print(f"{title(work)}:\n")
        table_head("", *(f"{rows:,} rows" for rows in sizes))
        peers = []
        for rows in sizes:
            peers += [peer for peer in table[work][rows] if peer not in peers]
        for peer in peers:
            cells = []
            for rows in sizes:
                entry = table[work][rows].get(peer)
                if entry is None:
                    cells.append("")
                elif not entry.samples:
                    cells.append(f"cut (about {entry.expected:.0f} s)" if entry.expected else "cut")
                else:
                    runs = len(entry.samples)
                    cells.append(amount(work, entry.value) + ("" if runs >= 5 else f" ({runs} run{'s'[:runs != 1]})"))
            print(f"| {peer} | " + " | ".join(cells) + " |")
        print()


def section(entries, part):
    heading(part.title)
    print(part.text + "\n")
    table_head("work", part.counts, "Qvx", *((part.peer, "ratio") if part.peer else ()))
    for work in part.works:
        for rows in sorted(entries.get(work, {})):
            own = value(entries, work, rows, part.ours)
            if own is None:
                continue
            line = f"| {title(work)} | {rows:,} | {amount(work, own)} |"
            if part.peer:
                peer = value(entries, work, rows, part.peer)
                line += f" {amount(work, peer)} | {peer / own:.2f} |" if peer is not None else " | |"
            print(line)
    print()


def keys(entries):
    heading("Typing")
    print("From a key until what it changes is on the screen, in a grid of a million rows.\n")
    table_head("key", "median", "99 of 100 within", "keys", "goal")
    for work in KEYS:
        for rows, peers in sorted(entries.get(work, {}).items()):
            samples = sorted(peers["ComboGrid"].samples)
            centile = samples[min(len(samples) - 1, math.ceil(0.99 * len(samples)) - 1)]
            cell = "16 ms"
            if centile > KEY_LIMIT:
                shortfalls.append(f"{title(work)}: 99 of 100 within {amount(work, centile)} instead of 16 ms")
                cell += " (short)"
            print(f"| {title(work)} | {amount(work, peers['ComboGrid'].value)} | {amount(work, centile)} "
                  f"| {len(samples)} | {cell} |")
    print()


def steps(entries):
    heading("Steps of a form's life")
    sizes = sorted(entries.get("form_show", {}))
    if not sizes:
        print("Not measured.\n")
        return
    rows = sizes[-1]
    print(f"Of {rows:,} controls or windows of one kind.\n")
    table_head("", *(title(work) for work in STEPS))
    for peer in entries["form_show"][rows]:
        cells = [value(entries, work, rows, peer) for work in STEPS]
        print(f"| {peer} | " + " | ".join("" if cell is None else amount("form_show", cell) for cell in cells) + " |")
    print()


def read_all(argument):
    entries = {}
    for path in argument.split(","):
        if os.path.exists(path):
            read(path, entries)
    return entries


def main():
    native, windows, hosts, machine = *(read_all(argument) for argument in sys.argv[1:4]), sys.argv[4]
    print("# Benchmarks\n")
    print("A script has made this page from one run of `./qvx bench`.")
    print(machine + "\n")
    print("The data has ten columns of short texts (0 to 11 characters). Figures are medians of five repetitions (more where\n"
          "one is too short for the clock, fewer where one takes seconds). Work on data is measured as processor time of the\n"
          "thread in native programs and as elapsed time in the Windows process; painting is measured as elapsed time;\n"
          "memory is the amount that the allocator has handed out in native programs. `cut` marks work that was left out\n"
          "because it was expected to take too long. Each load begins with memory that the system has yet to provide.\n")
    beside_floor(native, windows)
    other_goals(native, windows)
    beside_peers("Beside the best toolkit", native, native, TOOLKITS, DATA, "toolkit")
    print("For painting, the Qvx window runs under Wine and the toolkits run natively, on the same display, with the same\n"
          "window size, cell size, headers and share of selected cells. A full repaint draws every cell again. Qt's view\n"
          "over a programmer's own arrays is compared for frames, but not for the first frame, since its store is not the\n"
          "toolkit's.\n")
    view = ["Qt view over arrays"]
    beside_peers("Painting beside the best toolkit", native, windows, TOOLKITS + view, ["frames", "scroll"], "toolkit")
    beside_peers("First frame beside the best toolkit", native, windows, TOOLKITS, ["first_frame"], "toolkit")
    beside_peers("Beside the system's list view in report mode", windows, windows, LIST_VIEWS[:1], list(WORKS), "list_view")
    print("The list view over owner data stores nothing itself: loading, removing and the first frame are those of a bare\n"
          "vector in the program.\n")
    beside_peers("Beside the system's list view over owner data", windows, windows, LIST_VIEWS[1:], list(WORKS), None)
    automation(windows)
    growth(native)
    keys(hosts)
    for part in SECTIONS:
        section(hosts, part)
    steps(hosts)
    heading("Goals that are not met")
    if shortfalls:
        table_head("work")
        print("\n".join(f"| {short} |" for short in shortfalls))
    else:
        print("All goals are met.")
    print()
    with open(os.path.join(os.path.dirname(__file__), "notes.md"), encoding="utf-8") as notes:
        print(notes.read())
    everything("All figures, natively", native)
    everything("All figures, in one Windows process", windows)


main()
