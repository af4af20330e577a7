# Shared by the whole-process benchmarks: a private display, and commands timed from outside.
# Sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
vantro=${VANTRO:-$root/build/release/bin/vantro}
bin=$(dirname "$vantro")
work=$(mktemp -d "${TMPDIR:-/var/tmp}/vantro-bench.XXXXXX")
pids=()
unset WAYLAND_DISPLAY XDG_SESSION_TYPE # the private display is to be recorded

finish() {
    kill "${pids[@]}" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap finish EXIT

# start_display WIDTHxHEIGHT [ARGUMENTS]: sets DISPLAY to a fresh private X server.
start_display() {
    local pipe=$work/display size=$1
    shift
    rm -f "$pipe"
    mkfifo "$pipe"
    Xvfb -displayfd 9 -screen 0 "${size}x24" -nolisten tcp -noreset "$@" 9>"$pipe" 2>/dev/null &
    pids+=($!)
    local number
    read -r number <"$pipe"
    export DISPLAY=:$number
}

# tell_length PROJECT: of a project that has been given another movie.
tell_length() {
    local length
    length=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$1/recording.mov")
    sed -i "s/\"endTime\": *[0-9.]*/\"endTime\": $length/" "$1/project.json"
}

# measure COMMAND...: sets cpu and wall (seconds) of the whole process; its output goes to a log.
measure() {
    local times=$work/times
    if ! { TIMEFORMAT='%U %S %R'; time "$@" >"$work/log" 2>&1; } 2>"$times"; then
        echo "failed: $*" >&2
        cat "$work/log" >&2
        exit 1
    fi
    read -r user system wall <"$times"
    cpu=$(awk "BEGIN { print $user + $system }")
}

ratio() { awk "BEGIN { printf \"%.2f\", $1 / $2 }"; }
percent() { awk "BEGIN { printf \"%.1f\", 100 * $1 / $2 }"; }
