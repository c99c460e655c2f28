#!/usr/bin/env bash
# PkZip.exe and PkunZip.exe beside the distribution's zip and unzip, on a database such as a backup holds.
#
#     bench/archives.sh [MEGABYTES] [FILE.md]
#
# MEGABYTES is about how large the database is (100 when left out), FILE.md where the report goes as well
# (build/bench/archives.md when left out). Figures are medians of five runs that take turns. Elapsed time is on all processors and with
# the archive on the disk; under Wine it has the start of a Windows program in it. PkZip reads its archive back before it counts, zip does not.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$root"
megabytes=${1:-100}
report=${2:-$root/build/bench/archives.md}
runs=5

source tools/common.sh
source tools/packages.sh
source tools/build.sh
source tools/wine.sh

[[ $megabytes =~ ^[1-9][0-9]*$ ]] || die "The number of megabytes is '$megabytes'."

build x64 --target PkZip PkunZip || die "The archivers were not built."
start_wine

work=$root/build/bench/archives
rm -rf "$work"
mkdir -p "$work" "$(dirname "$report")"

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
  { time "$@" >"$work/$name.log" 2>&1 </dev/null || exit 1; } 2>>"$work/$name.times"
}

median() { sort -n | sed -n "$(((runs + 1) / 2))p"; }
elapsed_of() { awk '{ print $1 }' "$work/$1.times" | median; }
processor_of() { awk '{ print $2 + $3 }' "$work/$1.times" | median; }
# PkZip and PkunZip end when their output is on the disk.
zip_to_disk() { zip -q -j "$1" "$2" && sync "$1"; }
unzip_to_disk() { unzip -q -d "$2" "$1" && sync "$2/shop.db"; }
# on_one COMMAND...: runs the command, with all that it starts, in a shell that stays on one processor.
on_one() { (taskset -p -c 0 "$BASHPID" >/dev/null && "$@"); }
ratio() { awk -v ours="$1" -v theirs="$2" 'BEGIN { printf "%.2f", ours / theirs }'; }
# row WORK OURS THEIRS UNIT
row() { printf '| %s | %s %s | %s %s | %s |\n' "$1" "$2" "$4" "$3" "$4" "$(ratio "$2" "$3")"; }

say "Making a database"
make_database "$work/shop.db"
size=$(stat -c %s "$work/shop.db")
folder=$(windows_path "$work")
pkzip=("$root/build/x64/PkZip.exe") pkunzip=("$root/build/x64/PkunZip.exe")
run_windows 60 "${pkunzip[@]}" '-?' >/dev/null
for ((i = 0; i < runs; i++)); do
  say "Run $((i + 1)) of $runs"
  rm -rf "$work"/own* "$work"/theirs* "$work/one.qvx" "$work/one.zip"
  measure pkzip run_windows 600 "${pkzip[@]}" "$folder\\own.qvx" "$folder\\shop.db"
  measure zip zip_to_disk "$work/theirs.zip" "$work/shop.db"
  measure pkzip-one on_one run_windows 600 "${pkzip[@]}" "$folder\\one.qvx" "$folder\\shop.db"
  measure zip-one on_one zip_to_disk "$work/one.zip" "$work/shop.db"
  measure pkunzip run_windows 600 "${pkunzip[@]}" "$folder\\own.qvx" "$folder\\own"
  mkdir "$work/theirs"
  measure unzip unzip_to_disk "$work/theirs.zip" "$work/theirs"
  cmp "$work/own/shop.db" "$work/shop.db" || die "What PkunZip has unpacked differs."
  cmp "$work/theirs/shop.db" "$work/shop.db" || die "What unzip has unpacked differs."
done

{
  echo "A SQLite database of $((size / 1000000)) MB, $(nproc) processors. A ratio above 1 says that Qvx takes more."
  echo
  echo '| | PkZip, PkunZip | zip, unzip | ratio |'
  echo '|---|---:|---:|---:|'
  row 'size of the archive' "$(stat -c %s "$work/own.qvx")" "$(stat -c %s "$work/theirs.zip")" bytes
  row 'packing, elapsed' "$(elapsed_of pkzip)" "$(elapsed_of zip)" s
  row 'packing, elapsed on one processor' "$(elapsed_of pkzip-one)" "$(elapsed_of zip-one)" s
  row 'packing, processor time' "$(processor_of pkzip)" "$(processor_of zip)" s
  row 'unpacking, elapsed' "$(elapsed_of pkunzip)" "$(elapsed_of unzip)" s
  row 'unpacking, processor time' "$(processor_of pkunzip)" "$(processor_of unzip)" s
} | tee "$report"
say "The report is in ${report#"$root"/}"
