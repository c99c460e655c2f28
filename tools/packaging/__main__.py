#!/usr/bin/env python3
"""Makes what is downloaded from the builds of both widths, or checks what was made.

    package.py make BUILD OUT VERSION SECONDS    BUILD has the builds x64 and x86; SECONDS is the time of the commit
    package.py check OUT VERSION                 prints a line for each check and fails when one does
    package.py again BUILD OUT ARCH              fails unless another build of the server gives the packaged bytes

The same commit gives the same bytes: archives are sorted and bear the time of the commit.
"""

import hashlib
import json
import re
import shutil
import struct
import subprocess
import sys
import zipfile
from datetime import datetime, timezone
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
TOOLS = {"x64": "x86_64-w64-mingw32", "x86": "i686-w64-mingw32"}
# Where each file is in a build; files of the source tree have the name in the package that they have there.
PROGRAMS = {"Qvx.ocx": "server/Qvx.ocx", "qvxhost.exe": "qvxhost.exe", "PkZip.exe": "PkZip.exe",
            "PkunZip.exe": "PkunZip.exe", "QvxAdo.dll": "samples/ado/QvxAdo.dll"}
UNVERSIONED = ("QvxAdo.dll",)  # a part of a sample
DOCUMENTS = ("LICENSE", "CHANGELOG.md", "README.md")
# What is linked into the programs: the distribution's package that it comes from, and its licence in SPDX's terms.
LINKED = {
    "zlib": ("libz-mingw-w64", "Zlib"),
    "gcc-runtime": ("gcc-mingw-w64-base", "GPL-3.0-or-later WITH GCC-exception-3.1"),
    "mingw-w64-runtime": ("mingw-w64-common", "ZPL-2.1"),
}
TIME, SYMBOL_COUNT, OPTIONAL, CHECKSUM, FLAGS = 8, 16, 24, 88, 94  # offsets in a program's headers
HIGH_ENTROPY, DYNAMIC_BASE, NX = 0x20, 0x40, 0x100


def run(*command):
    return subprocess.run([str(part) for part in command], check=True, capture_output=True).stdout


class Program:
    """The headers of a Windows program or library."""

    def __init__(self, path):
        self.data = path.read_bytes()
        self.header = struct.unpack_from("<I", self.data, 0x3C)[0]
        self.wide = self.word(self.header + OPTIONAL, "<H") == 0x20B

    def word(self, offset, kind="<I"):
        return struct.unpack_from(kind, self.data, offset)[0]

    def has_symbols(self):
        # Where there are none, the 32-bit tools leave the position of an empty table.
        return self.word(self.header + SYMBOL_COUNT) != 0

    def time(self):
        return self.word(self.header + TIME)

    def flags(self):
        return self.word(self.header + FLAGS, "<H")

    def build_id(self):
        at = self.data.find(b"RSDS")
        return self.data[at + 4:at + 20].hex() if at >= 0 else ""


def strip(tool, source, to):
    """Copies a program without its symbols, and without the time at which that is done."""
    run(f"{tool}-strip", "--strip-all", "-o", to, source)
    data = bytearray(to.read_bytes())
    header = struct.unpack_from("<I", data, 0x3C)[0]
    struct.pack_into("<I", data, header + TIME, 0)
    # The checksum adds all words of the file, itself excepted.
    struct.pack_into("<I", data, header + CHECKSUM, 0)
    total = sum(struct.unpack(f"<{len(data) // 2}H", data[:len(data) & ~1])) + (data[-1] if len(data) % 2 else 0)
    while total >> 16:
        total = (total & 0xFFFF) + (total >> 16)
    struct.pack_into("<I", data, header + CHECKSUM, total + len(data))
    to.write_bytes(data)


