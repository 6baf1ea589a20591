#!/usr/bin/env bash
# The main job: installs what the build needs, builds the libraries and the menutemplate tool,
# makes a sample menu template in a fresh folder from the pictures in examples/, checks it,
# renders the menu, its mask and a preview, and says where they are. Takes no arguments.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build >/dev/null
cmake --build build -j2 --target menutemplate
tool=$PWD/build/tools/menutemplate

out=$(mktemp -d "${TMPDIR:-/tmp}/menutemplate-sample.XXXXXX")
cp examples/background.png examples/button.png "$out/"
cd "$out"
"$tool" new menu.ini --buttons 4 --max 6 --title "Sample Menu" \
  --background background.png --button-picture button.png
"$tool" check menu.ini
"$tool" render menu.ini --preview preview.png
echo
echo "template: $out/menu.ini"
echo "menu:     $out/$("$tool" get menu.ini output)"
echo "mask:     $out/$("$tool" get menu.ini mask)"
echo "preview:  $out/preview.png"
