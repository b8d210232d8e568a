#!/bin/sh
# Usage: run-programs.sh CFE OPT DIR WORK
# Takes each C program of DIR through the front end, the optimizer at -O0 to
# -O3, and the optimizer again on its own output. Prints a FAIL line for each
# step that fails, then the number of programs; exits 1 after a failure.
cfe=$1
opt=$2
dir=$3
work=$4
mkdir -p "$work"
count=0
status=0
for c in "$dir"/*.c; do
    name=$(basename "$c" .c)
    count=$((count + 1))
    if ! "$cfe" -w "$c" -o "$work/$name.if" 2>"$work/$name.err"; then
        echo "FAIL ondrel-cfe $name"
        status=1
        continue
    fi
    for level in 0 1 2 3; do
        if ! "$opt" -O$level "$work/$name.if" "$work/$name.O$level.opt" >/dev/null 2>&1; then
            echo "FAIL ondrel-opt -O$level $name"
            status=1
        elif ! "$opt" "$work/$name.O$level.opt" "$work/$name.O$level.again" >/dev/null 2>&1; then
            echo "FAIL ondrel-opt of the -O$level output of $name"
            status=1
        fi
    done
done
echo "programs: $count"
exit $status
