"""Signs programs with the certificate that the caller names."""

import os
import sys
from dataclasses import dataclass
from pathlib import Path

from programs import run


@dataclass
class Signer:
    """A PKCS #12 file, the file with its password, and the address of a time-stamp service or nothing."""

    certificate: Path
    password_file: Path
    timestamp: str = ""

    def sign(self, path):
        signed = path.with_name(path.name + ".signed")
        service = ["-ts", self.timestamp] if self.timestamp else []
        run("osslsigncode", "sign", "-pkcs12", self.certificate, "-readpass", self.password_file, "-h", "sha256",
            "-n", "Qvx", *service, "-in", path, "-out", signed)
        os.replace(signed, path)

    def arguments(self):
        """A command that signs the file that is named after it."""
        return [sys.executable, str(Path(__file__).parent), "sign", str(self.certificate), str(self.password_file),
                self.timestamp]
