#!/usr/bin/env bash
# Documents tell the truth: a block of bytes that names a file makes that file, the other bytes on the page are found in it
# at their offsets, the commands of a "console" block print what stands below them, and what it links to is there.
#   DocumentsTest.sh DOCUMENT QLY SAMPLES
set -euo pipefail
document=$(realpath "$1") qly=$(realpath "$2") samples=$(realpath "$3")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir bin home && ln -s "$qly" bin/qly && cp "$samples"/*.pdb .
export PATH=$work/bin:$PATH HOME=$work/home XDG_STATE_HOME=$work/home XDG_CONFIG_HOME=$work/home LC_ALL=C.UTF-8 NO_COLOR=1
unset DBUS_SESSION_BUS_ADDRESS XDG_DATA_HOME
problem() { echo "${document##*/}: $*"; exit 1; }

while read -r link; do
  [ -e "$(dirname "$document")/$link" ] || problem "no $link"
done < <(grep -oE '\]\([^)]+\)' "$document" | sed -E 's/^..//; s/\)$//; s/#.*//' | sort -u)

# Block number N goes to blocks/N, its kind and name to blocks/N.kind.
mkdir blocks
awk '/^```/ { if (inside) { inside = 0; next } inside = 1; n++; print substr($0, 4) > ("blocks/" n ".kind"); printf "" > ("blocks/" n); next }
     inside { print > ("blocks/" n) }' "$document"

# bytes FILE: the bytes of a dump, whose comments stand behind three spaces; its offsets must run on.
bytes() {
  awk 'BEGIN { for (i = 0; i < 256; i++) value[sprintf("%02X", i)] = sprintf("\\x%02x", i) }
       { sub(/   .*/, ""); if (NR > 1 && $1 != sprintf("%03X", at)) { print "offset " $1 > "/dev/stderr"; exit 1 }
         if (NR == 1) { for (at = 0; sprintf("%03X", at) != $1; at++) if (at > 65535) exit 1 }
         for (i = 2; i <= NF; i++) { if (!($i in value)) { print "byte " $i > "/dev/stderr"; exit 1 } printf "%s", value[$i]; at++ } }' \
    "$1"
}
count=$(find blocks -name '*.kind' | wc -l)
whole=
for ((n = count; n > 0; n--)); do
  read -r kind name <"blocks/$n.kind" || true
  [ "$kind" = hex ] || continue
  escaped=$(bytes "blocks/$n") || problem "bad dump: $(head -n 1 "blocks/$n")"
  if [ -n "$name" ]; then
    printf '%b' "$escaped" >"$name"
    whole=$name
  else
    [ -n "$whole" ] || problem "bytes of no file"
    printf '%b' "$escaped" >part
    at=$((16#$(awk '{ print $1; exit }' "blocks/$n")))
    cmp -s -n "$(stat -c %s part)" -i "0:$at" part "$whole" || problem "bytes differ: $(head -n 1 "blocks/$n")"
  fi
done
for ((n = 1; n <= count; n++)); do
  [ "$(cat "blocks/$n.kind")" = console ] || continue
  while IFS= read -r line; do
    case "$line" in
      "$ "*) echo "$line"; bash -c "${line#"$ "}" 2>&1 | tr -d '\r' | sed "s:$HOME:/home/ann:" || true ;;
    esac
  done <"blocks/$n" >printed
  diff -u "blocks/$n" printed || problem "a command prints something else"
done
