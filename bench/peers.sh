#!/usr/bin/env bash
# Starts tetoreader on generated OFD files and qpdfview on PDFs of the same content, interleaved, several times, and
# prints busy time and peak memory of each with the ratios. usage: peers.sh [ROUNDS]
set -euo pipefail
cd "$(dirname "$0")/.."
rounds=${1:-3}
scripts/install.sh bench/peers-packages.txt
cmake --preset release -DTETO_BENCH=ON >/dev/null
cmake --build --preset release --target tetoreader tetobaisfla make_samples >/dev/null
exec python3 bench/peers.py "$rounds" build/release/bin build/peers
