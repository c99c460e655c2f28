"""The NuGet package: the server of both widths, beside a program that then needs no registration."""

from xml.sax.saxutils import escape

from archives import write_archive
from product import GENERATED, ROOT, SUMMARY, TAGS, TOOLS, VENDOR

# The parts that every such package has; the parts' kinds are told by their suffixes.
KINDS = {"rels": "application/vnd.openxmlformats-package.relationships+xml",
         "psmdcp": "application/vnd.openxmlformats-package.core-properties+xml"}
SCHEMA = "http://schemas.openxmlformats.org/package/2006"
HEAD = '<?xml version="1.0" encoding="utf-8"?>\n'


def description(version):
    return f"""{HEAD}<package xmlns="http://schemas.microsoft.com/packaging/2013/05/nuspec.xsd">
  <metadata>
    <id>Qvx</id>
    <version>{version}</version>
    <authors>{VENDOR}</authors>
    <license type="expression">MIT</license>
    <description>{escape(SUMMARY)}. Copies the controls beside your program, which uses them without \
registration.</description>
    <readme>README.md</readme>
    <tags>{" ".join(TAGS)}</tags>
    <dependencies>
      <group targetFramework="native0.0" />
      <group targetFramework=".NETFramework4.0" />
      <group targetFramework="net6.0-windows7.0" />
    </dependencies>
  </metadata>
</package>
"""


def content_types(names):
    suffixes = sorted({name.rpartition(".")[2] for name in names if "." in name.rpartition("/")[2]})
    kinds = "".join(f'  <Default Extension="{s}" ContentType="{KINDS.get(s, "application/octet")}" />\n'
                    for s in suffixes)
    bare = "".join(f'  <Override PartName="/{name}" ContentType="application/octet" />\n'
                   for name in names if "." not in name.rpartition("/")[2])
    return f'{HEAD}<Types xmlns="{SCHEMA}/content-types">\n{kinds}{bare}</Types>\n'


def make_nuget(out, files, version, seconds):
    build = ROOT / "installer/nuget"
    properties = "package/services/metadata/core-properties/Qvx.psmdcp"
    entries = {
        "_rels/.rels": f'''{HEAD}<Relationships xmlns="{SCHEMA}/relationships">
  <Relationship Type="http://schemas.microsoft.com/packaging/2010/07/manifest" Target="/Qvx.nuspec" Id="R1" />
  <Relationship Type="{SCHEMA}/relationships/metadata/core-properties" Target="/{properties}" Id="R2" />
</Relationships>
''',
        "Qvx.nuspec": description(version),
        properties: f'''{HEAD}<coreProperties xmlns="{SCHEMA}/metadata/core-properties" \
xmlns:dc="http://purl.org/dc/elements/1.1/">
  <dc:creator>{VENDOR}</dc:creator>
  <dc:description>{escape(SUMMARY)}</dc:description>
  <dc:identifier>Qvx</dc:identifier>
</coreProperties>
''',
        # A package manager imports the files that bear the package's name from these folders.
        "build/native/Qvx.targets": (build / "native.targets").read_bytes(),
        "build/Qvx.targets": (build / "managed.targets").read_bytes(),
        "buildTransitive/Qvx.targets": (build / "managed.targets").read_bytes(),
        "build/Qvx.application.manifest": (build / "application.manifest").read_bytes(),
        "build/Qvx.dependency.manifest": (build / "dependency.manifest").read_bytes(),
        "README.md": (build / "README.md").read_bytes(),
        "LICENSE": (files / "LICENSE").read_bytes(),
    }
    for arch in TOOLS:
        for name in ("Qvx.ocx", "Qvx.manifest"):
            entries[f"server/{arch}/{name}"] = (files / arch / name).read_bytes()
    for name in GENERATED:
        entries[f"include/{name}"] = (files / "include" / name).read_bytes()
    for file in sorted((files / "licenses").iterdir()):
        entries[f"licenses/{file.name}"] = file.read_bytes()
    entries = {name: data.encode() if isinstance(data, str) else data for name, data in entries.items()}
    entries = {"[Content_Types].xml": content_types(entries).encode(), **entries}
    path = out / f"Qvx.{version}.nupkg"
    write_archive(path, entries, seconds)
    return path
