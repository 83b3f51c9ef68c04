#!/usr/bin/env bash
# Installs the Debian packages of the given list that are missing (scripts/packages.txt by default).
# usage: install.sh [LIST]
set -euo pipefail
list=${1:-$(dirname "$0")/packages.txt}
missing=()
while read -r package; do
  [ -n "$package" ] || continue
  dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done <"$list"
[ ${#missing[@]} -gt 0 ] || exit 0
echo "Installing: ${missing[*]}"
run() { if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi; }
export DEBIAN_FRONTEND=noninteractive
run apt-get update -q
run apt-get install -y -q --no-install-recommends "${missing[@]}"
