# Uses the samples and the designer at random from outside (soak/), and replays what went wrong before.
# shellcheck shell=bash

soak_subjects=(first invoice receipt buttons orders ledger menus backup 'design invoice' 'design menus' 'design orders' 'design receipt')

soak_prefix= # the Windows environment that is used at random, as this machine sees it

# A 32-bit system's files belong to root.
soak_files() {
  if [[ $soak_prefix == "$root32"/* ]]; then as_root "$@"; else "$@"; fi
}

# start_soak: creates that environment for the current architecture.
start_soak() {
  if [[ $wine_arch == x86 ]]; then
    prepare_root32 && start_wine32 || return 1
    soak_prefix=$prefix32
    [[ $root32_way == beside ]] || soak_prefix=$root32$prefix32
  else
    start_wine
    soak_prefix=$prefix
  fi
}

# prepare_soak: makes C:\soak the only folder of the environment that can be written to, so that random use of file
# dialogs cannot leave it.
prepare_soak() {
  local stage form name
  stage=$(mktemp -d)
  at_exit "rm -rf '$stage'"
  mkdir -p "$stage/bin" "$stage/results"
  cp "build/$wine_arch/soak/soak.exe" "build/$wine_arch/soak/SoakWatch.dll" "$host_program" "$ocx" "$data_objects" "$stage/bin/"
  cp -r samples "$stage/pristine"
  for name in samples/*.sql; do
    form=${name%.sql}.frm
    name=$(basename "$name" .sql)
    if makes_backups "$form"; then
      fill_drive "$stage/pristine/shop"
      make_database "samples/$name.sql" "$(database_of "$form" "$stage/pristine/shop")" || return 1
    else
      make_database "samples/$name.sql" "$stage/pristine/$name.db" || return 1
    fi
  done
  # In a heap that is checked, the whole ledger would take minutes to load.
  sqlite3 -batch -bail -init /dev/null "$stage/pristine/ledger.db" 'delete from bookings where id > 5000' || return 1
  soak_files cp -r "$stage" "$soak_prefix/drive_c/soak" || return 1
  soak_files ln -sfn ../drive_c/soak/work/shop "$soak_prefix/dosdevices/q:"
  for name in "$ocx" "$data_objects"; do
    run_windows 60 regsvr32 /s "C:\\soak\\bin\\$(basename "$name")" || return 1
  done
  # Wine then draws frames itself, so that the pointer reaches them.
  run_windows 60 reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1 || return 1
  # Links to addresses open nothing.
  for name in Browsers Mailers; do
    run_windows 60 reg add 'HKCU\Software\Wine\WineBrowser' /v "$name" /d true /f >/dev/null 2>&1 || return 1
  done
  # Freed memory is overwritten and checked, so that a later use is detected.
  run_windows 60 reg add "$image_options\\qvxhost.exe" /v GlobalFlag /t REG_DWORD /d 0x30 /f >/dev/null 2>&1 || return 1
  # The file dialogs' own ways out of drive C: are other drives, the whole file system, and the user's folders.
  run_windows 60 reg delete 'HKLM\Software\Microsoft\Windows\CurrentVersion\Explorer\Desktop\Namespace\{9D20AAE8-0625-44B0-9CA7-71889C2254D9}' \
    /f >/dev/null 2>&1 || true
  soak_files find "$soak_prefix/dosdevices" -mindepth 1 ! -name c: ! -name q: -delete || return 1
  # shellcheck disable=SC2016
  soak_files find "$soak_prefix/drive_c/users" -type l -exec sh -c 'for link; do rm "$link" && mkdir "$link"; done' sh {} + || return 1
  # Moves the pointer away from where windows open.
  xdotool mousemove 1279 1023
}

# run_soak END ARGUMENT...: runs soak.exe in that environment. Its last line must match END: a program that is ended
# from outside would otherwise count as one that ended well.
run_soak() {
  local end=$1 told status=0
  shift
  told=$(mktemp)
  run_windows "${soak_limit:-86400}" 'C:\soak\bin\soak.exe' "$@" | tee "$told" || status=$?
  [[ $(tail -n 1 "$told" | tr -d '\r') =~ $end ]] || status=1
  rm -f "$told"
  return "$status"
}

# soak_for SECONDS SEED SHORTEN SUBJECT...: the results are in build/soak afterwards.
soak_for() {
  local status=0
  soak_limit=$(($1 * 4 + 900)) run_soak ' faults$' run "$1" "$2" "$3" 'C:\soak\results' "${@:4}" || status=$?
  mkdir -p build/soak
  soak_files find "$soak_prefix/drive_c/soak/results" -name '*.replay' -exec cp -t build/soak {} +
  return "$status"
}

# replay_soak FILE: whether the replay passes.
replay_soak() {
  soak_files cp "$1" "$soak_prefix/drive_c/soak/replay"
  soak_limit=600 run_soak '^passed' replay 'C:\soak\replay'
}

build_for_soak() {
  need "${packages_database[@]}"
  build "$wine_arch" --target qvx_soak qvx_soak_watch qvx_server qvxhost qvx_ado PkZip PkunZip || die "The build failed."
}

# ./qvx soak [MINUTES] [SEED] [x86] [SUBJECT...] | [x86] FILE.replay...
qvx_soak() {
  local file argument arguments=() failed=0
  for argument in "$@"; do
    if [[ $argument == x86 ]]; then use_arch x86; else arguments+=("$argument"); fi
  done
  set -- "${arguments[@]}"
  build_for_soak
  use_display virtual
  { start_soak && prepare_soak; } || die "The Windows environment could not be prepared."
  if [[ ${1:-} == *.replay ]]; then
    for file in "$@"; do
      replay_soak "$(from_caller "$file")" || failed=1
    done
    ((!failed)) || die "A replay failed."
    return
  fi
  local minutes=${1:-2} seed=${2:-$RANDOM$RANDOM} subjects=("${@:3}")
  ((${#subjects[@]})) || subjects=("${soak_subjects[@]}")
  rm -rf build/soak
  say "Using the samples at random for $minutes min ($wine_arch); the seed is $seed"
  soak_for $((minutes * 60)) "$seed" "${soak_shorten:-300}" "${subjects[@]}" || die "Faults were found; replays are in build/soak."
}
