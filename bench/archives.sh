#!/usr/bin/env bash
# PkZip.exe and PkunZip.exe beside the distribution's zip and unzip, on a database such as a backup holds, and a restore as
# the Backup control does it.
#
#     bench/archives.sh [MEGABYTES] [FILE.md]
#
# MEGABYTES is about how large the database is (100 when left out), FILE.md where the report goes as well
# (build/bench/archives.md when left out). build/bench/archives-MEGABYTES.tsv gets every sample, a line for each work and program:
#
#     work<TAB>megabytes<TAB>program<TAB>median<TAB>runs<TAB>samples
#
# in seconds, and the sizes of archives in bytes. The programs take turns, and each is the first of its pair in every
# other run. A measurement begins with nothing left to write to the disk and ends with the output on it. Elapsed time
# under Wine includes the start of a Windows program, which is a work of its own. PkZip reads its archive back before it
# counts, which zip does not do. A restore unpacks into a working folder, opens the database, copies it beside the old one and
# takes its place; beside it, shell commands do the same. Figures are medians of five runs, or of three from 500 MB on.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$root"
megabytes=${1:-100}
report=${2:-$root/build/bench/archives.md}
lines=$root/build/bench/archives-$megabytes.tsv
runs=5

source tools/common.sh
source tools/packages.sh
source tools/build.sh
source tools/wine.sh
source tools/system.sh
source tools/demo.sh

[[ $megabytes =~ ^[1-9][0-9]*$ ]] || die "The number of megabytes is '$megabytes'."
limit=$((600 + 4 * megabytes)) # seconds for one run of a program
((megabytes < 500)) || runs=3

build x64 --target PkZip PkunZip bench_restore qvx_ado || die "The archivers were not built."
start_wine
mkdir -p "$logs"
register_server "$data_objects" || die "The data objects could not be registered."

work=$root/build/bench/archives
rm -rf "$work"
at_exit "rm -rf '$work'"
mkdir -p "$work" "$(dirname "$report")"
folder=$(windows_path "$work")
archivers=$(windows_path "$root/build/x64")\\
pkzip=("$root/build/x64/PkZip.exe") pkunzip=("$root/build/x64/PkunZip.exe")

# Creates customers, orders and their lines: words, codes, dates, prices, and indexes over them, with the same rows in
# every run.
make_database() {
  sqlite3 -batch -init /dev/null "$1" >/dev/null <<END
pragma journal_mode = off; pragma synchronous = off;
create table Words (Id integer primary key, Word text);
insert into Words (Word) values ('oak'), ('table'), ('lamp'), ('chair'), ('green'), ('grey'), ('large'), ('small'), ('folding'), ('desk'),
  ('window'), ('garden'), ('bench'), ('steel'), ('glass'), ('round'), ('kitchen'), ('shelf'), ('cupboard'), ('mirror'), ('carpet'), ('wool'),
  ('cotton'), ('linen'), ('blanket'), ('pillow'), ('drawer'), ('handle'), ('hinge'), ('screw'), ('painted'), ('polished'), ('second'), ('choice'),
  ('delivery'), ('please'), ('call'), ('before'), ('noon'), ('behind'), ('the'), ('house'), ('left'), ('door'), ('with'), ('neighbour'), ('paid'),
  ('cash'), ('invoice'), ('follows'), ('damaged'), ('box'), ('returned'), ('exchange'), ('spare'), ('part'), ('ordered'), ('again'), ('in'), ('spring'),
  ('summer'), ('autumn'), ('winter'), ('sale');
-- A number from 0 that looks like chance, by row and column.
create table Lines (Id integer primary key, OrderId integer, Article text, Code text, Pieces integer, Price real, Day text, Note text);
with recursive
  rows(i) as (select 0 union all select i + 1 from rows where i < $megabytes * 7000),
  dice(i, a, b, c, d) as (select i, i * 2654435761 % 4294967291, (i + 7) * 40503977 % 2147483647, i * 69621 % 2147483647 * 7919 % 1000003,
    (i + 13) * 48271 % 2147483647 from rows)
insert into Lines select i, i / 4 + 1000,
  (select Word from Words where Id = a % 64 + 1) || ' ' || (select Word from Words where Id = b % 64 + 1),
  printf('%c%c-%05d', 65 + b % 26, 65 + c % 26, d % 90000), 1 + c % 20, (a % 250000) / 100.0, date('2020-01-01', '+' || (i / 300) || ' days'),
  case when a % 3 = 0 then null else (select Word from Words where Id = c % 64 + 1) || ' ' || (select Word from Words where Id = d % 64 + 1) || ' '
    || (select Word from Words where Id = (a / 64) % 64 + 1) || ' ' || (select Word from Words where Id = (b / 64) % 64 + 1) end
  from dice;
create index ByOrder on Lines (OrderId);
create index ByArticle on Lines (Article, Day);
create index ByCode on Lines (Code);
END
}

