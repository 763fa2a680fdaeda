#!/bin/sh
# qly starts within milliseconds and runs on machines without a desktop because it needs these libraries alone.
set -eu
needed=$(ldd "$1" | sed 's/^[[:space:]]*//; s/ .*//; s:.*/::; s/\.so.*//; s/^ld-linux-.*/loader/' | sort | tr '\n' ' ')
expected="libc libgcc_s libm libstdc++ linux-vdso loader "
[ "$needed" = "$expected" ] || { echo "$1 needs $needed, not $expected"; exit 1; }
