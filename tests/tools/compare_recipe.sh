#!/usr/bin/env bash
# What docs/comparing.md tells a build to run tells a run that is noise from one that got worse.
# usage: compare_recipe.sh PROGRAM COMPARING.md
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/../demo/checking.sh"
mkdir "$work/bin"
ln -s "$1" "$work/bin/statistics-compare"
sed -n '/^```sh$/,/^```$/{/^```/d;p}' "$2" >"$work/recipe"
check "a recipe" test -s "$work/recipe"
cd "$work"

# record <folder> <seed> <milliseconds of a frame> [line]...: twenty snapshots of a program with some noise
record() {
    local file
    mkdir "$1"
    awk -v folder="$1" -v seed="$2" -v time="$3" '
    function random() { # the same in every awk
        seed = seed * 16807 % 2147483647
        return seed / 2147483647
    }
    BEGIN {
        for (snapshot = 1; snapshot <= 20; ++snapshot) {
            file = folder "/" snapshot ".csv"
            print "sep=\t\nCaption\tValue" >file
            printf "Frame/Time\t%.3f\n", time * (0.9 + 0.2 * random()) >file
            printf "Frame/Rate\t%.3f\n", 1000 / time * (0.9 + 0.2 * random()) >file
            printf "Frame/Count\t%d\n", 1000000 * random() >file
            print "Work/Particles\t4000\nWork/Name\tdisc" >file
            for (part = 0; part < 20; ++part)
                printf "Work/Parts/Part %d\t%d\n", part, 100 + 20 * random() >file
        }
    }'
    for file in "$1"/*.csv; do
        printf '%b' "${@:4}" >>"$file"
    done
}

# recipe <expected exit status> <base> <new>
recipe() {
    local status=0
    BASE=$2 NEW=$3 PATH=$work/bin:$PATH bash -e "$work/recipe" >recipe.log 2>&1 || status=$?
    check "exit status $1, not $status, for $2 and $3" test "$status" -eq "$1"
}

record old 1001 16.7
record same 2002 16.7
record slow 3003 25 'Work/Lost\t1\n'
record quick 4004 12
recipe 0 old same
recipe 1 old slow
check "what got worse" test "$(grep -c '^| Frame.*| worse |$' recipe.log)" -eq 2
check "what came" grep -q '^| Work/Lost | .* | added |$' recipe.log
check "nothing else" test "$(grep -c '^| [A-Z].*/' recipe.log)" -eq 3
recipe 0 old quick
truncate -s -3 same/7.csv
recipe 2 old same
check "the cut file" grep -q 'same/7.csv: cut in line' recipe.log
