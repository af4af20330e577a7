#!/usr/bin/env bash
# What recording a screen costs and how exact it is, beside peers in the same run:
# - leaving our own windows out while none is in view, beside a server on which that is impossible;
# - the times of the frames of a busy screen, beside those of ffmpeg's x11grab;
# - time and place of clicks while the screen is busy and being recorded, beside the server's times.
# usage: bench/capture.sh [SECONDS]
set -euo pipefail
source "$(dirname "$0")/common.sh"
seconds=${1:-10}

scene() { # NAME: replaces the one that runs
    [ -z "${scene:-}" ] || { kill "$scene"; wait "$scene" 2>/dev/null || true; }
    scene=
    [ "$1" = none ] || { "$bin/vantro-busy-window" "$1" & scene=$!; }
}

record() { # sets cost, per cent of a core
    measure "$vantro" record --seconds "$seconds" --output "$work/ours.vantro" --force
    cost=$(percent "$cpu" "$wall")
}

lower() { awk "BEGIN { print ($1 < $2 ? $1 : $2) }"; }

# deviation MOVIE: how far the distances of frames are from a sixtieth of a second.
deviation() {
    ffprobe -v error -select_streams v -show_entries packet=pts_time -of csv=p=0 "$1" |
        awk -F, 'NR > 1 { d = ($1 - last) * 1000 - 1000 / 60; print (d < 0 ? -d : d) } { last = $1 }' |
        sort -n | awk '{ all[NR] = $1 }
            END { printf "median %.2f ms, 95 %% within %.2f ms, %d frames", all[int(NR / 2)],
                  all[int(NR * 0.95)], NR + 1 }'
}

echo "leaving our own windows out, none of them in view; the better of two runs in turn"
start_display 1920x1080
with=$DISPLAY
start_display 1920x1080 -extension Composite
without=$DISPLAY
for name in typing moving; do
    possible=1000
    impossible=1000
    for round in 1 2; do
        DISPLAY=$with; scene "$name"; record; scene none
        possible=$(lower "$possible" "$cost")
        DISPLAY=$without; scene "$name"; record; scene none
        impossible=$(lower "$impossible" "$cost")
    done
    printf '  %-8s %5s %%   where it is impossible %5s %%   ratio %s\n' "$name" "$possible" \
        "$impossible" "$(ratio "$possible" "$impossible")"
done

DISPLAY=$with
scene moving
echo "distance of frames, busy 60 fps screen"
record
echo "  vantro   $(deviation "$work/ours.vantro/recording.mov")"
measure ffmpeg -nostdin -y -f x11grab -framerate 60 -video_size 1920x1080 -i "$DISPLAY" \
    -t "$seconds" -fps_mode passthrough -enc_time_base 1/1000000 -c:v libx264 -preset ultrafast \
    -tune zerolatency -b:v 50M -pix_fmt yuv420p -video_track_timescale 1000000 "$work/theirs.mov"
echo "  x11grab  $(deviation "$work/theirs.mov")"

echo "clicks on a busy screen that is being recorded"
"$vantro" record --output "$work/clicks.vantro" >/dev/null 2>&1 &
recorder=$!
"$bin/click_bench" 100 | sed 's/^/  /'
kill -INT "$recorder"; wait "$recorder"
