# Plays a key script: keystrokes and clicks are sent to the display from outside the program, as a person's would
# arrive. docs/demo-keys.md describes the commands.
# shellcheck shell=bash

keys_log=      # the log file that wait-log and no-log read
keys_log_line= # lines of it that earlier waits have passed
keys_limit=    # seconds that a wait may take
keys_window=   # the window that coordinates belong to
keys_where=    # script and line, for messages
keys_database= # the database of the form

keys_fail() { warn "$keys_where: $*"; }

# A title as a pattern for xdotool.
window_pattern() { sed 's/[][\\.*^$+?(){}|]/\\&/g' <<<"$1"; }

# find_window TITLE: the newest visible window with that text in its title. Window managers' own frames have no title.
find_window() { xdotool search --onlyvisible --name "$(window_pattern "$1")" 2>/dev/null | tail -n 1; }

# wait_focus WINDOW SECONDS: waits until the window receives keys. The display is asked, since the window that the
# window manager considers active may be an earlier program's with the same number.
wait_focus() {
  local deadline=$((SECONDS + $2))
  while ((SECONDS <= deadline)); do
    [[ $(timeout 5 xdotool getwindowfocus 2>/dev/null) != "$1" ]] || return 0
    sleep 0.05
  done
  return 1
}

# focus_window WINDOW: brings it to the front and waits until it receives keys. A disabled window never does.
focus_window() {
  local i
  for ((i = 0; i < 5; i++)); do
    timeout 5 xdotool windowactivate "$1" 2>/dev/null || timeout 5 xdotool windowfocus "$1" 2>/dev/null || true
    ! wait_focus "$1" 1 || return 0
  done
}

wait_window() {
  local deadline=$((SECONDS + keys_limit)) found
  while ((SECONDS <= deadline)); do
    found=$(find_window "$1" || true)
    if [[ -n $found ]]; then
      keys_window=$found
      focus_window "$found"
      return 0
    fi
    sleep 0.1
  done
  keys_fail "no window with \"$1\" in its title appeared within $keys_limit s."
  return 1
}

wait_window_gone() {
  local deadline=$((SECONDS + keys_limit))
  while ((SECONDS <= deadline)); do
    [[ -n $(find_window "$1" || true) ]] || return 0
    sleep 0.1
  done
  keys_fail "the window with \"$1\" in its title is still there after $keys_limit s."
  return 1
}

# press_until_gone KEY TITLE: for a window that is busy, or behind another program's, for an unknown time.
press_until_gone() {
  local deadline=$((SECONDS + keys_limit)) found
  while ((SECONDS <= deadline)); do
    sleep 1
    found=$(find_window "$2" || true)
    [[ -n $found ]] || return 0
    focus_window "$found"
    xdotool key --delay 60 -- "$1"
  done
  keys_fail "the window with \"$2\" in its title is still there after $keys_limit s."
  return 1
}

# A message box has its form's title.
wait_other_window() {
  local deadline=$((SECONDS + keys_limit)) pattern found
  pattern=$(window_pattern "$1")
  while ((SECONDS <= deadline)); do
    found=$(xdotool search --onlyvisible --name "$pattern" 2>/dev/null | grep -vxF "$keys_window" | tail -n 1) || true
    if [[ -n $found ]]; then
      wait_focus "$found" 5 || true
      return 0
    fi
    sleep 0.1
  done
  keys_fail "no other window with \"$1\" in its title appeared within $keys_limit s."
  return 1
}

# The line number of the first log line with that text after the ones already passed, or nothing.
find_in_log() {
  [[ -f $keys_log ]] || return 0
  tr -d '\r' <"$keys_log" | awk -v from="$keys_log_line" -v text="$1" 'NR > from && index($0, text) { print NR; exit }'
}

wait_log() {
  local deadline=$((SECONDS + keys_limit)) line
  while ((SECONDS <= deadline)); do
    line=$(find_in_log "$1")
    if [[ -n $line ]]; then
      keys_log_line=$line
      return 0
    fi
    sleep 0.1
  done
  keys_fail "the log did not say \"$1\" within $keys_limit s."
  return 1
}

