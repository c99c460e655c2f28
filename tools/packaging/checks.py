"""Checks of what was made: each yields the name of a check and its outcome."""

import hashlib
import json
import re
import subprocess
import xml.etree.ElementTree as ElementTree
import zipfile

import yaml
from managers import sum_of
from product import COMPONENTS, LINKED, PROGRAMS, ROOT, TOOLS, UNVERSIONED, component_of
from programs import DYNAMIC_BASE, HIGH_ENTROPY, NX, Program
from stage import packed


def programs(out, version):
    files = out / "files"
    for arch in TOOLS:
        for name in PROGRAMS:
            program = Program(files / arch / name)
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


def contents(out, version):
    files = out / "files"
    manifest = (files / "x64/Qvx.manifest").read_text(encoding="utf-8")
    declared = set(re.findall(r'progid="Qvx\.(\w+)"', manifest))
    described = "".join(p.read_text(encoding="utf-8") for p in sorted((ROOT / "typelib").glob("*.idl")))
    classes = {name for attributes, name in re.findall(r"\[([^\]]*)\]\s*coclass (\w+)", described)
               if "noncreatable" not in attributes}
    yield "manifest: all classes", declared == classes
    with zipfile.ZipFile(out / f"Qvx-{version}.zip") as archive:
        there = {name.split("/", 1)[1]: archive.read(name) for name in archive.namelist()}
    staged = {name: path.read_bytes() for name, path in packed(files).items()}
    yield "archive: holds the files", there == staged
    yield "no paths", not any(str(ROOT).encode() in data for data in staged.values())
    named = {found for name in ("README.md", "docs/installing.md")
             for found in re.findall(r"Qvx[-.](\d+\.\d+\.\d+)", (ROOT / name).read_text(encoding="utf-8"))}
    yield "documents: name this version", named == {version}
    yield "documents: the pages are there", {"docs/index.html", "docs/combogrid.html"} <= staged.keys()
    yield "components: all have files", {component_of(name) for name in staged} == set(COMPONENTS)
    bill = json.loads((files / "Qvx.spdx.json").read_text(encoding="utf-8"))
    listed = {entry["fileName"][2:]: entry["checksums"][1]["checksumValue"] for entry in bill["files"]}
    yield "bill: lists the files", listed == {
        name: hashlib.sha256(data).hexdigest() for name, data in staged.items() if name != "Qvx.spdx.json"}
    yield "bill: licences are there", all((files / "licenses" / f"{name}.txt").stat().st_size > 500 for name in LINKED)


def nuget(out, version):
    with zipfile.ZipFile(out / f"Qvx.{version}.nupkg") as archive:
        there = {name: archive.read(name) for name in archive.namelist()}
    text = {name: data.decode() for name, data in there.items()
            if name.endswith((".targets", ".manifest", ".nuspec", ".rels", ".psmdcp", ".xml"))}
    yield "nuget: well-formed", all(ElementTree.fromstring(data) is not None for data in text.values())
    space = "{http://schemas.microsoft.com/packaging/2013/05/nuspec.xsd}"
    metadata = ElementTree.fromstring(text["Qvx.nuspec"]).find(f"{space}metadata")
    yield "nuget: version", metadata.findtext(f"{space}version") == version
    yield "nuget: its readme is there", metadata.findtext(f"{space}readme") in there
    kinds = set(re.findall(r'Extension="(\w+)"', text["[Content_Types].xml"]))
    bare = set(re.findall(r'PartName="/([^"]+)"', text["[Content_Types].xml"]))
    yield "nuget: every part has a type", all(name.rpartition(".")[2] in kinds or name in bare
                                              for name in there if name != "[Content_Types].xml")
    for name in (name for name in there if name.endswith(".targets")):
        for path in re.findall(r"\$\(MSBuildThisFileDirectory\)([^;\"<]+)", text[name]):
            for width in TOOLS:
                parts = name.split("/")[:-1]
                for part in path.replace("$(QvxWidth)", width).split("\\"):
                    if part == "..":
                        parts.pop()
                    else:
                        parts.append(part)
                target = "/".join(parts)
                yield f"nuget: {name} names {target}", any(n == target or n.startswith(target + "/") for n in there)
    for arch in TOOLS:
        yield f"nuget: {arch} server", there[f"server/{arch}/Qvx.ocx"] == (out / "files" / arch / "Qvx.ocx").read_bytes()


def managers(out, version):
    setup, archive = sum_of(out / f"Qvx-{version}-setup.exe"), sum_of(out / f"Qvx-{version}.zip")
    read = {p.name.split(".")[-2]: yaml.safe_load(p.read_text(encoding="utf-8"))
            for p in (out / "manifests/winget").glob("*.yaml")}
    yield "winget: kinds", {m["ManifestType"] for m in read.values()} == {"version", "installer", "defaultLocale"}
    yield "winget: one version", all((m["PackageIdentifier"], m["PackageVersion"]) == ("Orvane.Qvx", version)
                                     for m in read.values())
    yield "winget: sums", all(entry["InstallerSha256"].lower() == setup for entry in read["installer"]["Installers"])
    yield "winget: scopes", [e["Scope"] for e in read["installer"]["Installers"]] == ["user", "machine"]
    chocolatey = out / "manifests/chocolatey"
    script = (chocolatey / "tools/chocolateyinstall.ps1").read_text(encoding="utf-8")
    yield "chocolatey: sum", f"'{setup}'" in script
    space = "{http://schemas.microsoft.com/packaging/2015/06/nuspec.xsd}"
    described = ElementTree.parse(chocolatey / "qvx.nuspec").getroot()
    yield "chocolatey: version", described.findtext(f"{space}metadata/{space}version") == version
    scoop = json.loads((out / "manifests/scoop/qvx.json").read_text(encoding="utf-8"))
    yield "scoop: version and sum", (scoop["version"], scoop["hash"]) == (version, archive)
    with zipfile.ZipFile(out / f"Qvx-{version}.zip") as packed_files:
        names = set(packed_files.namelist())
    yield "scoop: programs are there", all(
        f"{scoop['extract_dir']}/{width['bin']}".replace("\\", "/") in names
        for width in scoop["architecture"].values())


def sums(out, _version):
    made = dict(reversed(line.split("  ")) for line in (out / "SHA256SUMS").read_text(encoding="ascii").splitlines())
    yield "sums", made == {p.name: sum_of(p) for p in out.glob("Qvx[-.]*")}


def signatures(out, version, certificate):
    """Each program and setup program is signed by the certificate, a PEM file."""
    files = [out / "files" / arch / name for arch in TOOLS for name in PROGRAMS]
    for path in [*files, *out.glob(f"Qvx-{version}-setup*.exe")]:
        done = subprocess.run(["osslsigncode", "verify", "-CAfile", certificate, "-in", path], capture_output=True,
                              check=False)
        yield f"signed: {path.parent.name}/{path.name}", done.returncode == 0


ALL = (programs, contents, nuget, managers, sums)
