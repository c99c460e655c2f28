#!/usr/bin/env python3
"""Compares every include with what CMakeLists.txt lets its component use, and CONTRIBUTING's table of folders with the same.

A component may only use components above it, so that there can be no cycle. A portable source may use the components after
RULES, a window unit those and the components after WINDOWS. --write updates the last column of the table.
"""

import re
import sys
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
TABLE = ROOT / "CONTRIBUTING.md"
COMPONENT = re.compile(r"^qvx_component\((\w+) ([\w/]+)(?: RULES ([\w ]+?))?(?: WINDOWS ([\w ]+?))?\)$", re.M)
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)', re.M)
# Headers of the standard library have no suffix; of those that have one, these are portable.
PORTABLE_HEADERS = {"emmintrin.h", "zlib.h"}
# The output of the type library's compiler.
GENERATED_HEADER = "Qvx.h"
# These are no components and use none: what every program gets, and programs as users write them.
ALONE = {"runtime", "samples/cpp"}
ROW = re.compile(r"^\| `([\w/]+)/` \|(.*)\|([^|]*)\|$")


@dataclass(frozen=True)
class Component:
    name: str
    folder: str
    rules: tuple
    windows: tuple


def setting(name):
    text = (ROOT / "cmake" / "QvxTargets.cmake").read_text()
    return re.compile(re.search(rf'set\({name} "(.*)"\)', text)[1].replace("\\\\", "\\"))


def components():
    found = COMPONENT.findall((ROOT / "CMakeLists.txt").read_text())
    return [Component(name, folder, tuple(rules.split()), tuple(windows.split())) for name, folder, rules, windows in found]


def order_faults(every):
    above = set()
    for component in every:
        for used in component.rules + component.windows:
            if used not in above:
                yield f"CMakeLists.txt: {component.name} cannot stand on {used}, which is no component above it"
        above.add(component.name)


def folder_faults(every):
    declared = {component.folder for component in every}
    for path in sorted(ROOT.rglob("*.cpp")):
        folder = path.parent.relative_to(ROOT)
        if str(folder) in ALONE:
            for own, _ in INCLUDE.findall(path.read_text()):
                if own and own != GENERATED_HEADER and not (path.parent / own).exists():
                    yield f"{path.relative_to(ROOT)}: {folder}/ uses no component and cannot include {own}"
        elif folder.parts[0] not in ("build", "tests", "fuzz", "bench") and str(folder) not in declared:
            yield f"{path.relative_to(ROOT)}: CMakeLists.txt declares no component for {folder}/"


def include_faults(every):
    windows_folders = setting("QVX_WINDOWS_FOLDERS")
    windows_suffixes = re.compile(setting("QVX_WINDOWS_SUFFIXES").pattern.replace(r"\.cpp$", r"\.(cpp|h)$"))
    by_folder = {component.folder: component for component in every}
    folder_of = {component.name: component.folder for component in every}
    for component in every:
        for path in sorted((ROOT / component.folder).iterdir()):
            if path.suffix not in (".cpp", ".h", ".rc"):
                continue
            windows = bool(
                windows_folders.search(component.folder)
                or windows_suffixes.search(path.name)
                or path.suffix == ".rc"
                or path.name == "main.cpp"
            )
            allowed = component.rules + component.windows if windows else component.rules
            allowed_folders = {component.folder, *(folder_of[name] for name in allowed if name in folder_of)}
            half = "window units" if windows else "rules"
            where = path.relative_to(ROOT)
            for own, system in INCLUDE.findall(path.read_text()):
                if system:
                    if not windows and system.endswith(".h") and system not in PORTABLE_HEADERS:
                        yield f"{where}: the rules are portable and cannot include <{system}>"
                    continue
                folder = own.rpartition("/")[0]
                if own == GENERATED_HEADER:
                    continue
                if not (ROOT / own).exists():
                    yield f"{where}: there is no {own}; includes start at the root of the project"
                    continue
                if folder not in allowed_folders:
                    yield f"{where}: the {half} of {component.folder}/ cannot include {own}"
                elif not windows and windows_suffixes.search(own):
                    yield f"{where}: a rule cannot include the window unit {own}"


def allowed_text(component, folder_of):
    def listed(names):
        return ", ".join(f"`{folder_of[name]}`" for name in names)

    if not component.windows:
        return listed(component.rules) or "nothing"
    if not component.rules:
        return listed(component.windows)
    return f"{listed(component.rules)}; window units also {listed(component.windows)}"


def table_faults(every, write):
    folder_of = {component.name: component.folder for component in every}
    wanted = {component.folder: allowed_text(component, folder_of) for component in every}
    lines = TABLE.read_text().split("\n")
    seen = set()
    for number, line in enumerate(lines):
        row = ROW.match(line)
        if not row or row[1] not in wanted:
            continue
        seen.add(row[1])
        lines[number] = f"| `{row[1]}/` |{row[2]}| {wanted[row[1]]} |"
        if lines[number] != line and not write:
            yield f"{TABLE.name}:{number + 1}: {row[1]}/ may use {wanted[row[1]]} (python3 tools/layers.py --write)"
    for folder in wanted.keys() - seen:
        yield f"{TABLE.name}: the table has no row for {folder}/"
    if write:
        TABLE.write_text("\n".join(lines))


def main():
    every = components()
    if not every:
        sys.exit("CMakeLists.txt declares no component that could be read.")
    faults = [*order_faults(every), *folder_faults(every), *include_faults(every), *table_faults(every, "--write" in sys.argv[1:])]
    print(*faults, sep="\n", end="\n" if faults else "")
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
