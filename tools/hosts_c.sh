# Drives the sample programs that contain controls without registration, samples/c and samples/cpp: each from a folder
# that has nothing but the program and the library, in a Windows environment in which nothing is registered. Keys come
# from outside, and the window's title shows what the program's events have reported. Uses the counting of hosts.sh.
# shellcheck shell=bash

# attempt NAME LINE...: plays lines of a key script and prints whether all of them succeeded.
attempt() {
  local name=$1 line
  shift
  for line in "$@"; do
    keys_where="$name: $line"
    play_line "${line%% *}" "${line#* }" && continue
    echo "FAILED $name: $line"
    return 0
  done
  echo "ok $name"
}

drive_c() {
  attempt 'Stock opens' 'wait-window Stock'
  attempt 'an entry raises its event' 'type Bolt' 'key Tab' 'wait-window Stock - Bolt'
  attempt 'a number raises its event' 'type 12' 'key Return' 'wait-window Stock - 12'
  attempt 'an entry is refused' 'key Left' 'key Right' 'type 0' 'key Return' 'wait-window Stock - refused'
  attempt 'the refused entry is put back' 'key F2' 'key End' 'type 5' 'key Return' 'wait-window Stock - 125'
}

drive_cpp() {
  attempt 'Basket opens' 'wait-window Basket'
  attempt 'an entry raises its event' 'type Nut' 'key Tab' 'wait-window Basket - Nut'
  attempt 'Enter belongs to the grid' 'type 30' 'key Return' 'wait-window Basket - 30'
  attempt 'Tab leads into the next row' 'type Bolt' 'key Tab' 'type 12' 'key Tab' 'wait-window Basket - 12'
  attempt 'an access key presses the button' 'key alt+c' 'wait-window Basket - 42 pieces'
  attempt 'Tab leads back into the grid' 'key Tab' 'type Washer' 'key Tab' 'wait-window Basket - Washer'
  attempt 'too many are refused' 'type 400' 'key Return' 'wait-window Basket - 400 is too many'
  attempt 'the refused entry is put back' 'key alt+c' 'wait-window Basket - 42 pieces'
}

# drive_sample DRIVE PROGRAM FOLDER: prints the checks of one program, from its start to its end.
drive_sample() {
  local drive=$1 program=$2 folder=$3 process i status=0
  if run_windows 60 reg query 'HKCR\Qvx.ComboGrid' >/dev/null 2>&1; then
    echo 'FAILED nothing is registered: Qvx.ComboGrid is'
  else
    echo 'ok nothing is registered'
  fi
  start_group run_windows 120 "$folder/$program"
  process=$group
  keys_limit=20 keys_window=
  "$drive"
  xdotool key --delay 60 alt+F4
  for ((i = 0; i < 100; i++)); do
    kill -0 "$process" 2>/dev/null || break
    sleep 0.1
  done
  if kill -0 "$process" 2>/dev/null; then
    end_group "$process"
    echo "FAILED $program closes: it is still running"
  else
    wait "$process" || status=$?
    if ((status == 0)); then echo "ok $program closes"; else echo "FAILED $program closes: exit status $status"; fi
  fi
  echo 'done'
}

# test_sample ARCH SAMPLE PROGRAM: the sample in a folder and an environment of its own, as the package has it.
test_sample() (
  local arch=$1 sample=$2 program=$3 name log folder
  watch_exit
  name=${program%.exe}-$arch
  log=$logs/hosts-$name.log
  folder=$hosts/$name
  rm -rf "$folder"
  mkdir -p "$folder"
  cp "$package/files/$arch/$program" "$package/files/$arch/Qvx.ocx" "$package/files/$arch/Qvx.manifest" "$folder/" || return 1
  enter_environment "$arch" "$hosts/$name"
  use_display virtual
  drive_sample "drive_$sample" "$program" "$folder" >"$log" 2>&1
  count_host "${program%.exe} (samples/$sample)" - "$arch" "$name" "$log" 0
)

test_samples() {
  test_sample "$1" c Stock.exe || count hosts "stock-$1" 0 1 0
  test_sample "$1" cpp Basket.exe || count hosts "basket-$1" 0 1 0
}
