#!/usr/bin/env python3
"""Prints the picture of the layers for docs/architecture.md: each component on the lowest row that is above all it may use.

A line is drawn only where no other path of lines leads; what a program's command line or a watcher uses is drawn like the rest.
"""

from html import escape

from layers import components

WIDTH, BOX_WIDTH, BOX_HEIGHT, ROW = 1160, 148, 30, 74
FILLS = {"common": "#e8eef7", "com": "#e8eef7", "win": "#e8eef7", "drawing": "#e8eef7", "widgets": "#e6f3e6", "dialogs": "#e6f3e6",
         "kit": "#fbf0dc", "controls": "#fbf0dc", "server": "#fbf0dc", "host": "#f3e6f0", "designer": "#f3e6f0", "qvxhost": "#f3e6f0"}
OTHER_FILL = "#eeeeee"


def reach(uses):
    """All components that each component uses, directly or not. `uses` is in the order of the layers."""
    below = {}
    for name, direct in uses.items():
        below[name] = set(direct).union(*(below[used] for used in direct))
    return below


def main():
    every = components()
    uses = {component.name: component.rules + component.windows for component in every}
    below = reach(uses)
    lines = [(name, used) for name, direct in uses.items() for used in direct
             if not any(used in below[other] for other in direct)]
    row = {}
    for name, direct in uses.items():
        row[name] = 1 + max((row[used] for used in direct), default=-1)
    rows = [[c for c in every if row[c.name] == r] for r in range(max(row.values()) + 1)]
    height = ROW * len(rows) + 20
    place = {}
    for r, members in enumerate(rows):
        step = WIDTH / len(members)
        # The positions of the components below decide where in the row a component is placed.
        members.sort(key=lambda c: sum(place[u][0] for u in uses[c.name]) / len(uses[c.name]) if uses[c.name] else 0)
        for i, component in enumerate(members):
            place[component.name] = (step * (i + 0.5), height - ROW * (r + 1) + 20)

    print(f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" font-family="sans-serif" font-size="13">')
    print(f'<rect width="{WIDTH}" height="{height}" fill="white"/>')
    for upper, lower in lines:
        (x1, y1), (x2, y2) = place[upper], place[lower]
        print(f'<path d="M{x1:.0f} {y1 + BOX_HEIGHT} C{x1:.0f} {y1 + BOX_HEIGHT + 30} {x2:.0f} {y2 - 30} {x2:.0f} {y2}" '
              'fill="none" stroke="#8a94a6"/>')
    for component in every:
        x, y = place[component.name]
        fill = FILLS.get(component.folder.split("/")[0], OTHER_FILL)
        print(f'<rect x="{x - BOX_WIDTH / 2:.0f}" y="{y}" width="{BOX_WIDTH}" height="{BOX_HEIGHT}" rx="4" fill="{fill}" stroke="#5b6475"/>')
        print(f'<text x="{x:.0f}" y="{y + 20}" text-anchor="middle">{escape(component.folder)}/</text>')
    print("</svg>")


if __name__ == "__main__":
    main()
