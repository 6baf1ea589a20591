#!/usr/bin/env bash
# Builds everything and runs the whole test suite. With --sanitize, builds in a separate tree
# with AddressSanitizer and UndefinedBehaviorSanitizer. With --tsan, builds only the test
# binaries that hold concurrency or edit tests (names containing "Concurrency" or "Edit") under
# ThreadSanitizer, in build-tsan, and runs those tests.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
build=build; flags=(); targets=(); tests=()
if [ "${1:-}" = "--sanitize" ]; then
  build=build-sanitize; flags=(-DTOLVEX_SANITIZE=ON -DTOLVEX_BUILD_BENCHMARKS=OFF -DCMAKE_BUILD_TYPE=Debug)
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
  export LSAN_OPTIONS=suppressions=$PWD/tests/lsan-suppressions.txt
elif [ "${1:-}" = "--tsan" ]; then
  build=build-tsan; flags=(-DTOLVEX_TSAN=ON -DTOLVEX_BUILD_BENCHMARKS=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo)
  pattern='Concurrency|Edit'
  # The test binaries (tolvex_add_test in the CMakeLists.txt beside them) whose sources hold
  # such tests.
  for dir in $(grep -rlE "^TEST(_F|_P)?\([A-Za-z0-9_]*($pattern)|^TEST(_F|_P)?\([^,]*, *[A-Za-z0-9_]*($pattern)" \
                 tests --include='*.cpp' | xargs -r -n1 dirname | sort -u); do
    targets+=($(sed -n 's/^tolvex_add_test(\([A-Za-z0-9_]*\).*/\1/p' "$dir/CMakeLists.txt"))
  done
  tests=(-R "$pattern")
  export TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1 suppressions=$PWD/tests/tsan-suppressions.txt"
fi
cmake -S . -B "$build" "${flags[@]}" >/dev/null
if ((${#targets[@]})); then
  cmake --build "$build" -j2 --target "${targets[@]}"
else
  cmake --build "$build" -j2
fi
ctest --test-dir "$build" -j2 --output-on-failure "${tests[@]}"
