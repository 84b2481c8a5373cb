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

# tell_sum: the script's last line and status
tell_sum() {
    printf '\n'
    printf '%s\n' "${summary[@]}"
    echo "$passed_sum passed, $failed_sum failed"
    ((failed_sum == 0))
}
