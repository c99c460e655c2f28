# Messages, logs, and cleaning up when the script ends. Sourced by ./qvx; `root` is the source tree.
# shellcheck shell=bash

logs=$root/build/logs
# What is made once and kept outside the source tree.
cache_home=${QVX_CACHE:-$([[ $EUID == 0 && -z ${XDG_CACHE_HOME:-} ]] && echo /var/cache || echo "${XDG_CACHE_HOME:-$HOME/.cache}")/qvx}

say() { printf '== %s\n' "$*"; }
warn() { printf '!! %s\n' "$*" >&2; }
die() {
  warn "$@"
  exit 1
}

# Commands to run when this shell ends, last first, however it ends.
cleanups=()

run_cleanups() {
  local status=$? i
  trap '' INT TERM HUP
  trap - EXIT
  set +e
  for ((i = ${#cleanups[@]} - 1; i >= 0; i--)); do
    eval "${cleanups[i]}"
  done
  exit "$status"
}

watch_exit() {
  cleanups=()
  trap run_cleanups EXIT
  trap 'exit 130' INT
  trap 'exit 143' TERM
  trap 'exit 129' HUP
}
watch_exit

at_exit() { cleanups+=("$1"); }

# Ends a process group that start_group has started, and waits for it.
end_group() {
  kill -TERM -- "-$1" 2>/dev/null || return 0
  local i
  for ((i = 0; i < 50; i++)); do
    kill -0 -- "-$1" 2>/dev/null || return 0
    sleep 0.1
  done
  kill -KILL -- "-$1" 2>/dev/null || true
}

# start_group COMMAND...: starts the command in the background in a process group of its own, so that all of it can be
# ended; the group's number is left in `group`.
start_group() {
  set -m
  "$@" </dev/null &
  group=$!
  set +m
  at_exit "end_group $group"
}

# The end of a log; of a build's log, the errors instead.
show_log() {
  if grep -q '^FAILED: ' "$1"; then
    grep -E 'error:|undefined reference|multiple definition|^FAILED: ' "$1" | head -n 30
  else
    tail -n "${log_tail:-40}" "$1"
  fi
}

# with_log LOG COMMAND...: runs the command with its output in build/logs/LOG.log, and shows the end of that when it
# fails. The shell waits for the command in the background, since a trap only runs at once during a wait.
with_log() {
  local log=$logs/$1.log status=0 group
  shift
  mkdir -p "$logs"
  start_group "$@" >"$log" 2>&1
  wait "$group" || status=$?
  unset "cleanups[-1]"
  if ((status != 0)); then
    warn "Failed ($status): $*"
    show_log "$log" >&2
    warn "The whole log: ${log#"$root"/}"
  fi
  return "$status"
}

# Runs a command as root: directly, or through sudo.
as_root() {
  if ((EUID == 0)); then
    "$@"
  else
    sudo "$@"
  fi
}

can_be_root() { ((EUID == 0)) || { command -v sudo >/dev/null && { [[ -t 0 ]] || sudo -n true 2>/dev/null; }; }; }

qvx_clean() {
  remove_roots
  rm -rf "$root/build" "$cache_home"/lazarus-*
  say "Removed build/."
}
