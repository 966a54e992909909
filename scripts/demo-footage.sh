#!/usr/bin/env bash
# Generates small demo clips with ffmpeg: one per TIMECODE+SECONDS given, a moving test picture
# (160x90, 25 fps) with three audio streams (a quiet tone, speech-loud pink noise, silence), so
# the footage scan, the clip matching and the loudest-stream choice have something real.
# The audio is encoded once and looped into every clip, which keeps half an hour of footage to
# seconds of work.
# Usage: scripts/demo-footage.sh FOLDER HH:MM:SS:FF+SECONDS...
# A clip made from the same arguments is kept; clips of an earlier layout are replaced.
set -euo pipefail
folder=$1
shift
mkdir -p "$folder"

# Made on first need, outside the folder, so the scan never sees it.
audio=""
loop_audio() {
  [ -n "$audio" ] && return
  audio=$(mktemp -d)/audio.mov
  trap 'rm -rf "$(dirname "$audio")"' EXIT
  ffmpeg -hide_banner -loglevel error -y \
    -f lavfi -i "sine=frequency=330:sample_rate=48000" \
    -f lavfi -i "anoisesrc=color=pink:amplitude=0.5:sample_rate=48000" \
    -f lavfi -i "anullsrc=channel_layout=mono:sample_rate=48000" \
    -map 0:a -map 1:a -map 2:a -filter:a:0 "volume=0.05" -t 20 -c:a aac -b:a 32k "$audio"
}

n=0
for take in "$@"; do
  n=$((n + 1))
  timecode=${take%+*}
  seconds=${take#*+}
  clip=$(printf '%s/A001C%03d_DEMO.mov' "$folder" "$n")
  made=$( [ -s "$clip" ] && ffprobe -v error -show_entries format_tags=comment -of default=nw=1:nk=1 "$clip" || true)
  [ "$made" = "vorlix demo $take" ] && continue
  loop_audio
  ffmpeg -hide_banner -loglevel error -y \
    -f lavfi -i "testsrc2=size=160x90:rate=25" -stream_loop -1 -i "$audio" \
    -map 0:v -map 1:a:0 -map 1:a:1 -map 1:a:2 -t "$seconds" \
    -c:v libx264 -preset ultrafast -crf 40 -pix_fmt yuv420p -c:a copy \
    -timecode "$timecode" -metadata timecode="$timecode" -metadata comment="vorlix demo $take" "$clip.part.mov"
  mv "$clip.part.mov" "$clip"
done

# Clips numbered past this layout belong to an earlier one and would match sessions they no longer should.
for clip in "$folder"/A001C*_DEMO.mov; do
  [ -e "$clip" ] || continue
  number=${clip##*/A001C}
  number=$((10#${number%%_*}))
  [ "$number" -le "$n" ] || rm -f "$clip"
done
