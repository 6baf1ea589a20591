#!/usr/bin/env bash
# The Windows build and its tests: cross-builds the libraries, the tool and the tests for
# 64-bit Windows (clang for x86_64-w64-mingw32 with Debian's MinGW-w64 headers, libraries and
# GoogleTest sources; cmake/windows/), in build-windows, and runs the whole suite under Wine
# through CTest. Installs the Debian packages it needs when missing. Wine keeps its own
# Windows folder in build-windows/wine.
set -euo pipefail
cd "$(dirname "$0")/.."
packages=(
  cmake ninja-build clang
  g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix mingw-w64-x86-64-dev
  binutils-mingw-w64-x86-64 googletest
  wine wine64 fonts-dejavu-core fonts-liberation2
  libcli11-dev nlohmann-json3-dev
)
bash scripts/install-deps.sh "${packages[@]}"

build=build-windows
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
cmake -S . -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/windows/mingw-clang.cmake \
  -DCMAKE_BUILD_TYPE=Release -DTOLVEX_BUILD_BENCHMARKS=OFF -DTOLVEX_INSTALL=ON \
  "${launcher[@]}" >/dev/null

# Wine's Windows folder is made (or brought up to date) by wineboot; its server goes away once
# that is done, which wineserver -w waits for. Then one server for the whole run: every test
# program starts in it instead of starting one, after Wine's own services have started.
export WINEPREFIX="$PWD/$build/wine" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
mkdir -p "$WINEPREFIX"
wineserver -k 2>/dev/null || true  # a server a stopped run of this script left behind
wineboot --init >/dev/null 2>&1 || true
wineserver -w
wineserver -p
trap 'wineserver -k 2>/dev/null || true' EXIT
wine cmd /c exit >/dev/null 2>&1 || true

cmake --build "$build" -j2
ctest --test-dir "$build" -j2 --timeout 300 --output-on-failure
