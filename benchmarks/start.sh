#!/usr/bin/env bash
# Times the start of the window program with the largest table, from the start of the process until the records are painted,
# beside opening it with `qly info`; and beside another program's start with the same table where that is installed
# (sqlitebrowser, under Xvfb: until its window is there).
set -euo pipefail
export LC_ALL=C.UTF-8
# shellcheck source=benchmarks/figures.sh
. "$(dirname "$(readlink -f "$0")")/figures.sh"
build=${QUILLARY_BUILD:-$(dirname "$(readlink -f "$0")")/../build/bench}
readonly rounds=11 aim_ms=150

memory=/dev/shm
[ -w "$memory" ] || memory=${TMPDIR:-/tmp}
folder=$(mktemp -d "$memory/quillary-start-XXXXXX")
trap 'rm -rf "$folder"' EXIT
export HOME=$folder XDG_STATE_HOME=$folder XDG_CONFIG_HOME=$folder XDG_DATA_HOME=$folder XDG_RUNTIME_DIR=$folder
chmod 700 "$folder"
"$build/benchmarks/generate_table" "$folder"
cd "$folder"

# until_line TEXT COMMAND...: the time until the command's standard error has a line with TEXT; then it is ended.
until_line() {
  local text=$1 begun line program output
  shift
  begun=$(now)
  exec {output}< <(exec "$@" 2>&1 >/dev/null)
  program=$!
  while read -r -u "$output" line; do
    [[ $line != *"$text"* ]] || break
  done
  echo $(($(now) - begun))
  kill "$program" 2>/dev/null || true
  exec {output}<&-
  wait "$program" 2>/dev/null || true
}

window() {
  QT_LOGGING_RULES="quillary.steps=true" until_line "records painted" "$build/app/quillary" table.pdb
}
info() {
  local begun
  begun=$(now)
  "$build/cli/qly" info table.pdb >/dev/null
  echo $(($(now) - begun))
}
browser() {
  local begun program
  begun=$(now)
  sqlitebrowser -t t table.db >/dev/null 2>&1 &
  program=$!
  until xwininfo -root -tree | grep -q '"DB Browser for SQLite - .*table.db'; do
    [ $(($(now) - begun)) -lt 20000000 ] || { echo "sqlitebrowser shows no window" >&2; exit 1; }
  done
  echo $(($(now) - begun))
  kill "$program"
  wait "$program" 2>/dev/null || true
}

export QT_QPA_PLATFORM=offscreen
for ((round = 0; round <= rounds; ++round)); do    # the first run fills caches
  window >>window.times
  info >>info.times
done
ours=$(tail -n +2 window.times | median)
base=$(tail -n +2 info.times | median)
more=$(((ours - base) / 1000))
printf '\nstart with 65,531 records\n'
figure "start until the records are painted" "$(in_ms "$ours")" "$(in_ms "$base")" "" "at most $aim_ms ms more" \
  "$(verdict "$more <= $aim_ms")" "qly info of the same table"

if command -v sqlitebrowser >/dev/null && command -v Xvfb >/dev/null && command -v xwininfo >/dev/null; then
  sqlite3 table.db '.import --csv table.csv t'
  mkfifo display
  Xvfb -displayfd 5 -screen 0 1280x800x24 -nolisten tcp -noreset 5>display >/dev/null 2>&1 &
  server=$!
  trap 'kill $server; rm -rf "$folder"' EXIT
  read -r number <display
  export DISPLAY=:$number QT_QPA_PLATFORM=xcb
  for ((round = 0; round <= rounds; ++round)); do
    window >>x-window.times
    browser >>browser.times
  done
  ours=$(tail -n +2 x-window.times | median)
  peer=$(tail -n +2 browser.times | median)
  figure "the same under Xvfb" "$(in_ms "$ours")" "$(in_ms "$peer")" "$(hundredths $((ours * 100 / peer)))" "below 1" \
    "$(verdict "$ours < $peer")" "DB Browser for SQLite, until its window is there"
fi
