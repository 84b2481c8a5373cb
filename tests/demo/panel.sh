#!/usr/bin/env bash
# The demo by real clicks and keys: presets on disk, rows on the system's clipboard, a thread's priority, snapshots, a
# process with a very long command line, a display that goes away, a small one.
# usage: panel.sh PROGRAM
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/checking.sh"
source "$here/../../scripts/lib/clicking.sh"
for tool in Xvfb xdotool xclip; do
    command -v $tool >/dev/null || {
        echo "SKIPPED: $tool is missing; install the packages xvfb, xdotool and xclip"
        exit 77
    }
done

config=$work/home/.config/statistics-demo
state=$work/home/.local/state/statistics-demo
mkdir -p "$config"
printf '{"name": "Desktop",\n "limits":\n  oops}' >"$config/desktop.json"

start_display 1400x1050
start_demo "$1" --preset Stress
click "Pause particles" # a busy machine shall have time for frames: two clicks in one are no double click

# Presets: a damaged file is told, the active limits are saved, loaded back and saved under a new name.
click Presets
wait_for "damaged file" is_shown "(desktop.json is damaged in line 3)"
click Battery
click Save 2 # of Desktop's row: it saves what is active
wait_for "message" is_shown "(saved as battery.json)"
check "Battery's limits in its file" grep -q '"max": 5000.0' "$config/battery.json"
sed -i 's/5000.0/123456.0/' "$config/battery.json"
click Load 1
wait_for "limit of the loaded file" is_shown 123456
click "Save As" 3
wait_for "row of the new preset" is_shown "(from my limits.json)"
check "loaded limits in the new file" grep -q '"max": 123456.0' "$config/my limits.json"
check "no half-written files" test "$(ls "$config" | wc -l)" -eq 3

# Rows: the clipboard as another program reads it, and a thread's priority as the kernel tells it.
click Work
click Process
click Threads
open_menu particles-1 Nice
click "Copy to Clipboard"
copied() { [[ $(clipboard) =~ ^particles-1$'\t'[0-9]+$'\t'[a-z]+($'\t'[^$'\t']+){5}$ ]]; }
wait_for "row on the clipboard" copied
thread=$(clipboard | cut -f 2)
open_menu particles-1 Nice
click "Lower priority"
lower=$(($(nice) + 5 < 19 ? $(nice) + 5 : 19))
is_lower() { [[ $(sed 's/.*) //' "/proc/$demo/task/$thread/stat" | cut -d ' ' -f 17) == "$lower" ]]; }
wait_for "nice value of $lower" is_lower
double_click "Thread particles-1" particles-1
shows_next_by_keys() {
    press Down Return
    ! is_shown "Thread particles-1"
}
wait_for "details of the next row" shows_next_by_keys

# A stranger's command line is bounded on the screen, and whole on the clipboard.
cp "$(command -v sleep)" "$work/0-verbose"
# shellcheck disable=SC2046
"$work/0-verbose" $(yes 1 | head -n 12000) &
click Process
click Machine
click Processes
double_click "Process 0-verbose" 0-verbose
open_menu 0-verbose Nice
click "Copy command line"
whole_line() { (($(clipboard | wc -c) > 24000)); }
wait_for "whole command line on the clipboard" whole_line
click Machine

# Snapshots: files, check boxes, the comparison as a spreadsheet gets it.
click Diff
click "Take snapshot"
snapshot_is_there() { ls "$state"/snapshots/run-1/run-1_*.csv >/dev/null 2>&1; }
wait_for "snapshot" snapshot_is_there
name=$(basename "$state"/snapshots/run-1/*.csv)
click Snapshots
click run-1
click "$name"
click "Save diff"
comparison_is_there() { ls "$state"/comparisons/*.csv >/dev/null 2>&1; }
wait_for "comparison" comparison_is_there
comparison=$(echo "$state"/comparisons/*.csv)
check "the header of the comparison" test "$(head -n 1 "$comparison")" == "Caption,$name,Changed"$'\r'
check "a line for each counter" test "$(wc -l <"$comparison")" -eq "$(($(wc -l <"$state/snapshots/run-1/$name") - 1))"

# The end of the display is the end of the demo, as its close box is.
ended_well() { wait "$demo" && ! grep -q "ASSERTION FAILED" "$work/demo.log"; }
kill "$display_server"
check "a clean end without a display" ended_well
check "the layout is kept" test -s "$state/layout.ini"

# A small display shows all windows. A state folder that can't be used is told, and the rest goes on.
rm -r "$work/display" "$work/screen" "$state"
touch "$state"
start_display 800x600
start_demo "$1"
wait_for "word about the snapshots" grep -q "No snapshots: " "$work/screen"
check "the word in the log, once" test "$(grep -c "no snapshots: .*statistics-demo" "$work/demo.log")" -eq 1
for text in Statistics Presets Demo "Pause sampling" Warnings; do
    wait_for "$text on the small display" is_shown "$text"
done
click Panel
is_hidden() { ! is_shown Presets; }
wait_for "end of the panel" is_hidden
kill -HUP "$demo"
check "a clean end after a hang-up" ended_well
