#!/usr/bin/env bash
# The desktop entry and the description for software centres are valid, and name the version that is built.
#   DesktopFilesTest.sh PACKAGING-FOLDER VERSION
set -euo pipefail
id=$1/org.telvane.quillary
said=$(desktop-file-validate "$id.desktop" 2>&1) || true
if [ -n "$said" ]; then echo "$said"; exit 1; fi    # its status is 0 for warnings, too
appstreamcli validate --no-net --pedantic --strict "$id.metainfo.xml"
grep -q "<release version=\"$2\"" "$id.metainfo.xml" || { echo "no release $2 in $id.metainfo.xml"; exit 1; }
