"""Lays out the files as they are packed and installed, and the symbols apart."""

import shutil
from pathlib import Path

from product import DOCUMENTS, GENERATED, LINKED, PROGRAMS, ROOT, TOOLS
from programs import keep_symbols, strip


def stage(build, out, signer):
    """Copies the programs without their symbols, which go to a folder of their own, named by build identifier."""
    files = out / "files"
    for arch, tool in TOOLS.items():
        to = files / arch
        to.mkdir(parents=True)
        for name, place in PROGRAMS.items():
            source = build / arch / place
            strip(tool, source, to / name)
            keep_symbols(tool, source, to / name, out / "debug" / arch)
            if signer:
                signer.sign(to / name)
        shutil.copy(ROOT / "server/Qvx.manifest", to)
    for name, source in DOCUMENTS.items():
        shutil.copy(ROOT / source, files / name)
    shutil.copytree(build / "docs", files / "docs")
    shutil.copytree(ROOT / "samples", files / "samples", ignore=shutil.ignore_patterns("ado"))
    (files / "include").mkdir()
    for name in GENERATED:
        shutil.copy(build / "x64/typelib/generated" / name, files / "include")
    (files / "licenses").mkdir()
    for name, (package, _) in LINKED.items():
        shutil.copy(Path("/usr/share/doc") / package / "copyright", files / "licenses" / f"{name}.txt")


def packed(folder):
    """Returns the files of a folder by name, in order."""
    return {p.relative_to(folder).as_posix(): p for p in sorted(folder.rglob("*")) if p.is_file()}
