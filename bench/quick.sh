#!/usr/bin/env bash
# Compares the present sources with the programs that an earlier run has kept, in about two minutes.
#
#     bench/quick.sh [--keep]
#
# The first run, and any with --keep, keeps its programs in build/bench/kept. Others run these and the present ones in turn,
# so that whatever else the machine does slows both, and print what has become slower by more than noise allows, twice in a
# row.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$root"
kept=$root/build/bench/kept
rounds=${QVX_BENCH_ROUNDS:-8}

source tools/common.sh
source tools/packages.sh
source tools/build.sh
source tools/display.sh
source tools/wine.sh

build native-release --target bench_rules || die "The native benchmarks were not built."
build x64 --target qvx_server bench_windows || die "The Windows benchmarks were not built."

# The Windows program loads the server from where it is beside it.
programs=(native-release/bench/bench_rules x64/bench/bench_windows.exe x64/server/Qvx.ocx)
keep() {
  local program
  rm -rf "$kept"
  for program in "${programs[@]}"; do
    mkdir -p "$kept/$(dirname "$program")"
    cp "build/$program" "$kept/$program"
  done
  git describe --always --dirty >"$kept/sources" 2>/dev/null || echo "unknown sources" >"$kept/sources"
  say "The programs of $(<"$kept/sources") are kept; the next run is compared with them."
}
if [[ ${1:-} == --keep || ! -d $kept ]]; then
  keep
  exit 0
fi

use_display virtual
start_wine
results=$root/build/bench/quick
rm -rf "$results"
mkdir -p "$results"

# run_round FOLDER FILE: runs both programs of a folder.
run_round() {
  local failed="A benchmark failed; see build/bench/quick/log."
  timeout 120 "$1/native-release/bench/bench_rules" --quick >"$2" 2>>"$results/log" </dev/null || die "$failed"
  run_windows 120 "$1/x64/bench/bench_windows.exe" --quick >>"$2" 2>>"$results/log" </dev/null || die "$failed"
}
# run_rounds FIRST LAST: leaves the rounds' files in `compared`.
run_rounds() {
  local round
  compared=()
  for ((round = $1; round <= $2; round++)); do
    say "Round $round of $2"
    # The one that comes second finds the machine as the first has left it.
    if ((round % 2)); then
      run_round "$kept" "$results/kept-$round.tsv"
      run_round build "$results/new-$round.tsv"
    else
      run_round build "$results/new-$round.tsv"
      run_round "$kept" "$results/kept-$round.tsv"
    fi
    compared+=("$results/kept-$round.tsv,$results/new-$round.tsv")
  done
  say "Compared with $(<"$kept/sources"):"
}
run_rounds 1 "$rounds"
status=0
python3 bench/compare.py "$results/suspects" "${compared[@]}" || status=$?
[[ -s $results/suspects ]] || exit "$status"
say "What seems to have changed is measured again."
run_rounds "$((rounds + 1))" "$((2 * rounds))"
python3 bench/compare.py "$results/suspects" "${compared[@]}"
