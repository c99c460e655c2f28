#!/usr/bin/env bash
# Builds the benchmarks, runs them one after another and prints the report.
#
#     bench/run.sh [ROWS] [FILE.md]
#
# ROWS is the largest table (a power of ten from 1000, 100000 when left out), FILE.md where the report goes as well
# (build/bench/report.md when left out). A single work that is likely to take longer than QVX_BENCH_LIMIT seconds (10) is cut.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$root"
rows=${1:-100000}
report=${2:-$root/build/bench/report.md}
limit=${QVX_BENCH_LIMIT:-10}

source tools/common.sh
source tools/packages.sh
source tools/build.sh
source tools/display.sh
source tools/wine.sh

[[ $rows =~ ^[0-9]+$ ]] || die "The number of rows is '$rows'."

build native-release --target bench_rules bench_wx bench_qt || die "The native benchmarks were not built."
build x64 --target qvx_server bench_windows || die "The Windows benchmarks were not built."

# The same kind of display in every run, and no user's mouse over the windows.
use_display virtual
start_wine

results=$root/build/bench
mkdir -p "$results" "$(dirname "$report")"
rm -f "$results"/*.tsv

# run_one NAME COMMAND...: prints its lines of results; those that it printed before it failed or ran out of time still
# count.
run_one() {
  local name=$1 seconds=$SECONDS
  shift
  say "Running $name"
  "$@" >"$results/$name.tsv" 2>"$results/$name.log" </dev/null ||
    warn "$name did not finish; see build/bench/$name.log."
  say "$name took $((SECONDS - seconds)) s"
}

bin=build/native-release/bench
run_one rules timeout 900 "$bin/bench_rules" "--rows=$rows" "--limit=$limit"
run_one wx timeout 900 env GDK_BACKEND=x11 "$bin/bench_wx" "--rows=$rows" "--limit=$limit"
run_one qt timeout 1200 env QT_QPA_PLATFORM=xcb "$bin/bench_qt" "--rows=$rows" "--limit=$limit"
run_one windows run_windows 1800 build/x64/bench/bench_windows.exe "--rows=$rows" "--limit=$limit"

python3 bench/report.py "$results"/*.tsv | tee "$report"
say "The report is in ${report#"$root"/}"
