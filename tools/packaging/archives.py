"""Zip archives whose bytes depend only on their content and the time of the commit."""

import zipfile
from datetime import datetime, timezone


def write_archive(path, entries, seconds):
    """`entries` has bytes by name."""
    time = datetime.fromtimestamp(seconds, timezone.utc).timetuple()[:6]
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name, data in entries.items():
            entry = zipfile.ZipInfo(name, time)
            entry.external_attr = 0o644 << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, data)