# measure NAME COMMAND...: appends a line with the elapsed and processor seconds of the command.
measure() {
  local name=$1 TIMEFORMAT='%R %U %S'
  shift
  # Otherwise the first to flush its output would wait for what others have written.
  sync -f "$work"
  { time "$@" >"$work/$name.log" 2>&1 </dev/null || exit 1; } 2>>"$work/$name.times"
}
# measure_wine NAME COMMAND...: the same under Wine, after the start of a program with a server that is running already.
measure_wine() {
  run_windows 60 "${pkunzip[@]}" '-?' >/dev/null
  measure start run_windows 60 "${pkunzip[@]}" '-?'
  measure "$@"
}
# PkZip and PkunZip end when their output is on the disk.
zip_to_disk() { zip -q -j "$1" "$2" && sync "$1"; }
unzip_to_disk() { unzip -q -d "$2" "$1" && sync "$2/shop.db"; }
# on_one COMMAND...: runs the command, with all that it starts, in a shell that stays on one processor.
on_one() { (taskset -p -c 0 "$BASHPID" >/dev/null && "$@"); }

measure_pkzip() { measure_wine pkzip run_windows "$limit" "${pkzip[@]}" "$folder\\own.qvx" "$folder\\shop.db"; }
measure_zip() { measure zip zip_to_disk "$work/theirs.zip" "$work/shop.db"; }
measure_pkzip_one() { measure_wine pkzip-one on_one run_windows "$limit" "${pkzip[@]}" "$folder\\one.qvx" "$folder\\shop.db"; }
measure_zip_one() { measure zip-one on_one zip_to_disk "$work/one.zip" "$work/shop.db"; }
measure_pkunzip() { measure_wine pkunzip run_windows "$limit" "${pkunzip[@]}" "$folder\\own.qvx" "$folder\\own"; }
measure_unzip() {
  mkdir "$work/theirs"
  measure unzip unzip_to_disk "$work/theirs.zip" "$work/theirs"
}
# Each finds an older database in its place. The program prints its seconds, without its start.
connection='Driver={SQLite3 ODBC Driver};NoCreat=1;Database='
prepare_restore() {
  rm -rf "$work/restored"
  mkdir -p "$work/restored/data" "$work/restored/working"
  echo old >"$work/restored/data/shop.db"
  sync -f "$work"
}
measure_restore() {
  local to=$folder\\restored
  prepare_restore
  run_windows "$limit" build/x64/bench/bench_restore.exe "$folder\\own.qvx" "$to\\working\\" "$to\\data\\" "$archivers" "$connection" \
    2>"$work/restore.log" | tr -d '\r' >>"$work/restore.times" || die "The restore failed: $(<"$work/restore.log")"
  cmp "$work/restored/data/shop.db" "$work/shop.db" || die "What was restored differs."
}
restore_by_shell() {
  local to=$work/restored
  unzip -q -d "$to/working" "$work/theirs.zip" &&
    sqlite3 -batch -init /dev/null "$to/working/shop.db" 'pragma schema_version' &&
    cp "$to/working/shop.db" "$to/data/arriving" && sync "$to/data/arriving" &&
    mv "$to/data/arriving" "$to/data/shop.db" && rm "$to/working/shop.db"
}
measure_restore_by_shell() {
  prepare_restore
  measure restore-by-shell restore_by_shell
  cmp "$work/restored/data/shop.db" "$work/shop.db" || die "What the shell has restored differs."
}
# in_turn RUN ONE OTHER: does both, in every other run the other one first.
in_turn() {
  if (($1 % 2 == 0)); then
    "$2"
    "$3"
  else
    "$3"
    "$2"
  fi
}

