"""Compares the unit that Free Pascal's importer makes of the type library with the library's own listing.

python3 tools/hosts_unit.py LISTING UNIT PLAIN, where UNIT is what samples/pascal/importqvx.pas wrote and PLAIN is the
importer's own unit. Prints a line for each check, as host programs do.
"""
import difflib
import re
import sys


def read(path):
    with open(path, encoding="utf-8", newline="") as file:
        return file.read()


def blocks(listing):
    """The listing's interfaces and classes with the lines of their members, by name."""
    found, members = {}, None
    for line in listing.splitlines():
        heading = re.match(r"(dispinterface|coclass) (\w+) ", line)
        if heading:
            members = found.setdefault(heading.group(2), (heading.group(1), []))[1]
        elif line.startswith("    ") and members is not None:
            members.append(line.strip())
        else:
            members = None
    return found


def report(name, missing):
    print(f"FAILED {name}: {', '.join(missing)}" if missing else f"ok {name}")


def member_declarations(line):
    """What an interface of the unit declares for a member; names that Pascal reserves get an underscore."""
    kind, name = re.match(r"\[-?\d+\] (get|put|putref)? ?\w+ (\w+)\(", line).groups()
    if kind == "get":
        return rf"function Get_{name}_?\b"
    return rf"procedure Set_{name}_?\b" if kind else rf"(function|procedure) {name}_?\b"


def check_interface(name, lines, unit):
    body = re.search(rf"^ {name} = interface\(IDispatch\)(.*?)^  end;", unit, re.S | re.M)
    missing = ["the interface"] if not body else [
        line.split("(")[0] for line in lines if not re.search(member_declarations(line), body.group(1))]
    report(f"{name} has its {len(lines)} members", missing)


def check_events(name, lines, unit):
    """A class's events, and which of their arguments a handler may change."""
    missing = []
    for line in lines:
        event, arguments = re.match(r"\[-?\d+\] void (\w+)\((.*?)\)", line).groups()
        declared = re.search(rf"^  T{name}{event} = procedure\((.*?)\) of object;", unit, re.M)
        wanted = [argument.startswith("in out") for argument in arguments.split(", ") if argument]
        got = declared and [argument.startswith("var ") for argument in declared.group(1).split(";")[1:]]
        if got != wanted or f"property On{event} : T{name}{event} " not in unit:
            missing.append(event)
    report(f"{name} has its {len(lines)} events", missing)


def check_class(name, unit):
    report(f"{name} has a creator and a container",
           [f"{prefix}{name}" for prefix in ("Co", "TAxc") if not re.search(rf"^  {prefix}{name} = Class", unit, re.M)])


def check_corrections(unit, plain):
    """importqvx changes nothing but what the importer gets wrong."""
    changed = [line for line in difflib.ndiff(plain.splitlines(), unit.splitlines()) if line[0] in "+-"]
    report("only help texts and TextMatrix are corrected",
           [line for line in changed if not re.search(r"Col-\d:|TextMatrix|^..//  Imported ", line)])
    continued = re.findall(r"^Col-\d:", plain, re.M)
    report("the importer's own unit is broken where the documentation says",
           [] if len(continued) == 12 else [f"{len(continued)} lines continue a help text"])


def main():
    listing, unit, plain = map(read, sys.argv[1:])
    for name, (kind, lines) in blocks(listing).items():
        if kind == "coclass":
            check_class(name, unit)
        elif name.startswith("__"):
            check_events(name, lines, unit)
        else:
            check_interface(name, lines, unit)
    check_corrections(unit, plain)
    print("done")


main()
