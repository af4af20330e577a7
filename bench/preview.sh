#!/usr/bin/env bash
# The preview in a real window of 1280x800: how many pictures of a 1080p60 recording are seen in
# time and what that costs, beside mpv that plays the same movie in a window of that size, without
# composing anything; how fast seeks, drags and edits are seen in an hour's recording, with a
# keyframe every half second and with one every ten, the latter with and without a small copy of the
# movie; and what a paused player costs.
# usage: bench/preview.sh [SECONDS]
set -euo pipefail
source "$(dirname "$0")/common.sh"
seconds=${1:-20}
[ "$seconds" -ge 5 ] && [ "$seconds" -le 60 ] || { echo "5 to 60 seconds" >&2; exit 2; }

start_display 1280x800
openbox --sm-disable >/dev/null 2>&1 &
pids+=($!)

# A short recording lends its projects; segments are fractions of whatever movie they hold.
"$vantro" record --seconds 0.5 --output "$work/template.vantro" >/dev/null
project() { # NAME MOVIE
    cp -r "$work/template.vantro" "$work/$1.vantro"
    mv "$2" "$work/$1.vantro/recording.mov"
    tell_length "$work/$1.vantro"
}

minute() { # FILE KEYFRAME-DISTANCE: with a sound track
    ffmpeg -nostdin -v error -y -f lavfi -i "testsrc2=s=1920x1080:r=60:d=60" \
        -f lavfi -i "sine=440:r=48000:d=60" -c:v libx264 -preset superfast -crf 34 -bf 0 \
        -g "$2" -keyint_min "$2" -sc_threshold 0 -pix_fmt yuv420p -c:a aac -ac 2 "$1"
}

hour() { # MINUTE FILE
    ffmpeg -nostdin -v error -y -stream_loop 59 -i "$1" -c copy "$2"
}

minute "$work/minute.mov" 30
hour "$work/minute.mov" "$work/hour.mov"
project hour "$work/hour.mov"
minute "$work/sparse.mov" 600
hour "$work/sparse.mov" "$work/sparse-hour.mov"
project sparse "$work/sparse-hour.mov"
cp "$work/minute.mov" "$work/movie.mov"
project minute "$work/movie.mov"

echo "1080p60 in a window of 1280x800 for $seconds s; three runs in turn"
for round in 1 2 3; do
    measure "$vantro" play "$work/minute.vantro" --seconds "$seconds" --mute --json
    ours=$(percent "$cpu" "$wall")
    counts=$(tr -d '\n {}"' <"$work/log")
    measure mpv --no-config --vo=x11 --no-audio --no-osc --really-quiet --no-input-default-bindings \
        --hwdec=no --geometry=1280x800 --autofit=1280x800 --length="$seconds" "$work/minute.mov"
    theirs=$(percent "$cpu" "$wall")
    printf '  vantro %5s %%   mpv %5s %%   ratio %s   %s\n' "$ours" "$theirs" \
        "$(ratio "$ours" "$theirs")" "$counts"
done

echo "an hour of 1080p60, a keyframe every half second"
"$bin/preview_bench" "$work/hour.vantro"
echo "an hour of 1080p60, a keyframe every ten seconds, without a small copy"
"$bin/preview_bench" "$work/sparse.vantro"
echo "the same with a small copy, of which the first minute takes this to make:"
"$bin/proxy_bench" "$work/sparse.vantro/recording.mov" "$work/proxies" 2
# Each minute is like the first one.
for piece in $(seq 2 120); do
    for first in "$work/proxies"/*-000$((piece % 2)).mov; do
        ln -f "$first" "${first%-*}-$(printf %04d "$piece").mov"
    done
done
"$bin/preview_bench" "$work/sparse.vantro" "$work/proxies"
