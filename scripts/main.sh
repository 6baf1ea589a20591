#!/usr/bin/env bash
# The main job: builds the library and its example, writes a menu template and reads it back.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build >/dev/null
cmake --build build -j2 --target write_and_read
out=$(mktemp -d)
./build/examples/write_and_read "$out/menu.ini"
echo "template: $out/menu.ini"
