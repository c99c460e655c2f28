#!/usr/bin/env python3
"""Prints the share of the tests in the code, and fails where it exceeds the limit.

It counts lines that are neither blank nor comments. Tests are the files in tests/ (including their support) and fuzz/.
"""

import os
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
MOST = 0.33
COUNTED = (".c", ".cpp", ".h", ".idl")
COMMENT = re.compile(r"/\*.*?\*/", re.S)


def lines_of(path):
    text = COMMENT.sub("", path.read_text(encoding="utf-8"))
    return sum(1 for line in text.split("\n") if line.strip() and not line.strip().startswith("//"))


def main():
    tests = everything = 0
    for folder, folders, files in os.walk(ROOT):
        folders[:] = [name for name in folders if name != "build" and not name.startswith(".")]
        for name in files:
            if name.endswith(COUNTED):
                lines = lines_of(Path(folder, name))
                everything += lines
                if Path(folder).relative_to(ROOT).parts[:1] in (("tests",), ("fuzz",)):
                    tests += lines
    print(f"Tests are {tests / everything:.1%} of the code: {tests} of {everything} lines.")
    sys.exit(tests / everything > MOST)


if __name__ == "__main__":
    main()
