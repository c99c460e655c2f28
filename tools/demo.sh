# Shows a sample form in the forms host, interactively or with a key script.
# shellcheck shell=bash

# The caption in a form file: the first one in it, since a form's own properties come before its controls.
form_caption() { sed -n '/^[[:space:]]*Caption[[:space:]]*=[[:space:]]*"\(.*\)".*/{s//\1/p;q}' "$1"; }

# register_server OCX: registers it for this run's prefix only.
register_server() {
  run_windows 60 regsvr32 /s "$(windows_path "$1")" >>"$logs/register.log" 2>&1
}

# make_database SQL FILE: creates the database anew, for a form that works on one.
make_database() {
  rm -f "$2"
  with_log database sqlite3 -bail -init /dev/null "$2" ".read '$1'"
}

# Whether a form makes backups.
makes_backups() { grep -q 'Begin Qvx\.Backup ' "$1"; }

# database_of FORM BASE: the database file of a form. A form that makes backups has it on a drive of its own.
database_of() {
  if makes_backups "$1"; then echo "$2/data/Shop.db"; else echo "$2.db"; fi
}

# fill_drive FOLDER: creates the folders that a form which makes backups expects: data, copies, temp, and zip with the
# archivers. The others are empty at first.
fill_drive() {
  local folder
  for folder in data copies temp zip; do
    rm -rf "${1:?}/$folder"
    mkdir -p "$1/$folder"
  done
  cp "build/$wine_arch/PkZip.exe" "build/$wine_arch/PkunZip.exe" "$1/zip/"
}

# place_database NAME FORM BASE: creates the database of samples/NAME.frm anew, and this run's drive Q: if it needs one.
place_database() {
  if makes_backups "$2"; then
    fill_drive "$3"
    ln -sfn "$(realpath "$3")" "$prefix/dosdevices/q:"
  fi
  make_database "samples/$1.sql" "$(database_of "$2" "$3")"
}

# Whether programs can use SQLite through ODBC here.
has_database_driver() { [[ -n $(command -v sqlite3) ]] && grep -qi sqlite3 <<<"$(odbcinst -q -d 2>/dev/null)"; }

# start_host FORM LOG SAVE [DATABASE]: leaves its process group in `host_group`.
start_host() {
  local form=$1 log=$2 save=$3 database=${4:-} script=${1%.frm}.vbs arguments
  [[ -f $script ]] || script=${1%.frm}.js
  arguments=("$(windows_path "$form")")
  [[ ! -f $script ]] || arguments+=("$(windows_path "$script")")
  arguments+=(--log "$(windows_path "$log")")
  [[ -z $save ]] || arguments+=(--save "$(windows_path "$save")")
  [[ -z $database ]] || arguments+=(-- "$(windows_path "$database")")
  start_group run_windows "${demo_limit:-86400}" "$host_program" "${arguments[@]}" >"$logs/qvxhost.log" 2>&1
  host_group=$group
}

host_is_running() { kill -0 -- "-$host_group" 2>/dev/null; }

# close_host TITLE: closes the form as a user would, with Alt+F4.
close_host() {
  local i
  host_is_running || return 0
  keys_limit=5 keys_where=closing
  wait_window "$1" || true
  xdotool key --delay 60 alt+F4
  for ((i = 0; i < 100; i++)); do
    host_is_running || return 0
    sleep 0.1
  done
  warn "The host did not end when its window was closed."
  return 1
}

# attend_host TITLE KEYS SCREENSHOT LOG: operates the host that has just been started: plays the key script, takes the
# picture, closes the window. Fails with the first of these that fails, or with the host's own exit code.
attend_host() {
  local title=$1 keys=$2 screenshot=$3 log=$4 status=0
  if [[ -n $keys ]]; then
    play_keys "$keys" "$log" || status=1
  else
    keys_limit=30 keys_where=demo
    wait_window "$title" || status=1
    # The form must have drawn itself: two pictures taken half a second apart have to be the same.
    wait_for_still_window
  fi
  if [[ -n $screenshot ]]; then
    keys_window=$(find_window "$title" || true)
    take_picture "$screenshot" "$keys_window" || status=1
  fi
  close_host "$title" || status=1
  end_group "$host_group"
  wait "$host_group" || status=$?
  return "$status"
}

