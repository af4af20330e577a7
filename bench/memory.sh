#!/usr/bin/env bash
# Memory over a 30-minute export, beside ffmpeg that decodes and encodes the same movie: the most
# that the process holds in the first third of its run and in the last, megabytes. What grows with
# the length of a movie shows as a difference between the two.
# usage: bench/memory.sh [MINUTES]
set -euo pipefail
source "$(dirname "$0")/common.sh"
minutes=${1:-30}

# A short recording lends its project; segments are fractions of whatever movie it holds.
start_display 640x360
"$vantro" record --seconds 0.5 --output "$work/long.vantro" >/dev/null
ffmpeg -nostdin -v error -y -f lavfi -i "testsrc2=s=640x360:r=30:d=$((minutes * 60))" \
    -f lavfi -i "sine=440:r=48000:d=$((minutes * 60))" -c:v libx264 -preset ultrafast -g 60 \
    -pix_fmt yuv420p -c:a aac -ac 2 "$work/long.vantro/recording.mov"
tell_length "$work/long.vantro"

# watch_memory COMMAND...: sets first and last, the peaks of the outer thirds in megabytes.
watch_memory() {
    local samples=$work/samples
    : >"$samples"
    "$@" >"$work/log" 2>&1 &
    local process=$!
    while [ -r "/proc/$process/statm" ]; do
        awk '{ print $2 * 4096 / 1e6 }' "/proc/$process/statm" >>"$samples" 2>/dev/null || break
        sleep 0.2
    done
    if ! wait "$process"; then
        echo "failed: $*" >&2
        cat "$work/log" >&2
        exit 1
    fi
    read -r first last < <(awk '$1 > 0 { v[++n] = $1 }
        END { for (i = 1; i <= n; ++i) {
                  if (i <= n / 3 && v[i] > a) a = v[i]
                  if (i > 2 * n / 3 && v[i] > b) b = v[i] }
              print a, b }' "$samples")
}

printf '%-16s %12s %12s %8s\n' "megabytes" "first third" "last third" ratio
watch_memory "$vantro" export "$work/long.vantro" --output "$work/vantro.mp4" --fps 30 \
    --renderer software --encoder libx264
printf '%-16s %12.1f %12.1f %8s\n' vantro "$first" "$last" "$(ratio "$last" "$first")"
watch_memory ffmpeg -nostdin -y -i "$work/long.vantro/recording.mov" -c:v libx264 \
    -preset veryfast -profile:v high -bf 3 -g 60 -qmin 10 -b:v 20M -c:a aac -b:a 128k \
    -movflags +faststart "$work/ffmpeg.mp4"
printf '%-16s %12.1f %12.1f %8s\n' ffmpeg "$first" "$last" "$(ratio "$last" "$first")"
