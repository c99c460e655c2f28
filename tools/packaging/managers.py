"""Manifests for the package managers that people install with: winget, Chocolatey and Scoop."""

import hashlib
import json
from xml.sax.saxutils import escape

from product import SUMMARY, TAGS, VENDOR

WINGET_SCHEMA = "1.6.0"


def sum_of(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def yaml(kind, version, lines):
    head = [f"PackageIdentifier: {VENDOR}.Qvx", f"PackageVersion: {version}"]
    tail = [f"ManifestType: {kind}", f"ManifestVersion: {WINGET_SCHEMA}"]
    return "\n".join([*head, *lines, *tail]) + "\n"


def winget(version, url, setup):
    """Returns the three files that winget's repository holds for a version."""
    installers = []
    for scope, switch, extra in (("user", "/CurrentUser", []),
                                 ("machine", "/AllUsers", ["  ElevationRequirement: elevatesSelf"])):
        installers += ["- Architecture: x86", f"  Scope: {scope}", f"  InstallerUrl: {url}/{setup.name}",
                       f"  InstallerSha256: {sum_of(setup).upper()}", "  InstallerSwitches:", f"    Custom: {switch}",
                       *extra]
    name = f"{VENDOR}.Qvx"
    return {
        f"{name}.yaml": yaml("version", version, ["DefaultLocale: en-US"]),
        f"{name}.installer.yaml": yaml("installer", version, [
            "InstallerType: nullsoft", "InstallModes:", "- interactive", "- silent", "UpgradeBehavior: install",
            "ExpectedReturnCodes:",
            *(line for code, response in ((1, "cancelledByUser"), (3, "downgrade"), (4, "fileInUse"))
              for line in (f"- InstallerReturnCode: {code}", f"  ReturnResponse: {response}")),
            "ProductCode: Qvx", "Installers:", *installers]),
        f"{name}.locale.en-US.yaml": yaml("defaultLocale", version, [
            "PackageLocale: en-US", f"Publisher: {VENDOR}", "PackageName: Qvx", "License: MIT",
            f"ShortDescription: '{SUMMARY}'", "Tags:", *(f"- {tag}" for tag in TAGS)]),
    }


def chocolatey(version, url, setup):
    return {
        "qvx.nuspec": f"""<?xml version="1.0" encoding="utf-8"?>
<package xmlns="http://schemas.microsoft.com/packaging/2015/06/nuspec.xsd">
  <metadata>
    <id>qvx</id>
    <version>{version}</version>
    <title>Qvx</title>
    <authors>{VENDOR}</authors>
    <projectUrl>{escape(url)}</projectUrl>
    <tags>{" ".join(TAGS)}</tags>
    <summary>{escape(SUMMARY)}</summary>
    <description>{escape(SUMMARY)}. Installs the controls of both widths for all users.</description>
  </metadata>
  <files>
    <file src="tools\\**" target="tools" />
  </files>
</package>
""",
        "tools/chocolateyinstall.ps1": f"""$ErrorActionPreference = 'Stop'
$arguments = @{{
  packageName    = 'qvx'
  fileType       = 'exe'
  url            = '{url}/{setup.name}'
  checksum       = '{sum_of(setup)}'
  checksumType   = 'sha256'
  silentArgs     = '/S /AllUsers'
  validExitCodes = @(0)
}}
Install-ChocolateyPackage @arguments
""",
        "tools/chocolateyuninstall.ps1": """$ErrorActionPreference = 'Stop'
foreach ($key in Get-UninstallRegistryKey -SoftwareName 'Qvx') {
  $arguments = @{
    packageName    = 'qvx'
    fileType       = 'exe'
    file           = $key.UninstallString.Trim('"')
    silentArgs     = '/S'
    validExitCodes = @(0)
  }
  Uninstall-ChocolateyPackage @arguments
}
""",
    }


def scoop(version, url, archive):
    register = 'Start-Process regsvr32 -Wait -ArgumentList "/s{} /n /i:user `"$dir\\{}\\Qvx.ocx`""'
    widths = {}
    for name, arch in (("64bit", "x64"), ("32bit", "x86")):
        widths[name] = {"bin": f"{arch}\\qvxhost.exe",
                        "shortcuts": [[f"{arch}\\qvxhost.exe", "Qvx forms designer", "--design"]],
                        "post_install": register.format("", arch), "pre_uninstall": register.format(" /u", arch)}
    return {"qvx.json": json.dumps({
        "version": version, "description": SUMMARY, "homepage": url, "license": "MIT",
        "url": f"{url}/{archive.name}", "hash": sum_of(archive), "extract_dir": archive.stem,
        "architecture": widths}, indent=4) + "\n"}


def write_manifests(out, version, url, setup, archive):
    for manager, files in (("winget", winget(version, url, setup)), ("chocolatey", chocolatey(version, url, setup)),
                           ("scoop", scoop(version, url, archive))):
        for name, text in files.items():
            path = out / "manifests" / manager / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
