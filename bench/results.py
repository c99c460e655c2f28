"""The benchmarks' works, and the lines that the programs print of them.

A line has work, rows, peer, median or "cut", number of runs and all samples, separated by tabs. Values are seconds unless
the table of works says otherwise. A work that was cut has the seconds it was expected to take in place of the runs.
"""
import statistics
from dataclasses import dataclass, field

SECONDS, BYTES, PER_SECOND = "seconds", "bytes", "per second"


@dataclass(frozen=True)
class Work:
    """Something that is measured. Goals are the least ratio to the best toolkit and to the list view, and the greatest
    to the floor."""
    title: str
    unit: str = SECONDS
    toolkit: float = None
    list_view: float = None
    floor: float = None
    grows: bool = True  # with the number of rows; otherwise the time should be the same at every size

    @property
    def higher_is_better(self):
        return self.unit == PER_SECOND


WORKS = {
    "load": Work("load R rows, one tab-separated text a row", toolkit=12, list_view=100, floor=1.5),
    "memory": Work("memory per short cell", unit=BYTES, toolkit=10, grows=False),
    "sum": Work("sum of a column", toolkit=12, list_view=100, floor=1.2),
    "sum_texts": Work("sum of a column with texts in a third of its cells", toolkit=12, floor=1.2),
    "scan": Work("scan of every cell by a rule", toolkit=12, list_view=100, floor=1.2),
    "remove_half": Work("remove every second row", toolkit=80, list_view=200, floor=1.5),
    "insert_top": Work("insert 1,000 rows at the top, a call a row", toolkit=100, list_view=150, floor=1.5, grows=False),
    "insert_block": Work("insert 1,000 rows at the top, in as few calls as can be", floor=1.5, grows=False),
    "duplicates": Work("search for equal rows where none are", toolkit=8),
    "product": Work("product of two columns, added up", toolkit=12),
    "product_set": Work("the same, each written into a third column", toolkit=12),
    "validate": Work("check of a grid in which all is valid", toolkit=12),
    "remove_empty": Work("remove the half of the rows that is empty", toolkit=50),
    "load_cells": Work("load R rows, a call a cell"),
    "paste": Work("paste over R rows, each cell through its column and into the history"),
    "undo_paste": Work("undo that paste"),
    "frames": Work("full repaint while scrolling, 800 x 600", unit=PER_SECOND, toolkit=4, list_view=6, grows=False),
    "scroll": Work("scrolling by a row, 800 x 600", unit=PER_SECOND, grows=False),
    "first_frame": Work("first painted frame with 100,000 rows, load included", toolkit=4, list_view=40),
    "first_frame_cpu": Work("first painted frame, load included, time of the processor"),
    "frames_cpu": Work("full repaint while scrolling, a second of the processor", unit=PER_SECOND, grows=False),
    "scroll_cpu": Work("scrolling by a row, a second of the processor", unit=PER_SECOND, grows=False),
    "frames_large": Work("full repaint, 3840 x 2160", unit=PER_SECOND, grows=False),
    "scroll_large": Work("scrolling by a row, 3840 x 2160", unit=PER_SECOND, grows=False),
    "first_frame_large": Work("first painted frame, 3840 x 2160"),
    "bind_interface": Work("records of ten fields, through their interface"),
    "bind_named": Work("records of ten fields, by names"),
    "bind_rows": Work("records of ten fields, in blocks (GetRows)"),
    "array_load": Work("loading rows from an array (LoadArray)"),
    "array_read": Work("reading rows into an array (ToArray)"),
    "cell_get_dual": Work("reading cells, dual interface"),
    "cell_put_dual": Work("writing cells, dual interface"),
    "cell_get_late": Work("reading cells, late bound"),
    "cell_put_late": Work("writing cells, late bound"),
    "sort_texts": Work("sorting rows by texts"),
    "sort_numbers": Work("sorting rows by numbers"),
    "validate_entry": Work("checking rows, nothing wrong"),
    "duplicate_record": Work("searching rows for equal ones, none equal"),
    "library": Work("loading, one object, unloading"),
    "library_bare": Work("the same in a process without the system's libraries"),
    "key_first": Work("the first character, which opens the editor"),
    "key_next": Work("a further character"),
    "key_enter": Work("Enter, which commits and goes on"),
    "key_right": Work("arrow right"),
    "key_down": Work("arrow down"),
    "hold_down": Work("arrow down, held"),
    "hold_page_down": Work("page down, held"),
    "open_mix_cold": Work("a mix of controls, library not yet loaded"),
    "open_mix_warm": Work("a mix of controls"),
    "open_fields_cold": Work("text fields, library not yet loaded"),
    "open_fields_warm": Work("text fields"),
    "form_create": Work("creating"),
    "form_load": Work("loading"),
    "form_show": Work("showing"),
    "form_close": Work("closing"),
    "design_move": Work("moving all controls"),
    "design_undo_move": Work("undoing that"),
    "design_redo_move": Work("redoing it"),
    "design_delete": Work("deleting all controls"),
    "design_undo_delete": Work("undoing that"),
    "archive_size": Work("size of the archive", unit=BYTES),
    "archiver_start": Work("start of a program"),
    "pack": Work("packing, elapsed"),
    "pack_one": Work("packing, elapsed on one processor"),
    "pack_cpu": Work("packing, processor time"),
    "unpack": Work("unpacking, elapsed"),
    "unpack_cpu": Work("unpacking, processor time"),
    "restore": Work("restoring a backup, elapsed"),
}


