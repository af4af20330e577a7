#!/usr/bin/env bash
# Recording a 1080p screen at 60 frames a second beside other screen recorders: SimpleScreenRecorder
# and OBS Studio, all with x264 ultrafast, High profile where they can, 50 Mbit/s, 4:2:0, no pointer,
# no sound. CPU is that of the whole process, once it has settled, as a share of one core. Without a
# graphics card OBS composes its picture in software, which is most of what it uses.
# Peers that are not there are left out: apt-get install simplescreenrecorder obs-studio libgl1-mesa-dri
# usage: bench/recorders.sh [SECONDS]
set -euo pipefail
source "$(dirname "$0")/common.sh"
seconds=${1:-8}
settle=2 # seconds after the movie has begun to grow
export HOME=$work/home XDG_RUNTIME_DIR=$work/run XDG_CONFIG_HOME=$work/config
mkdir -p -m 700 "$HOME" "$XDG_RUNTIME_DIR"
ticks=$(getconf CLK_TCK)

used() { sed 's/.*) //' "/proc/$1/stat" | awk '{ print $12 + $13 }'; } # clock ticks so far

# share PID MOVIE: sets share, per cent of a core over $seconds of the recording.
share() {
    for ((attempt = 0; attempt < 300; ++attempt)); do
        compgen -G "$2" >/dev/null && break
        sleep 0.1
    done
    sleep "$settle"
    local before
    before=$(used "$1")
    sleep "$seconds"
    share=$(awk "BEGIN { printf \"%.1f\", 100 * ($(used "$1") - $before) / $ticks / $seconds }")
}

# rate MOVIE: the frames a second that it holds; none where it has but a first and a last.
rate() {
    ffprobe -v error -select_streams v -show_entries packet=pts_time -of csv=p=0 "$1" |
        awk -F, 'NR == 1 { first = $1 } { last = $1 }
                 END { printf "%.0f", (NR > 2 ? (NR - 1) / (last - first) : 0) }'
}

ours() {
    rm -rf "$work/Vantro"
    TMPDIR=$work "$vantro" record --output "$work/ours.vantro" --force >"$work/log" 2>&1 &
    local process=$!
    share "$process" "$work/Vantro/*/recording.mov"
    kill -INT "$process"; wait "$process"
    frames=$(rate "$work/ours.vantro/recording.mov")
}

simpleScreenRecorder() {
    cat >"$work/ssr.conf" <<EOF
[welcome]
skip=true
[input]
video_backend=x11
video_area=screen
video_area_screen=0
video_w=1920
video_h=1080
video_frame_rate=60
video_scale=false
video_record_cursor=false
audio_enabled=false
[output]
file=$work/ssr.mkv
separate_files=false
add_timestamp=false
container=other
container_av=matroska
video_codec=other
video_codec_av=libx264
video_kbit_rate=50000
video_options="preset=ultrafast,tune=zerolatency,profile=high,qmin=10,x264-params=cabac=1:8x8dct=1"
video_allow_frame_skipping=true
[record]
hotkey_enable=false
EOF
    rm -f "$work/ssr.mkv"
    simplescreenrecorder --settingsfile="$work/ssr.conf" --start-hidden --start-recording \
        --no-systray --logfile="$work/ssr.log" <"$work/commands" >"$work/log" 2>&1 &
    local process=$!
    share "$process" "$work/ssr.mkv"
    printf 'record-save\nquit\n' >&7
    wait "$process"
    frames=$(rate "$work/ssr.mkv")
}

prepareObs() {
    local folder=$XDG_CONFIG_HOME/obs-studio
    mkdir -p "$folder/basic/profiles/bench" "$folder/basic/scenes"
    cat >"$folder/global.ini" <<EOF
[General]
FirstRun=true
EnableAutoUpdates=false
[Basic]
Profile=bench
ProfileDir=bench
SceneCollection=bench
SceneCollectionFile=bench
EOF
    cat >"$folder/basic/profiles/bench/basic.ini" <<EOF
[General]
Name=bench
[Output]
Mode=Simple
[Video]
BaseCX=1920
BaseCY=1080
OutputCX=1920
OutputCY=1080
FPSCommon=60
ColorFormat=I420
[SimpleOutput]
FilePath=$work
RecFormat=mkv
RecQuality=Stream
VBitrate=50000
StreamEncoder=x264
UseAdvanced=true
Preset=ultrafast
x264Settings=tune=zerolatency cabac=1 8x8dct=1
EOF
    cat >"$folder/basic/scenes/bench.json" <<EOF
{"name": "bench", "current_scene": "Scene", "current_program_scene": "Scene",
 "scene_order": [{"name": "Scene"}],
 "sources": [
  {"id": "xshm_input", "name": "Screen", "settings": {"screen": 0, "show_cursor": false}},
  {"id": "scene", "name": "Scene", "settings": {"items": [{"name": "Screen", "id": 1,
   "visible": true, "pos": {"x": 0, "y": 0}, "scale": {"x": 1, "y": 1}}]}}]}
EOF
}

obsStudio() {
    rm -f "$work"/*.mkv
    obs --startrecording --minimize-to-tray --multi --profile bench --collection bench \
        --disable-missing-files-check >"$work/log" 2>&1 &
    local process=$!
    share "$process" "$work/*.mkv"
    kill "$process"; wait "$process" 2>/dev/null || true
    frames=$(rate "$work"/*.mkv)
}

mkfifo "$work/commands"
exec 7<>"$work/commands" # keeps it open
peers=()
command -v simplescreenrecorder >/dev/null && peers+=(simpleScreenRecorder) ||
    echo "SimpleScreenRecorder is not installed and left out"
command -v obs >/dev/null && peers+=(obsStudio) && prepareObs ||
    echo "OBS Studio is not installed and left out"

row() { # NAME, with a scene running
    ours
    local line mine=$share
    line=$(printf '%-7s vantro %5s %% at %2s/s' "$1" "$share" "$frames")
    for peer in "${peers[@]}"; do
        "$peer"
        line+=$(printf '   %s %5s %% at %2s/s, ratio %s' "$peer" "$share" "$frames" \
            "$(ratio "$mine" "$share")")
    done
    echo "$line"
}

start_display 1920x1080
xterm -geometry 120x40+300+200 -e sh -c 'exec cat' &
pids+=($!)
row still
for name in typing moving; do
    "$bin/vantro-busy-window" "$name" &
    scene=$!
    row "$name"
    kill "$scene"; wait "$scene" 2>/dev/null || true
done
