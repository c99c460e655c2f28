#!/usr/bin/env python3
"""Reads exported files with other programs: read_exports.py BENCH_EXPORT.

The program writes a table in each format; Python's own readers and, where it is installed, LibreOffice must find its
cells again. Prints "ok", "FAILED" or "skipped" for each check.
"""

import csv
import html.parser
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
import zipfile
from pathlib import Path

ROWS = 1000
HEADER = ["Name", "Qty", "Rate", "Delivery", "Key"]
MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
ESCAPE = re.compile("_x([0-9A-Fa-f]{4})_")


def expected():
    """Returns the rows that the program writes, numbers as numbers."""
    for row in range(1, ROWS + 1):
        name = "\u20ac & <sons>, \"the\" first" if row % 3 == 0 else "Nut"
        yield [name, row, row / 4, "05/03/2024", "k_x0041_"]


def as_texts(rows):
    return [HEADER] + [[f"{value:g}" if isinstance(value, float) else str(value) for value in row] for row in rows]


def read_csv(path):
    with open(path, encoding="utf-8-sig", newline="") as file:
        assert list(csv.reader(file, strict=True)) == as_texts(expected())


class Cells(html.parser.HTMLParser):
    """Collects the cells of an HTML table, and how many of them are headers."""

    def __init__(self):
        super().__init__()
        self.rows, self.headers = [], 0

    def handle_starttag(self, tag, attrs):
        if tag == "tr":
            self.rows.append([])
        elif tag in ("td", "th"):
            self.rows[-1].append("")
            self.headers += tag == "th"

    def handle_data(self, data):
        if self.rows and self.rows[-1] and data.strip():
            self.rows[-1][-1] += data


def read_html(path):
    cells = Cells()
    cells.feed(path.read_text(encoding="utf-8"))
    assert cells.rows == as_texts(expected()) and cells.headers == len(HEADER)


def cell_value(cell):
    if cell.get("t") == "inlineStr":
        return ESCAPE.sub(lambda found: chr(int(found[1], 16)), cell.find(f"{MAIN}is/{MAIN}t").text)
    return float(cell.find(f"{MAIN}v").text)


def read_xlsx(path):
    with zipfile.ZipFile(path) as book:
        assert book.testzip() is None
        parts = {name: ElementTree.fromstring(book.read(name)) for name in book.namelist()}
    types = parts["[Content_Types].xml"]
    named = {part.get("PartName", "").lstrip("/") for part in types}
    assert {"xl/workbook.xml", "xl/styles.xml", "xl/worksheets/sheet1.xml"} <= named & set(parts)
    sheet, styles = parts["xl/worksheets/sheet1.xml"], parts["xl/styles.xml"]
    rows = [[cell_value(cell) for cell in row] for row in sheet.iter(f"{MAIN}row")]
    dates = [[name, qty, rate, 45356.0, key] for name, qty, rate, _, key in expected()]
    assert rows == [HEADER] + dates
    formats = styles.find(f"{MAIN}cellXfs")
    style = [formats[int(cell.get("s"))] for cell in sheet.find(f"{MAIN}sheetData")[1]]
    assert styles.find(f"{MAIN}numFmts")[0].get("formatCode") == "dd/mm/yyyy"
    assert [form.get("numFmtId") for form in style] == ["0", "0", "0", "164", "0"]
    assert [float(col.get("width")) for col in sheet.find(f"{MAIN}cols")][0::4] == [20.0, 10.0]


def read_with_office(path):
    # Commas, quotes, UTF-8, from the first line on, and the cells as they are shown.
    target = "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true"
    folder = path.parent / "office"
    run = [f"-env:UserInstallation={(path.parent / 'profile').as_uri()}", "--headless", "--convert-to", target]
    subprocess.run(["soffice", *run, "--outdir", folder, path], check=True, timeout=300, capture_output=True)
    with open(folder / f"{path.stem}.csv", encoding="utf-8-sig", newline="") as file:
        rows = list(csv.reader(file))
    assert rows == as_texts(expected()), rows[:4]


def check(name, reader, path):
    try:
        reader(path)
        print("ok", name)
    except Exception as error:  # whatever a reader does not understand
        print(f"FAILED {name}: {error!r}")


def main():
    with tempfile.TemporaryDirectory() as folder:
        for name, reader in (("csv", read_csv), ("html", read_html), ("xlsx", read_xlsx)):
            path = Path(folder, f"table.{name}")
            subprocess.run([sys.argv[1], name, str(ROWS), path], check=True, stdout=subprocess.DEVNULL)
            check(name, reader, path)
        if shutil.which("soffice"):
            check("xlsx-in-LibreOffice", read_with_office, Path(folder, "table.xlsx"))
        else:
            print("skipped xlsx-in-LibreOffice: it is not installed")


if __name__ == "__main__":
    main()
