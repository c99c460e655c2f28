# Tests the setup programs by running them: what they install works, and what they remove leaves nothing.
# shellcheck shell=bash

uninstall_key='Software\Microsoft\Windows\CurrentVersion\Uninstall\Qvx'

# expect NAME COMMAND...: prints a line of a check.
expect() {
  local name=$1
  shift
  if "$@"; then echo "ok $name"; else echo "FAILED $name"; fi
}

# installed SCOPE VALUE: a value of the entry in the system's list of programs, or nothing; the scope is HKCU or HKLM.
installed() {
  run_windows 60 reg query "$1\\$uninstall_key" /v "$2" 2>/dev/null | tr -d '\r' | sed -n "s/^ *$2 *REG_[A-Z]* *//p"
}

version_is() { [[ $(installed "$1" DisplayVersion) == "$2" ]]; }

# exit_code EXPECTED SECONDS PROGRAM ARGUMENT...
exit_code() {
  local expected=$1 status=0
  shift
  run_windows "$@" || status=$?
  echo "exit code $status: ${*:2}"
  ((status == expected))
}

# Prints what each control says, and fails unless each can be created and used.
controls_work() {
  local printed
  printed=$(run_windows 60 cscript //nologo "$(windows_path tests/setup/controls.vbs)" | tr -d '\r')
  echo "$printed"
  [[ $(grep -c '^created ' <<<"$printed") == 7 && $(wc -l <<<"$printed") == 7 ]]
}

no_controls() { ! controls_work >/dev/null; }

# registered_at SCOPE FOLDER: every control is registered in that scope, with the server in that folder. This layer's
# COM does not look for classes of one user, so that those cannot be created as others are.
registered_at() {
  local class classes server
  mapfile -t classes < <(sed -n 's/.*<comClass clsid="\([^"]*\)" progid=.*/\1/p' server/Qvx.manifest)
  ((${#classes[@]} == 7)) || return 1
  for class in "${classes[@]}"; do
    server=$(run_windows 60 reg query "$1\\Software\\Classes\\CLSID\\$class\\InprocServer32" /ve | tr -d '\r' | sed -n 's/.*REG_SZ *//p')
    [[ $server == "$2\\$wine_arch\\Qvx.ocx" ]] || return 1
  done
}

# unix_path SCOPE: the folder of an installation.
unix_path() {
  local path
  path=$(installed "$1" InstallLocation)
  [[ -n $path ]] || return 1
  path=${path#C:\\}
  echo "$drive_c/${path//\\//}"
}

# The registry and the names of all files; without the times at which keys were written, what the display's driver
# notes, and two keys that every system has but a new prefix has not.
snapshot() {
  local to=$1
  settle_windows
  as_root cat "$drive_c/../system.reg" "$drive_c/../user.reg" | sed -E 's/^(\[.*\]) [0-9]+$/\1/; /^#time=/d; /^"DriverDateData"=/d' |
    perl -0pe 's/^\[Software\\\\(Classes\\\\CLSID|Microsoft\\\\Windows\\\\CurrentVersion\\\\Uninstall)\]\n\n//mg' >"$to.registry"
  as_root find "$drive_c" -not -path '*/Temp/*' | sed "s|^$drive_c||" | sort >"$to.files"
}

same_as_before() {
  snapshot "$work/after"
  diff "$work/before.registry" "$work/after.registry" && diff "$work/before.files" "$work/after.files"
}

# uninstall SCOPE: the uninstaller goes on in a copy of itself, so the end of the entry is waited for.
uninstall() {
  local i
  run_windows 60 "$(installed "$1" InstallLocation)\\Uninstall.exe" /S
  for ((i = 0; i < 60; i++)); do
    [[ -n $(installed "$1" DisplayVersion) ]] || break
    sleep 0.5
  done
  settle_windows
  [[ -z $(installed "$1" DisplayVersion) ]]
}

# A program that has created the controls keeps the setup from replacing them.
refuses_while_in_use() {
  local status=0 holder i
  touch "$work/holds"
  : >"$work/holder"
  run_windows 90 cscript //nologo "$(windows_path tests/setup/controls.vbs)" "$(windows_path "$work/holds")" >"$work/holder" &
  holder=$!
  for ((i = 0; i < 100; i++)); do
    ! grep -q 'created CMenus' "$work/holder" || break
    sleep 0.2
  done
  exit_code 4 120 "$setup" /S || status=1
  cmp "$folder/$wine_arch/Qvx.ocx" "$package/files/$wine_arch/Qvx.ocx" || status=1
  rm "$work/holds"
  wait "$holder" || true
  return "$status"
}

# Prints a line for each check of the setup program in `setup` in this run's environment; `older` is that of an earlier
# version, which has samples/old.txt besides.
setup_checks() {
  local folder
  expect "nothing is registered at first" no_controls
  snapshot "$work/before"

  expect "an earlier version installs for all users" exit_code 0 120 "$older" /S /AllUsers
  expect "its version is listed" version_is HKLM 0.9.0
  expect "its controls work" controls_work
  folder=$(unix_path HKLM)
  expect "its file is there" [ -f "$folder/samples/old.txt" ]
  as_root sh -c "echo mine >'$folder/samples/mine.txt'"
  expect "this version upgrades it" exit_code 0 120 "$setup" /S
  expect "this version is listed" version_is HKLM "$(package_version)"
  expect "the upgraded controls work" controls_work
  expect "the file that this version lacks is gone" [ ! -e "$folder/samples/old.txt" ]
  expect "a user's own file stays" [ -f "$folder/samples/mine.txt" ]
  expect "the earlier version refuses to replace it" exit_code 3 120 "$older" /S
  expect "it is still listed" version_is HKLM "$(package_version)"
  expect "it refuses while the controls are in use" refuses_while_in_use
  as_root rm "$folder/$wine_arch/Qvx.ocx" "$folder/samples/first.frm"
  expect "it repairs" exit_code 0 120 "$setup" /S
  expect "the lost files are back" cmp "$folder/$wine_arch/Qvx.ocx" "$package/files/$wine_arch/Qvx.ocx"
  expect "the repaired controls work" controls_work
  expect "it removes components" exit_code 0 120 "$setup" /S /COMPONENTS=controls64,controls32
  expect "no sample is left but the user's file" [ "$(ls "$folder/samples")" = mine.txt ]
  expect "the remaining controls work" controls_work

  expect "it installs for the user besides" exit_code 0 120 "$setup" /S /CurrentUser
  expect "the user's is registered" registered_at HKCU "$(installed HKCU InstallLocation)"
  expect "the user's uninstalls" uninstall HKCU
  expect "the other is still registered" registered_at HKLM "$(installed HKLM InstallLocation)"
  expect "the other's controls work" controls_work

  as_root cp "$package/files/$wine_arch/Qvx.ocx" "$drive_c/Other.ocx"
  expect "somebody else's copy registers" run_windows 60 regsvr32 /s 'C:\Other.ocx'
  expect "the one of all users uninstalls" uninstall HKLM
  expect "the user's file outlives it" [ "$(cd "$folder" && find . -type f)" = ./samples/mine.txt ]
  expect "somebody else's copy works" controls_work
  expect "somebody else's copy unregisters" run_windows 60 regsvr32 /s /u 'C:\Other.ocx'
  as_root rm -r "$drive_c/Other.ocx" "$folder"
  expect "nothing is left" same_as_before
}

# make_older_setup: leaves a setup program of an earlier version, with a file that this version lacks.
make_older_setup() {
  local folder=$root/build/test/older
  rm -rf "$folder"
  mkdir -p "$folder"
  cp -r "$package/files" "$folder/"
  echo old >"$folder/files/samples/old.txt"
  python3 tools/packaging setups "$folder" 0.9.0 0 "$folder/files"
}

# enter_environment ARCH FOLDER: starts a Windows environment of this shell's own, with its drive C: in `drive_c`.
enter_environment() {
  mkdir -p "$2"
  use_arch "$1"
  if [[ $1 == x64 ]]; then
    start_wine
    drive_c=$prefix/drive_c
    return
  fi
  start_wine32 || die "The 32-bit Windows environment could not be prepared."
  if [[ $root32_way == chroot ]]; then drive_c=$root32$prefix32/drive_c; else drive_c=$prefix32/drive_c; fi
}

# test_setup ARCH NAME: runs the setup program in an environment of its own.
test_setup() (
  local work=$root/build/test/setup-$1 drive_c setup older
  watch_exit
  enter_environment "$1" "$work"
  setup=$(windows_path "$package/Qvx-$(package_version)-$2.exe")
  older=$(windows_path "build/test/older/Qvx-0.9.0-$2.exe")
  DISPLAY='' count_checks package "$2" setup_checks
)

# The archive's forms host shows a form where nothing is registered, in a folder that was only copied.
test_zip() (
  local folder=$root/build/test/zip name title form
  name=Qvx-$(package_version)
  watch_exit
  rm -rf "$folder"
  python3 -m zipfile -e "$package/$name.zip" "$folder" || return 1
  host_program=$folder/$name/x64/qvxhost.exe
  form=$folder/$name/samples/buttons.frm
  title=$(form_caption "$form")
  start_wine
  use_display virtual
  demo_limit=60 start_host "$form" "$folder/log.txt" "$folder/saved.frm"
  attend_host "$title" '' "$folder/picture.png" "$folder/log.txt" && cmp "$form" "$folder/saved.frm"
)

# test_stack_protector ARCH: a program that writes beyond a buffer is ended, with this architecture's flags.
test_stack_protector() (
  local program=build/$1/tests/overflow.exe drive_c
  watch_exit
  build "$1" --target overflow || return 1
  enter_environment "$1" "$root/build/test"
  exit_code 0 60 "$(windows_path "$program")" short || return 1
  # The lowest byte of STATUS_STACK_BUFFER_OVERRUN, 0xC0000409.
  exit_code 9 60 "$(windows_path "$program")" "$(printf 'x%.0s' {1..40})"
)

test_setups() {
  check package stack-x64 test_stack_protector x64
  check package zip test_zip
  check package older make_older_setup
  test_setup x64 setup-x64
  if prepare_root32; then
    test_setup x86 setup
    check package stack-x86 test_stack_protector x86
  else
    warn "THE 32-BIT SETUP TESTS ARE SKIPPED."
    count package setup 0 0 1
  fi
}
