#!/usr/bin/env bash
# Brings resources/languages/*.ts up to date with the texts in the sources; new texts come in unfinished.
set -euo pipefail
cd "$(dirname "$0")/.."
lupdate=/usr/lib/qt5/bin/lupdate
folders=(reader frame ofd common plugin bookmark outline)
"$lupdate" -silent -no-obsolete -locations none "${folders[@]}" -ts resources/languages/tetobaisfla_zh_CN.ts
! grep -n 'type="unfinished"' resources/languages/*.ts
