#!/usr/bin/env bash
# Three hosts under the distribution's Prometheus, with the configuration, rule and queries of the documentation at a
# faster pace. Half a minute; everything on loopback.
# usage: fleet.sh <host program> <docs/prometheus.md>
set -euo pipefail
host=$1 docs=$2

for program in prometheus promtool curl; do
    if ! command -v $program >/dev/null; then
        echo "Skipped: there is no $program here (Debian and Ubuntu packages prometheus, curl)"
        exit 77
    fi
done

dir=$(mktemp -d)
declare -A pids=() ports=()
finish() {
    kill -9 "${pids[@]}" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$dir"
}
trap finish EXIT

fail() {
    echo "FAILED: $*" >&2
    tail -n 5 "$dir"/*.log >&2 || true
    exit 1
}

# block <language> <number>: a block of code of the documentation
block() {
    awk -v fence="\`\`\`$1" -v wanted="$2" '
        $0 == fence { inside = ++seen == wanted; next }
        /^```/ { inside = 0 }
        inside' "$docs"
}

start_host() {
    local name=$1
    shift
    "$host" --metrics 127.0.0.1:0 --label "host=$name" "$@" >"$dir/$name.log" 2>&1 &
    pids[$name]=$!
    for _ in {1..50}; do
        ports[$name]=$(head -n 1 "$dir/$name.log" 2>/dev/null || true)
        [[ -z ${ports[$name]} ]] || return 0
        sleep 0.1
    done
    fail "$name doesn't start"
}

start_server() {
    local port attempt
    for attempt in {1..5}; do
        port=$((20000 + RANDOM % 30000))
        server=http://127.0.0.1:$port
        prometheus --config.file="$dir/prometheus.yml" --storage.tsdb.path="$dir/data" \
            --web.listen-address="127.0.0.1:$port" >"$dir/server.log" 2>&1 &
        pids[server]=$!
        for _ in {1..100}; do
            ! curl -sf --max-time 2 "$server/-/ready" >/dev/null || return 0
            kill -0 "${pids[server]}" 2>/dev/null || break # the port was taken
            sleep 0.1
        done
    done
    fail "the server doesn't start ($attempt attempts)"
}

query() { promtool query instant "$server" "$1"; }

# expect <what> <query> <pattern>: waits until the answer matches; an empty pattern waits for an empty answer.
expect() {
    local answer=""
    for _ in {1..60}; do
        answer=$(query "$2") || fail "$1: $2"
        if [[ -z $3 && -z $answer ]] || [[ -n $3 && $answer =~ $3 ]]; then
            echo "ok: $1"
            return 0
        fi
        sleep 0.25
    done
    fail "$1: $2 gives: $answer"
}

start_host sim-1
start_host sim-2
start_host sim-3 --overload

block yaml 1 | sed -E "s/(interval): .*/\1: 500ms/
    s|targets: .*|targets: ['127.0.0.1:${ports[sim-1]}', '127.0.0.1:${ports[sim-2]}', '127.0.0.1:${ports[sim-3]}']|" \
    >"$dir/prometheus.yml"
block yaml 2 >"$dir/statistics.rules.yml"
promtool check rules "$dir/statistics.rules.yml" || fail "the rules of the documentation"
sed -i -E 's/for: .*/for: 2s/' "$dir/statistics.rules.yml"
promtool check config "$dir/prometheus.yml" || fail "the configuration of the documentation"
curl -sf --max-time 5 "http://127.0.0.1:${ports[sim-3]}/metrics" >"$dir/page"
promtool check metrics <"$dir/page" || fail "the page"
echo "ok: promtool accepts page, rules and configuration"

start_server
expect "all three are up" 'sum(up{job="statistics"})' '=> 3 '
expect "texts arrive as they are" 'statistics_text_info' 'text="up \\"and\\" running\\\\\\n"'
expect "the fleet's worst frame time by path" "$(block promql 1)" 'path="Frame/Time"\} => 4[01]'
expect "hosts outside their limits" "$(block promql 2)" '^\{host="sim-3"\} => 1 [^}]*$'
expect "a value against an earlier one" "$(block promql 3 | sed 's/offset 1w/offset 2s/')" 'host="sim-1".*=> (0|1)'
query "$(block promql 3)" || fail "the query about last week"

expect "the alert fires" 'ALERTS{alertstate="firing"}' 'host="sim-3"'
expect "the alert fires for that host alone" 'count(ALERTS{host!="sim-3"})' ''

expect "the counter is there" 'count(statistics_value{path="Jobs/Temporary"})' '=> 3 '
kill -USR1 "${pids[sim-1]}"
expect "a removed counter disappears" 'statistics_value{path="Jobs/Temporary",host="sim-1"}' ''
expect "and only there" 'count(statistics_value{path="Jobs/Temporary"})' '=> 2 '

kill -9 "${pids[sim-2]}"
expect "a killed host goes down" 'sum(up{job="statistics"})' '=> 2 '
expect "with its counters" 'statistics_value{host="sim-2"}' ''
echo "All seen"
