#!/usr/bin/env python3
"""What the tests of the archivers need beyond the distribution's archive programs.

    archives.py pack ARCHIVE FILE...      packs with this language's own library
    archives.py hostile ARCHIVE           unsafe names, with two good ones among them
    archives.py flip FILE OFFSET          inverts one bit
    archives.py pack-huge ARCHIVE FILE    stores a file that is mostly a hole as an entry that is mostly a hole
    archives.py check-huge ARCHIVE FILE   compares the archive's only entry with such a file
    archives.py same FILE OTHER           compares two such files without reading their holes
"""
import os
import stat
import sys
import zipfile

PIECE = 1 << 20
ZEROS = bytes(PIECE)

HOSTILE = [
    "../outside", "..\\outside", "good/../../outside", "/qvx-outside", "\\qvx-outside", "C:\\qvx-outside", "C:outside",
    "\\\\?\\C:\\qvx-outside", "\\\\server\\share\\outside", "file:\\outside", "good.txt:stream", "CON", "nul.txt", "COM1.db",
    "good/AUX", "dot.", "blank ", "..", ".", "good/.", "a\x01b", "a?b", "*", "", "\u202etxt.exe", "x.~pkunzip",
]


def pack(archive, *files):
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as target:
        for file in files:
            target.write(file)


def hostile(archive):
    with zipfile.ZipFile(archive, "w") as target:
        target.writestr("good/first.txt", "first")
        for name in HOSTILE:
            entry = zipfile.ZipInfo("placeholder")
            entry.filename = name
            entry.create_system = 0
            target.writestr(entry, "hostile")
        link = zipfile.ZipInfo("link")
        link.create_system = 3
        link.external_attr = (stat.S_IFLNK | 0o777) << 16
        target.writestr(link, "..")
        target.writestr("link/outside", "hostile")
        target.writestr("GOOD/FIRST.TXT", "second")
        target.writestr("last.txt", "last")


def flip(file, offset):
    with open(file, "r+b") as target:
        target.seek(int(offset))
        byte = target.read(1)[0]
        target.seek(int(offset))
        target.write(bytes([byte ^ 1]))


class Sparse:
    """A file whose zeros are skipped instead of written."""

    def __init__(self, file):
        self.file = file

    def write(self, data):
        if len(data) == PIECE and data == ZEROS:
            self.file.seek(PIECE, os.SEEK_CUR)
        else:
            self.file.write(data)
        return len(data)

    def __getattr__(self, name):
        return getattr(self.file, name)


def pieces(file):
    return iter(lambda: file.read(PIECE), b"")


def pack_huge(archive, file):
    with open(archive, "wb") as raw, zipfile.ZipFile(Sparse(raw), "w") as target, open(file, "rb") as source:
        with target.open(os.path.basename(file), "w", force_zip64=True) as entry:
            for piece in pieces(source):
                entry.write(piece)


def check_huge(archive, file):
    with zipfile.ZipFile(archive) as source, open(file, "rb") as wanted:
        (name,) = source.namelist()
        with source.open(name) as entry:
            for piece in pieces(entry):
                if piece != wanted.read(len(piece)):
                    sys.exit(f"{name} differs before {wanted.tell()}")
        if wanted.read(1):
            sys.exit(f"{name} is too short")


def extents(file, size):
    """Yields the ranges in which bytes other than zeros may be."""
    end = 0
    while end < size:
        try:
            start = os.lseek(file, end, os.SEEK_DATA)
        except OSError:  # only a hole remains
            return
        end = os.lseek(file, start, os.SEEK_HOLE)
        for offset in range(start, end, PIECE):
            yield offset, min(PIECE, end - offset)


def same(one, other):
    with open(one, "rb") as first, open(other, "rb") as second:
        size = os.fstat(first.fileno()).st_size
        if size != os.fstat(second.fileno()).st_size:
            sys.exit("The sizes differ.")
        for file in first.fileno(), second.fileno():
            for offset, count in list(extents(file, size)):
                if os.pread(first.fileno(), count, offset) != os.pread(second.fileno(), count, offset):
                    sys.exit(f"They differ behind {offset}.")


COMMANDS = {"pack": pack, "hostile": hostile, "flip": flip, "pack-huge": pack_huge, "check-huge": check_huge, "same": same}

COMMANDS[sys.argv[1]](*sys.argv[2:])
