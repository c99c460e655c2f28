# Compares the grid with the tables of widely used toolkits, natively, and with the system's list view in a Windows
# process; and the archivers with the distribution's; and a form of many
# controls with one of many of the system's windows.
# shellcheck shell=bash

qvx_bench() {
  if [[ ${1:-} == archives ]]; then
    shift
    need "${packages_bench_archives[@]}"
    bash bench/archives.sh "$@"
    return
  fi
  if [[ ${1:-} == form ]]; then
    shift
    bench_form "$@"
    return
  fi
  need "${packages_bench[@]}"
  bash bench/run.sh "$@"
}

bench_form() {
  build x64 --target qvx_server bench_form || die "The benchmark was not built."
  use_display virtual
  start_wine
  run_windows 600 build/x64/bench/bench_form.exe "$@"
}
