# The archivers beside the archive programs of the distribution: what one packs the other must unpack, byte for byte.
# shellcheck shell=bash

archives=$root/build/test/archives

pkzip() { run_windows 120 "$root/build/x64/PkZip.exe" "$@"; }
pkunzip() { run_windows 120 "$root/build/x64/PkunZip.exe" "$@"; }

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

# new_folder NAME: an empty one, whose path is left in `folder`.
new_folder() {
  folder=$archives/$1
  rm -rf "$folder"
  mkdir -p "$folder"
}

# Files of every kind that one folder can hold.
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

# same_files FOLDER SECONDS: the folder holds what was packed, with times that differ by so much at most, and its protection.
same_files() {
  local file here there
  diff -r "$archives/files" "$1" || return 1
  for file in "$archives/files"/*; do
    here=$(stat -c %Y "$file") there=$(stat -c %Y "$1/${file##*/}")
    ((here - there <= $2 && there - here <= $2)) || {
      warn "${file##*/} has the time $there instead of $here."
      return 1
    }
  done
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
  7z x -bso0 -bsp0 "-o$folder" "$archive" && diff -r "$archives/files" "$folder" || return 1
  new_folder python
  python3 -m zipfile -e "$archive" "$folder" && diff -r "$archives/files" "$folder" || return 1
  new_folder "own with blanks"
  pkunzip "$(windows_path "$archive")" "$(windows_path "$folder")\\" || return 1
  same_files "$folder" 0
}

# Everything that other programs write: what is stored, what has its sizes behind it, names in their several ways.
test_other_archives() {
  local folder archive
  cd "$archives/files" || return 1
  zip -q "$archives/zip.zip" -- * || return 1
  zip -q -0 "$archives/stored.zip" -- * || return 1
  zip -q - -- * >"$archives/streamed.zip" || return 1
  zip -q -fz "$archives/wide.zip" -- * || return 1
  7z a -bso0 -bsp0 -tzip "$archives/7z.zip" -- * || return 1
  # Nothing but the time as DOS has it, and no attributes that this program would not keep.
  python3 - "$archives/python.zip" <<'END' || return 1
import os, sys, time, zipfile
with zipfile.ZipFile(sys.argv[1], "w", zipfile.ZIP_DEFLATED) as archive:
    for name in sorted(os.listdir(".")):
        archive.write(name)
END
  for archive in zip stored streamed wide 7z python; do
    new_folder "from $archive"
    pkunzip "$(windows_path "$archives/$archive.zip")" "$(windows_path "$folder")" || return 1
    same_files "$folder" 2 || return 1
  done
}

# More than four gigabytes, of which hardly any are on the disk: packed and unpacked here, unpacked elsewhere, packed elsewhere.
test_huge_file() {
  local folder huge=$archives/huge/huge.db
  new_folder huge
  truncate -s 5G "$huge"
  printf middle | dd of="$huge" bs=1 seek=3221225472 conv=notrunc status=none
  printf end | dd of="$huge" bs=1 seek=5368709117 conv=notrunc status=none
  pkzip "$(windows_path "$folder/own.qvx")" "$(windows_path "$huge")" || return 1
  unzip -p "$folder/own.qvx" | cmp - "$huge" || return 1
  mkdir "$folder/own"
  pkunzip "$(windows_path "$folder/own.qvx")" "$(windows_path "$folder/own")" || return 1
  cmp "$folder/own/huge.db" "$huge" || return 1
  (($(stat -c '%b * %B' "$folder/own/huge.db") < 1000000000)) || warn "The huge file took all its room on the disk."
  rm -r "$folder/own"
  (cd "$folder" && zip -q -1 other.zip huge.db) && mkdir "$folder/other" || return 1
  pkunzip "$(windows_path "$folder/other.zip")" "$(windows_path "$folder/other")" && cmp "$folder/other/huge.db" "$huge" || return 1
  rm -r "$folder"
}

# A program that is killed in the middle leaves the old archive, and what it has left is gone after the next run.
test_killed() {
  local folder i group
  new_folder killed
  head -c 150000000 /dev/urandom >"$folder/noise.bin"
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
  # The system may notice a moment later that the killed program's files are free.
  sleep 1
  pkzip "$(windows_path "$folder/a.qvx")" "$(windows_path "$folder/noise.bin")" || return 1
  [[ ! -e $folder/a.qvx.~pkzip ]] && unzip -tq "$folder/a.qvx"
}

