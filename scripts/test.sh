#!/usr/bin/env bash
# Builds everything and runs the whole test suite. With --sanitize, builds in a separate tree
# with AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
build=build; flags=()
if [ "${1:-}" = "--sanitize" ]; then
  build=build-sanitize; flags=(-DTOLVEX_SANITIZE=ON -DTOLVEX_BUILD_BENCHMARKS=OFF -DCMAKE_BUILD_TYPE=Debug)
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
  export LSAN_OPTIONS=suppressions=$PWD/tests/lsan-suppressions.txt
fi
cmake -S . -B "$build" "${flags[@]}" >/dev/null
cmake --build "$build" -j2
ctest --test-dir "$build" -j2 --output-on-failure
