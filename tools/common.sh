# shellcheck shell=bash disable=SC2154
# What the scripts in the project's folder and in tools/ share. The script that sources it has set `top`, the project's folder.

say() { printf '%s\n' "$*" >&2; }

# Installs those packages of the named groups of tools/packages.txt that are missing.
need() {
  local -a wanted missing as_root=()
  mapfile -t wanted < <(awk -v groups=" $* " '!/^#/ && index(groups, " " $1 " ") { for (i = 2; i <= NF; i++) print $i }' \
    "$top/tools/packages.txt" | LC_ALL=C sort -u)
  if ! command -v dpkg-query >/dev/null; then
    say "Not a Debian system: going on with what is installed. Needed are what Debian calls: ${wanted[*]}"
    return
  fi
  mapfile -t missing < <(LC_ALL=C comm -23 <(printf '%s\n' "${wanted[@]}") \
    <(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null | sed -n 's/^installed //p' |
      LC_ALL=C sort -u))
  [ ${#missing[@]} -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then as_root=(sudo); fi
  if ! command -v apt-get >/dev/null || { [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; }; then
    say "These packages are missing, and cannot be installed from here: ${missing[*]}"
    say "Ask an administrator for them (on Debian: apt-get install ${missing[*]})."
    exit 1
  fi
  say "Installing: ${missing[*]}"
  if ! "${as_root[@]}" apt-get update -qq >&2 ||
    ! "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
      -o Dpkg::Use-Pty=0 -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300 "${missing[@]}" >&2; then
    say "These packages are missing, and installing them failed: ${missing[*]}"
    exit 1
  fi
}

# configure PRESET [OPTION...]
configure() {
  local preset=$1
  cmake -S "$top" --preset "$preset" "${@:2}" >"$top/build/$preset.configure.log" 2>&1 ||
    { cat "$top/build/$preset.configure.log" >&2; return 1; }
}

# build PRESET TARGET...
build() { cmake --build "$top/build/$1" --parallel "$(nproc)" --target "${@:2}" >&2; }

mkdir -p "$top/build"
