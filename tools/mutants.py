#!/usr/bin/env python3
"""Seeds small faults into the rules and tells which of them the native tests of their component let pass.

Works on a copy of the tree in build/mutants/. Each mutant changes one place in one file: the component's test program is
built with it and run, and the file is restored. A mutant is killed when a test fails, the program crashes or does not end in
time; one that does not compile does not count. A survivor is a place where a fault would go unnoticed, or a change that makes
no difference: the list in tools/mutants.accepted says which survivors are known to be of the second kind, and why. Files that
it names as a whole are left alone.
"""

import argparse
import json
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutants"
TREE = WORK / "tree"
BUILD = WORK / "native"
ACCEPTED = ROOT / "tools" / "mutants.accepted"
WINDOWS_SOURCE = re.compile(r"_(window|control|dialog|object|gdi|win32)\.cpp$|/main\.cpp$")


@dataclass(frozen=True)
class Mutant:
    path: str  # relative to the root
    line: int  # counted from 1
    start: int  # in the line
    end: int
    replacement: str

    def changed(self, text):
        return text[: self.start] + self.replacement + text[self.end :]


def components():
    """The components that have native tests, with their folders, in the order of their layers."""
    declared = re.findall(r"^\s*qvx_component\((\w+) ([\w/]+)", (ROOT / "CMakeLists.txt").read_text(), re.M)
    return {name: folder for name, folder in declared if (ROOT / "tests" / "unit" / name).is_dir()}