@dataclass(frozen=True)
class Section:
    """Works whose entries are compared between one of ours and one peer; `counts` says what their sizes count."""
    title: str
    text: str
    works: tuple
    ours: str
    peer: str = None
    counts: str = "rows"


SECTIONS = (
    Section("Binding records", "Both read the same records from memory; Bind fills the grid as well.",
            ("bind_interface", "bind_named", "bind_rows"), "Bind", "Loop over the fields", "records"),
    Section("Arrays of rows",
            "Arrays of ten texts a row, in one call. The floor of loading packs the array's texts into bytes, that of reading\n"
            "makes a second array of them; neither has a grid. A ratio of 0.5 means that Qvx takes twice as long.",
            ("array_load", "array_read"), "ComboGrid", "Floor"),
    Section("Cells through automation", "Beside a minimal object with an array of texts.",
            ("cell_get_dual", "cell_put_dual", "cell_get_late", "cell_put_late"), "TextMatrix", "Array of texts",
            "cells"),
    Section("Sorting", "Beside a stable sort of an array with the same comparison.", ("sort_texts", "sort_numbers"), "Sort",
            "stable_sort of an array"),
    Section("Checking", "The control's methods, through automation.", ("validate_entry", "duplicate_record"), "ComboGrid"),
    Section("The library in a process", "Beside the system's script engine.", ("library", "library_bare"), "Qvx.ocx",
            "vbscript.dll", "times"),
    Section("Opening forms", "Until everything is drawn, beside as many of the system's windows.",
            ("open_mix_warm", "open_mix_cold", "open_fields_warm", "open_fields_cold"), "Controls", "System windows",
            "controls"),
    Section("The designer's steps", "As rules, without windows.",
            ("design_move", "design_undo_move", "design_redo_move", "design_delete", "design_undo_delete"), "Designer",
            counts="controls"),
    Section("The archivers beside zip and unzip",
            "A SQLite database; sizes count its megabytes. PkZip reads its archive back and compares it, which zip does not\n"
            "do. PkZip and PkunZip run under Wine, and their processor times leave out Wine's server. A restore by the Backup\n"
            "control unpacks into the working folder, opens the database, writes a copy to the disk beside the old one and\n"
            "takes its place, without the time of the dialog; beside it, unzip, sqlite3, cp, sync and mv do the same.",
            ("archive_size", "pack", "pack_one", "pack_cpu", "unpack", "unpack_cpu", "restore", "archiver_start"),
            "PkZip, PkunZip",
            "zip, unzip", "megabytes"),
)
# From a key until what it changes is on the screen.
KEYS = ("key_first", "key_next", "key_enter", "key_right", "key_down", "hold_down", "hold_page_down")
KEY_LIMIT = 0.016
# The steps of a control's life, by kind of control.
STEPS = ("form_create", "form_load", "form_show", "form_close")


@dataclass
class Entry:
    """What one peer took for one work at one size; no samples where the work was cut."""
    samples: list = field(default_factory=list)
    expected: float = 0

    @property
    def value(self):
        return statistics.median(self.samples) if self.samples else None


def read(path, into=None):
    """Returns entries[work][rows][peer]; samples of several runs are put together."""
    entries = {} if into is None else into
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            columns = line.rstrip("\r\n").split("\t")
            if len(columns) < 5:
                continue
            work, rows, peer, value, runs = columns[:5]
            entry = entries.setdefault(work, {}).setdefault(int(rows), {}).setdefault(peer, Entry())
            if value == "cut":
                entry.expected = float(runs)
            else:
                entry.samples += [float(sample) for sample in columns[5].split(",")]
    return entries


def title(work):
    return WORKS[work].title if work in WORKS else work


def higher_is_better(work):
    return work in WORKS and WORKS[work].higher_is_better


def amount(work, value):
    """Returns a value as text with its unit."""
    if value is None:
        return "cut"
    unit = WORKS[work].unit if work in WORKS else SECONDS
    if unit == BYTES:
        return f"{value:.1f} bytes" if value < 1000 else f"{value:,.0f} bytes"
    if unit == PER_SECOND:
        return f"{value:.0f} /s"
    for name, size in (("s", 1), ("ms", 1e-3)):
        if value >= size:
            return f"{value / size:.3g} {name}"
    return f"{value / 1e-6:.3g} µs"
