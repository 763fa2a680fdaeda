#!/bin/sh
# The installed unit is one that systemd takes without a word: it starts the program that was installed with it.
#   CatalogueUnitTest.sh CMAKE BUILD-FOLDER
set -eu
command -v systemd-analyze >/dev/null || exit 77
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$1" --install "$2" --component catalogue --prefix "$folder" >/dev/null
said=$(systemd-analyze verify --man=no "$folder/lib/systemd/system/quillary-catalogue.service" 2>&1) || { echo "$said"; exit 1; }
[ -z "$said" ] || { echo "$said"; exit 1; }