# Quotes, blanks and backslashes as a program writes them into a command line, and a file that its writer still has open.
test_command_lines() {
  local folder
  new_folder lines
  mkdir "$folder/my folder" "$folder/out folder"
  printf 'data\n' >"$folder/my folder/a b.db"
  cat >"$folder/run.bat" <<END
@echo off
"$(windows_path build/x64/PkZip.exe)" "$(windows_path "$folder/my folder")\\a.qvx" "$(windows_path "$folder/my folder")\\a b.db" || exit 1
"$(windows_path build/x64/PkunZip.exe)" "$(windows_path "$folder/my folder")\\a.qvx" "$(windows_path "$folder/out folder")\\" || exit 2
("$(windows_path build/x64/PkZip.exe)" "$(windows_path "$folder")\\open.qvx" "$(windows_path "$folder/my folder")\\a b.db" || exit 3) >> "$(windows_path "$folder/my folder")\\a b.db"
END
  run_windows 60 cmd /c "$(windows_path "$folder/run.bat")" || return 1
  [[ $(<"$folder/out folder/a b.db") == data && $(unzip -p "$folder/open.qvx") == data ]]
}

# A path beyond the length that the system's old calls take.
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
  python3 - "$folder/locked.zip" "$folder/data" <<'END' || return 1
import sys, zipfile
with zipfile.ZipFile(sys.argv[1], "w") as archive:
    archive.write(sys.argv[2], "data")
content = bytearray(open(sys.argv[1], "rb").read())
content[34] ^= 1
open(sys.argv[1], "wb").write(content)
END
  expect 10 pkunzip "$to\\locked.zip" "$to\\out" && [[ -z $(ls -A "$folder/out") ]]
}

# Parts beside each other are what other programs take for a split archive.
test_split() {
  local folder
  new_folder split
  pkzip -s300k "$(windows_path "$folder/a.zip")" "$(windows_path "$archives/files")\\*" || return 1
  [[ -f $folder/a.z03 ]] || return 1
  7z x -bso0 -bsp0 "-o$folder/7z" "$folder/a.zip" && diff -r "$archives/files" "$folder/7z" || return 1
  pkunzip "$(windows_path "$folder/a.zip")" "$(windows_path "$folder/own")" && same_files "$folder/own" 0
}

# insert DISK: into the drive A: of this run.
insert() { ln -sfn "$archives/disks/$1" "$prefix/dosdevices/a:"; }

# with_disks NUMBER... -- SECONDS PROGRAM ARGUMENT...: each disk goes in when the program asks for one; then there is nobody.
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
  # The last one is in the drive; without anybody there it ends, and with somebody it asks for the first and the second.
  expect 14 pkunzip 'A:\b.qvx' "$(windows_path "$folder/out")" || return 1
  [[ -z $(ls -A "$folder/out") ]] || return 1
  with_disks 1 2 -- 60 "$root/build/x64/PkunZip.exe" 'A:\b.qvx' "$(windows_path "$folder/out")" || return 1
  cmp "$folder/out/noise.bin" "$folder/noise.bin" || return 1
  rm "$archives/disks/1/b.qvx"
  insert 1
  expect 14 pkzip '-&' 'A:\b.qvx' "$(windows_path "$folder/noise.bin")" || return 1
  [[ -z $(ls -A "$archives/disks/1") ]] && expect 5 pkzip 'A:\b.qvx' "$(windows_path "$folder/noise.bin")" &&
    [[ -z $(ls -A "$archives/disks/1") ]]
}

# Two small file systems stand for two disks, where this account may mount them.
prepare_disks() {
  local disk
  for disk in 1 2; do
    mkdir -p "$archives/disks/$disk"
    ((EUID == 0)) && mount -t tmpfs -o size=1000k qvx "$archives/disks/$disk" 2>/dev/null || return 1
    at_exit "umount '$archives/disks/$disk'"
  done
  insert 1
  run_windows 60 reg add 'HKLM\Software\Wine\Drives' /v a: /t REG_SZ /d floppy /f >/dev/null
}

test_archives() {
  local name
  need "${packages_archives[@]}"
  build_for_test x64
  start_wine_once
  rm -rf "$archives"
  make_archive_files
  for name in own_archive_in_others other_archives split killed command_lines long_path exit_codes; do
    check archives "$name" "test_$name"
  done
  # Twice the sparse file's whole size, should a file system not know of holes.
  if (($(df --output=avail -B 1G "$archives" | tail -n 1) >= 12)); then
    check archives huge_file test_huge_file
  else
    warn "archives: huge_file IS SKIPPED: it may need 12 GB of free space."
    count archives huge_file 0 0 1
  fi
  if prepare_disks; then
    check archives removable_disks test_removable_disks
  else
    warn "archives: removable_disks IS SKIPPED: small file systems cannot be mounted here."
    count archives removable_disks 0 0 1
  fi
}
