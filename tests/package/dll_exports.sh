#!/usr/bin/env bash
# What the built DLL gives to a host: the declared classes and functions and nothing else.
# usage: dll_exports.sh <objdump> <library>
set -euo pipefail

fail() {
    printf '%s:\n%s\n' "$1" "$2"
    exit 1
}

table=$("$1" -p "$2")
# "	[   0] _ZN10statistics6System4drawEv"
given=$(sed -nE '/^\[Ordinal\/Name Pointer\] Table/,/^$/ s/^\s+\[ *[0-9]+\] //p' <<<"$table" | c++filt)

foreign=$(grep -Ev '^statistics::' <<<"$given" || true)
[[ -z $foreign ]] || fail 'exported, but not of namespace statistics' "$foreign"

classes='System|Table|DiffTable|CounterValue'
functions='label|getItemIndex|childrenCounter|table|setKeyColumn|getTableCell|addRowAction|setDefaultAction'
functions+='|addClipboardAction|setReportHandler|Counter::withinLimits'
undeclared=$(grep -Ev "^statistics::(($classes)::|($functions)(\[abi:cxx11\])?\()" <<<"$given" || true)
[[ -z $undeclared ]] || fail 'exported, but not declared so' "$undeclared"

grep -qF 'statistics::System::draw()' <<<"$given" || fail 'System::draw is missing among' "$given"
grep -q 'DLL Name:.*imgui' <<<"$table" || fail 'ImGui is no DLL of its own among' "$(grep 'DLL Name' <<<"$table")"
