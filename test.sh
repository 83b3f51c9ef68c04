#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every check. CTest's closing line is the last thing printed.
# usage: test.sh [--quick]     --quick leaves the sanitizers, clang-tidy and fuzzing out
set -euo pipefail
cd "$(dirname "$0")"
quick=0
[ "${1:-}" = --quick ] && quick=1
step() { printf '\n== %s (%d s)\n' "$1" "$SECONDS"; }

step "packages"
scripts/install.sh

step "formatting"
git ls-files '*.h' '*.cpp' | xargs clang-format-14 --dry-run --Werror

step "release build"
cmake --preset release -DTETO_BENCH=ON >/dev/null
cmake --build --preset release

if [ $quick = 0 ]; then
  step "clang-tidy"
  scripts/tidy.sh

  step "address and undefined behaviour sanitizers"
  cmake --preset asan >/dev/null
  cmake --build --preset asan
  scripts/sanitized-tests.sh asan

  step "thread sanitizer"
  cmake --preset tsan >/dev/null
  cmake --build --preset tsan --target tsan_tests
  scripts/sanitized-tests.sh tsan

  step "fuzzing"
  FUZZ_SEED=1 FUZZ_TIMEOUT=25 scripts/fuzz.sh 5
fi

step "tests"
ctest --test-dir build/release --output-on-failure -j2
