#!/usr/bin/env bash
# What statistics-compare does with files, folders and terminals, and how it ends.
# usage: compare_command_line.sh PROGRAM
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$here/../demo/checking.sh"
program=$1
options=$(grep -ohE '"--[a-z-]+"' "$here/../../tools/compare/arguments.cpp" | tr -d '"')
cd "$work"

# snapshot <file> <line>...
snapshot() {
    mkdir -p "$(dirname "$1")"
    printf 'sep=\t\nCaption\tValue\n' >"$1"
    printf '%b\n' "${@:2}" >>"$1"
}

# run <expected exit status> [argument]...
run() {
    local status=0
    "$program" "${@:2}" >out.log 2>err.log || status=$?
    check "exit status $1, not $status, of ${*:2}" test "$status" -eq "$1"
}

out_has() { grep -qF -- "$1" out.log; }
err_has() { grep -qF -- "$1" err.log; }

for number in 1 2 3 4 5; do
    snapshot "runs/old/$number.csv" "Frame/Time\t16.$number" "Region\tnorth" "Gone\t1"
    snapshot "runs/same/$number.csv" "Frame/Time\t16.$((6 - number))" "Region\tnorth" "Gone\t1"
    snapshot "runs/new/$number.csv" "Frame/Time\t33.$number" "Region\tsouth" "Fresh\t1"
done

# Help and wrong use
run 0 --help
for option in $options; do
    check "help on $option" out_has "$option"
done
run 2
run 2 runs/old
run 2 runs/old runs/new runs/same
run 2 runs/old --new runs/new
run 2 runs/old runs/new --alpha 2
check "complaint about the value" err_has "'2'"
run 2 runs/old runs/new --tolerance much
run 2 runs/old runs/new --fail-on rain
run 2 runs/old runs/new --sort size

# Runs
run 0 runs/old runs/same
run 1 runs/old runs/new
for line in "changed           2" "added             1" "removed           1"; do
    check "the count '$line'" out_has "$line"
done
run 1 runs/old runs/new --fail-on removed
run 0 runs/old runs/new --fail-on worse,outside
run 1 runs/old runs/new --fail-on worse --lower-is-better '*/Time' --only-changed
check "the row that is worse" grep -qE '^Frame/Time .* worse$' out.log
run 0 runs/old runs/new --fail-on none
run 0 --base runs/old runs/same --new runs/same runs/old/1.csv
run 0 runs/old/1.csv runs/old/1.csv
run 1 runs/old/1.csv runs/same/1.csv --fail-on changed
check "word that noise can't be told" out_has "may be noise"
echo '{"limits": {"Frame/*": {"min": 0, "max": 20}, "idle": {"min": 0, "max": 1}}}' >limits.json
run 0 runs/old runs/same --limits limits.json
check "word of the limits that judge nothing" err_has "'idle'"
run 1 runs/old runs/new --limits limits.json --fail-on outside

# What can't be used
run 2 runs/old runs
check "the runs of a root" err_has same
run 2 runs/old nowhere
check "the missing file" err_has "nowhere: there is no such file"
mkdir -p empty bad
run 2 runs/old empty
check "the empty folder" err_has "empty: holds no snapshot"
cp runs/old/*.csv bad
: >bad/6.csv
run 2 runs/old bad
check "the empty file" err_has "bad/6.csv: empty"
printf 'Time,Value\n1,2\n3,4\n' >bad/6.csv
run 2 runs/old bad
check "no snapshot" err_has "bad/6.csv: no snapshot: line 1"
snapshot bad/6.csv "Frame/Time\t160"
truncate -s -2 bad/6.csv
run 2 runs/old bad
check "the cut file" err_has "bad/6.csv: cut in line 3"
run 0 runs/old bad --skip-bad
check "what was skipped" err_has "bad/6.csv: cut in line 3 (skipped)"
run 2 runs/old bad/6.csv --skip-bad
mkfifo pipe
run 2 runs/old pipe
if [[ -e /dev/full ]]; then
    status=0
    "$program" runs/old runs/new >/dev/full 2>err.log || status=$?
    check "exit status 2, not $status, where nothing can be written" test "$status" -eq 2
fi

# Terminals
if command -v script >/dev/null; then
    snapshot long/1.csv "A group of counters/Another group of counters/A counter with a long name\t1"
    snapshot long/2.csv "A group of counters/Another group of counters/A counter with a long name\t12345678"
    on_terminal() { TERM=xterm script -qec "stty cols 70; $1 '$program' long/1.csv long/2.csv" /dev/null >out.log || true; }
    on_terminal "env -u NO_COLOR"
    check "a path cut in its middle" grep -qE 'A group.*….*long name .*12345678 ' out.log
    check "colours on a terminal" out_has $'\033['
    on_terminal "env NO_COLOR=1"
    check "no colours where they are refused" bash -c "! grep -qF $'\033[' out.log"
    check "the width of the terminal" test "$(sed 's/…/./' out.log | tr -d '\r' | wc -L)" -le 70
fi
run 1 long/1.csv long/2.csv
check "no colours in a file" bash -c "! grep -qF $'\033[' out.log"