def stage(build, out):
    """Copies the programs without their symbols, which go to a folder of their own, named by build identifier."""
    for arch, tool in TOOLS.items():
        to = out / "files" / arch
        to.mkdir(parents=True)
        for name, place in PROGRAMS.items():
            source = build / arch / place
            kept = out / "debug" / arch / f"{name}.{Program(source).build_id()}.debug"
            kept.parent.mkdir(parents=True, exist_ok=True)
            run(f"{tool}-objcopy", "--only-keep-debug", source, kept)
            strip(tool, source, to / name)
        shutil.copy(ROOT / "server/Qvx.manifest", to)
    files = out / "files"
    for name in DOCUMENTS:
        shutil.copy(ROOT / name, files)
    shutil.copytree(ROOT / "docs", files / "docs")
    shutil.copytree(ROOT / "samples", files / "samples", ignore=shutil.ignore_patterns("ado"))
    (files / "include").mkdir()
    for name in ("Qvx.h", "Qvx_i.c", "Qvx.tlb"):
        shutil.copy(build / "x64/typelib/generated" / name, files / "include")
    (files / "licenses").mkdir()
    for name, (package, _) in LINKED.items():
        shutil.copy(Path("/usr/share/doc") / package / "copyright", files / "licenses" / f"{name}.txt")


def write_bill(files, version, seconds):
    """A bill of materials in SPDX's JSON form."""
    created = datetime.fromtimestamp(seconds, timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")
    packages = [{"SPDXID": "SPDXRef-Qvx", "name": "Qvx", "versionInfo": version, "licenseConcluded": "MIT",
                 "licenseDeclared": "MIT", "supplier": "Organization: Orvane", "downloadLocation": "NOASSERTION",
                 "copyrightText": "NOASSERTION", "filesAnalyzed": False}]
    relations = [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
                  "relatedSpdxElement": "SPDXRef-Qvx"}]
    for name, (package, licence) in LINKED.items():
        found = run("dpkg-query", "-W", "-f", "${Version}", package).decode()
        packages.append({"SPDXID": f"SPDXRef-{name}", "name": name, "versionInfo": found, "licenseConcluded": licence,
                         "licenseDeclared": licence, "supplier": "Organization: Debian",
                         "downloadLocation": "NOASSERTION", "copyrightText": "NOASSERTION", "filesAnalyzed": False})
        relations.append({"spdxElementId": "SPDXRef-Qvx", "relationshipType": "STATIC_LINK",
                          "relatedSpdxElement": f"SPDXRef-{name}"})
    entries = []
    for number, path in enumerate(sorted(p for p in files.rglob("*") if p.is_file())):
        identity = f"SPDXRef-File-{number}"
        data = path.read_bytes()
        entries.append({"SPDXID": identity, "fileName": "./" + path.relative_to(files).as_posix(),
                        "checksums": [{"algorithm": kind, "checksumValue": hashlib.new(kind, data).hexdigest()}
                                      for kind in ("SHA1", "SHA256")],
                        "licenseConcluded": "NOASSERTION", "copyrightText": "NOASSERTION"})
        relations.append({"spdxElementId": "SPDXRef-Qvx", "relationshipType": "CONTAINS",
                          "relatedSpdxElement": identity})
    digest = hashlib.sha256(json.dumps(entries).encode()).hexdigest()
    bill = {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
            "name": f"Qvx-{version}", "documentNamespace": f"https://spdx.org/spdxdocs/Qvx-{version}-{digest[:16]}",
            "creationInfo": {"created": created, "creators": ["Organization: Orvane", "Tool: package.py"]},
            "packages": packages, "files": entries, "relationships": relations}
    (files / "Qvx.spdx.json").write_text(json.dumps(bill, indent=2) + "\n", encoding="utf-8")


def write_archive(path, folder, seconds):
    time = datetime.fromtimestamp(seconds, timezone.utc).timetuple()[:6]
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for file in sorted(p for p in folder.rglob("*") if p.is_file()):
            entry = zipfile.ZipInfo(f"{path.stem}/{file.relative_to(folder).as_posix()}", time)
            entry.external_attr = 0o644 << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, file.read_bytes())


