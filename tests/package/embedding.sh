#!/usr/bin/env bash
# What docs/embedding.md tells hosts to write in CMake stands in the consumer that the tests build, but for lines with
# names of the host's own ("your_..."); and the ways that its commands name are ways that the tests go.
# usage: embedding.sh <embedding.md> <CMakeLists.txt of the package's tests> <CMakeLists.txt of a consumer>...
set -euo pipefail

failed=0
missing() {
    echo "not in the tests: $1"
    failed=1
}

lines=$(sed -n '/^```cmake$/,/^```$/{/^```/d;p}' "$1")
while IFS= read -r line; do
    [[ $line == *your_* ]] || grep -qF -- "$line" "${@:3}" || missing "$line"
done <<<"$lines"

options=$(grep -oE -- '-DCONSUMER_(USES|IMGUI)=[a-z_]+' "$1" | sort -u)
for option in $options; do
    grep -qE -- "\b${option#*=}\b" "$2" || missing "$option"
done
[[ -n $lines && -n $options ]] || missing "anything"
exit $failed
