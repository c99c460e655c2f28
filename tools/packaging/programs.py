"""Windows programs: their headers, and removing their symbols."""

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