def make(build, out, version, seconds):
    shutil.rmtree(out, ignore_errors=True)
    stage(build, out)
    write_bill(out / "files", version, seconds)
    write_archive(out / f"Qvx-{version}.zip", out / "files", seconds)
    write_archive(out / f"Qvx-{version}-debug.zip", out / "debug", seconds)
    sums = [f"{hashlib.sha256(p.read_bytes()).hexdigest()}  {p.name}\n" for p in sorted(out.glob("Qvx-*"))]
    (out / "SHA256SUMS").write_text("".join(sums), encoding="ascii")


def checks(out, version):
    """Yields the name and the outcome of each check."""
    files = out / "files"
    for arch in TOOLS:
        for name in PROGRAMS:
            path = files / arch / name
            program = Program(path)
            wanted = DYNAMIC_BASE | NX | (HIGH_ENTROPY if arch == "x64" else 0)
            yield f"{arch} {name}: width", program.wide == (arch == "x64")
            yield f"{arch} {name}: protection", program.flags() & wanted == wanted
            yield f"{arch} {name}: no symbols, no time", not program.has_symbols() and program.time() == 0
            words = program.data + program.data.decode("utf-16-le", "ignore").encode("ascii", "ignore")
            found = re.search(rb"/home/|/tmp/|/usr/|/build/|" + re.escape(str(ROOT)).encode(), words)
            yield f"{arch} {name}: no paths", found is None
            number = "\0".join(version).encode() + b"\0\0"
            yield f"{arch} {name}: version", name in UNVERSIONED or number in program.data
            yield f"{arch} {name}: symbols kept", (
                out / "debug" / arch / f"{name}.{program.build_id()}.debug").is_file() and program.build_id() != ""
        yield f"{arch} Qvx.ocx: below 2 MB", (files / arch / "Qvx.ocx").stat().st_size < 2_000_000
    manifest = (files / "x64/Qvx.manifest").read_text(encoding="utf-8")
    declared = set(re.findall(r'progid="Qvx\.(\w+)"', manifest))
    described = "".join(p.read_text(encoding="utf-8") for p in sorted((ROOT / "typelib").glob("*.idl")))
    classes = {name for attributes, name in re.findall(r"\[([^\]]*)\]\s*coclass (\w+)", described)
               if "noncreatable" not in attributes}
    yield "manifest: all classes", declared == classes
    with zipfile.ZipFile(out / f"Qvx-{version}.zip") as archive:
        packed = {name.split("/", 1)[1]: archive.read(name) for name in archive.namelist()}
    there = {p.relative_to(files).as_posix(): p.read_bytes() for p in files.rglob("*") if p.is_file()}
    yield "archive: holds the files", packed == there
    yield "include: no paths", not any(str(ROOT).encode() in data for data in there.values())
    bill = json.loads((files / "Qvx.spdx.json").read_text(encoding="utf-8"))
    listed = {entry["fileName"][2:]: entry["checksums"][1]["checksumValue"] for entry in bill["files"]}
    yield "bill: lists the files", listed == {
        name: hashlib.sha256(data).hexdigest() for name, data in there.items() if name != "Qvx.spdx.json"}
    yield "bill: licences are there", all((files / "licenses" / f"{name}.txt").stat().st_size > 500 for name in LINKED)
    sums = dict(reversed(line.split("  ")) for line in (out / "SHA256SUMS").read_text(encoding="ascii").splitlines())
    yield "sums", sums == {p.name: hashlib.sha256(p.read_bytes()).hexdigest() for p in out.glob("Qvx-*")}


def main():
    match sys.argv[1:]:
        case ["make", build, out, version, seconds]:
            make(Path(build), Path(out), version, int(seconds))
        case ["again", build, out, arch]:
            again = Path(out) / "again.ocx"
            strip(TOOLS[arch], Path(build) / PROGRAMS["Qvx.ocx"], again)
            same = again.read_bytes() == (Path(out) / "files" / arch / "Qvx.ocx").read_bytes()
            print("the same bytes" if same else "OTHER BYTES")
            sys.exit(not same)
        case ["check", out, version]:
            failed = [name for name, good in checks(Path(out), version) if not good]
            print("\n".join(f"FAILED: {name}" for name in failed) or "all good")
            sys.exit(bool(failed))
        case _:
            sys.exit(__doc__)


if __name__ == "__main__":
    main()
