#!/usr/bin/env bash
# GIF encoding beside ffmpeg's palettegen and paletteuse, on the same pictures in the same run:
# size of the file, seconds (wall and processor) and likeness to the original (SSIM of the decoded
# animation). Ten seconds at 640 pixels, 12 pictures a second; two of the worst case, which takes
# ffmpeg a quarter of a second a picture.
# usage: bench/gif_bench.sh
set -euo pipefail
encoder=$(cd "$(dirname "$0")/.." && pwd)/build/release/bin/gif_bench
width=640 height=360 frames=120
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

raw=(-f rawvideo -pixel_format bgra -video_size "${width}x$height" -framerate 12)

# screen: drawn afresh; recorded: the same through H.264, as an export reads it; motion: worst case
"$encoder" make screen $width $height $frames screen.raw
"$encoder" make motion $width $height $((frames / 5)) motion.raw
ffmpeg -v error "${raw[@]}" -i screen.raw -c:v libx264 -preset fast -crf 20 -pix_fmt yuv420p screen.mp4
ffmpeg -v error -i screen.mp4 -f rawvideo -pix_fmt bgra recorded.raw

likeness() { # GIF RAW
  ffmpeg -hide_banner -nostats -i "$1" "${raw[@]}" -i "$2" -lavfi \
    '[0:v]fps=12,format=yuv444p[a];[1:v]format=yuv444p[b];[a][b]ssim' -f null - 2>&1 |
    sed -n 's/.*SSIM Y:\([0-9.]*\).*All:\([0-9.]*\).*/\1 \2/p'
}

measure() { # NAME RAW COMMAND...: the command writes out.gif
  local name=$1 input=$2 wall user system luma all
  shift 2
  TIMEFORMAT='%R %U %S'
  read -r wall user system < <({ time "$@" >/dev/null; } 2>&1)
  read -r luma all < <(likeness out.gif "$input")
  printf '%-9s %-28s %9d bytes  %6.2f s wall  %6.2f s cpu  SSIM Y %.4f  all %.4f\n' \
    "${input%.raw}" "$name" "$(stat -c %s out.gif)" "$wall" \
    "$(awk "BEGIN { print $user + $system }")" "$luma" "$all"
}

peer() { # PALETTEUSE-OPTIONS INPUT
  ffmpeg -v error -y "${raw[@]}" -i "$2" \
    -lavfi "split[a][b];[a]palettegen[p];[b][p]paletteuse=$1" out.gif
}

for input in screen.raw recorded.raw motion.raw; do
  cat "$input" >/dev/null
  measure vantro "$input" "$encoder" encode $width $height "$input" out.gif
  measure "ffmpeg (default)" "$input" peer dither=sierra2_4a "$input"
  measure "ffmpeg (bayer, rectangle)" "$input" \
    peer dither=bayer:bayer_scale=3:diff_mode=rectangle "$input"
done
