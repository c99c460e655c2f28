# Puts small faults into the rules, to find out which of them no test notices.
# shellcheck shell=bash

qvx_mutants() {
  need_for_build native
  cd "$root"
  nice python3 tools/mutants.py "$@"
}
