# Compares the grid with the tables of widely used toolkits, natively, and with the system's list view in a Windows
# process; and the archivers with the distribution's; and a form of many controls with one of many of the system's
# windows; and measures what a host does with the library, and the designer's steps.
# shellcheck shell=bash

qvx_bench() {
  case ${1:-} in
    archives)
      shift
      need "${packages_bench_archives[@]}"
      bash bench/archives.sh "$@"
      return
      ;;
    form | host)
      bench_windows "$@"
      return
      ;;
    design)
      build native-release --target bench_design || die "The benchmark was not built."
      build/native-release/bench/bench_design
      return
      ;;
    --quick)
      shift
      need "${packages_bench_quick[@]}"
      bash bench/quick.sh "$@"
      return
      ;;
  esac
  need "${packages_bench[@]}" "${packages_bench_archives[@]}"
  bash bench/run.sh "$@"
}

# bench_windows NAME OPTION...: --quick takes a third of the time, --only=GROUP runs one group of works.
bench_windows() {
  local name=bench_$1
  shift
  build x64 --target "$name" || die "The benchmark was not built."
  use_display virtual
  start_wine
  run_windows 600 "build/x64/bench/$name.exe" "$@"
}
