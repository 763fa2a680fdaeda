#!/usr/bin/env bash
# Counts downloads a second from the catalogue server beside nginx, which serves the same files, by turns in one run, and times
# searches of 100,000 published databases: over loopback, 64 connections, files in memory.
set -euo pipefail
export LC_ALL=C.UTF-8
# shellcheck source=benchmarks/figures.sh
. "$(dirname "$(readlink -f "$0")")/figures.sh"
build=${QUILLARY_BUILD:-$(dirname "$(readlink -f "$0")")/../build/bench}
top=$(dirname "$(readlink -f "$0")")/..
readonly connections=64 seconds=2 rounds=5 aim_percent=50 aim_ms=20
program=$build/catalogue-server/quillary-catalogue
PATH=$PATH:/usr/sbin
port=$((20000 + RANDOM % 10000))
if [ ! -x "$program" ] || ! command -v curl >/dev/null || ! command -v nginx >/dev/null || ! command -v wrk >/dev/null; then
  echo "No quillary-catalogue, curl, nginx or wrk: the catalogue is not measured."
  exit
fi

memory=/dev/shm
[ -w "$memory" ] || memory=${TMPDIR:-/tmp}
folder=$(mktemp -d "$memory/quillary-catalogue-XXXXXX")
chmod 755 "$folder"    # nginx reads as another user
server='' nginx=''
trap '[ -z "$server" ] || kill $server || true; [ -z "$nginx" ] || kill $nginx || true; rm -rf "$folder"' EXIT
export HOME=$folder XDG_STATE_HOME=$folder XDG_CONFIG_HOME=$folder
cd "$folder"

# serve FOLDER: sets `server` and `address`.
serve() {
  exec {output}< <(exec "$program" --folder "$1" --port 0)
  server=$!
  read -r -u "$output" line
  address=${line##* at }
}
# The third field of the first result whose title has TEXT.
file_id() { curl -sg "${address}wireless/?screen=qly_search&start=0&size=1&title=$1" | sed 's/\^!/\n/g' | sed -n 3p; }
server_memory() {
  figure "memory of the server, $1" "$(awk '/^VmRSS/ { print int($2 / 1024 + 0.5) }' "/proc/$server/status") MB" "" "" "" "" ""
}
per_second() { wrk -t1 -c"$connections" -d"${seconds}s" "$1" | awk '/Non-2xx/ { bad = 1 } /^Requests\/sec/ { print int(bad ? 0 : $2 + 0.5) }'; }

# ---- Downloads
mkdir served
"$build/benchmarks/generate_table" . >/dev/null
"$build/cli/qly" import "$top/samples/time-zones.csv" served/small.pdb --name small --quiet
awk 'NR == 1 { print } NR > 1 && n++ < 2000 { print }' table.csv >middle.csv
"$build/cli/qly" import middle.csv served/middle.pdb --name middle --quiet
"$build/cli/qly" import table.csv served/large.pdb --name large --quiet
cat >nginx.conf <<END
worker_processes 2; pid $folder/nginx.pid; error_log $folder/nginx.log; daemon off;
events { worker_connections 1024; }
http { access_log off; sendfile on; tcp_nopush on;
  client_body_temp_path $folder/t1; proxy_temp_path $folder/t2; fastcgi_temp_path $folder/t3; uwsgi_temp_path $folder/t4; scgi_temp_path $folder/t5;
  server { listen 127.0.0.1:$port; root $folder/served; } }
END
nginx -c "$folder/nginx.conf" 2>/dev/null &
nginx=$!
serve served
until curl -sf -o /dev/null http://127.0.0.1:$port/small.pdb; do kill -0 "$nginx" || { cat nginx.log; exit 1; }; sleep 0.1; done

printf '\ncatalogue, %d connections\n' "$connections"
for name in small middle large; do
  ours="$address?global_op=download_file&file_id=$(file_id $name)"
  theirs=http://127.0.0.1:$port/$name.pdb
  cmp <(curl -sg "$ours") <(curl -sg "$theirs")
  : >ours.rates
  : >their.rates
  for ((round = 0; round < rounds; ++round)); do
    per_second "$ours" >>ours.rates
    per_second "$theirs" >>their.rates
  done
  rate=$(median <ours.rates)
  peer=$(median <their.rates)
  [ "$peer" -gt 0 ] || { echo "nginx answers nothing for $name.pdb" >&2; exit 1; }
  percent=$((rate * 100 / peer))
  figure "downloads of $(($(stat -c %s served/$name.pdb) / 1024)) KB" "$rate/s" "$peer/s" "$(hundredths $percent)" \
    "at least $(hundredths $aim_percent)" "$(verdict "$percent >= $aim_percent")" "nginx, the same file"
done
server_memory "after the downloads"
kill "$server" "$nginx"
wait "$nginx" 2>/dev/null || true
exec {output}<&-
server='' nginx=''

# ---- Searches
mkdir many
"$build/cli/qly" new one.pdb --name one --field A:text
mkdir one
for ((i = 0; i < 1000; ++i)); do cat one.pdb; done | split -b "$(stat -c %s one.pdb)" -a 3 -d --additional-suffix=.pdb - one/t
for ((i = 0; i < 100; ++i)); do
  cp -r one "many/$i"
  # Titles of three words, some of which many share.
  awk -v folder="$i" 'BEGIN {
    split("Adventure Biography Children History Horror Humor Mystery Novels Poetry Travel", category)
    words = split("films books music stamps coins wines trees birds planets islands rivers games recipes letters maps tools", word)
    printf "{\"files\": {"
    for (k = 0; k < 1000; ++k) {
      n = folder * 1000 + k
      printf "%s\"t%03d.pdb\": {\"title\": \"%s of %s and %s %d\", \"category\": \"%s\"}", k ? "," : "", k,
        word[n % words + 1], word[int(n / 7) % words + 1], word[int(n / 31) % words + 1], n, category[n % 10 + 1]
    }
    print "}}" }' >"many/$i/catalogue.json"
done
serve many
printf '\nsearches of 100,000 titles\n'
for search in "an absent text=&title=xylophone" "a common word=&title=islands" "one letter=&title=o" "a category=&category=travel" \
  "word and category=&title=islands&category=travel"; do
  url="${address}wireless/?screen=qly_search&start=0&size=25${search#*=}"
  us=$(wrk -t1 -c1 -d"${seconds}s" --latency "$url" |
    awk '$1 == "50%" { n = $2 + 0; print int($2 ~ /us$/ ? n : $2 ~ /ms$/ ? n * 1000 : n * 1000000) }')
  figure "search, ${search%%=*}; $(per_second "$url")/s" "$(in_ms "$us")" "" "" "at most $aim_ms ms" \
    "$(verdict "$us <= $((aim_ms * 1000))")" ""
done
server_memory "100,000 titles"
