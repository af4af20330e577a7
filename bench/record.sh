#!/usr/bin/env bash
# Recording a 1080p screen beside ffmpeg's x11grab at 60 frames a second with the same encoder
# settings: a still screen, somebody typing, and a busy screen. CPU is that of the whole recording
# process as a share of one core; of the still screen also what starting and ending cost apart from
# the rest, from a recording of one second and another of a minute more.
# usage: bench/record.sh [SECONDS]
set -euo pipefail
source "$(dirname "$0")/common.sh"
seconds=${1:-10}
encoder=(-c:v libx264 -preset ultrafast -tune zerolatency -profile:v high -b:v 50M -qmin 10 -bf 0
    -threads "$(($(nproc) < 4 ? $(nproc) : 4))" -force_key_frames 'expr:gte(t,n_forced*0.5)'
    -forced-idr 1 -x264-params cabac=1:8x8dct=1:keyint=infinite -pix_fmt yuv420p)

start_display 1920x1080
xterm -geometry 120x40+300+200 -e sh -c 'exec cat' &
pids+=($!)

row() { # NAME, with a scene running
    measure "$vantro" record --seconds "$seconds" --output "$work/ours.vantro" --force
    local ours=$cpu ourWall=$wall summary
    summary=$(tail -n 1 "$work/log")
    measure ffmpeg -nostdin -y -f x11grab -framerate 60 -video_size 1920x1080 -i "$DISPLAY" \
        -t "$seconds" "${encoder[@]}" "$work/theirs.mov"
    printf '%-16s %9s %% %9s %% %8s   %s\n' "$1" "$(percent "$ours" "$ourWall")" \
        "$(percent "$cpu" "$wall")" "$(ratio "$ours" "$cpu")" "$summary"
}

printf '%-16s %11s %11s %8s   %s\n' "recording" vantro x11grab ratio "our summary"
row still
measure "$vantro" record --seconds 1 --output "$work/ours.vantro" --force
brief=$cpu
measure "$vantro" record --seconds 61 --output "$work/ours.vantro" --force
awk "BEGIN { rest = ($cpu - $brief) / 60
    printf \"                 %.0f ms to start and end, then %.2f %% of a core\\n\",
           1000 * ($brief - rest), 100 * rest }"

"$bin/vantro-busy-window" typing &
scene=$!
row typing
kill "$scene"; wait "$scene" 2>/dev/null || true

"$bin/vantro-busy-window" moving &
scene=$!
row busy
kill "$scene"; wait "$scene" 2>/dev/null || true
