#!/usr/bin/env bash
# Installs what is missing, builds a release and opens the reader on FILE, or on the bundled tour.
# Without a display it writes a picture of the window for each pane under build/screens/ and prints what each lists.
# usage: run.sh [FILE...]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
files=()
for file in "$@"; do files+=("$(realpath "$file")"); done
cd "$here"
scripts/install.sh
cmake --preset release -DTETO_BENCH=ON >/dev/null
cmake --build --preset release --target tetoreader tetobaisfla translations sample_files
[ ${#files[@]} -gt 0 ] || files=(build/release/samples/tour.ofd)
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo "No display: running offscreen. Pictures of the window go to build/screens/."
  mkdir -p build/screens
  exec env QT_QPA_PLATFORM=offscreen build/release/bin/tetoreader --show-panes build/screens "${files[@]}"
fi
exec build/release/bin/tetoreader "${files[@]}"
