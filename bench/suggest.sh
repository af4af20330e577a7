#!/usr/bin/env bash
# Searching a 1080p60 movie for zooms to suggest, beside ffmpeg: a busy one whose keyframes are half a
# second apart, as in recordings, and one of a still screen on which something moves now and then.
# usage: bench/suggest.sh [MINUTES]
set -euo pipefail
source "$(dirname "$0")/common.sh"
minutes=${1:-3}

make_movie() { # FILE FFMPEG-SOURCE
    ffmpeg -nostdin -v error -y -f lavfi -i "$2" -c:v libx264 -preset superfast -crf 30 -bf 0 -g 30 \
        -keyint_min 30 -sc_threshold 0 -pix_fmt yuv420p "$work/part.mov"
    ffmpeg -nostdin -v error -y -stream_loop $((minutes * 3 - 1)) -i "$work/part.mov" -c copy "$1"
}

# Noise looks the same before a watch as in it, so that nothing is ever found.
make_movie "$work/busy.mov" "testsrc2=s=1920x1080:r=60:d=20,noise=alls=40:allf=t"
make_movie "$work/calm.mov" "color=gray:s=1920x1080:r=60:d=20,drawbox=x='if(lt(mod(t,9),1),300,900)':y=100:w=200:h=60:c=white:t=fill"
for movie in busy calm; do
    "$bin/suggest_bench" "$work/$movie.mov"
done
