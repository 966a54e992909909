#!/usr/bin/env bash
# Generates small demo clips with ffmpeg: one per start timecode given, each 40 seconds of a
# moving test picture with three audio streams (a quiet tone, speech-loud pink noise, silence),
# so the footage scan, the clip matching and the loudest-stream choice have something real.
# Usage: scripts/demo-footage.sh FOLDER HH:MM:SS:FF...   Existing clips are kept.
set -euo pipefail
folder=$1
shift
mkdir -p "$folder"
n=0
for timecode in "$@"; do
  n=$((n + 1))
  clip=$(printf '%s/A001C%03d_DEMO.mov' "$folder" "$n")
  [ -s "$clip" ] && continue
  ffmpeg -hide_banner -loglevel error -y \
    -f lavfi -i "testsrc2=size=480x270:rate=25" \
    -f lavfi -i "sine=frequency=330:sample_rate=48000" \
    -f lavfi -i "anoisesrc=color=pink:amplitude=0.5:sample_rate=48000" \
    -f lavfi -i "anullsrc=channel_layout=mono:sample_rate=48000" \
    -map 0:v -map 1:a -map 2:a -map 3:a -t 40 \
    -filter:a:0 "volume=0.05" \
    -c:v libx264 -preset veryfast -crf 36 -pix_fmt yuv420p -c:a aac -b:a 64k \
    -timecode "$timecode" -metadata timecode="$timecode" "$clip.part.mov"
  mv "$clip.part.mov" "$clip"
done
