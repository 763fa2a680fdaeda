#!/usr/bin/env bash
# Runs PROGRAM in a session of its own, with a bus and folders that nobody else uses; no server of Evolution: skipped.
#   EvolutionTest.sh PROGRAM
set -euo pipefail
if ! compgen -G '/usr/share/dbus-1/services/org.gnome.evolution.dataserver.Sources*.service' >/dev/null; then
  echo "evolution-data-server is not installed"
  exit 77
fi
folder=$(mktemp -d)
mkdir -m 700 "$folder/run"
export HOME=$folder XDG_RUNTIME_DIR=$folder/run XDG_DATA_HOME=$folder/data XDG_CONFIG_HOME=$folder/config
export XDG_CACHE_HOME=$folder/cache XDG_STATE_HOME=$folder/state GSETTINGS_BACKEND=memory
unset DISPLAY WAYLAND_DISPLAY
status=0
dbus-run-session -- "$1" || status=$?
# The servers end with their bus, and may still be writing.
for _ in 1 2 3 4 5 6 7 8 9 10; do
  rm -rf "$folder" && break
  sleep 0.2
done
exit "$status"
