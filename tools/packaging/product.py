"""What the product consists of: programs, documents, components, and what is linked in."""

from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
TOOLS = {"x64": "x86_64-w64-mingw32", "x86": "i686-w64-mingw32"}
# Where each file is in a build; files of the source tree have the name in the package that they have there.
PROGRAMS = {"Qvx.ocx": "server/Qvx.ocx", "qvxhost.exe": "qvxhost.exe", "PkZip.exe": "PkZip.exe",
            "PkunZip.exe": "PkunZip.exe", "QvxAdo.dll": "samples/ado/QvxAdo.dll",
            "Stock.exe": "samples/c/Stock.exe", "Basket.exe": "samples/cpp/Basket.exe"}
UNVERSIONED = ("QvxAdo.dll", "Stock.exe", "Basket.exe")  # parts of samples
DOCUMENTS = {"LICENSE": "LICENSE", "README.txt": "installer/README.txt"}
GENERATED = ("Qvx.h", "Qvx_i.c", "Qvx.tlb")
# What is linked into the programs: the distribution's package that it comes from, and its licence in SPDX's terms.
LINKED = {
    "zlib": ("libz-mingw-w64", "Zlib"),
    "gcc-runtime": ("gcc-mingw-w64-base", "GPL-3.0-or-later WITH GCC-exception-3.1"),
    "mingw-w64-runtime": ("mingw-w64-common", "ZPL-2.1"),
}
VENDOR = "Orvane"
SUMMARY = "Visual controls for data-entry applications: a grid with pick lists, a checked text box, buttons, backup"
TAGS = ("activex", "com", "grid", "controls", "forms")


def component_of(name):
    """Returns the setup's component that a packaged file belongs to."""
    folder, _, file = name.partition("/")
    if folder in TOOLS:
        if file in ("Qvx.ocx", "Qvx.manifest"):
            return "controls64" if folder == "x64" else "controls32"
        if file in ("PkZip.exe", "PkunZip.exe"):
            return "archivers"
        return "samples" if file in UNVERSIONED else "host"
    if folder in ("samples", "include"):
        return "samples"
    if folder == "docs":
        return "docs"
    return "always"


COMPONENTS = ("always", "controls64", "controls32", "archivers", "host", "samples", "docs")
