# Compares the archivers with the distribution's archive programs: what one packs, the other must unpack byte for byte.
# shellcheck shell=bash

archives= # the folder in which they work, once it is made

pkzip() { run_windows 120 "$root/build/$wine_arch/PkZip.exe" "$@"; }
pkunzip() { run_windows 120 "$root/build/$wine_arch/PkunZip.exe" "$@"; }

# expect CODE COMMAND...: the command must end with that exit code.
expect() {
  local wanted=$1 got=0
  shift
  "$@" || got=$?
  ((got == wanted)) || {
    warn "Exit code $got instead of $wanted: $*"
    return 1
  }
}

# new_folder NAME: creates an empty folder; its path is left in `folder`.
new_folder() {
  folder=$archives/$1
  rm -rf "$folder"
  mkdir -p "$folder"
}

# Files of every kind that one folder can contain.
make_archive_files() {
  local from=$archives/files
  mkdir -p "$from"
  : >"$from/empty.dat"
  printf x >"$from/one byte.bin"
  seq 1 200000 >"$from/numbers.txt"
  head -c 1500000 /dev/urandom >"$from/noise.bin"
  cp LICENSE "$from/Żółw 日本.txt"
  cp LICENSE "$from/protected.txt"
  touch -d '2001-02-03 04:05:06.25' "$from/numbers.txt"
  touch -d '1985-12-31 23:59:57' "$from/noise.bin"
  touch -d '2037-06-15 12:00:01' "$from/one byte.bin"
  chmod a-w "$from/protected.txt"
}

# same_times FOLDER SECONDS: the times of the folder's files differ from those that were packed by at most so many
# seconds.
same_times() {
  local file here there
  for file in "$archives/files"/*; do
    here=$(stat -c %Y "$file") there=$(stat -c %Y "$1/${file##*/}")
    ((here - there <= $2 && there - here <= $2)) || {
      warn "${file##*/} has the time $there instead of $here."
      return 1
    }
  done
}

# same_files FOLDER SECONDS: the folder contains what was packed, with times within so many seconds, and the protected
# file is protected.
same_files() {
  diff -r "$archives/files" "$1" && same_times "$1" "$2" || return 1
  [[ $(stat -c %A "$1/protected.txt") == ?r-?r-?r-* ]] || {
    warn "The protected file came out writable."
    return 1
  }
}

test_own_archive_in_others() {
  local folder archive=$archives/own.qvx
  pkzip "$(windows_path "$archive")" "$(windows_path "$archives/files")\\*" || return 1
  new_folder unzip
  unzip -q -d "$folder" "$archive" && same_files "$folder" 0 || return 1
  new_folder 7z
  7z x -bso0 -bsp0 "-o$folder" "$archive" && diff -r "$archives/files" "$folder" && same_times "$folder" 0 || return 1
  new_folder python
  python3 -m zipfile -e "$archive" "$folder" && diff -r "$archives/files" "$folder" || return 1
  new_folder "own with blanks"
  pkunzip "$(windows_path "$archive")" "$(windows_path "$folder")\\" || return 1
  same_files "$folder" 0
}

# All forms that other programs write: stored data, data followed by its sizes, names in several encodings.
test_other_archives() {
  local folder archive
  cd "$archives/files" || return 1
  zip -q "$archives/zip.zip" -- * || return 1
  zip -q -0 "$archives/stored.zip" -- * || return 1
  zip -q - -- * >"$archives/streamed.zip" || return 1
  zip -q -fz "$archives/wide.zip" -- * || return 1
  7z a -bso0 -bsp0 -tzip "$archives/7z.zip" -- * || return 1
  # Only the DOS time.
  python3 "$root/tools/archives.py" pack "$archives/python.zip" * || return 1
  for archive in zip stored streamed wide 7z python; do
    new_folder "from $archive"
    pkunzip "$(windows_path "$archives/$archive.zip")" "$(windows_path "$folder")" || {
      warn "PkunZip ended with exit code $? for $archive.zip."
      return 1
    }
    same_files "$folder" 2 || return 1
  done
}

