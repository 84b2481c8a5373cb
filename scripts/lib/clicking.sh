# Sourced by scripts that use the demo as a person would: on a virtual display, by mouse and keys, looking at the
# screen.
# The demo tells what stands where in a file ("--screen"): the middle of each text, its window and the text itself,
# separated by tabs, from top to bottom.
#
# Expects $work, a folder for the files of the run, and the packages of packages_display.

# wait_for <what> <command>...: until the command succeeds, some seconds at the most
wait_for() {
    local what=$1 try
    shift
    for ((try = 0; try < 200; ++try)); do
        "$@" && return
        sleep 0.1
    done
    echo "No $what after 20 seconds" >&2
    tail -n 20 "$work"/*.log >&2
    return 1
}

start_display() {
    Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp 3>"$work/display" >"$work/xvfb.log" 2>&1 &
    display_server=$!
    wait_for "virtual display" test -s "$work/display"
    DISPLAY=:$(<"$work/display")
    export DISPLAY
}

# start_demo <program> [option]...: with a home folder of its own
start_demo() {
    mkdir -p "$work/home"
    env -u XDG_CONFIG_HOME -u XDG_STATE_HOME HOME="$work/home" LIBGL_ALWAYS_SOFTWARE=1 \
        "$@" --screen "$work/screen" >"$work/demo.log" 2>&1 &
    demo=$!
    wait_for "panel" is_shown Statistics
}

# place_of <text> [nth]: "x y" of its nth appearance
place_of() {
    awk -F '\t' -v text="$1" -v nth="${2:-1}" '$4 == text && ++count == nth { print $1, $2; exit }' \
        "$work/screen" 2>/dev/null
}

# place_in_row <text of the row> <column>: under the column's header
place_in_row() {
    local row column
    read -r -a row < <(place_of "$1") && read -r -a column < <(place_of "$2") && echo "${column[0]} ${row[1]}"
}

# place_beside <text> <pixels>: as far to the right of the text's middle
place_beside() {
    local text
    read -r -a text < <(place_of "$1") && echo "$((text[0] + $2)) ${text[1]}"
}

# is_found <place function> <argument>...
is_found() { [[ -n $("$@") ]]; }

is_shown() { is_found place_of "$@"; }

is_newer() { [[ $(stat -c %y "$work/screen") != "$1" ]]; }

# Until the demo has told the screen anew.
look_again() {
    local before
    before=$(stat -c %y "$work/screen")
    wait_for "new look at the screen" is_newer "$before"
}

# move_to <place function> <argument>...: the pointer goes there once nothing moves any more
move_to() {
    local place
    wait_for "\"$2\" on the screen" is_found "$@"
    look_again
    look_again # what the last click has moved stands still now
    read -r -a place < <("$@")
    xdotool mousemove "${place[@]}" sleep 0.1
}

point_at() { move_to place_of "$@"; }

click() {
    point_at "$@"
    xdotool click 1
}

# double_click <what it brings to the screen> <text> [nth]
double_click() {
    local try
    # A busy machine may draw so slowly that both clicks fall into one frame: each try takes longer.
    for ((try = 0; try < 10; ++try)); do
        point_at "${@:2}"
        xdotool click --repeat 2 --delay $((90 + try * try * 12)) 1
        look_again
        look_again
        is_shown "$1" && return
    done
    wait_for "\"$1\" after a double click" false
}

# open_menu <text of the row> <column>: the context menu of a table's row
open_menu() {
    move_to place_in_row "$@"
    xdotool click 3
}

# press <key>...: one after the other
press() {
    local key
    for key in "$@"; do
        xdotool keydown "$key" sleep 0.15 keyup "$key" # longer than most frames, too short to be repeated
        look_again
        look_again
    done
}

# Away from everything that reacts to the pointer.
point_at_nothing() { xdotool mousemove 1390 1040; }

clipboard() { timeout 5 xclip -o -selection clipboard 2>/dev/null; }