# run_demo FORM KEYS SCREENSHOT LOG SAVE [DATABASE]: needs a prefix and a display. The run is unattended with a key
# script or a screenshot. Wine's own data objects cannot open a database, so a form that works on one gets the
# project's.
run_demo() {
  local form=$1 keys=$2 screenshot=$3 log=$4 save=$5 database=${6:-} title status=0
  title=$(form_caption "$form")
  # shellcheck disable=SC2034
  keys_database=$database
  : >"$log"
  register_server "$ocx" || {
    warn "The component server could not be registered."
    return 1
  }
  if [[ -n $database ]] && ! register_server "$data_objects"; then
    warn "The data objects could not be registered."
    return 1
  fi
  if [[ -z $keys && -z $screenshot ]]; then
    start_host "$form" "$log" "$save" "$database"
    say "\"$title\" is open; close its window to end."
    wait "$host_group" || status=$?
  else
    demo_limit=600 start_host "$form" "$log" "$save" "$database"
    attend_host "$title" "$keys" "$screenshot" "$log" || status=$?
  fi
  if ((status != 0)); then
    tail -n 20 "$logs/qvxhost.log" "$log" >&2
  fi
  return "$status"
}

wait_for_still_window() {
  local before='' now i
  for ((i = 0; i < 20; i++)); do
    now=$(timeout 10 import -window root -display "$DISPLAY" rgb:- | cksum)
    [[ $now != "$before" ]] || return 0
    before=$now
    sleep 0.5
  done
}

# from_caller FILE: resolves a file name in the folder where the user typed it.
from_caller() {
  if [[ -z $1 || $1 == /* ]]; then echo "$1"; else realpath -m "$caller/$1"; fi
}

# read_run_options ARGUMENT...: reads the options of demo and design into the caller's subject, keys, screenshot, log,
# save and virtual.
# shellcheck disable=SC2034
read_run_options() {
  subject='' keys='' screenshot='' log='' save='' virtual=''
  while ((${#})); do
    case $1 in
      --keys | --screenshot | --log | --save)
        (($# > 1)) || die "$1 needs a file name."
        printf -v "${1#--}" '%s' "$(from_caller "$2")"
        shift
        ;;
      --virtual) virtual=virtual ;;
      -*) die "There is no option '$1' (see ./qvx help)." ;;
      *) subject=$1 ;;
    esac
    shift
  done
  [[ -z $keys || -f $keys ]] || die "There is no key script $keys."
}

# Whether nobody can see the windows, although no option makes the run unattended.
is_unseen() {
  [[ -z $keys && -z $screenshot ]] && { [[ -n $virtual ]] || ! display_is_reachable; }
}

qvx_demo() {
  local subject keys screenshot log save virtual name form database='' targets=(qvx_server qvxhost)
  read_run_options "$@"
  name=${subject:-invoice}
  form=$root/samples/$name.frm
  [[ -f $form ]] || die "There is no form samples/$name.frm."
  if [[ -f samples/$name.sql ]]; then
    need "${packages_database[@]}"
    targets+=(qvx_ado)
    database=$(database_of "$form" "$root/build/demo/$name")
  fi
  ! makes_backups "$form" || targets+=(PkZip PkunZip)
  build x64 --target "${targets[@]}" || die "The build failed."
  need "${packages_display[@]}"
  mkdir -p "$root/build/demo"
  log=${log:-$root/build/demo/$name.log}
  if is_unseen; then
    screenshot=$root/build/demo/$name.png
    [[ ! -f samples/$name.keys ]] || keys=samples/$name.keys
    say "There is no display to show it on: it runs by itself and leaves a picture."
  fi
  start_wine
  [[ -z $database ]] || place_database "$name" "$form" "$root/build/demo/$name" || die "The database could not be made."
  use_display $virtual
  run_demo "$form" "$keys" "$screenshot" "$log" "$save" "$database" || die "The demo failed."
  [[ -z $screenshot ]] || say "Picture: $screenshot"
  [[ -z $save ]] || say "Saved form: $save"
  [[ -z $database ]] || say "Database: $database"
  say "What the script wrote: $log"
  [[ ! -s $log ]] || sed 's/^/   /' "$log"
}
