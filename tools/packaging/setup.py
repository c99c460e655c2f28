"""The setup programs: one that runs on every Windows, and one for systems that run no 32-bit programs."""

import os
import re
import shlex
import subprocess
import sys

from product import COMPONENTS, PROGRAMS, ROOT, TOOLS, component_of
from stage import packed

WIDTHS = {"": "32", "-x64": "64"}


def windows(name):
    return name.replace("/", "\\")


def probe_class():
    """A class of the library, whose registration tells whose server is registered."""
    described = (ROOT / "server/Qvx.manifest").read_text(encoding="utf-8")
    return re.search(r'clsid="(\{[^"]+\})" progid="Qvx.ComboGrid"', described)[1]


def folders_of(name):
    parts = name.split("/")[:-1]
    return ["/".join(parts[:i]) for i in range(1, len(parts) + 1)]


def write_macros(path, files, listed):
    """Writes what the setup's script includes: for each component, macros that install and remove its files."""
    entries = {name: file for name, file in packed(files).items()} | {"installed.txt": listed}
    lines = [f"!define PROBE_CLASS {probe_class()}", f'!define LICENSE_FILE "{files / "LICENSE"}"']
    for component in COMPONENTS:
        names = [name for name in entries if component_of(name) == component]
        lines.append(f"!macro Install_{component}")
        folder = None
        for name in names:
            place = windows(name).rpartition("\\")[0]
            if place != folder:
                lines.append(f'SetOutPath "$INSTDIR\\{place}"' if place else 'SetOutPath "$INSTDIR"')
                folder = place
            lines.append(f'File "{entries[name]}"')
        lines += ["!macroend", f"!macro Remove_{component}"]
        lines += [f'Delete "$INSTDIR\\{windows(name)}"' for name in names]
        folders = {folder for name in names for folder in folders_of(name)}
        # Only those that are empty are removed; the innermost are first.
        lines += [f'RMDir "$INSTDIR\\{windows(f)}"' for f in sorted(folders, key=lambda f: (-f.count("/"), f))]
        lines.append("!macroend")
    lines.append("!macro EachProgram action")
    for arch in TOOLS:
        for name in PROGRAMS:
            lines += [f'Push "{arch}\\{name}"', "${action}"]
    lines.append("!macroend")
    path.write_text("\n".join(lines) + "\n", encoding="utf-8")


def make_setups(out, files, version, seconds, signer, work):
    work.mkdir(parents=True, exist_ok=True)
    listed = work / "installed.txt"
    listed.write_text("".join(f"{windows(n)}\r\n" for n in [*packed(files), "installed.txt"]), encoding="ascii",
                      newline="")
    macros = work / "files.nsh"
    write_macros(macros, files, listed)
    made = []
    for suffix, width in WIDTHS.items():
        path = out / f"Qvx-{version}-setup{suffix}.exe"
        define = [f"-DVERSION={version}", f"-DWIDTH={width}", f"-DFILES={macros}", f"-DOUT={path}"]
        if signer:
            define.append(f"-DSIGN={shlex.join(signer.arguments())}")
        done = subprocess.run(["makensis", "-V2", "-WX", "-NOCD", *define, str(ROOT / "installer/Qvx.nsi")],
                              cwd=ROOT / "installer", env=os.environ | {"SOURCE_DATE_EPOCH": str(seconds)},
                              capture_output=True, text=True, check=False)
        if done.returncode:
            sys.exit(done.stdout + done.stderr)
        if signer:
            signer.sign(path)
        made.append(path)
    return made
