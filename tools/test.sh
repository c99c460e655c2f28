# Runs the tests, layer by layer, and sums up.
# shellcheck shell=bash

all_layers=(lint native fuzz x64 x86 demo docs soak archives package hosts)
# Layers that mostly wait for windows share the machine: these lists run in parallel.
lanes=("x64 soak docs hosts" "x86 demo archives")
test_name= # what tests' names must contain, or nothing
fuzz_runs= # how many inputs each fuzzer tries, or nothing for a short run

# run_ctest PATTERN LAYER: runs the native programs whose names match. GoogleTest programs write a report each; others
# pass or fail as a whole.
run_ctest() {
  local pattern=$1 layer=$2 reports=$root/build/test/native-$2 log=$logs/$2.log line name state
  rm -rf "$reports"
  mkdir -p "$reports"
  # The time limit is for hangs; sanitized programs on a busy machine are slow.
  GTEST_OUTPUT="xml:$reports/" GTEST_FILTER="*$test_name*" ASAN_OPTIONS=detect_leaks=1 \
    log_tail=0 with_log "$layer" ctest --test-dir build/native -R "$pattern" -j "$(nproc)" --timeout 600 --output-on-failure 2>/dev/null || true
  while IFS= read -r line; do
    [[ $line =~ Test\ +#[0-9]+:\ ([^ ]+)\ \.*[[:space:]]*(\**[A-Za-z]+) ]] || continue
    name=${BASH_REMATCH[1]} state=${BASH_REMATCH[2]}
    if [[ $name == unit_* && $state != '***Not' ]]; then
      count_gtest "$layer" "$name" "$reports/$name.xml" "$([[ $state == Passed ]] && echo 0 || echo 1)" || show_failures "$log" "$name"
    elif [[ $state == Passed ]]; then
      count "$layer" "$name" 1 0 0
      say "$layer: $name passed"
    else
      count "$layer" "$name" 0 1 0
      warn "$layer: $name FAILED ($state); see build/logs/$layer.log"
    fi
  done < <(grep -E '^ *[0-9]+/[0-9]+ Test +#' "$log" || true)
}

# The failing assertions of one program's run, without what passed.
show_failures() {
  tr -d '\r' <"$1" | grep -v -E '^\[ +(OK|RUN|DISABLED) |^\[-+\]|^$' | grep -B 12 -E '\[  FAILED  \] .*\(|ERROR: |runtime error' | tail -n 60 >&2 ||
    tail -n 20 "$1" >&2
  warn "The whole log: ${1#"$root"/}"
}

build_for_test() {
  local preset=$1
  [[ ! -f $root/build/test/built-$preset ]] || return 0
  if build "$preset" -- -k 0; then
    count "$preset" build 1 0 0
  else
    count "$preset" build 0 1 0
  fi
  touch "$root/build/test/built-$preset"
}

test_native() {
  build_for_test native
  run_ctest '^unit_' native
  [[ -n $test_name ]] || test_exports
}

# Exported files, read by other programs.
test_exports() {
  check native bench_export ninja -C build/native bench_export
  count_checks native exports python3 tools/read_exports.py build/native/bench/bench_export
}

test_fuzz() {
  build_for_test native
  if [[ -n $fuzz_runs ]]; then run_fuzzers; else run_ctest '^fuzz_' fuzz; fi
}

# A long run with a seed of its own. A failing input is left in build/fuzz/NAME/.
run_fuzzers() {
  local program name folder log seed=$RANDOM started
  for program in build/native/fuzz/fuzz_*"$test_name"*; do
    [[ -f $program && -x $program ]] || continue
    name=$(basename "$program")
    folder=$root/build/fuzz/$name
    log=$logs/$name.log
    mkdir -p "$folder"
    started=$SECONDS
    if (cd "$folder" && nice "$root/$program" "-runs=$fuzz_runs" "-seed=$seed" "$folder" "$root/fuzz/corpus/${name#fuzz_}") >"$log" 2>&1; then
      count fuzz "$name" 1 0 0
      say "fuzz: $name tried $fuzz_runs inputs from seed $seed in $((SECONDS - started)) s: nothing found"
    else
      count fuzz "$name" 0 1 0
      tail -n 20 "$log" >&2
      warn "fuzz: $name FAILED after $((SECONDS - started)) s from seed $seed; its input is in build/fuzz/$name/"
    fi
  done
}

image_options='HKLM\Software\Microsoft\Windows NT\CurrentVersion\Image File Execution Options'

# The tests that load the component server into a container, under Wine and on a display.
run_control_tests() {
  local arch=$1 layer=$1${system_suite:+-$system_suite} program report status name
  for program in build/"$arch"/tests/control/*_tests.exe; do
    [[ -f $program ]] || {
      count "$layer" control_tests 0 1 0
      warn "$layer: the control tests were not built"
      continue
    }
    name=$(basename "$program" .exe)
    # Freed memory is overwritten and checked, so that a later use is detected.
    with_log "$layer-heap" run_windows 60 reg add "$image_options\\$name.exe" /v GlobalFlag /t REG_DWORD /d 0x30 /f || true
    report=$root/build/test/$layer-$name.xml
    rm -f "$report"
    status=0
    log_tail=0 with_log "$layer-$name" run_windows 900 "$root/$program" \
      "--gtest_output=xml:$(windows_path "$report")" "--gtest_filter=*$test_name*" 2>/dev/null || status=$?
    count_gtest "$layer" "$name" "$report" "$status" || show_failures "$logs/$layer-$name.log"
  done
}

test_x64() {
  want "${packages_database[@]}"
  build_for_test x64
  if [[ -z $system_suite ]]; then
    start_wine_once
  elif prepare_system "$system_suite"; then
    start_system || die "The Windows environment of $system_suite could not be prepared."
  else
    warn "THE CONTROL TESTS ON ${system_suite^^} ARE SKIPPED."
    count "x64-$system_suite" control_tests 0 0 1
    return 0
  fi
  run_control_tests x64
}

test_x86() {
  build_for_test x86
  if ! prepare_root32; then
    warn "THE 32-BIT CONTROL TESTS ARE SKIPPED."
    count x86 control_tests 0 0 1
    return 0
  fi
  start_wine_once
  start_wine32 || die "The 32-bit Windows environment could not be prepared."
  use_arch x86
  run_control_tests x86
  [[ -n $test_name ]] || test_archives_x86
  use_arch x64
}

# Keys from outside fill in a sample form: tests/demo/NAME-*.keys is for samples/NAME.frm, and its waits say what the
# form's script must have seen. The saved form must load again and be saved as the same bytes. Where the form works on a
# database, the results of tests/demo/NAME-*.sql at the end must be what the script logged as shown.
run_demo_test() {
  local keys=$1 name form saved database=
  name=$(basename "$keys" .keys)
  form=samples/${name%%-*}
  saved=$root/build/test/$name
  if [[ -f $form.sql ]]; then
    database=$(database_of "$form.frm" "$saved")
    place_database "${name%%-*}" "$form.frm" "$saved" || return 1
  fi
  run_demo "$form.frm" "$keys" "$saved.png" "$saved.log" "$saved.frm" "$database" || return 1
  if [[ -n $database ]]; then
    sqlite3 -batch -init /dev/null "$database" ".read 'tests/demo/$name.sql'" >"$saved.stored" || return 1
    tr -d '\r' <"$saved.log" | sed -n 's/^Shown: //p' >"$saved.shown"
    [[ -s $saved.shown ]] && diff "$saved.shown" "$saved.stored" || return 1
  fi
  # A saved form names pictures by their paths relative to the form.
  cp -r samples/pictures "$root/build/test/"
  run_demo "$saved.frm" '' "$saved-again.png" "$saved-again.log" "$saved-again.frm" || return 1
  cmp "$saved.frm" "$saved-again.frm"
}

# Otherwise, the system's dialogs would open in the folder of the previous script.
forget_folders() {
  run_windows 60 reg delete 'HKCU\Software\Microsoft\Windows\CurrentVersion\Explorer\ComDlg32' /f >/dev/null 2>&1 || true
}

# Keys from outside change a copy of a sample form in the designer: tests/design/NAME-*.keys is for samples/NAME.frm,
# with NAME-*.vbs appended to its script. The saved form must differ from the sample as NAME-*.diff says and in nothing
# else, and the designer must open it again and save the same bytes.
run_design_test() {
  local keys=$1 name form saved
  name=$(basename "$keys" .keys)
  form=samples/${name%%-*}.frm
  saved=$root/build/test/$name
  copy_form "$form" "$saved"
  [[ ! -f tests/design/$name.vbs ]] || cat "tests/design/$name.vbs" >>"${copied_form%.frm}.vbs"
  forget_folders
  run_designer "$copied_form" "$keys" "$saved.png" "$saved.log" '' || return 1
  diff "$form" "$copied_form" >"$saved.diff" || true
  diff "tests/design/$name.diff" "$saved.diff" || return 1
  run_designer "$copied_form" '' "$saved-again.png" "$saved-again.log" "$saved-again.frm" || return 1
  cmp "$copied_form" "$saved-again.frm"
}

# The keys of docs/first-hour.md make samples/purchase.frm in the designer from nothing, and run it: what the script saves
# must be the order that was entered.
run_guide_test() {
  local folder=$root/build/test/guide order
  rm -rf "$folder"
  mkdir -p "$folder"
  cp samples/purchase.vbs "$folder/"
  forget_folders
  run_designer '' tests/guide/purchase.keys '' "$folder.log" '' || return 1
  diff samples/purchase.frm "$folder/purchase.frm" || return 1
  order=$(find "$prefix/drive_c" -name order.txt)
  tr -d '\r' <"$order" | diff - <(printf 'Miller & Sons\tDesk lamp\t12\t38.9\n')
}

test_demo() {
  local keys name
  want "${packages_database[@]}"
  build_for_test x64
  start_wine_once
  for keys in tests/demo/*.keys; do
    [[ -f $keys ]] || continue
    name=$(basename "$keys" .keys)
    [[ $name == *"$test_name"* ]] || continue
    if [[ -f samples/${name%%-*}.sql ]] && ! has_database_driver; then
      warn "demo: $name IS SKIPPED: there is no ODBC driver for SQLite."
      count demo "$name" 0 0 1
      continue
    fi
    check demo "$name" run_demo_test "$keys"
  done
  for keys in tests/design/*.keys; do
    [[ -f $keys ]] || continue
    name=design-$(basename "$keys" .keys)
    [[ $name == *"$test_name"* ]] || continue
    check demo "$name" run_design_test "$keys"
  done
  [[ guide != *"$test_name"* ]] || check demo guide run_guide_test
}

# Random input for the samples and the designer for two minutes, the same input every time, and replays of earlier
# failures.
test_soak() {
  local file prefix_before
  want "${packages_database[@]}"
  if ! has_database_driver; then
    warn "THE SOAK IS SKIPPED: there is no ODBC driver for SQLite."
    count soak random 0 0 1
    return 0
  fi
  build_for_test x64
  start_wine_once
  # Random input runs in an environment of its own.
  prefix_before=$prefix
  start_soak || die "The Windows environment could not be prepared."
  check soak prepare prepare_soak
  for file in tests/soak/*.replay; do
    check soak "$(basename "$file" .replay)" replay_soak "$file"
  done
  check soak random soak_for 120 1 60 "${soak_subjects[@]}"
  prefix=$prefix_before
}

start_wine_once() {
  [[ -n ${prefix:-} ]] || {
    start_wine
    use_display virtual
  }
}

run_layers() {
  local layer
  for layer in "$@"; do
    say "Testing: $layer"
    "test_$layer"
  done
}

# run_lane LAYER...: runs in a shell of its own, which then has its own Windows environment and display.
run_lane() (
  watch_exit
  run_layers "$@"
)

# run_lanes LAYER...: runs the layers of the lanes, after everything that two of them need has been built and installed.
run_lanes() {
  local lane layer chosen pids=() firsts=() i template
  want "${packages_database[@]}"
  need "${packages_display[@]}"
  [[ " $* " != *" hosts "* ]] || want "${packages_lazarus[@]}"
  build_for_test x64
  prepare_wine
  if [[ " $* " == *" x86 "* ]]; then
    build_for_test x86
    prepare_root32 || true
  fi
  for lane in "${lanes[@]}"; do
    chosen=()
    for layer in $lane; do
      [[ " $* " != *" $layer "* ]] || chosen+=("$layer")
    done
    ((${#chosen[@]})) || continue
    run_lane "${chosen[@]}" &
    pids+=("$!") firsts+=("${chosen[0]}")
    at_exit "kill $! 2>/dev/null && wait $!"
  done
  for i in "${!pids[@]}"; do
    wait "${pids[i]}" || count "${firsts[i]}" "and-after-it" 0 1 0
  done
}

qvx_test() {
  local layers=() together=() layer started=$SECONDS
  while (($#)); do
    if [[ $1 == --runs ]]; then
      [[ ${2:-} =~ ^[1-9][0-9]*$ ]] || die "--runs needs the number of inputs that each fuzzer is to try."
      fuzz_runs=$2
      shift
    elif [[ $1 == --system ]]; then
      [[ ${2:-} =~ ^[a-z][a-z0-9.-]*$ ]] || die "--system needs a release that debootstrap knows, such as trixie."
      system_suite=$2
      shift
    elif [[ " ${all_layers[*]} " == *" $1 "* ]]; then
      layers+=("$1")
    else
      test_name=$1
    fi
    shift
  done
  if [[ -n $system_suite ]]; then
    ((${#layers[@]})) || layers=(x64)
    [[ ${layers[*]} == x64 ]] || die "Only the x64 layer runs on another system."
  fi
  if ((${#layers[@]} == 0)); then
    if [[ -n $test_name ]]; then layers=(native x64); else layers=("${all_layers[@]}"); fi
  fi
  rm -rf "$root/build/test"
  mkdir -p "$results" "$logs"
  for layer in "${layers[@]}"; do
    if [[ " ${lanes[*]} " == *" $layer "* ]]; then together+=("$layer"); else run_layers "$layer"; fi
  done
  if ((${#together[@]} > 1)); then run_lanes "${together[@]}"; else run_layers "${together[@]}"; fi
  say "Took $((SECONDS - started)) s."
  close_counts
}
