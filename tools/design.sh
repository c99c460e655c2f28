# Opens a form in the designer, interactively or with a key script.
# shellcheck shell=bash

# The beginning of the designer's caption, whether or not a "*" follows.
designer_title() { basename "$1"; }

# copy_form FORM FOLDER: copies the form with its script, the pictures beside it and those that it names into an empty
# folder, for changing it unattended. The copy's name is left in `copied_form`.
copy_form() {
  local form=$1 folder=$2 file suffix
  rm -rf "${folder:?}"
  mkdir -p "$folder"
  for file in "$form" "${form%.frm}.vbs" "${form%.frm}.js"; do
    [[ ! -f $file ]] || cp "$file" "$folder/"
  done
  for suffix in bmp ico gif jpg png; do
    for file in "$(dirname "$form")"/*."$suffix"; do
      [[ ! -f $file ]] || cp "$file" "$folder/"
    done
  done
  while IFS= read -r file; do
    [[ $file != /* && $file != ../* && -f $(dirname "$form")/$file ]] || continue
    mkdir -p "$folder/$(dirname "$file")"
    cp "$(dirname "$form")/$file" "$folder/$file"
  done < <(tr -d '\r' <"$form" | sed -n 's/^[[:space:]]*Picture[[:space:]]*=[[:space:]]*"\(.*\)".*/\1/p' | tr '\\' /)
  copied_form=$folder/$(basename "$form")
}

# start_designer FORM LOG SAVE: leaves its process group in `host_group`.
start_designer() {
  local form=$1 log=$2 save=$3 arguments
  arguments=(--design)
  [[ -z $form ]] || arguments+=("$(windows_path "$form")")
  arguments+=(--log "$(windows_path "$log")")
  [[ -z $save ]] || arguments+=(--save "$(windows_path "$save")")
  start_group run_windows "${demo_limit:-86400}" "$host_program" "${arguments[@]}" >"$logs/qvxhost.log" 2>&1
  host_group=$group
}

# run_designer FORM KEYS SCREENSHOT LOG SAVE: needs a prefix and a display. The run is unattended with a key script or a
# screenshot.
run_designer() {
  local form=$1 keys=$2 screenshot=$3 log=$4 save=$5 title status=0
  title=$(designer_title "${form:-Form1}")
  : >"$log"
  register_server "$ocx" || {
    warn "The component server could not be registered."
    return 1
  }
  if [[ -z $keys && -z $screenshot ]]; then
    allow_browser
    start_designer "$form" "$log" "$save"
    say "The designer is open; close its window to end."
    wait "$host_group" || status=$?
  else
    demo_limit=600 start_designer "$form" "$log" "$save"
    attend_host "$title" "$keys" "$screenshot" "$log" || status=$?
  fi
  if ((status != 0)); then
    tail -n 20 "$logs/qvxhost.log" "$log" >&2
  fi
  return "$status"
}

qvx_design() {
  local subject keys screenshot log save virtual form
  read_run_options "$@"
  form=$(from_caller "$subject")
  [[ -z $form || -f $form ]] || die "There is no form $form."
  build x64 --target qvx_server qvxhost || die "The build failed."
  need "${packages_display[@]}"
  mkdir -p "$root/build/design"
  log=${log:-$root/build/design/designer.log}
  if is_unseen; then
    screenshot=$root/build/design/designer.png
    say "There is no display to show it on: it opens by itself and leaves a picture."
  fi
  if [[ -n $form && -n $keys$screenshot ]]; then
    copy_form "$form" "$root/build/design/$(basename "$form" .frm)"
    form=$copied_form
    say "Working on a copy: $form"
  fi
  start_wine
  use_display $virtual
  run_designer "$form" "$keys" "$screenshot" "$log" "$save" || die "The designer failed."
  [[ -z $screenshot ]] || say "Picture: $screenshot"
  [[ -z $save ]] || say "Saved form: $save"
}
