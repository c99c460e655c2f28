# Makes the documentation that a browser shows, and tests it.
# shellcheck shell=bash

site=$root/build/docs

make_docs() {
  need "${packages_docs[@]}"
  with_log docs python3 -B tools/docs.py "$site"
}

# observe_members LOG: runs every example of the reference pages on the real controls. Needs a prefix and a display.
observe_members() {
  local folder=$root/build/docs-run
  rm -rf "$folder" "$1"
  python3 -B tools/docs_run.py script "$folder" || return 1
  register_server "$ocx" || return 1
  run_windows 300 "$host_program" "$(windows_path "$folder/members.frm")" "$(windows_path "$folder/members.vbs")" \
    --quiet --log "$(windows_path "$1")"
  sed -i 's/\r$//' "$1"
}

write_observed() {
  local log=$root/build/docs-members.log
  build x64 --target qvx_server qvxhost || die "The build failed."
  start_wine
  use_display virtual
  with_log docs-run observe_members "$log" || die "The examples could not be run."
  python3 -B tools/docs_run.py observed "$log" >docs/observed.txt || die "An example has failed."
  say "Wrote docs/observed.txt"
}

qvx_docs() {
  case ${1:-} in
    '')
      make_docs || die "The documentation could not be made."
      say "The documentation is in build/docs; it begins with index.html"
      ;;
    --observe) write_observed ;;
    --pictures) write_pictures ;;
    *) die "There is no option '$1' (see ./qvx help)." ;;
  esac
}

# The same sources give the same bytes.
test_docs_made() {
  rm -rf "$site-again"
  python3 -B tools/docs.py "$site" && python3 -B tools/docs.py "$site-again" && diff -r "$site" "$site-again"
}

# Examples, defaults and errors on the pages are what the controls do.
test_docs_observed() {
  local log=$root/build/test/docs-members.log
  observe_members "$log" || return 1
  python3 -B tools/docs_run.py observed "$log" >"$log.observed" || return 1
  diff docs/observed.txt "$log.observed" || { echo "Run ./qvx docs --observe."; return 1; }
}

