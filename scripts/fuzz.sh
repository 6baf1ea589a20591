#!/usr/bin/env bash
# Builds the fuzz targets of fuzz/ (clang, libFuzzer, ASan and UBSan, in build-fuzz) and runs
# each for a while, starting from seeds made from the test fixtures and from the corpus that
# earlier runs kept in build-fuzz/corpus. Stops with status 1 when a target found a crash, a
# timeout or a memory blow-up; its input is then in build-fuzz/artifacts/<target>/ and
# `build-fuzz/fuzz/<target>_fuzzer <input>` replays it.
#
#   bash scripts/fuzz.sh                            each target for 45 s (what CI runs)
#   bash scripts/fuzz.sh --seconds 600              the longer run
#   bash scripts/fuzz.sh --seconds 600 profile      one target (profile render values show apply)
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=45
targets=()
while (($#)); do
  case "$1" in
    --seconds) seconds=$2; shift 2 ;;
    *) targets+=("$1"); shift ;;
  esac
done
((${#targets[@]})) || targets=(profile render values show apply)

bash scripts/install-deps.sh
build=build-fuzz
CC=clang CXX=clang++ cmake -S . -B "$build" -DTOLVEX_FUZZ=ON -DTOLVEX_BUILD_TESTS=OFF \
  -DTOLVEX_BUILD_BENCHMARKS=OFF -DTOLVEX_INSTALL=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j2 --target make_seeds "${targets[@]/%/_fuzzer}"
rm -rf "$build/seeds"
"$build/fuzz/make_seeds" . "$build/seeds"

# fontconfig's caches live until the process ends (see the file).
export LSAN_OPTIONS=suppressions=$PWD/tests/lsan-suppressions.txt
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
failed=()
for target in "${targets[@]}"; do
  # Rendering and show must stay within 30 s and 2 GB per input, whatever the template or
  # picture says (wall time: the bound leaves room for a busy CI machine, where an input that takes
  # a second of CPU may wait many more).
  case "$target" in
    profile) options=(-max_len=4096) ;;
    render) options=(-max_len=16384 -timeout=30 -rss_limit_mb=2048 -dict=fuzz/template.dict) ;;
    values) options=(-max_len=256) ;;
    show) options=(-max_len=8192 -timeout=30 -rss_limit_mb=2048 -dict=fuzz/template.dict) ;;
    # Room for the deep and huge seeds (fuzz/MakeSeeds.cpp) to be taken whole.
    apply) options=(-max_len=262144 -timeout=30 -rss_limit_mb=2048 -dict=fuzz/apply.dict) ;;
    *) echo "unknown target $target" >&2; exit 2 ;;
  esac
  mkdir -p "$build/corpus/$target" "$build/artifacts/$target" "$build/logs"
  log=$build/logs/$target.log
  echo "== $target: ${seconds} s"
  if "$build/fuzz/${target}_fuzzer" -max_total_time="$seconds" -print_final_stats=1 \
      -artifact_prefix="$build/artifacts/$target/" "${options[@]}" \
      "$build/corpus/$target" "$build/seeds/$target" >"$log" 2>&1; then
    grep -E "^#[0-9]+[[:space:]]+DONE|^stat::(number_of_executed_units|peak_rss_mb)" "$log" || true
  else
    tail -n 60 "$log"
    failed+=("$target")
  fi
done
if ((${#failed[@]})); then
  echo "fuzzing found problems in: ${failed[*]} (inputs in $build/artifacts/)" >&2
  exit 1
fi
