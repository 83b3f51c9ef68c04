#!/usr/bin/env bash
# Brings resources/languages/*.ts up to date with the texts in the sources. Fails, and names the lines, while a text has
# no translation; --check changes nothing and fails too when a text is missing or not used any more.
set -euo pipefail
cd "$(dirname "$0")/.."
lupdate=/usr/lib/qt5/bin/lupdate
folders=(reader frame ofd common plugin bookmark outline)
catalogue=resources/languages/tetobaisfla_zh_CN.ts
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# lupdate takes the mark in 20'000 for a character and loses its way, so it reads a copy without such marks.
cp -r --parents "${folders[@]}" "$work"
find "$work" -type f \( -name '*.h' -o -name '*.cpp' \) -exec sed -i -E ":again; s/([0-9])'([0-9])/\1\2/g; t again" {} +
cp "$catalogue" "$work/new.ts"
# Numbers in texts are no reason to take over another text's translation.
(cd "$work" && "$lupdate" -silent -no-obsolete -locations none -disable-heuristic number -disable-heuristic similartext \
    -disable-heuristic sametext "${folders[@]}" -ts new.ts) 2>&1 | tee "$work/log" >&2
[ ! -s "$work/log" ] || { echo "lupdate did not understand all sources" >&2; exit 1; }

# Whatever is without a translation, be it new or emptied, is marked as unfinished in the result.
failed=0
if [ "${1:-}" = --check ]; then
    # The order of the texts follows the order of the sources' files and lines, which may change.
    diff <(sort "$catalogue") <(sort "$work/new.ts") >&2 || failed=1
else
    cp "$work/new.ts" "$catalogue"
fi
if grep -n -B2 'type="unfinished"' "$work/new.ts"; then
    failed=1
fi
exit $failed
