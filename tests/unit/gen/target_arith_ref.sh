#!/bin/sh
# Regenerates target_arith_ref.inc on the target: an ARM cross compiler and
# qemu-arm are needed here, and nowhere in the build.
set -e
cd "$(dirname "$0")"
out=$(mktemp -d)
arm-linux-gnueabihf-gcc -O0 -static -o "$out/target_arith_ref" target_arith_ref.c -lm
qemu-arm "$out/target_arith_ref" > target_arith_ref.inc
rm -rf "$out"
