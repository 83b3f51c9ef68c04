#!/usr/bin/env bash
# Runs the tests of a sanitizer build. usage: sanitized-tests.sh asan|tsan
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
export ASAN_OPTIONS=detect_stack_use_after_return=1:detect_leaks=1:allocator_may_return_null=1
export LSAN_OPTIONS=suppressions=$here/lsan.supp:print_suppressions=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
export TSAN_OPTIONS=suppressions=$here/tsan.supp:halt_on_error=1
select=()
[ "$1" = tsan ] && select=(-L threads)
ctest --test-dir "build/$1" --output-on-failure -j2 "${select[@]}"
