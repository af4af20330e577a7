#!/usr/bin/env bash
# How well sound and picture stay together in a long export: ten minutes that flash and beep at
# every full second, edited into 50 segments with cuts between them and speeds from 0.25 to 4,
# beside the same edit as a filter graph of ffmpeg's. Milliseconds between a flash and its beep: the
# worst where a segment begins, the last one's, how far the worst flash is from where it belongs, and
# the worst at each speed.
# usage: bench/long_export.sh
set -euo pipefail
source "$(dirname "$0")/common.sh"

ffmpeg -nostdin -v error -f lavfi \
    -i "color=c=black:s=640x360:r=60:d=600,drawbox=c=white:t=fill:enable='lt(mod(t,1),0.1)'" \
    -f lavfi -i "aevalsrc='0.5*sin(2*PI*1000*t)*lt(mod(t,1),0.1)':s=48000:d=600" \
    -c:v libx264 -preset ultrafast -g 60 -c:a aac -b:a 192k -ac 2 "$work/source.mov"
"$bin/flash_beep" plan "$work/source.mov" "$work"

measure "$vantro" export "$work/film.vantro" --output "$work/vantro.mp4" --encoder libx264
ourCpu=$cpu ourWall=$wall
measure ffmpeg -nostdin -y -i "$work/source.mov" -filter_complex_script "$work/filter" \
    -map '[v]' -map '[a]' -c:v libx264 -preset veryfast -profile:v high -bf 3 -g 120 -qmin 10 \
    -b:v 20M -c:a aac -b:a 128k "$work/ffmpeg.mp4"

printf '%-8s%10s %10s %12s  %s\n' "ms" boundaries "the last" "flash error" "at each speed"
printf '%-8s' vantro; "$bin/flash_beep" measure "$work/vantro.mp4" "$work/expected"
printf '%-8s' ffmpeg; "$bin/flash_beep" measure "$work/ffmpeg.mp4" "$work/expected"
printf '%-10s %10s %10s\n' seconds "processor" "wall"
printf '%-10s %10.1f %10.1f\n' vantro "$ourCpu" "$ourWall"
printf '%-10s %10.1f %10.1f\n' ffmpeg "$cpu" "$wall"
