#!/usr/bin/env bash
# What docs/comparing.md tells a build to run tells noise from three times the work.
# usage: compare_recipe.sh PROGRAM RECORDING_PROGRAM COMPARING.md
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/../demo/checking.sh"
recorder=$2
mkdir "$work/bin"
ln -s "$1" "$work/bin/statistics-compare"
awk '/^```/ { inside = !inside; block += inside && $0 == "```sh"; next }
     inside && block { print >("'"$work"'/step" block) }' "$3"
cd "$work"

# On one processor: two of a virtual machine may differ in speed by half.
processor=$(awk '/^Cpus_allowed_list/ { split($2, first, /[,-]/); print first[1] }' /proc/self/status)

# record <folder> [option]...
record() {
    env RUN="$1" PROGRAM="$recorder --config config.$1 ${*:2}" taskset -c "$processor" bash -e step1 >"$1.log" 2>&1
}

# compare <expected exit status> <base> <new>
compare() {
    local status=0
    BASE=$2 NEW=$3 PATH=$work/bin:$PATH bash -e step2 >compare.log 2>&1 || status=$?
    check "exit status $1, not $status, for $2 and $3" test "$status" -eq "$1"
}

# marked <mark> <path>...: one of them at least
marked() {
    local path
    for path in "${@:2}"; do
        ! grep -q "^| $path | .* | $1 |$" compare.log || return 0
    done
    return 1
}

# All at once: whatever else the machine does, it does to all of them. Few particles: where programs starve for a
# processor, all get the same.
record base --particles 1000 & first=$!
record same --particles 1000 & second=$!
record more --particles 3000 & third=$!
for run in $first $second $third; do
    check "a recorded run" wait "$run"
done

compare 0 base same
compare 1 base more
check "the particles" marked changed Work/Particles
check "what they cost" marked worse Work/Workers Process/Processor
check "nothing on one side only" bash -c "! grep -qE '\| (added|removed) \|$' compare.log"
truncate -s -3 "$(printf '%s\n' same/snapshots/*/*.csv | head -n 1)"
compare 2 base same
check "the cut file" grep -q 'cut in line' compare.log
