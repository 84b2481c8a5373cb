#!/usr/bin/env bash
# The demo for machines without a display: what it needs, and a recording.
# usage: headless.sh PROGRAM HEADLESS_PROGRAM
set -euo pipefail
here=$(dirname "${BASH_SOURCE[0]}")
source "$here/checking.sh"
program=$1
headless=$2
folders=(--state "$work/state" --config "$work/config")

no_window_in() { ! ldd "$1" | cut -d ' ' -f 1 | grep -iE 'imgui|glfw|libGL|libX11'; }
no_imgui_in() { ! nm -DC "$1" | grep ImGui; }
check "no window among the libraries it needs" no_window_in "$headless"
check "no Dear ImGui in it" no_imgui_in "$headless"
same_list() { diff <("$headless" --list "${folders[@]}") <("$program" --list "${folders[@]}"); }
check "the list of the other program" same_list

status=0
"$headless" "${folders[@]}" 2>"$work/err.log" || status=$?
check "status 2, not $status, for a window" test "$status" -eq 2

# A snapshot at the start and each second, in a folder of the run's own.
"$headless" --record 1 --seconds 2.5 "${folders[@]}" >"$work/out.log"
check "three snapshots" test "$(wc -l <"$work/out.log")" -eq 3
mapfile -t files <"$work/out.log"
check "the files that it tells" test -s "${files[0]}" -a -s "${files[1]}" -a -s "${files[2]}"
check "a counter in each" grep -qE $'^Process/Memory/Resident\t[0-9.]+' "${files[@]}"
"$headless" --record 1 --frames 1 "${folders[@]}" >"$work/out.log"
check "the next run's own folder" grep -q /run-2/run-2_ "$work/out.log"

status=0
"$headless" --record 1 --frames 1 --config "$work/config" --state "$work/out.log/no" 2>"$work/err.log" || status=$?
check "status 5, not $status, without a place for snapshots" test "$status" -eq 5
check "the reason, once" test "$(grep -c 'no snapshots: .*Not a directory' "$work/err.log")" -eq 1
