#!/usr/bin/env bash
# Compiles the C++ that the README tells a host to write.
# usage: readme.sh <README.md> <compiler> <option>...
set -euo pipefail

code=$(sed -n '/^```cpp$/,/^```$/{/^```/d;p}' "$1")
if [[ -z $code ]]; then
    echo "no C++ in $1"
    exit 1
fi
"${@:2}" -fsyntax-only -x c++ - <<<"$code"
