#!/usr/bin/env bash
# Export of a 1080p60 project, the demonstration's unless another is named, beside ffmpeg that
# encodes the same film once more with settings that stay as they are. The two run in turn, RUNS
# times; the medians count. Then how near the film comes to the composed pictures (PSNR of the
# luma), where the time goes, the other qualities, the film with sound, and the same recording at
# 4K. Memory is the most that the process held.
# usage: bench/export.sh [PROJECT.vantro]
set -euo pipefail
source "$(dirname "$0")/common.sh"
runs=${RUNS:-3}

project=${1:-}
if [ -z "$project" ]; then
    "$root/scripts/demo" "$work/demo" >/dev/null
    project=$work/demo/demo.vantro
fi
film=$work/film.mp4
ours=("$vantro" export --renderer software --encoder libx264 --force --output)

# peak COMMAND...: sets memory, in MB; its output goes to a log.
peak() {
    "$@" >"$work/log" 2>&1 &
    local process=$! kilobytes
    memory=0
    while read -r kilobytes < <(awk '/VmHWM/ { print $2 }' "/proc/$process/status" 2>/dev/null); do
        memory=$((kilobytes * 1024 / 1000000))
        sleep 0.05
    done
    wait "$process"
}
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
megabytes() { stat -c %s "$1" | awk '{ print $1 / 1e6 }'; }
row() { # NAME OURS THEIRS
    printf '%-32s %10.2f %10.2f %8s\n' "$1" "$2" "$3" "$(ratio "$2" "$3")"
}

# The peer, for ever: ratios are comparable over time only because it does not change.
peer=(-c:v libx264 -preset veryfast -bf 3 -profile:v high -qmin 10 -b:v 20M)

compare() { # NAME PROJECT
    rm -f "$work"/{cpu,wall}.*
    measure "${ours[@]}" "$film" "$2"
    for _ in $(seq "$runs"); do
        measure "${ours[@]}" "$work/vantro.mp4" "$2"
        echo "$cpu" >>"$work/cpu.vantro"; echo "$wall" >>"$work/wall.vantro"
        measure ffmpeg -nostdin -y -i "$film" "${peer[@]}" "$work/ffmpeg.mp4"
        echo "$cpu" >>"$work/cpu.ffmpeg"; echo "$wall" >>"$work/wall.ffmpeg"
    done
    row "$1: CPU seconds" "$(median <"$work/cpu.vantro")" "$(median <"$work/cpu.ffmpeg")"
    row "$1: wall seconds" "$(median <"$work/wall.vantro")" "$(median <"$work/wall.ffmpeg")"
    row "$1: megabytes" "$(megabytes "$work/vantro.mp4")" "$(megabytes "$work/ffmpeg.mp4")"
    peak "${ours[@]}" "$work/vantro.mp4" "$2"
    local held=$memory
    peak ffmpeg -nostdin -y -i "$film" "${peer[@]}" "$work/ffmpeg.mp4"
    row "$1: MB of memory" "$held" "$memory"
}

printf '%-32s %10s %10s %8s\n' "export, median of $runs" vantro ffmpeg ratio
compare film "$project"

"$bin/encoder_bench" project "$project" "$work/pictures"
likeness() { # MOVIE
    ffmpeg -hide_banner -nostats -i "$1" -f rawvideo -pix_fmt yuv420p -s 1920x1080 -r 60 \
        -i "$work/pictures" -lavfi '[0:v]settb=1/60,setpts=N[a];[1:v]settb=1/60,setpts=N[b];
        [a][b]psnr' -f null - 2>&1 | sed -n 's/.*PSNR y:\([0-9.inf]*\).*/\1/p'
}
printf '\n%-32s %10s %10s %8s %10s\n' quality CPU wall MB dB
for quality in fast balanced small; do
    measure "${ours[@]}" "$work/vantro.mp4" "$project" --quality "$quality"
    printf '%-32s %10.2f %10.2f %8.2f %10.2f\n' "$quality" "$cpu" "$wall" \
        "$(megabytes "$work/vantro.mp4")" "$(likeness "$work/vantro.mp4")"
done
rm "$work/pictures"

printf '\nwhere the time goes\n'
"$bin/export_bench" "$project" "$work/vantro.mp4"
measure ffmpeg -nostdin -i "$project/recording.mov" -f null -
printf 'ffmpeg decodes the recording in %.2f s of processor' "$cpu"
measure ffmpeg -nostdin -i "$film" -f null -
printf ' and the film in %.2f s\n\n' "$cpu"

# The same recording with stereo sound at a usual rate.
sounding=$work/sounding.vantro
cp -r "$project" "$sounding"
ffmpeg -nostdin -v error -y -i "$project/recording.mov" -f lavfi \
    -i "aevalsrc='0.3*sin(2*PI*(300+200*sin(t))*t)|0.1*random(0)':s=48000" -map 0:v -map 1:a \
    -c:v copy -c:a aac -b:a 192k -shortest "$sounding/recording.mov"
compare "with sound" "$sounding"

large=$work/large.vantro
cp -r "$project" "$large"
ffmpeg -nostdin -v error -y -i "$project/recording.mov" -vf scale=3840:2160 -fps_mode passthrough \
    -c:v libx264 -preset ultrafast -x264-params 8x8dct=1 -g 30 -b:v 100M -an "$large/recording.mov"
sed -i 's/"displayScaleFactor": *[0-9.]*/"displayScaleFactor": 2.0/' "$large/project.json"
measure "${ours[@]}" "$work/vantro.mp4" "$large"
large_wall=$wall
peak "${ours[@]}" "$work/vantro.mp4" "$large"
length=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$work/vantro.mp4")
printf '4K: %.2f s for %.2f s of film (%s times its length), %d MB of memory\n' "$large_wall" \
    "$length" "$(ratio "$large_wall" "$length")" "$memory"
