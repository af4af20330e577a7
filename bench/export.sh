#!/usr/bin/env bash
# Export of a 10 s 1080p60 recording beside a bare ffmpeg that decodes and encodes the same movie
# with the same encoder settings, without and with sound. The two run in turn, RUNS times; the
# medians count.
# usage: bench/export.sh [PROJECT.vantro]   (records a busy screen itself without one)
set -euo pipefail
source "$(dirname "$0")/common.sh"
runs=${RUNS:-3}

project=${1:-}
if [ -z "$project" ]; then
    project=$work/busy.vantro
    start_display 1920x1080
    "$bin/vantro-busy-window" moving &
    pids+=($!)
    "$vantro" record --seconds 10 --output "$project" >/dev/null
fi

# The same recordings, without sound and with stereo sound at a usual rate.
silent=$work/silent.vantro sounding=$work/sounding.vantro
cp -r "$project" "$silent"
cp -r "$project" "$sounding"
ffmpeg -nostdin -v error -y -i "$project/recording.mov" -c copy -an "$silent/recording.mov"
ffmpeg -nostdin -v error -y -i "$project/recording.mov" -f lavfi \
    -i "aevalsrc='0.3*sin(2*PI*(300+200*sin(t))*t)|0.1*random(0)':s=48000" -map 0:v -map 1:a \
    -c:v copy -c:a aac -b:a 192k -shortest "$sounding/recording.mov"

median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

row() { # NAME OURS THEIRS
    printf '%-32s %10.2f %10.2f %8s\n' "$1" "$2" "$3" "$(ratio "$2" "$3")"
}

compare() { # NAME PROJECT FFMPEG-SOUND-OPTIONS...
    local name=$1 input=$2
    shift 2
    rm -f "$work"/{cpu,wall}.*
    for _ in $(seq "$runs"); do
        measure "$vantro" export "$input" --output "$work/vantro.mp4" --renderer software \
            --encoder libx264 --force
        echo "$cpu" >>"$work/cpu.vantro"; echo "$wall" >>"$work/wall.vantro"
        measure ffmpeg -nostdin -y -i "$input/recording.mov" -r 60 -pix_fmt yuv420p \
            -c:v libx264 -preset veryfast -profile:v high -bf 3 -g 120 -qmin 10 -b:v 20M \
            -movflags +faststart "$@" "$work/ffmpeg.mp4"
        echo "$cpu" >>"$work/cpu.ffmpeg"; echo "$wall" >>"$work/wall.ffmpeg"
    done
    row "$name: CPU seconds" "$(median <"$work/cpu.vantro")" "$(median <"$work/cpu.ffmpeg")"
    row "$name: wall seconds" "$(median <"$work/wall.vantro")" "$(median <"$work/wall.ffmpeg")"
    row "$name: megabytes" \
        "$(stat -c %s "$work/vantro.mp4" | awk '{ print $1 / 1e6 }')" \
        "$(stat -c %s "$work/ffmpeg.mp4" | awk '{ print $1 / 1e6 }')"
}

printf '%-32s %10s %10s %8s\n' "export, median of $runs" vantro ffmpeg ratio
compare silent "$silent" -an
compare "with sound" "$sounding" -c:a aac -b:a 128k -ar 48000 -ac 2
