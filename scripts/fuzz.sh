#!/usr/bin/env bash
# Builds the fuzz targets and runs each for some seconds on seeds from the sample documents.
# usage: fuzz.sh [SECONDS]     60 by default; crashes are kept below build/fuzz/crashes/
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
scripts/install.sh
scripts/install.sh scripts/fuzz-packages.txt
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target fuzzers sample_files
mkdir -p build/fuzz/corpus/fuzz_{json,text_form,package,xml,path_data,document} build/fuzz/crashes
cp build/fuzz/samples/deviations/*.ofd build/fuzz/samples/damaged/*.ofd build/fuzz/corpus/fuzz_package/ 2>/dev/null || true
cp build/fuzz/samples/deviations/*.ofd build/fuzz/corpus/fuzz_document/ 2>/dev/null || true
printf '{"a":[1,{"b":"c"}]}' >build/fuzz/corpus/fuzz_json/seed
printf 'page 210 297\nbookmark "Name" index=0\n' >build/fuzz/corpus/fuzz_text_form/seed
printf '<?xml version="1.0"?><ofd:A xmlns:ofd="x"><B c="d">e</B></ofd:A>' >build/fuzz/corpus/fuzz_xml/seed
printf 'M 0 0 L 10 10 Q 1 1 2 2 B 1 1 2 2 3 3 A 5 5 0 0 1 8 8 C' >build/fuzz/corpus/fuzz_path_data/seed
for target in build/fuzz/bin/fuzz_*; do
  name=$(basename "$target")
  echo "== $name"
  QT_QPA_PLATFORM=offscreen "$target" "build/fuzz/corpus/$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
    -max_len=200000 -artifact_prefix="build/fuzz/crashes/$name-" -print_final_stats=0 -verbosity=0
done
