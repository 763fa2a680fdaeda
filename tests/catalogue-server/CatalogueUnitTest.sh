#!/bin/sh
# The unit is one that systemd takes without a word, and it starts the program.
#   CatalogueUnitTest.sh UNIT PROGRAM
set -eu
command -v systemd-analyze >/dev/null || exit 77
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# The program is looked for where it was built, not where it will be installed.
sed "s|^ExecStart=quillary-catalogue |ExecStart=$2 |" "$1" >"$folder/quillary-catalogue.service"
grep -q "^ExecStart=$2 --folder" "$folder/quillary-catalogue.service"
said=$(systemd-analyze verify --man=no "$folder/quillary-catalogue.service" 2>&1) || { echo "$said"; exit 1; }
[ -z "$said" ] || { echo "$said"; exit 1; }