# samples NAME elapsed|processor: a line for each run.
samples() { awk -v which="$2" '{ print which == "elapsed" ? $1 : $2 + $3 }' "$work/$1.times"; }
median() { sort -n | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }'; }
# line WORK PROGRAM SAMPLE...: adds to the samples.
line() {
  local name=$1 program=$2 middle
  shift 2
  middle=$(printf '%s\n' "$@" | median)
  printf '%s\t%s\t%s\t%s\t%s\t%s\n' "$name" "$megabytes" "$program" "$middle" $# "$(IFS=,; echo "$*")" >>"$lines"
}
# row TITLE OURS THEIRS UNIT
row() {
  awk -v title="$1" -v ours="$2" -v theirs="$3" -v unit="$4" \
    'BEGIN { printf "| %s | %s %s | %s %s | %.2f |\n", title, ours, unit, theirs, unit, ours / theirs }'
}
# compare WORK TITLE OURS THEIRS elapsed|processor: a row of the report, and the samples of both, which were measured
# under the names OURS and THEIRS.
compare() {
  local own their
  mapfile -t own < <(samples "$3" "$5")
  mapfile -t their < <(samples "$4" "$5")
  line "$1" 'PkZip, PkunZip' "${own[@]}"
  line "$1" 'zip, unzip' "${their[@]}"
  row "$2" "$(printf '%s\n' "${own[@]}" | median)" "$(printf '%s\n' "${their[@]}" | median)" s
}

say "Making a database"
make_database "$work/shop.db"
size=$(stat -c %s "$work/shop.db")
for ((i = 0; i < runs; i++)); do
  say "Run $((i + 1)) of $runs"
  rm -rf "$work"/own* "$work"/theirs* "$work/one.qvx" "$work/one.zip"
  in_turn "$i" measure_pkzip measure_zip
  in_turn "$i" measure_pkzip_one measure_zip_one
  in_turn "$i" measure_pkunzip measure_unzip
  in_turn "$i" measure_restore measure_restore_by_shell
  cmp "$work/own/shop.db" "$work/shop.db" || die "What PkunZip has unpacked differs."
  cmp "$work/theirs/shop.db" "$work/shop.db" || die "What unzip has unpacked differs."
done

own_size=$(stat -c %s "$work/own.qvx")
their_size=$(stat -c %s "$work/theirs.zip")
mapfile -t starts < <(samples start elapsed)
: >"$lines"
line archive_size 'PkZip, PkunZip' "$own_size"
line archive_size 'zip, unzip' "$their_size"
line archiver_start 'PkZip, PkunZip' "${starts[@]}"
{
  echo "A SQLite database of $((size / 1000000)) MB, $(nproc) processors. A ratio above 1 says that Qvx takes more."
  echo "The start of a program under Wine, $(printf '%s\n' "${starts[@]}" | median) s, is part of its elapsed time."
  echo
  echo '| | PkZip, PkunZip | zip, unzip | ratio |'
  echo '|---|---:|---:|---:|'
  row 'size of the archive' "$own_size" "$their_size" bytes
  compare pack 'packing, elapsed' pkzip zip elapsed
  compare pack_one 'packing, elapsed on one processor' pkzip-one zip-one elapsed
  compare pack_cpu 'packing, processor time' pkzip zip processor
  compare unpack 'unpacking, elapsed' pkunzip unzip elapsed
  compare unpack_cpu 'unpacking, processor time' pkunzip unzip processor
  compare restore 'restoring a backup, elapsed' restore restore-by-shell elapsed
} | tee "$report"
say "The report is in ${report#"$root"/}, every sample in ${lines#"$root"/}"