# The compilers accept the listings.
test_docs_listings() {
  local folder=$root/build/test/docs-listings file compiler
  rm -rf "$folder"
  python3 -B tools/docs_listings.py "$folder" || return 1
  for file in "$folder"/*; do
    if [[ $file == *.c ]]; then compiler=(x86_64-w64-mingw32-gcc -std=c17); else compiler=(x86_64-w64-mingw32-g++ -std=c++20); fi
    "${compiler[@]}" -fsyntax-only -Wall -Wextra -Werror -isystem build/x64/typelib/generated "$file" || return 1
  done
}

test_docs() {
  need "${packages_docs[@]}"
  want "${packages_browser[@]}"
  build_for_test x64
  start_wine_once
  check docs made test_docs_made
  check docs observed test_docs_observed
  check docs listings test_docs_listings
  check docs faults python3 -B tools/docs_check.py faults "$site"
  check docs links python3 -B tools/docs_check.py links "$site"
  if command -v chromium >/dev/null; then
    check docs browser timeout -k 10 300 python3 -B tools/docs_check.py browser "$site" "$root/build/test/docs-pictures"
  else
    warn "docs: THE PAGES ARE NOT OPENED: there is no chromium."
    count docs browser 0 0 1
  fi
}

# ---- Pictures for the pages -----------------------------------------------------------------------------------------

# picture_of NAME: an area of the window's interior as docs/images/NAME.png. The areas are those of tests/guide/states.frm.
declare -A state_areas=(
  [button-focused]=10,10,100,28 [button-normal]=120,10,100,28 [button-over]=120,10,100,28 [button-pressed]=120,10,100,28
  [button-disabled]=230,10,100,28 [button-dropdown]=340,10,100,28 [button-simple]=450,10,100,28
  [button-simple-over]=450,10,100,28 [button-heavy]=560,10,100,28 [button-heavy-over]=560,10,100,28
  [rbutton-focused]=10,52,100,28 [rbutton-normal]=120,52,100,28 [rbutton-over]=120,52,100,28
  [rbutton-pressed]=120,52,100,28 [rbutton-disabled]=230,52,100,28
  [textedit-focused]=10,96,150,19 [textedit-normal]=170,96,150,19 [textedit-disabled]=330,96,150,19
  [textedit-locked]=490,96,150,19 [textedit-right]=10,126,150,19 [textedit-flat]=170,126,150,19
  [combogrid-focused]=10,160,300,110 [combogrid-editing]=10,160,300,110 [combogrid-list]=10,160,300,110
  [combogrid-disabled]=10,280,300,110 [combogrid-right-to-left]=320,280,300,110
  [combogrid-by-row]=10,400,300,110 [combogrid-deep]=320,400,300,110
  [flatborder-default]=10,530,150,70 [flatborder-colours]=180,530,150,70
)

picture_of() {
  local x y width height left top
  IFS=, read -r x y width height <<<"${state_areas[$1]}"
  sleep 0.4
  read -r left top < <(xwininfo -id "$keys_window" | awk '/Absolute upper-left/ { printf "%s ", $NF }') || true
  # A little of the form around a control shows where it ends.
  timeout 10 import -window root -crop "$((width + 8))x$((height + 8))+$((left + x - 4))+$((top + y - 4))" +repage \
    "png:$root/docs/images/$1.png"
}

# The middle of an area, for the mouse.
point_at() {
  local x y width height
  IFS=, read -r x y width height <<<"${state_areas[$1]}"
  xdotool mousemove --window "$keys_window" $((x + width / 2)) $((y + height / 2))
}

leave_controls() { xdotool mousemove --window "$keys_window" 700 640; }

# Under the mouse, and held down; the press ends elsewhere, so that it clicks nothing.
picture_button() {
  point_at "$1-over"
  picture_of "$1-over"
  [[ ${2:-} == pressed ]] || return 0
  xdotool mousedown 1
  picture_of "$1-pressed"
  leave_controls
  xdotool mouseup 1
}

picture_states() {
  local log=$logs/docs-states.log name
  register_server "$ocx" || return 1
  rm -f "$log"
  demo_limit=120 start_host tests/guide/states.frm "$log" ''
  keys_log=$log keys_log_line=0 keys_limit=30 keys_where=states
  wait_window States && wait_log Ready || return 1
  leave_controls
  for name in button-focused button-normal button-disabled button-dropdown button-simple button-heavy \
    rbutton-normal rbutton-disabled textedit-normal textedit-disabled textedit-locked textedit-right textedit-flat \
    combogrid-disabled combogrid-right-to-left combogrid-by-row combogrid-deep \
    flatborder-default flatborder-colours; do
    picture_of "$name"
  done
  # The form's first four controls are those that are shown with the focus.
  for name in rbutton textedit combogrid; do
    xdotool key Tab
    picture_of "$name-focused"
  done
  xdotool key F2
  picture_of combogrid-editing
  xdotool key Escape Left F2
  picture_of combogrid-list
  xdotool key Escape Escape
  picture_button button pressed
  picture_button rbutton pressed
  picture_button button-simple
  picture_button button-heavy
  leave_controls
  close_host States
  end_group "$host_group"
}

# The ledger and the preview of its pages, into the folder of the pictures of the first hour.
picture_ledger() {
  local base=$root/build/test/guide/ledger
  make_database samples/ledger.sql "$base.db" &&
    run_demo samples/ledger.frm tests/guide/ledger.keys '' "$base.log" '' "$base.db"
}

write_pictures() {
  need "${packages_database[@]}"
  build x64 --target qvx_server qvxhost qvx_ado || die "The build failed."
  start_wine
  use_display virtual
  with_log docs-states picture_states || die "The pictures of the controls could not be taken."
  with_log docs-guide run_guide_test || die "The first hour could not be repeated."
  with_log docs-ledger picture_ledger || die "The pictures of the ledger could not be taken."
  cp "$root"/build/test/guide/*.png docs/images/
  say "The pictures are in docs/images; look at each one that git shows as changed."
}