# More than four gigabytes, of which hardly any are on the disk. Other programs take a minute to pack such a file;
# storing it, holes included, takes seconds. A file system in memory reads holes much faster than one on a disk does.
test_huge_file() {
  local folder=$1 huge=$1/huge.db windows
  windows=$(windows_path "$folder")
  truncate -s 5G "$huge"
  printf middle | dd of="$huge" bs=1 seek=3221225472 conv=notrunc status=none
  printf end | dd of="$huge" bs=1 seek=5368709117 conv=notrunc status=none
  pkzip "$windows\\own.qvx" "$windows\\huge.db" || return 1
  python3 tools/archives.py check-huge "$folder/own.qvx" "$huge" || return 1
  # Not a pipe into grep, which ends at the line and thereby makes the program before it fail.
  grep -q '^ *5368709120 .* huge.db$' <<<"$(unzip -lq "$folder/own.qvx")" || return 1
  [[ $(7z l -slt "$folder/own.qvx") == *'Size = 5368709120'* ]] || return 1
  pkunzip "$windows\\own.qvx" "$windows\\own" && python3 tools/archives.py same "$folder/own/huge.db" "$huge" || return 1
  (($(stat -c '%b * %B' "$folder/own/huge.db") < 100000000)) || warn "The huge file takes its whole room on the disk."
  rm -r "$folder/own" "$folder/own.qvx"
  python3 tools/archives.py pack-huge "$folder/other.zip" "$huge" || return 1
  pkunzip "$windows\\other.zip" "$windows\\other" && python3 tools/archives.py same "$folder/other/huge.db" "$huge"
}

# check_huge_file LAYER: runs where there is room; on a disk, for twice the file's whole size, in case holes are not
# supported.
check_huge_file() {
  local folder least=12000
  folder=$(mktemp -d /dev/shm/qvx-archives.XXXXXX 2>/dev/null) && least=100 || folder=$(mktemp -d "$archives/huge.XXXXXX")
  at_exit "rm -rf '$folder'"
  if (($(df --output=avail -B 1M "$folder" | tail -n 1) >= least)); then
    check "$1" huge_file test_huge_file "$folder"
  else
    warn "$1: huge_file IS SKIPPED: it needs $least MB of free space."
    count "$1" huge_file 0 0 1
  fi
  rm -rf "$folder"
}

# A program that is killed in the middle leaves the old archive, and its unfinished file is removed by the next run.
test_killed() {
  local folder i group
  new_folder killed
  head -c 100000000 /dev/urandom >"$folder/noise.bin"
  printf old >"$folder/a.qvx"
  start_group pkzip "$(windows_path "$folder/a.qvx")" "$(windows_path "$folder/noise.bin")"
  for ((i = 0; i < 200; i++)); do
    [[ ! -f $folder/a.qvx.~pkzip || $(stat -c %s "$folder/a.qvx.~pkzip") -lt 5000000 ]] || break
    sleep 0.05
  done
  kill -KILL -- "-$group" || return 1
  wait "$group" 2>/dev/null
  [[ -f $folder/a.qvx.~pkzip && $(<"$folder/a.qvx") == old ]] || return 1
  truncate -s 1000 "$folder/noise.bin"
  # The system may release the killed program's files a moment later.
  sleep 1
  pkzip "$(windows_path "$folder/a.qvx")" "$(windows_path "$folder/noise.bin")" || return 1
  [[ ! -e $folder/a.qvx.~pkzip ]] && unzip -tq "$folder/a.qvx"
}

# Quotes, blanks and backslashes as programs write them into command lines, and a file that its writer still has open.
test_command_lines() {
  local folder
  new_folder lines
  mkdir "$folder/my folder" "$folder/out folder"
  printf 'data\n' >"$folder/my folder/a b.db"
  cat >"$folder/run.bat" <<END
@echo off
"$(windows_path build/x64/PkZip.exe)" "$(windows_path "$folder/my folder")\\a.qvx" "$(windows_path "$folder/my folder")\\a b.db"
if errorlevel 1 exit 1
"$(windows_path build/x64/PkunZip.exe)" "$(windows_path "$folder/my folder")\\a.qvx" "$(windows_path "$folder/out folder")\\"
if errorlevel 1 exit 2
"$(windows_path build/x64/PkZip.exe)" "$(windows_path "$folder")\\open.qvx" "$(windows_path "$folder/my folder")\\a b.db" >> "$(windows_path "$folder/my folder")\\a b.db"
if errorlevel 1 exit 3
exit 0
END
  run_windows 60 cmd /c "$(windows_path "$folder/run.bat")" || return 1
  [[ $(<"$folder/out folder/a b.db") == data && $(unzip -p "$folder/open.qvx") == data ]]
}

# A path beyond the limit of the system's old calls.
test_long_path() {
  local folder i
  new_folder long
  for ((i = 0; i < 8; i++)); do folder+=/a-folder-with-a-name-of-forty-characters; done
  mkdir -p "$folder"
  cp LICENSE "$folder/license.txt"
  pkzip "$(windows_path "$folder/a.qvx")" "$(windows_path "$folder/license.txt")" || return 1
  rm "$folder/license.txt"
  pkunzip "$(windows_path "$folder/a.qvx")" "$(windows_path "$folder")\\" && cmp LICENSE "$folder/license.txt"
}

