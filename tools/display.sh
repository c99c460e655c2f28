# The display for windows: the current one, or a virtual one that lives as long as this script.
# shellcheck shell=bash

virtual_screen=1280x1024

display_is_reachable() { [[ -n ${DISPLAY:-} ]] && timeout 5 xdpyinfo >/dev/null 2>&1; }

has_window_manager() {
  [[ $(timeout 5 xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null) == *"window id"* ]]
}

# A window manager provides captions, borders and focus changes: without one, these tests would mean little.
start_window_manager() {
  local i log=$logs/openbox$DISPLAY.log
  mkdir -p "$logs"
  start_group openbox --sm-disable >"$log" 2>&1
  for ((i = 0; i < 300; i++)); do
    has_window_manager && return 0
    sleep 0.1
  done
  die "The window manager did not start; see ${log#"$root"/}."
}

start_virtual_display() {
  local number_file i log
  mkdir -p "$logs"
  log=$(mktemp "$logs/xvfb.XXXXXX.log")
  number_file=$(mktemp)
  # The server looks for a free display itself and writes its number. It must not reset when its last client leaves: a
  # client that connects at that moment, such as the window manager after a probe, would be rejected.
  start_group Xvfb -displayfd 3 -screen 0 "${virtual_screen}x24" -nolisten tcp -noreset 3>"$number_file" >"$log" 2>&1
  for ((i = 0; i < 100; i++)); do
    [[ -s $number_file ]] && break
    sleep 0.1
  done
  DISPLAY=:$(tr -d '[:space:]' <"$number_file")
  rm -f "$number_file"
  [[ $DISPLAY != : ]] || die "The virtual display did not start; see ${log#"$root"/}."
  mv "$log" "$logs/xvfb$DISPLAY.log"
  export DISPLAY
  unset XAUTHORITY WAYLAND_DISPLAY
  # On a busy machine, the server writes its number some time before it accepts clients.
  for ((i = 0; i < 100; i++)); do
    display_is_reachable && break
    sleep 0.1
  done
  start_window_manager
}

# use_display [virtual]
use_display() {
  need "${packages_display[@]}"
  if [[ ${1:-} != virtual ]] && display_is_reachable; then
    say "Using the display $DISPLAY"
    has_window_manager || start_window_manager
  else
    start_virtual_display
    say "Using a virtual display ($DISPLAY)"
  fi
}

# take_picture FILE [WINDOW]: the screen, or the part of it with the window and its frame (and anything above it).
take_picture() {
  local file=$1 window=${2:-} crop=() x y width height left right top bottom
  if [[ -n $window ]]; then
    read -r x y width height < <(xwininfo -id "$window" |
      awk '/Absolute upper-left|^  Width|^  Height/ { printf "%s ", $NF }') || true
    read -r left right top bottom < <(xprop -id "$window" _NET_FRAME_EXTENTS 2>/dev/null |
      sed -n 's/.*= //; s/,//g; /^[0-9 ]*$/p') || true
    crop=(-crop "$((width + ${left:-0} + ${right:-0}))x$((height + ${top:-0} + ${bottom:-0}))+$((x - ${left:-0}))+$((y - ${top:-0}))" +repage)
  fi
  mkdir -p "$(dirname "$file")"
  timeout 30 import -window root "${crop[@]}" "png:$file"
}
