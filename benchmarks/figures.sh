# shellcheck shell=bash
# What the scripts here share: how a figure is printed, and kept for the one table of ../bench.

# figure NAME OURS BESIDE RATIO AIM VERDICT WHAT-STANDS-BESIDE; each may be empty but the first two.
figure() {
  printf '%-46s %11s %11s %6s  %-20s %s\n' "${@:1:6}"
  if [ -n "$7" ]; then printf '    beside: %s\n' "$7"; fi
  if [ -n "${QUILLARY_FIGURES:-}" ]; then (IFS=$'\t'; printf '%s\n' "$*") >>"$QUILLARY_FIGURES"; fi
}
# verdict CONDITION, as (( )) takes it
verdict() { if (($1)); then echo met; else echo MISSED; fi; }
# hundredths NUMBER: 150 is 1.50
hundredths() { printf '%d.%02d' $(($1 / 100)) $(($1 % 100)); }
# in_ms MICROSECONDS
in_ms() { printf '%d.%02d ms' $(($1 / 1000)) $(($1 % 1000 / 10)); }
# median, of the numbers on standard input, one a line
median() { sort -n | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }'; }
now() { echo "${EPOCHREALTIME/./}"; }    # in microseconds
