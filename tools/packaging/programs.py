"""Windows programs: their headers, and removing their symbols."""

import hashlib
import struct
import subprocess
import sys

TIME, SYMBOL_COUNT, OPTIONAL, CHECKSUM, FLAGS = 8, 16, 24, 88, 94  # offsets in a program's headers
HIGH_ENTROPY, DYNAMIC_BASE, NX = 0x20, 0x40, 0x100


def run(*command):
    """Returns what a command prints; ends this program with what a failing one says."""
    done = subprocess.run([str(part) for part in command], capture_output=True, check=False)
    if done.returncode:
        sys.exit(f"{' '.join(map(str, command))}\n{(done.stdout + done.stderr).decode(errors='replace')}")
    return done.stdout


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
        at = identity_at(self.data)
        return self.data[at:at + 16].hex() if at >= 0 else ""


def identity_at(data):
    """Returns where a program's build identifier is, or -1."""
    at = data.find(b"RSDS")
    return at + 4 if at >= 0 else -1


def strip(tool, source, to):
    """Copies a program without its symbols and without the time at which that is done.

    Its build identifier becomes one of what is left, so that symbols, which may depend on the compiler's cache, have no
    part in it.
    """
    run(f"{tool}-strip", "--strip-all", "-o", to, source)
    data = bytearray(to.read_bytes())
    header = struct.unpack_from("<I", data, 0x3C)[0]
    struct.pack_into("<I", data, header + TIME, 0)
    struct.pack_into("<I", data, header + CHECKSUM, 0)
    identity = identity_at(data)
    if identity >= 0:
        data[identity:identity + 16] = bytes(16)
        data[identity:identity + 16] = hashlib.sha256(data).digest()[:16]
    # The checksum adds all words of the file, itself excepted.
    total = sum(struct.unpack(f"<{len(data) // 2}H", data[:len(data) & ~1])) + (data[-1] if len(data) % 2 else 0)
    while total >> 16:
        total = (total & 0xFFFF) + (total >> 16)
    struct.pack_into("<I", data, header + CHECKSUM, total + len(data))
    to.write_bytes(data)


def keep_symbols(tool, source, stripped, folder):
    """Writes the symbols of a program into the folder, under its stripped copy's identifier and with it."""
    identity = Program(stripped).build_id()
    kept = folder / f"{stripped.name}.{identity}.debug"
    folder.mkdir(parents=True, exist_ok=True)
    run(f"{tool}-objcopy", "--only-keep-debug", source, kept)
    data = bytearray(kept.read_bytes())
    if (at := identity_at(data)) >= 0:
        data[at:at + 16] = bytes.fromhex(identity)
        kept.write_bytes(data)
