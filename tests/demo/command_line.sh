#!/usr/bin/env bash
# What the demo does without a window.
# usage: command_line.sh PROGRAM
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/checking.sh"
program=$1

# run <expected exit status> [option]...
run() {
    local status=0
    env -u DISPLAY "$program" --state "$work/state" --config "$work/config" "${@:2}" \
        >"$work/out.log" 2>"$work/err.log" || status=$?
    check "exit status $1, not $status, of ${*:2}" test "$status" -eq "$1"
}

out_has() { grep -qxF -- "$1" "$work/out.log"; }
out_is() { [[ $(<"$work/out.log") == "$1" ]]; }
err_has() { grep -qF -- "$1" "$work/err.log"; }
err_is_empty() { [[ ! -s $work/err.log ]]; }

run 0 --help
check "help names the options" grep -q -- '--check SECONDS' "$work/out.log"
run 2 --no-such-option
check "complaint names the option" err_has "unknown option '--no-such-option'"
run 2 --seconds
check "complaint about the missing value" err_has "'--seconds' needs a value"
run 2 --check soon
check "complaint about the value" err_has "'soon' is no value for option '--check'"
run 2 --preset Nothing --list
check "complaint tells the presets there are" err_has Battery
run 3
check "complaint about the missing display" err_has "no window"

run 0 --list
check "nothing is reported while the tree is built" err_is_empty
for path in Frame/Rate Frame/Stages/Simulation Process/Threads/Table "Machine/Processors/Processor 0"; do
    check "$path in the address book" out_has "$path"
done
parents_are_listed() { sed -n 's|/[^/]*$||p' "$work/out.log" | sort -u | comm -23 - <(sort "$work/out.log") | (! grep .); }
check "a parent of every item in the address book" parents_are_listed
check "each path once" test "$(sort "$work/out.log" | uniq -d | wc -l)" -eq 0

preset "$work/config/wide.json" 0 1e9
run 0 --check 0.5 --preset wide
check "no warnings inside the limits" out_is ""
check "no reports" err_is_empty

preset "$work/config/tight.json" 0 1e9
sed -i 's/"process.resident": {"min": 0, "max": 1e9}/"process.resident": {"min": 0, "max": 0.5}/' "$work/config/tight.json"
run 1 --check 0.5 --preset tight
check "the one counter that is outside" out_is Process/Memory/Resident

# A damaged file leaves the limits that the program knows: the particles are more than Battery allows.
echo '{"limits": {"work.particles": {"min": 0, "max": 1e9}' >"$work/config/battery.json"
run 1 --check 0 --preset Battery
check "the limit that was there" out_has Work/Particles
