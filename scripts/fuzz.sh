#!/usr/bin/env bash
# Builds the fuzz targets and runs each for some seconds on seeds from the sample documents. Fails at the end when one
# of them found something; what it found is kept below build/fuzz/crashes/.
# usage: fuzz.sh [SECONDS [TARGET...]]     60 seconds and all targets by default
# FUZZ_SEED: where the random numbers start, by chance by default; given, a run tells whether a change broke something
# and not whether it had luck
# FUZZ_TIMEOUT: seconds that one input may take, 2 by default; more on a busy machine, so that only hangs are found
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true
scripts/install.sh
scripts/install.sh scripts/fuzz-packages.txt
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target fuzzers make_samples
bin=build/fuzz/bin
corpus=build/fuzz/corpus
export QT_QPA_PLATFORM=offscreen
# Freed memory that the sanitizer keeps back would count for the limit on memory.
export ASAN_OPTIONS=allocator_may_return_null=1:detect_stack_use_after_return=0:quarantine_size_mb=32
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export LSAN_OPTIONS=suppressions=$PWD/scripts/lsan.supp:print_suppressions=0
ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 $bin/make_samples build/fuzz/seed-documents
ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=0 $bin/make_seeds build/fuzz/seed-documents $corpus
mkdir -p build/fuzz/crashes build/fuzz/logs
failed=()
for target in "${@:-$bin/fuzz_*}"; do
  for program in $bin/$(basename "$target"); do
    name=$(basename "$program")
    mkdir -p "$corpus/$name"
    if "$program" "$corpus/$name" -dict="$corpus/words.dict" -max_total_time="$seconds" -timeout="${FUZZ_TIMEOUT:-2}" -seed="${FUZZ_SEED:-0}" -rss_limit_mb=1024 -malloc_limit_mb=900 \
      -max_len=65536 -artifact_prefix="build/fuzz/crashes/$name-" -print_final_stats=1 -verbosity=1 \
      >"build/fuzz/logs/$name.txt" 2>&1; then
      echo "$name: $(sed -n 's/stat::number_of_executed_units: *//p' "build/fuzz/logs/$name.txt") inputs, no finding"
    else
      failed+=("$name")
      echo "$name: FOUND SOMETHING, see build/fuzz/logs/$name.txt"
      tail -n 60 "build/fuzz/logs/$name.txt"
    fi
  done
done
[ ${#failed[@]} = 0 ] || { echo "Findings in: ${failed[*]}"; exit 1; }
