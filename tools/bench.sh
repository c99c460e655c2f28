# Compares the grid with the tables of widely used toolkits, natively, and with the system's list view in a Windows
# process; and the archivers with the distribution's.
# shellcheck shell=bash

qvx_bench() {
  if [[ ${1:-} == archives ]]; then
    shift
    need "${packages_bench_archives[@]}"
    bash bench/archives.sh "$@"
    return
  fi
  need "${packages_bench[@]}"
  bash bench/run.sh "$@"
}
