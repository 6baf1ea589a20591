#!/usr/bin/env bash
# Makes the sample pictures of the main job with ffmpeg's built-in sources: a dark gradient
# background for an NTSC page and a Mandelbrot thumbnail for the buttons. Run it again only
# to change them; the PNG files are kept in the repository (CC0-1.0, see LICENSE).
set -euo pipefail
cd "$(dirname "$0")"
ffmpeg -v error -y -f lavfi \
  -i "gradients=s=720x480:c0=0x0b1a3a:c1=0x3a1456:x0=0:y0=0:x1=720:y1=480:nb_colors=2:seed=1,format=rgb24" \
  -frames:v 1 -bitexact background.png
ffmpeg -v error -y -f lavfi -i "mandelbrot=s=320x180:maxiter=256" \
  -frames:v 1 -bitexact button.png
