#!/usr/bin/env bash
# The main job: installs what the build needs, builds the libraries and the menutemplate tool,
# and makes a sample DVD in a fresh folder: two menu pages from the pictures in examples/ (the
# first with generated background music), six short generated videos, and from them a
# DVD-Video folder. Says where its VIDEO_TS folder and a preview of each page are. No arguments.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build >/dev/null
cmake --build build -j2 --target menutemplate
tool=$PWD/build/tools/menutemplate

out=$(mktemp -d "${TMPDIR:-/tmp}/menutemplate-sample.XXXXXX")
cp examples/background.png examples/button.png "$out/"
cd "$out"
ffmpeg -v error -f lavfi -i "sine=frequency=440:duration=4" music.wav
"$tool" new page1.ini --nav --buttons 4 --title "Sample Disc" --background background.png \
  --button-picture button.png --music music.wav
"$tool" new page2.ini --nav --buttons 2 --title "More" --background background.png \
  --button-picture button.png
"$tool" check page1.ini
"$tool" check page2.ini
sources=(testsrc testsrc2 smptebars rgbtestsrc mandelbrot life)
videos=()
for i in "${!sources[@]}"; do
  ffmpeg -v error -f lavfi -i "${sources[$i]}=size=320x240:rate=30000/1001" \
    -f lavfi -i "sine=frequency=$((300 + 100 * i))" -t 2 "video$((i + 1)).mp4"
  videos+=("video$((i + 1)).mp4")
done
"$tool" author page1.ini page2.ini --video "${videos[@]}" --out disc --iso disc.iso
