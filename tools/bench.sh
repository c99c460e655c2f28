# Measuring the grid beside the tables of widely used toolkits, natively, and beside the system's list view in a Windows process.
# shellcheck shell=bash

qvx_bench() {
  need "${packages_bench[@]}"
  bash bench/run.sh "$@"
}