test_exit_codes() {
  local folder to
  new_folder codes
  to=$(windows_path "$folder")
  printf old >"$folder/a.qvx"
  printf data >"$folder/data"
  expect 1 pkzip || return 1
  expect 0 pkunzip '-?' || return 1
  expect 2 pkzip "$to\\a.qvx" "$to\\missing" || return 1
  expect 3 pkzip "$to\\a.qvx" "$to\\*.missing" || return 1
  expect 2 pkzip "$to\\no folder\\a.qvx" "$to\\data" || return 1
  expect 9 pkunzip "$to\\a.qvx" "$to\\out" || return 1
  [[ $(<"$folder/a.qvx") == old ]] || return 1
  chmod a-w "$folder/a.qvx"
  expect 4 pkzip "$to\\a.qvx" "$to\\data" || return 1
  chmod u+w "$folder/a.qvx"
  (cd "$folder" && zip -q -P secret locked.zip data && printf 'x%.0s' {1..300} >../outside && zip -q up.zip ../outside) || return 1
  expect 11 pkunzip "$to\\locked.zip" "$to\\out" || return 1
  expect 12 pkunzip "$to\\up.zip" "$to\\out" || return 1
  # The first byte of an entry that is stored with nothing but its name before it.
  zip -q -X -0 -j "$folder/flipped.zip" "$folder/data" && python3 tools/archives.py flip "$folder/flipped.zip" 34 || return 1
  expect 10 pkunzip "$to\\flipped.zip" "$to\\out" && [[ -z $(ls -A "$folder/out") ]]
}

# files_in FOLDER: all files below it, without the folders.
files_in() { (cd "$1" && find . ! -type d -printf '%P\n' | LC_ALL=C sort); }

# Whatever names an archive contains, nothing is written elsewhere, and entries with good names are still unpacked.
test_hostile_names() {
  local folder to outside
  new_folder hostile
  to=$(windows_path "$folder")
  mkdir "$folder/out" "$folder/elsewhere"
  ln -s ../elsewhere "$folder/out/linked"
  python3 tools/archives.py hostile "$folder/hostile.zip" || return 1
  outside=$(ls -A / "$prefix/drive_c" .)
  expect 12 pkunzip "$to\\hostile.zip" "$to\\out" || return 1
  files_in "$folder"
  [[ $(files_in "$folder") == $'hostile.zip\nout/good/first.txt\nout/last.txt\nout/link/outside\nout/linked' ]] || return 1
  [[ $(<"$folder/out/good/first.txt") == first && $(ls -A / "$prefix/drive_c" .) == "$outside" ]]
}

# short_path FILE: the Windows path with the last name in its short form, which is left in `short`.
short_path() {
  short=$(run_windows 60 cmd /c dir /x "$(windows_path "$1")" | tr -d '\r' | sed -n "s/.* \([^ ]*~[^ ]*\)  *${1##*/}\$/\1/p")
  [[ -n $short ]] || return 1
  short=$(windows_path "${1%/*}")\\$short
}

# Hosts pass short names; no file gets one as its name afterwards.
test_short_names() {
  local folder to short
  new_folder short
  to=$(windows_path "$folder")
  printf new >"$folder/Customers of today.db"
  short_path "$folder/Customers of today.db" && pkzip "$to\\a.qvx" "$short" || return 1
  [[ $(unzip -Z1 "$folder/a.qvx") == 'Customers of today.db' ]] || return 1
  # An archive that contains the short name of the file, as old programs created them.
  mkdir "$folder/old"
  printf old >"$folder/old/${short##*\\}"
  (cd "$folder/old" && zip -q ../old.zip -- *) && pkunzip "$to\\old.zip" "$to" || return 1
  [[ $(files_in "$folder") == $'Customers of today.db\na.qvx\nold.zip\nold/'"${short##*\\}" ]] || return 1
  [[ $(<"$folder/Customers of today.db") == old ]] || return 1
  mv "$folder/a.qvx" "$folder/The archive of today.qvx"
  short_path "$folder/The archive of today.qvx" && pkzip "$short" "$to\\Customers of today.db" || return 1
  [[ $(files_in "$folder") == *'The archive of today.qvx'* ]] && unzip -tq "$folder/The archive of today.qvx"
}

# Other programs accept parts beside each other as a split archive.
test_split() {
  local folder
  new_folder split
  pkzip -s300k "$(windows_path "$folder/a.zip")" "$(windows_path "$archives/files")\\*" || return 1
  [[ -f $folder/a.z03 ]] || return 1
  7z x -bso0 -bsp0 "-o$folder/7z" "$folder/a.zip" && diff -r "$archives/files" "$folder/7z" || return 1
  pkunzip "$(windows_path "$folder/a.zip")" "$(windows_path "$folder/own")" && same_files "$folder/own" 0
}

