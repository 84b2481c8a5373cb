#!/usr/bin/env bash
# What the built shared library gives to a host and takes from it.
# usage: exports.sh <nm> <library> [ImGui]      (with the word: it takes the host's ImGui; without: it knows none)
set -euo pipefail

names() { "$nm" -C "$@" "$library" | sed -E 's/^[0-9a-f ]+ [A-Za-z] //'; }
fail() {
    printf '%s:\n%s\n' "$1" "$2"
    exit 1
}

nm=$1
library=$2
given=$(names -D --defined-only)
taken=$(names -D --undefined-only)

foreign=$(grep -v '^statistics::' <<<"$given" || true)
[[ -z $foreign ]] || fail 'exported, but not of namespace statistics' "$foreign"

internals=$(grep -E '^statistics::(Render|Tree|StatisticsAnalyzer|PresetGroup|SnapshotGroup)::' <<<"$given" || true)
[[ -z $internals ]] || fail 'exported, but internal' "$internals"

grep -q '^statistics::System::draw()$' <<<"$given" || fail 'System::draw is missing among' "$given"

# A copy of ImGui that is only hidden would not be exported, but still a second one in the process. Inline functions
# of its headers don't matter: they work on the host's context.
embedded=$(names --defined-only | grep -E '^(GImGui$|ImGui::(CreateContext|NewFrame|Begin|Render)\()' || true)
[[ -z $embedded ]] || fail 'ImGui is inside the library' "$embedded"
if [[ ${3:-} == ImGui ]]; then
    grep -q '^ImGui::Begin(' <<<"$taken" || fail "the host's ImGui::Begin is missing among" "$taken"
else
    known=$(names | grep -i 'imgui' || true)
    [[ -z $known ]] || fail 'ImGui is known to' "$known"
fi
