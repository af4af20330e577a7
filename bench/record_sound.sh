#!/usr/bin/env bash
# What the sound of the system and a microphone add to recording a 1080p screen that stands still:
# the CPU of the whole process with them, without them, and of ffmpeg recording the same two sounds
# with the same encoders and nothing else. Shares of one core, in alternated runs, on a private
# PulseAudio server whose devices swallow what they play.
# usage: bench/record_sound.sh [SECONDS [ROUNDS]]
set -euo pipefail
source "$(dirname "$0")/common.sh"
seconds=${1:-60} rounds=${2:-3}

start_display 1920x1080
mkdir -m 700 "$work/runtime"
export XDG_RUNTIME_DIR=$work/runtime PULSE_RUNTIME_PATH=$work/runtime/pulse PULSE_STATE_PATH=$work
pulseaudio -n --daemonize=no --use-pid-file=no --exit-idle-time=-1 --disallow-exit \
    --load=module-native-protocol-unix \
    --load="module-null-sink sink_name=speakers rate=48000 norewinds=1" \
    --load="module-null-sink sink_name=feed rate=48000 channels=1 channel_map=mono norewinds=1" \
    --load="module-remap-source source_name=mic master=feed.monitor" 2>/dev/null &
pids+=($!)
until pactl set-default-sink speakers && pactl set-default-source mic; do sleep 0.1; done 2>/dev/null
for sink in speakers feed; do
    ffmpeg -nostdin -v error -re -f lavfi -i sine=440:sample_rate=48000 -f pulse -device "$sink" tone 2>/dev/null &
    pids+=($!)
done

record() { measure "$vantro" record --seconds "$seconds" --output "$work/r.vantro" --force "$@"; }

printf '%-8s %12s %12s %12s %12s\n' round "with sound" "without" added "ffmpeg alone"
for ((round = 1; round <= rounds; ++round)); do
    record --microphone
    with=$(percent "$cpu" "$wall")
    record --no-system-audio
    without=$(percent "$cpu" "$wall")
    measure ffmpeg -nostdin -y -f pulse -i speakers.monitor -f pulse -i mic -t "$seconds" \
        -map 0 -c:a:0 aac -b:a:0 128k -ac:a:0 2 -map 1 -c:a:1 aac -b:a:1 64k -ac:a:1 1 "$work/s.mov"
    printf '%-8s %10s %% %10s %% %10s %% %10s %%\n' "$round" "$with" "$without" \
        "$(awk "BEGIN { printf \"%.1f\", $with - $without }")" "$(percent "$cpu" "$wall")"
done