# insert DISK: inserts it into drive A: of this run.
insert() { ln -sfn "$archives/disks/$1" "$prefix/dosdevices/a:"; }

# with_disks NUMBER... -- SECONDS PROGRAM ARGUMENT...: inserts each disk when the program asks for one; after that,
# nobody answers.
with_disks() {
  local disks=() disk asked=0 program
  while [[ $1 != -- ]]; do
    disks+=("$1")
    shift
  done
  shift
  rm -f "$archives/answers"
  mkfifo "$archives/answers"
  # shellcheck disable=SC2016
  wine_in_prefix "$prefix" "$1" bash -c 'exec "$@" <"$0"' "$archives/answers" "$wine64" "${@:2}" >"$archives/asked" 2>&1 &
  program=$!
  exec 9>"$archives/answers"
  for disk in "${disks[@]}"; do
    asked=$((asked + 1))
    until (($(grep -c 'press Enter' "$archives/asked") >= asked)); do
      kill -0 "$program" 2>/dev/null || break 2
      sleep 0.05
    done
    insert "$disk"
    echo >&9
  done
  exec 9>&-
  wait "$program"
}

test_removable_disks() {
  local folder size=1000k
  new_folder removable
  cp "$archives/files/noise.bin" "$folder/noise.bin"
  insert 1
  with_disks 2 -- 60 "$root/build/x64/PkZip.exe" '-&' 'A:\b.qvx' "$(windows_path "$folder/noise.bin")" || return 1
  [[ -f $archives/disks/1/b.qvx && -f $archives/disks/2/b.qvx && $(find "$archives/disks" -type f | wc -l) == 2 ]] || return 1
  # The last disk is in the drive; without a user the program ends, with one it asks for the first and the second disk.
  expect 14 pkunzip 'A:\b.qvx' "$(windows_path "$folder/out")" || return 1
  [[ -z $(ls -A "$folder/out") ]] || return 1
  with_disks 1 2 -- 60 "$root/build/x64/PkunZip.exe" 'A:\b.qvx' "$(windows_path "$folder/out")" || return 1
  cmp "$folder/out/noise.bin" "$folder/noise.bin" || return 1
  # An old archive that fills the disk is kept, and has to be deleted before there is room for another one.
  insert 1
  head -c 990000 /dev/zero >"$archives/disks/1/b.qvx"
  expect 5 pkzip '-&' 'A:\b.qvx' "$(windows_path "$folder/noise.bin")" || return 1
  [[ $(stat -c %s "$archives/disks/1/b.qvx") == 990000 ]] || return 1
  rm "$archives/disks/1/b.qvx"
  expect 14 pkzip '-&' 'A:\b.qvx' "$(windows_path "$folder/noise.bin")" || return 1
  [[ -z $(ls -A "$archives/disks/1") ]] && expect 5 pkzip 'A:\b.qvx' "$(windows_path "$folder/noise.bin")" &&
    [[ -z $(ls -A "$archives/disks/1") ]]
}

# Two small file systems act as two disks, if this account may mount them. Drives are looked up when Windows starts.
prepare_disks() {
  local disk
  for disk in 1 2; do
    mkdir -p "$archives/disks/$disk"
    ((EUID == 0)) && mount -t tmpfs -o size=1000k qvx "$archives/disks/$disk" 2>/dev/null || return 1
    at_exit "umount '$archives/disks/$disk'"
  done
  insert 1
  run_windows 60 reg add 'HKLM\Software\Wine\Drives' /v a: /t REG_SZ /d floppy /f >/dev/null
  end_wine "$prefix"
  keep_wine "$prefix"
}

# make_room: creates an empty folder with the files to pack.
make_room() {
  archives=$root/build/test/archives-$wine_arch
  rm -rf "$archives"
  make_archive_files
}

test_archives() {
  # Other programs decode names as the locale says.
  local name LC_ALL=C.UTF-8
  export LC_ALL
  need "${packages_archives[@]}"
  build_for_test x64
  start_wine_once
  make_room
  for name in own_archive_in_others other_archives split killed command_lines long_path exit_codes hostile_names short_names; do
    check archives "$name" "test_$name"
  done
  check_huge_file archives
  if prepare_disks; then
    check archives removable_disks test_removable_disks
  else
    warn "archives: removable_disks IS SKIPPED: small file systems cannot be mounted here."
    count archives removable_disks 0 0 1
  fi
}

# The 32-bit archivers, in the environment of the other 32-bit tests: everything that depends on the width of numbers.
test_archives_x86() {
  local name LC_ALL=C.UTF-8
  export LC_ALL
  need "${packages_archives[@]}"
  make_room
  for name in own_archive_in_others other_archives exit_codes; do check x86 "archives_$name" "test_$name"; done
  check_huge_file x86
}