# The replacements. Binary operators have blanks around them in this tree, which distinguishes them from templates,
# pointers and references.
SWAPS = [
    (re.compile(r"(?<= )(<|<=|>|>=|==|!=)(?= )"), {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}),
    (re.compile(r"(?<= )(&&|\|\|)(?= )"), {"&&": "||", "||": "&&"}),
    (re.compile(r"(?<= )([-+*/%])(?= )"), {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*"}),
    (re.compile(r"(?<= )(\+=|-=)(?= )"), {"+=": "-=", "-=": "+="}),
    (re.compile(r"(\+\+|--)"), {"++": "--", "--": "++"}),
    (re.compile(r"\b(true|false)\b"), {"true": "false", "false": "true"}),
    (re.compile(r"\bstd::(min|max)\b"), {"std::min": "std::max", "std::max": "std::min"}),
    (re.compile(r"\b(break|continue);"), {"break;": ";", "continue;": ";"}),
    (re.compile(r"(?<![\w!])!(?=[\w(*])"), {"!": ""}),
]
NUMBER = re.compile(r"(?<![\w.'])\d+(?![\w.'])")
STATEMENT = re.compile(r"^\s*(?!return\b|break\b|continue\b|throw\b|using\b|else\b|case\b|default\b|delete\b)"
                       r"[\w:.>()*\[\]-]+(?:\([^;]*\)|(?: [-+|&]?= [^;]*)|\+\+|--);$")
DECLARATION = re.compile(r"^\s*(const |auto |int |bool |static |constexpr |[A-Z]\w*(::\w+)*(<.*>)?[&*]? \w+[ ;({=])")
UNTOUCHED = re.compile(r"^\s*(#|template\b|namespace\b|class\b|struct\b|enum\b|public:|private:)|\boperator\b|\bassert\(|static_assert")


def masked(text):
    """The text with comments, strings and characters blanked out, at the same places."""
    pattern = r'//[^\n]*|/\*.*?\*/|u?R"\(.*?\)"|u?"(?:\\.|[^"\\\n])*"|(?<![0-9a-fA-F])u?\'(?:\\.|[^\'\\\n])+\''
    return re.sub(pattern, lambda found: re.sub(r"[^\n]", " ", found.group()), text, flags=re.S)


def mutants_of(path):
    text = (TREE / path).read_text()
    found = []
    for line_number, line in enumerate(masked(text).split("\n"), 1):
        if UNTOUCHED.search(line):
            continue

        def add(start, end, replacement):
            found.append(Mutant(path, line_number, start, end, replacement))

        for pattern, swaps in SWAPS:
            for match in pattern.finditer(line):
                add(match.start(), match.end(), swaps[match.group()])
        for match in NUMBER.finditer(line):
            # A large number is a measurement, and a fraction of a pixel more makes no difference.
            number = int(match.group())
            add(match.start(), match.end(), str(number + (1 if number < 100 else number // 2)))
        if STATEMENT.match(line) and not DECLARATION.match(line):
            indent = len(line) - len(line.lstrip())
            add(indent, len(line), ";")
    return found


def key_of(mutant, line):
    """Returns the key of an accepted survivor: its text, so that it is still recognised when lines move."""
    return f"{mutant.path}: {line.strip()} => {mutant.changed(line).strip()}"


def accepted():
    """Returns reasons by key. The file has one key per line and its reason, indented, on the next line."""
    reasons, key = {}, None
    for line in ACCEPTED.read_text().splitlines() if ACCEPTED.exists() else []:
        if line.startswith("    ") and key:
            reasons[key] = line.strip()
        elif line and not line.startswith("#"):
            key = line
    return reasons


def copy_tree():
    """Copies only changed files, so that the next run builds little."""
    WORK.mkdir(parents=True, exist_ok=True)
    listed = subprocess.run(["git", "-C", str(ROOT), "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                            check=True, capture_output=True).stdout.decode().split("\0")
    wanted = {name for name in listed if name and (ROOT / name).is_file()}
    for name in wanted:
        source, target = ROOT / name, TREE / name
        if not target.exists() or target.read_bytes() != source.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(source, target)
    for left in [path for path in TREE.rglob("*") if path.is_file() and str(path.relative_to(TREE)) not in wanted]:
        left.unlink()


def ninja(target, jobs, mutated=False):
    """Builds a target. Restored files come from the compiler's cache; mutants are not stored in it."""
    environment = dict(os.environ, CCACHE_BASEDIR=str(TREE), CCACHE_NOHASHDIR="true")
    if mutated:
        environment["CCACHE_READONLY"] = "1"
    return subprocess.run(["ninja", "-C", str(BUILD), f"-j{jobs}", target], env=environment, capture_output=True, text=True)


class Tests:
    """A test program, whose quick tests run first: most mutants do not get past them."""

    def __init__(self, program):
        self.program = program
        report = WORK / "times.json"
        self.limit = 600
        before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        if self.run(f"--gtest_output=json:{report}"):
            sys.exit(f"{program.name} fails without any mutant.")
        self.limit = 10 + 5 * int(resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before)
        suites = json.loads(report.read_text())["testsuites"]
        slow = [f"{suite['name']}.{test['name']}"
                for suite in suites for test in suite["testsuite"] if float(test["time"].rstrip("s")) > 0.1]
        self.rounds = [["--gtest_filter=-" + ":".join(slow)]] + ([["--gtest_filter=" + ":".join(slow)]] if slow else [])

    def bound(self):
        """Limits the processor time, since the machine may be busy, and the memory that an endless loop may fill."""
        resource.setrlimit(resource.RLIMIT_CPU, (self.limit, self.limit + 1))
        resource.setrlimit(resource.RLIMIT_AS, (4 << 30, 4 << 30))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    def run(self, *arguments):
        """Returns the exit code of the program, or minus the signal that ended it."""
        command = [str(self.program), "--gtest_brief=1", "--gtest_fail_fast", *arguments]
        try:
            return subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, timeout=1200, cwd=WORK,
                                  preexec_fn=self.bound).returncode
        except subprocess.TimeoutExpired:
            return -signal.SIGXCPU

    def pass_or_not(self):
        """Returns whether the tests pass, and whether they ended in time."""
        for arguments in self.rounds:
            if code := self.run(*arguments):
                return False, code != -signal.SIGXCPU
        return True, True


def try_component(name, folder, options, reasons):
    """Returns the number of survivors without a reason."""
    target = f"unit_{name}"
    built = ninja(target, options.jobs)
    if built.returncode:
        sys.exit(built.stdout[-4000:] + f"\n{target} does not build.")
    tests = Tests(BUILD / "tests" / target)

    sources = sorted((TREE / folder).glob("*.cpp")) + (sorted((TREE / folder).glob("*.h")) if options.headers else [])
    paths = [str(source.relative_to(TREE)) for source in sources]
    candidates = [mutant for path in paths
                  if not WINDOWS_SOURCE.search(path) and path not in reasons for mutant in mutants_of(path)]
    random.Random(f"{options.seed} {name}").shuffle(candidates)
    survived = WORK / f"{name}.survived"
    if options.again:
        last = survived.read_text().splitlines() if survived.exists() else []
        candidates = [mutant for mutant in candidates
                      if key_of(mutant, (TREE / mutant.path).read_text().split("\n")[mutant.line - 1]) in last]

    killed = slow = unbuilt = 0
    survivors, known = [], []
    for mutant in candidates:
        if killed + len(survivors) + len(known) == options.count:
            break
        file = TREE / mutant.path
        original = file.read_text()
        lines = original.split("\n")
        line = lines[mutant.line - 1]
        lines[mutant.line - 1] = mutant.changed(line)
        file.write_text("\n".join(lines))
        try:
            if ninja(target, options.jobs, mutated=True).returncode:
                unbuilt += 1
                continue
            passed, ended = tests.pass_or_not()
        finally:
            file.write_text(original)
        if not passed:
            killed += 1
            slow += not ended
        else:
            key = key_of(mutant, line)
            (known if key in reasons else survivors).append((mutant, line))
            if key not in reasons:
                print(f"{mutant.path}:{mutant.line}: survived\n  - {line.strip()}\n  + {mutant.changed(line).strip()}",
                      flush=True)
    survived.write_text("".join(key_of(*survivor) + "\n" for survivor in survivors))
    ninja(target, options.jobs)
    tried = killed + len(survivors) + len(known)
    print(f"{name}: {tried} mutants of {len(candidates)} places, {killed} killed ({slow} by the time limit), "
          f"{len(survivors)} survived, {len(known)} accepted; {unbuilt} more did not compile", flush=True)
    return len(survivors)


def main():
    every = components()
    parser = argparse.ArgumentParser(prog="./qvx mutants", description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("component", nargs="*", help=f"of {', '.join(every)}; all when none is named")
    parser.add_argument("--seed", default="1", help="another one chooses other places (default: 1)")
    parser.add_argument("--count", type=int, default=40, help="mutants a component (default: 40)")
    parser.add_argument("--again", action="store_true", help="only what has survived the last run")
    parser.add_argument("--headers", action="store_true", help="also in headers, which builds more for each of them")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="compilers at a time")
    options = parser.parse_args()
    unknown = [name for name in options.component if name not in every]
    if unknown:
        parser.error(f"there is no component {unknown[0]} with native tests")

    copy_tree()
    configured = subprocess.run(
        ["cmake", "-S", str(TREE), "-B", str(BUILD), "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
         "-DCMAKE_CXX_FLAGS=-O0 -w -D_GLIBCXX_ASSERTIONS", "-DQVX_SANITIZE=OFF"], capture_output=True, text=True)
    if configured.returncode:
        sys.exit(configured.stderr)
    reasons = accepted()
    survivors = sum(try_component(name, every[name], options, reasons) for name in options.component or every)
    sys.exit(1 if survivors else 0)


if __name__ == "__main__":
    main()
