#!/usr/bin/env bash
# Times whole processes of qly beside other programs that do the same with the same table, by turns in one run, and prints
# the medians. All files are memory-backed.
set -euo pipefail
export LC_ALL=C.UTF-8
# shellcheck source=benchmarks/figures.sh
. "$(dirname "$(readlink -f "$0")")/figures.sh"
build=${QUILLARY_BUILD:-$(dirname "$(readlink -f "$0")")/../build/bench}
qly=$build/cli/qly
readonly rounds=11
readonly absent=xylophone

memory=/dev/shm
[ -w "$memory" ] || memory=${TMPDIR:-/tmp}
folder=$(mktemp -d "$memory/quillary-peers-XXXXXX")
trap 'rm -rf "$folder"' EXIT
export HOME=$folder XDG_STATE_HOME=$folder XDG_CONFIG_HOME=$folder    # recovery files go there too
"$build/benchmarks/generate_table" "$folder"
cd "$folder"
sqlite3 table.db '.import --csv table.csv t'
definitions=()
like=()
while read -r definition; do
  definitions+=(--field "$definition")
  like+=("\"${definition%%:*}\" like '%$absent%'")
done <fields.txt
where=$(printf ' or %s' "${like[@]}")

qly_list() { "$qly" list table.pdb >/dev/null; }
sqlite_list() { sqlite3 -csv table.db 'select * from t' >/dev/null; }
qly_import() { "$qly" import table.csv new.pdb "${definitions[@]}"; }
sqlite_import() { sqlite3 new.db '.import --csv table.csv t'; }
qly_find() { "$qly" find table.pdb "$absent" || [ $? -eq 1 ]; }
sqlite_find() { sqlite3 table.db "select rowid from t where ${where# or }"; }
grep_find() { grep -i "$absent" table.csv || [ $? -eq 1 ]; }

# With the types of the columns, so that each program sorts by what a person means; the save is a part of it.
sqlite3 sorted.db "create table t(Item text, Number integer, Price real, Insured text, Bought text, Delivered text,
  Room text, \"Dealer phone\" text, \"Dealer e-mail\" text, Notes text)" '.import --csv --skip 1 table.csv t'
before_qly_sort() { cp table.pdb unsorted.pdb; }
qly_sort() { "$qly" sort unsorted.pdb Room Price:desc Bought; }
before_sqlite_sort() { cp sorted.db unsorted.db; }
sqlite_sort() {
  sqlite3 unsorted.db 'pragma journal_mode=off; pragma synchronous=off;
    create table s as select * from t order by Room, Price desc, Bought' >/dev/null
}

# In microseconds.
elapsed() {
  rm -f new.pdb new.db
  if declare -F "before_$1" >/dev/null; then "before_$1"; fi
  local begun
  begun=$(now)
  "$1"
  echo $(($(now) - begun))
}

# compare FIGURE OURS PEER PEER-IN-WORDS AIM-IN-PERCENT ("" = none)
compare() {
  local round ours peer ratio
  : >ours.times
  : >peer.times
  elapsed "$2" >/dev/null    # the first run fills caches
  elapsed "$3" >/dev/null
  for ((round = 0; round < rounds; ++round)); do
    elapsed "$2" >>ours.times
    elapsed "$3" >>peer.times
  done
  ours=$(median <ours.times)
  peer=$(median <peer.times)
  ratio=$((ours * 100 / peer))
  figure "$1" "$(in_ms "$ours")" "$(in_ms "$peer")" "$(hundredths $ratio)" "${5:+at most $(hundredths "$5")}" \
    "${5:+$(verdict "$ratio <= $5")}" "$4"
}

# What is compared must have been the same work.
qly_import
sqlite_import
cmp <("$qly" list table.pdb) <("$qly" list new.pdb)
[ "$(sqlite3 new.db 'select count(*) from t')" -eq "$("$qly" list --format jsonl new.pdb | wc -l)" ]

printf '\nwhole processes\n'
compare "qly list, as CSV" qly_list sqlite_list "sqlite3: select" 50
compare "qly import, a CSV" qly_import sqlite_import "sqlite3: .import" 100
compare "qly find, absent text" qly_find sqlite_find "sqlite3: like" 50
compare "qly find, absent text" qly_find grep_find "grep -i on the CSV" ""
compare "qly sort, three keys" qly_sort sqlite_sort "sqlite3: create table as select, order by" 25

size=$(($(stat -c %s table.pdb) / 1024))
# most_memory FIGURE LIMIT-IN-WORDS LIMIT-IN-KB ARGUMENT...
most_memory() {
  local held
  held=$(command time -f %M "$qly" "${@:4}" 2>&1 >/dev/null | tail -n 1)
  figure "$1" "$((held / 1024)) MB" "$((size / 1024)) MB" "$(hundredths $((held * 100 / size)))" "$2" \
    "$(verdict "$held <= $3")" "the file's size"
}
printf '\nmemory of whole processes\n'
most_memory "qly list, most memory" "1.3 times + 20 MB" $((size * 13 / 10 + 20480)) list table.pdb
cp table.pdb unsorted.pdb
most_memory "qly sort, most memory" "2 times + 64 MB" $((size * 2 + 65536)) sort unsorted.pdb Room Price:desc Bought
