# Runs 64-bit Windows programs on another release of the distribution, with its version of Wine (roots.sh). A release is
# a suite that debootstrap knows, such as trixie.
# shellcheck shell=bash

system_suite=  # the release, or nothing for this machine's own
system_root=   # its folder
system_prefix= # this run's prefix in it

# prepare_system SUITE: makes the system if it is not there, and leaves its folder in `system_root`.
prepare_system() {
  local suite=$1 folder=$cache_home/$1
  mkdir -p "$logs"
  if ! can_be_root; then
    warn "Another system cannot be entered: that needs root or sudo."
  elif ! can_mount_privately; then
    warn "Another system cannot be entered: the root file system cannot be made private here."
  elif root_is_made "$folder" ||
    make_root "$folder" amd64 "$suite" win64 "$wine64" wine wine64 fonts-wine unixodbc libsqliteodbc; then
    system_root=$folder
    return 0
  else
    warn "The system $suite could not be made."
  fi
  return 1
}

# start_system: creates this run's prefix in the system; run_windows runs programs in it from here on.
start_system() {
  # Wine 10 confines the mouse to a window that covers the screen, and does so for ever where the display refuses it. The
  # largest window of the tests is the designer at twice the usual resolution.
  virtual_screen=2560x2048
  use_display virtual
  start_in_root "$system_root" win64 || return 1
  system_prefix=$root_prefix
  say "Testing on $system_suite with $(in_root "$system_root" 20 win64 "$system_prefix" "$wine64" --version 2>/dev/null)"
}

run_in_system() {
  local limit=$1
  shift
  in_root "$system_root" "$limit" win64 "$system_prefix" "$wine64" "$@"
}
