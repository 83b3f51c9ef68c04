#!/usr/bin/env bash
# clang-tidy over our sources, or over the files given. Uses the release build's commands without its precompiled
# headers, which only the compiler that made them reads. usage: tidy.sh [FILE...]
set -euo pipefail
cd "$(dirname "$0")/.."
mkdir -p build/tidy
python3 scripts/tidy-commands.py build/release/compile_commands.json build/tidy/compile_commands.json
if [ $# -gt 0 ]; then files=("$@"); else mapfile -t files < <(git ls-files 'frame/*.cpp' 'ofd/*.cpp' 'common/*.cpp' 'plugin/*.cpp' 'bookmark/*.cpp' 'outline/*.cpp' 'reader/*.cpp' 'tool/*.cpp'); fi
printf '%s\0' "${files[@]}" | xargs -0 -n 4 -P 2 clang-tidy-14 --quiet -p build/tidy 2> >(grep -vE 'warnings? generated|Suppressed|Use -header-filter' >&2)
