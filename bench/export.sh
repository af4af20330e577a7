#!/usr/bin/env bash
# Export of a 10 s 1080p60 recording beside a bare ffmpeg that decodes and encodes the same movie
# with the same encoder settings. The two run in turn, RUNS times; the medians count.
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

median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

for _ in $(seq "$runs"); do
    measure "$vantro" export "$project" --output "$work/vantro.mp4" --renderer software --force
    echo "$cpu" >>"$work/cpu.vantro"; echo "$wall" >>"$work/wall.vantro"
    measure ffmpeg -nostdin -y -i "$project/recording.mov" -r 60 -pix_fmt yuv420p \
        -c:v libx264 -preset veryfast -profile:v high -bf 3 -g 120 -qmin 10 -b:v 20M -movflags +faststart \
        -an "$work/ffmpeg.mp4"
    echo "$cpu" >>"$work/cpu.ffmpeg"; echo "$wall" >>"$work/wall.ffmpeg"
done

ours=$(median <"$work/cpu.vantro"); theirs=$(median <"$work/cpu.ffmpeg")
ourWall=$(median <"$work/wall.vantro"); theirWall=$(median <"$work/wall.ffmpeg")
printf '%-32s %10s %10s %8s\n' "export, median of $runs" vantro ffmpeg ratio
printf '%-32s %10.2f %10.2f %8s\n' "CPU seconds" "$ours" "$theirs" "$(ratio "$ours" "$theirs")"
printf '%-32s %10.2f %10.2f %8s\n' "wall seconds" "$ourWall" "$theirWall" "$(ratio "$ourWall" "$theirWall")"
printf '%-32s %10d %10d\n' "bytes" "$(stat -c %s "$work/vantro.mp4")" "$(stat -c %s "$work/ffmpeg.mp4")"
