"""Makes what is downloaded from the builds of both widths, or checks what was made.

    packaging make BUILD OUT VERSION SECONDS URL [CERTIFICATE PASSWORD-FILE TIMESTAMP]
        BUILD has the builds x64 and x86; SECONDS is the time of the commit; URL is where it will be downloaded from.
    packaging setups TO VERSION SECONDS FILES       only the setup programs of that version, of the folder FILES
    packaging check OUT VERSION [CERTIFICATE.pem]   prints a line for each check and fails when one does
    packaging again BUILD OUT ARCH                  fails unless another build of the server gives the packaged bytes
    packaging sign CERTIFICATE PASSWORD-FILE TIMESTAMP PROGRAM

The same commit gives the same bytes: archives are sorted and bear the time of the commit. Only signatures differ.
"""

import shutil
import sys
from pathlib import Path

import archives
import bill
import managers
import nuget
import setup
from product import PROGRAMS, TOOLS
from programs import strip
from signing import Signer
from stage import packed, stage


def bytes_of(folder, below):
    return {f"{below}/{name}": path.read_bytes() for name, path in packed(folder).items()}


def make(build, out, version, seconds, url, signer):
    shutil.rmtree(out, ignore_errors=True)
    stage(build, out, signer)
    files = out / "files"
    bill.write_bill(files, version, seconds)
    archive = out / f"Qvx-{version}.zip"
    archives.write_archive(archive, bytes_of(files, archive.stem), seconds)
    archives.write_archive(out / f"Qvx-{version}-debug.zip", bytes_of(out / "debug", f"Qvx-{version}-debug"), seconds)
    setups = setup.make_setups(out, files, version, seconds, signer, out / "setup")
    nuget.make_nuget(out, files, version, seconds)
    managers.write_manifests(out, version, url, setups[0], archive)
    made = sorted(p for p in out.glob("Qvx[-.]*"))
    (out / "SHA256SUMS").write_text("".join(f"{managers.sum_of(p)}  {p.name}\n" for p in made), encoding="ascii")


def check(out, version, certificate):
    # These need packages that making does not need.
    import checks
    outcomes = [outcome for kind in checks.ALL for outcome in kind(out, version)]
    if certificate:
        outcomes += checks.signatures(out, version, certificate)
    for name, good in outcomes:
        print("ok" if good else "FAILED", name)
    return all(good for _, good in outcomes)


def main():
    match sys.argv[1:]:
        case ["make", build, out, version, seconds, url, *signing]:
            signer = Signer(Path(signing[0]), Path(signing[1]), signing[2]) if signing else None
            make(Path(build), Path(out), version, int(seconds), url, signer)
        case ["setups", to, version, seconds, files]:
            Path(to).mkdir(parents=True, exist_ok=True)
            setup.make_setups(Path(to), Path(files), version, int(seconds), None, Path(to) / "setup")
        case ["again", build, out, arch]:
            again = Path(out) / "again.ocx"
            strip(TOOLS[arch], Path(build) / PROGRAMS["Qvx.ocx"], again)
            same = again.read_bytes() == (Path(out) / "files" / arch / "Qvx.ocx").read_bytes()
            print("the same bytes" if same else "OTHER BYTES")
            sys.exit(not same)
        case ["check", out, version, *certificate]:
            sys.exit(not check(Path(out), version, *certificate or [None]))
        case ["sign", certificate, password_file, timestamp, program]:
            Signer(Path(certificate), Path(password_file), timestamp).sign(Path(program))
        case _:
            sys.exit(__doc__)


if __name__ == "__main__":
    main()
