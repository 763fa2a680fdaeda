#!/usr/bin/env bash
# The folders' arrows point one way: app, views, dialogs, ui, platform; all of them to rules and db, which stand alone.
#   LayeringTest.sh TOP
set -euo pipefail
export LC_ALL=C
cd "$1"
failed=0

# forbid RULE PATTERN FILE...: prints each line of the files that matches.
forbid() {
  local rule=$1 pattern=$2
  shift 2
  [ $# -gt 0 ] || return 0
  if grep -nHE -- "$pattern" "$@"; then echo "  ^ $rule"; failed=1; fi
}
# sources FOLDER... [! NAME-PATTERN]: their C++ files, without those whose name matches.
sources() {
  local -a folders=()
  while [ $# -gt 0 ] && [ "$1" != "!" ]; do
    [ ! -d "$1" ] || folders+=("$1")
    shift
  done
  [ ${#folders[@]} -gt 0 ] || return 0
  find "${folders[@]}" \( -name '*.cpp' -o -name '*.h' \) | grep -vE "${2:-^$}" | sort || true
}

include='^[[:space:]]*#[[:space:]]*include[[:space:]]*'
widgets='(Dlg|Page|View|Editor|Widget|Button|Combo|Box)\.(cpp|h)$'
dialogs="(query|admin|integration|remote)/[A-Za-z]*(Dlg|Page|View)\.h"
qt="${include}[<\"](Q[A-Z]|Qt|q[a-z]+\.h|moc_)"
system="${include}<[^>]*[./]"    # standard headers have neither a dot nor a slash

mapfile -t db < <(sources db)
mapfile -t rules < <(sources query admin integration remote ! "$widgets")
mapfile -t dialog_files < <(sources query admin integration remote | grep -E "$widgets" || true)
mapfile -t views < <(sources views)
mapfile -t ui < <(sources ui)
mapfile -t platform < <(sources platform)
mapfile -t posix < <(sources platform/posix)
mapfile -t cli < <(sources cli)
mapfile -t qly < <(sources cli ! '^cli/services/')
mapfile -t catalogue_server < <(sources catalogue-server)
mapfile -t elsewhere < <(sources app catalogue-server db query admin integration remote ui views cli)
mapfile -t all < <(sources app catalogue-server db query admin integration remote ui views cli platform tests fuzz benchmarks)
if [ ${#db[@]} -lt 20 ] || [ ${#rules[@]} -lt 4 ]; then echo "No sources below $1"; exit 1; fi

forbid "db/ includes nothing of other folders" "${include}\"([^d]|d[^b]|db[^/])" "${db[@]}"
forbid "db/ and rules include no Qt" "$qt" "${db[@]}" "${rules[@]}"
forbid "db/ and rules stand on the standard library alone" "$system" "${db[@]}" "${rules[@]}"
forbid "rules include db/ and other rules" "${include}\"(app|views|ui|platform|cli)/|${include}\"$dialogs" "${rules[@]}"
forbid "dialogs do not include views/ or app/" "${include}\"(app|views|cli)/" "${dialog_files[@]}"
forbid "views/ does not include app/" "${include}\"(app|cli)/" "${views[@]}"
forbid "ui/ knows no views and no dialogs" "${include}\"(app|views|cli)/|${include}\"$dialogs" "${ui[@]}"
forbid "platform/ knows no windows of ours" "${include}\"(app|views|ui|cli)/|${include}\"$dialogs" "${platform[@]}"
forbid "qly has no Qt" "$qt" "${posix[@]}" "${cli[@]}"
forbid "qly includes db/, rules and platform/posix/, its helper program platform/http/ too" \
  "${include}\"(app|views|ui)/|${include}\"platform/([^ph]|h[^t])|${include}\"$dialogs" "${cli[@]}"
forbid "only the helper program includes platform/http/" "${include}\"platform/http" "${qly[@]}"
forbid "the catalogue server has no Qt" "$qt" "${catalogue_server[@]}"
forbid "the catalogue server includes db/, rules and platform/posix/" \
  "${include}\"(app|views|ui|cli)/|${include}\"platform/[^p]|${include}\"$dialogs" "${catalogue_server[@]}"
forbid "only platform/ asks for the operating system" '(_WIN32|__linux__|__APPLE__|Q_OS_)' "${elsewhere[@]}"
forbid "include the class, not the whole module" "${include}<(QtWidgets|QtCore|QtGui|QtNetwork)>" "${all[@]}"
forbid "finish it, or leave it out" '\b(TO''DO|FIX''ME|X''XX)\b' "${all[@]}"
exit "$failed"
