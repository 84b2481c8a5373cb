# Sourced by the demo's tests.

work=$(mktemp -d)
trap 'trap - EXIT; kill $(jobs -p) 2>/dev/null || true; wait; rm -rf "$work"' EXIT

# check <what is expected> <command>...: ends the test unless the command succeeds
check() {
    local what=$1
    shift
    "$@" && return
    echo "FAILED: $what" >&2
    tail -n +1 "$work"/*.log "$work/screen" >&2 2>/dev/null || true
    exit 1
}

# preset <file> <min> <max>: the limits of every key that the demo's own presets have
preset() {
    local key keys=(frame.rate frame.time frame.longest work.particles process.processor process.resident
        process.majorFaults process.files machine.load machine.processors machine.memory)
    mkdir -p "$(dirname "$1")"
    {
        printf '{"limits": {'
        for key in "${keys[@]}"; do
            printf '"%s": {"min": %s, "max": %s}, ' "$key" "$2" "$3"
        done
        printf '"of.nothing": {"min": 0, "max": 1}}}'
    } >"$1"
}
