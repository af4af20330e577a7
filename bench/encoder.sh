#!/usr/bin/env bash
# What settings of the H.264 encoder cost and how near they come to the composed pictures: seconds
# of processor and of wall, MB of the file, MB of memory, and PSNR and SSIM of the decoded pictures'
# luma (all pictures' squared errors together, as ffmpeg's filters count) against the pictures that
# were encoded. Five seconds each of typing, scrolled pages, a film in a window and zooms over a
# still screen; the film of a project as well. Then the same for recordings, with the seconds of
# processor that decoding them takes.
# The settings so far and the peers' stand beside ours in the same run.
# usage: bench/encoder.sh [PROJECT.vantro]
set -euo pipefail
source "$(dirname "$0")/common.sh"
bench=$bin/encoder_bench
frames=300
raw=(-f rawvideo -pix_fmt yuv420p -s 1920x1080 -r 60)

likeness() { # MOVIE PICTURES: PSNR and SSIM of the luma
    ffmpeg -hide_banner -nostats -i "$1" "${raw[@]}" -i "$2" -lavfi \
        '[0:v]settb=1/60,setpts=N,split[a][b];[1:v]settb=1/60,setpts=N,split[c][d];
         [a][c]psnr;[b][d]ssim' -f null - 2>&1 |
        sed -n 's/.*PSNR y:\([0-9.inf]*\).*/psnr \1/p; s/.*SSIM Y:\([0-9.]*\).*/ssim \1/p' |
        sort | awk '{ print $2 }' | paste -sd ' '
}

row() { # MATERIAL NAME SETTINGS
    local pictures=$work/pictures movie=$work/movie.mp4 cpu wall memory psnr ssim
    read -r cpu wall memory < <("$bench" encode "$3" "$pictures" "$movie")
    read -r psnr ssim < <(likeness "$movie" "$pictures")
    printf '%-8s %-34s %7.2f %7.2f %7.2f %7d %8.2f %8.5f' "$1" "$2" "$cpu" "$wall" \
        "$(stat -c %s "$movie" | awk '{ print $1 / 1e6 }')" "$memory" "$psnr" "$ssim"
    if [ "${4:-}" = decode ]; then
        measure ffmpeg -nostdin -threads 1 -i "$movie" -f null -
        printf ' %7s' "$user"
    fi
    printf '\n'
}

films() { # MATERIAL
    row "$1" "veryfast, 3 B-frames (peer)" film:preset=veryfast:bf=3:threads=3
    row "$1" "superfast, no B-frames" film:preset=superfast:bf=0:threads=3
    row "$1" "ultrafast, 8x8dct, cabac" film:preset=ultrafast:bf=0:threads=3:8x8dct=1:cabac=1
    row "$1" "superfast, no AQ" film:preset=superfast:bf=0:threads=3:aq-mode=0
    row "$1" "fast" fast
    row "$1" "balanced" balanced
    row "$1" "small" small
}

printf '%-8s %-34s %7s %7s %7s %7s %8s %8s %7s\n' film settings cpu wall MB memory PSNR SSIM
for material in typing pages video zooms; do
    "$bench" film "$material" "$frames" "$work/pictures"
    films "$material"
done
if [ $# -gt 0 ]; then
    "$bench" project "$1" "$work/pictures"
    films project
fi

printf '%-8s %-34s %7s %7s %7s %7s %8s %8s %7s\n' recorded settings cpu wall MB memory PSNR SSIM \
    decode
for material in typing pages video zooms; do
    "$bench" screen "$material" "$frames" "$work/pictures"
    live=live:preset=ultrafast:bf=0:8x8dct=1:threads=$(($(nproc) < 4 ? $(nproc) : 4))
    row "$material" "cabac, keyframe every 2 s" "$live:cabac=1:gop=120" decode
    row "$material" "cabac (peer)" "$live:cabac=1:keyint=infinite" decode
    row "$material" "rate control of libx264" "$live:keyint=infinite" decode
    row "$material" "live" live decode
done