# wait_color X Y RRGGBB: waits for the visible colour at that point of the target window, in the window itself or in
# anything above it.
wait_color() {
  local deadline=$((SECONDS + keys_limit)) left top seen=
  [[ -n $keys_window ]] || {
    keys_fail "there is no target window yet; wait-window comes first."
    return 1
  }
  while ((SECONDS <= deadline)); do
    read -r left top < <(xwininfo -id "$keys_window" | awk '/Absolute upper-left/ { printf "%s ", $NF }') || true
    seen=$(timeout 10 import -window root -crop "1x1+$((left + $1))+$((top + $2))" +repage -depth 8 rgb:- | od -An -tx1 | tr -d ' \n') || true
    [[ ${seen^^} != "${3^^}" ]] || return 0
    sleep 0.1
  done
  keys_fail "the colour at $1,$2 is $seen, not $3."
  return 1
}

# pointer ACTION X Y: moves to the point of the target window, then clicks the given buttons in turn.
pointer() {
  [[ -n $keys_window ]] || {
    keys_fail "there is no target window yet; wait-window comes first."
    return 1
  }
  xdotool mousemove --window "$keys_window" "$1" "$2"
}

# seconds MILLISECONDS
seconds() { printf '%d.%03d' $(($1 / 1000)) $(($1 % 1000)); }

# play_line COMMAND REST
play_line() {
  local command=$1 rest=$2 words limit=$keys_limit
  read -r -a words <<<"$rest"
  # A quoted text may be followed by the seconds to wait for it.
  if [[ $command == wait-* && $rest =~ ^\"(.*)\"[[:space:]]*([0-9]*)$ ]]; then
    rest=${BASH_REMATCH[1]}
    local keys_limit=${BASH_REMATCH[2]:-$limit}
  fi
  case $command in
    wait-window) wait_window "$rest" ;;
    wait-gone) wait_window_gone "$rest" ;;
    until-gone) press_until_gone "${words[0]}" "${rest#"${words[0]}" }" ;;
    wait-other) wait_other_window "$rest" ;;
    wait-log) wait_log "$rest" ;;
    wait-color) wait_color "${words[@]}" ;;
    no-log)
      [[ -z $(find_in_log "$rest") ]] || {
        keys_fail "the log says \"$rest\"."
        return 1
      }
      ;;
    timeout) keys_limit=$rest ;;
    move) pointer "${words[@]}" ;;
    click) pointer "${words[@]}" && xdotool click 1 ;;
    rightclick) pointer "${words[@]}" && xdotool click 3 ;;
    dblclick) pointer "${words[@]}" && xdotool click --repeat 2 --delay 80 1 ;;
    drag)
      pointer "${words[0]}" "${words[1]}" && xdotool mousedown 1 &&
        pointer $(((words[0] + words[2]) / 2)) $(((words[1] + words[3]) / 2)) &&
        pointer "${words[2]}" "${words[3]}" && xdotool mouseup 1
      ;;
    wheel) xdotool click --repeat "${words[1]:-1}" --delay 30 "$([[ ${words[0]} == up ]] && echo 4 || echo 5)" ;;
    sql) sqlite3 -batch -bail -init /dev/null "$keys_database" "$rest" || {
      keys_fail "the database refuses that."
      return 1
    } ;;
    type) xdotool type --delay 40 -- "$rest" ;;
    key) xdotool key --delay 60 -- "${words[@]}" ;;
    hold) xdotool keydown "${words[0]}" sleep "$(seconds "${words[1]}")" keyup "${words[0]}" ;;
    pause) sleep "$(seconds "$rest")" ;;
    screenshot) take_picture "$rest" "$keys_window" ;;
    screenshot-all) take_picture "$rest" ;;
    close) xdotool key --delay 60 alt+F4 ;;
    *)
      keys_fail "there is no command '$command'."
      return 1
      ;;
  esac
}

# play_keys SCRIPT LOG: fails with the first line that fails.
play_keys() {
  local script=$1 line number=0
  keys_log=$2 keys_log_line=0 keys_limit=30 keys_window=
  while IFS= read -r line || [[ -n $line ]]; do
    number=$((number + 1))
    line=${line%$'\r'}
    line=${line#"${line%%[![:space:]]*}"}
    [[ -n $line && $line != \#* ]] || continue
    keys_where="$script:$number"
    if [[ $line == *[[:space:]]* ]]; then
      play_line "${line%%[[:space:]]*}" "${line#*[[:space:]]}" || return 1
    else
      play_line "$line" "" || return 1
    fi
  done <"$script"
}
