# Sourced by the scripts that test: counts what passed and failed, part by part, and tells the sum.

passed_sum=0
failed_sum=0
summary=()

# count <name> <passed> <failed> [note]
count() {
    passed_sum=$((passed_sum + $2))
    failed_sum=$((failed_sum + $3))
    summary+=("$(printf '%-8s %s passed, %s failed%s' "$1" "$2" "$3" "${4:-}")")
}

# quietly <log> <command>...: shows the command's output only if it fails
quietly() {
    local log=$1
    shift
    "$@" >"$log" 2>&1 || {
        cat "$log"
        return 1
    }
}

# with_progress <log> <command>...: a build by ninja, of which each quarter is told; its output only if it fails
with_progress() {
    local log=$1
    shift
    "$@" 2>&1 | tee "$log" | awk -F '[][/]' '
        /^\[[0-9]+\/[0-9]+\]/ && int(4 * $2 / $3) > told { told = int(4 * $2 / $3); print "   " $2 " of " $3; fflush() }' || {
        cat "$log"
        return 1
    }
}

# tell_sum: the script's last line and status
tell_sum() {
    printf '\n'
    printf '%s\n' "${summary[@]}"
    echo "$passed_sum passed, $failed_sum failed"
    ((failed_sum == 0))
}
