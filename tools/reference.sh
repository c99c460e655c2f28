# Writes the reference of properties, methods and events from the help strings of the public interface.
# shellcheck shell=bash

qvx_reference() {
  need python3
  python3 tools/reference.py typelib/Qvx.idl >docs/reference.md
  say "Wrote docs/reference.md"
}
