"""Writes the table of docs/hosts.md from what `./qvx test hosts` has counted.

python3 tools/hosts_table.py writes it; with --check it fails where the table is another.
"""
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
RESULTS = ROOT / "build/test/hosts.tsv"
PAGE = ROOT / "docs/hosts.md"
FIRST, LAST = "| host |", "\n\n"


def sums(lines):
    """One row for each host, version and architecture, in the order in which they were run."""
    rows = {}
    for line in lines:
        *host, passed, failed, skipped = line.split("\t")
        counts = rows.setdefault(tuple(host), [0, 0, 0])
        for place, number in enumerate((passed, failed, skipped)):
            counts[place] += int(number)
    return rows


def table(rows):
    lines = [f"{FIRST} version | architecture | passed | failed | skipped |", "| --- | --- | --- | --- | --- | --- |"]
    lines += ["| " + " | ".join([*host, *map(str, counts)]) + " |" for host, counts in rows.items()]
    return "\n".join(lines)


def main():
    page = PAGE.read_text(encoding="utf-8")
    start = page.index(FIRST)
    end = page.index(LAST, start)
    new = page[:start] + table(sums(RESULTS.read_text(encoding="utf-8").splitlines())) + page[end:]
    if "--check" in sys.argv:
        sys.exit(None if new == page else f"python3 {sys.argv[0]} would write another table.")
    PAGE.write_text(new, encoding="utf-8")


main()
