#!/usr/bin/env bash
# What the demo does without a window.
# usage: command_line.sh PROGRAM
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/checking.sh"
source "$here/../../scripts/lib/clicking.sh"
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

run 0 -h
check "help names the options" grep -q -- '--check SECONDS' "$work/out.log"
check "help tells the statuses" grep -qE '^ +4 +after --check' "$work/out.log"
run 2 --no-such-option
check "complaint names the option" err_has --no-such-option
run 2 --seconds
check "complaint about the missing value" err_has "--seconds: 1 required"
run 2 --check soon
check "complaint about the value" err_has "'soon' is no time"
run 2 --preset=Nothing --list
check "complaint tells the presets there are" err_has Battery
run 3
check "complaint about the missing display" err_has "no window"

# Without a home folder nothing is written, least of all into the current one.
mkdir "$work/here"
homeless() { (cd "$work/here" && env -u HOME -u XDG_CONFIG_HOME -u XDG_STATE_HOME "$program" --list 2>"$work/err.log"); }
status=0
homeless >/dev/null || status=$?
check "status 5, not $status, without a home folder" test "$status" -eq 5
check "the word about it" err_has "HOME isn't set"
check "nothing in the current folder" test -z "$(ls -A "$work/here")"

run 0 --list
check "nothing is reported while the tree is built" err_is_empty
for path in Frame/Rate Frame/Stages Frame/Stages/Simulation Process/Threads "Machine/Processors/Processor 0"; do
    check "$path among the counters" out_has "$path"
done
check "each path once" test "$(sort "$work/out.log" | uniq -d | wc -l)" -eq 0

preset "$work/config/wide.json" 0 1e9
run 0 --check 0.5 --preset wide
check "no warnings inside the limits" out_is ""
check "no reports" err_is_empty

preset "$work/config/tight.json" 0 1e9
sed -i 's/"process.resident": {"min": 0, "max": 1e9}/"process.resident": {"min": 0, "max": 0.5}/' "$work/config/tight.json"
run 1 --check 0.5 --preset tight
check "the one counter that is outside" out_is Process/Memory/Resident

run 4 --check=0 --preset wide --proc "$work/here"
check "what has limits and no value" out_has "Machine/Load/1 minute: no value"
run 1 --check=0 --preset tight --proc "$work/here"
check "both kinds of lines" test "$(grep -c '^Process/Memory/Resident$\|: no value$' "$work/out.log")" -ge 2

# Each line is out at once: a signal, and a pipe in between, lose none.
env -u DISPLAY "$program" --config "$work/config" --check 60 --preset tight > >(cat >"$work/out.log") &
gate=$!
wait_for "line of the check that is going on" out_has Process/Memory/Resident
kill -HUP $gate
status=0
wait $gate 2>/dev/null || status=$?
check "status 129, not $status, after a hang-up" test "$status" -eq 129

# A gate whose limits can't be read isn't open.
echo '{"limits": {"work.particles": {"min": 0, "max": 1e9}' >"$work/config/battery.json"
run 5 --check 0 --preset Battery
check "the reason" err_has "battery.json is damaged"
mkfifo "$work/config/pipe.json"
run 0 --list
check "the pipe that nobody reads" err_has "pipe.json is no regular file"
rm -r "$work/config"
touch "$work/config"
run 5 --list --preset mine
check "the folder that is none" err_has "Not a directory"
