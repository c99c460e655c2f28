"""The bill of materials."""

import hashlib
import json
from datetime import datetime, timezone

from product import LINKED, VENDOR
from programs import run


def write_bill(files, version, seconds):
    """A bill of materials in SPDX's JSON form."""
    created = datetime.fromtimestamp(seconds, timezone.utc).strftime("%Y-%m-%dT%H:%M:%SZ")
    packages = [{"SPDXID": "SPDXRef-Qvx", "name": "Qvx", "versionInfo": version, "licenseConcluded": "MIT",
                 "licenseDeclared": "MIT", "supplier": f"Organization: {VENDOR}", "downloadLocation": "NOASSERTION",
                 "copyrightText": "NOASSERTION", "filesAnalyzed": False}]
    relations = [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
                  "relatedSpdxElement": "SPDXRef-Qvx"}]
    for name, (package, licence) in LINKED.items():
        found = run("dpkg-query", "-W", "-f", "${Version}", package).decode()
        packages.append({"SPDXID": f"SPDXRef-{name}", "name": name, "versionInfo": found, "licenseConcluded": licence,
                         "licenseDeclared": licence, "supplier": "Organization: Debian",
                         "downloadLocation": "NOASSERTION", "copyrightText": "NOASSERTION", "filesAnalyzed": False})
        relations.append({"spdxElementId": "SPDXRef-Qvx", "relationshipType": "STATIC_LINK",
                          "relatedSpdxElement": f"SPDXRef-{name}"})
    entries = []
    for number, path in enumerate(sorted(p for p in files.rglob("*") if p.is_file())):
        identity = f"SPDXRef-File-{number}"
        data = path.read_bytes()
        entries.append({"SPDXID": identity, "fileName": "./" + path.relative_to(files).as_posix(),
                        "checksums": [{"algorithm": kind, "checksumValue": hashlib.new(kind, data).hexdigest()}
                                      for kind in ("SHA1", "SHA256")],
                        "licenseConcluded": "NOASSERTION", "copyrightText": "NOASSERTION"})
        relations.append({"spdxElementId": "SPDXRef-Qvx", "relationshipType": "CONTAINS",
                          "relatedSpdxElement": identity})
    digest = hashlib.sha256(json.dumps(entries).encode()).hexdigest()
    bill = {"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
            "name": f"Qvx-{version}", "documentNamespace": f"https://spdx.org/spdxdocs/Qvx-{version}-{digest[:16]}",
            "creationInfo": {"created": created, "creators": [f"Organization: {VENDOR}", "Tool: tools/packaging"]},
            "packages": packages, "files": entries, "relationships": relations}
    (files / "Qvx.spdx.json").write_text(json.dumps(bill, indent=2) + "\n", encoding="utf-8")
