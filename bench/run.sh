#!/usr/bin/env bash
# Builds the benchmarks, runs them one after another and writes the report.
#
#     bench/run.sh [ROWS] [FILE.md]
#
# ROWS is the largest table of the toolkits (a power of ten from 1000, 1000000 when left out), FILE.md where the report
# goes (build/bench/report.md when left out). A single work that is likely to take longer than QVX_BENCH_LIMIT seconds (10)
# is cut, and so is the rest of a program that takes longer than its share of half an hour.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$root"
rows=${1:-1000000}
report=${2:-$root/build/bench/report.md}
limit=${QVX_BENCH_LIMIT:-10}

source tools/common.sh
source tools/packages.sh
source tools/build.sh
source tools/display.sh
source tools/wine.sh

[[ $rows =~ ^[0-9]+$ ]] || die "The number of rows is '$rows'."

build native-release --target bench_rules bench_design bench_wx bench_qt || die "The native benchmarks were not built."
build x64 --target qvx_server bench_windows bench_host bench_form || die "The Windows benchmarks were not built."

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
windows=build/x64/bench/bench_windows.exe
run_one rules timeout 300 "$bin/bench_rules" "--rows=$rows" "--limit=$limit"
run_one growth timeout 120 "$bin/bench_rules" --growth
run_one windows run_windows 420 "$windows" "--rows=$rows" "--limit=$limit"
run_one wx timeout 240 env GDK_BACKEND=x11 "$bin/bench_wx" "--rows=$rows" "--limit=$limit"
run_one qt timeout 360 env QT_QPA_PLATFORM=xcb "$bin/bench_qt" "--rows=$rows" "--limit=$limit"

# A display that has room for the large window, after everything that runs on the ordinary one.
run_large() {
  local virtual_screen=3840x2160
  # Wine's desktop on the other display has windows that this one does not know.
  end_wine "$prefix"
  use_display virtual
  keep_wine "$prefix"
  run_one large run_windows 60 "$windows" --large-screen
}

run_one host run_windows 150 build/x64/bench/bench_host.exe
run_one form run_windows 150 build/x64/bench/bench_form.exe
run_one design timeout 60 "$bin/bench_design"
run_large
for megabytes in 10 100; do
  seconds=$SECONDS
  bash bench/archives.sh "$megabytes" >"$results/archives-$megabytes.log" 2>&1 ||
    warn "The archivers were not measured with $megabytes MB; see build/bench/archives-$megabytes.log."
  say "archives with $megabytes MB took $((SECONDS - seconds)) s"
done

processor=$(sed -n '/^model name/ { s/.*: //p; q }' /proc/cpuinfo)
sources=$(git describe --always --dirty 2>/dev/null || echo "sources without a repository")
machine="It ran on $(date +%F) on a machine with $(nproc) processors ($processor) and
$(awk '/^MemTotal/ { printf "%d GB", $2 / 1048576 + 0.5 }' /proc/meminfo) of memory, under $("$wine64" --version 2>/dev/null || echo Wine), from commit $sources."
python3 bench/report.py "$results/rules.tsv,$results/growth.tsv,$results/wx.tsv,$results/qt.tsv" \
  "$results/windows.tsv,$results/large.tsv" \
  "$results/host.tsv,$results/form.tsv,$results/design.tsv,$results/archives-10.tsv,$results/archives-100.tsv" "$machine" >"$report"
say "The report is in ${report#"$root"/}"
