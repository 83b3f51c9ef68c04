#!/usr/bin/env python3
"""Checks the rules of the source tree that no compiler checks. usage: lint.py ROOT

- no include climbs out of its folder; what another layer offers is included as <layer/x.h>
- no target is linked outside cmake/: add_layer and its kin are the one way, so that no dependency goes upward
- panes are siblings and never include each other
- headers are guarded by #pragma once, and every script is executable
- who hands a variable to translate() marks the texts in the same file: lupdate collects literals only, and a text that it
  does not see stays English"""
import os
import re
import subprocess
import sys

root = sys.argv[1]
PANES = ['bookmark', 'outline', 'customtag', 'annotation', 'attachment', 'layer']


def tracked():
    listing = subprocess.run(['git', '-C', root, 'ls-files'], capture_output=True, text=True).stdout.split('\n')
    if len(listing) > 1:
        return [name for name in listing if name and os.path.exists(os.path.join(root, name))]
    found = []
    for folder, folders, names in os.walk(root):
        folders[:] = [f for f in folders if f not in ('build', '.git')]
        found += [os.path.relpath(os.path.join(folder, name), root) for name in names]
    return found


def problems_of(name, text):
    lines = text.split('\n')
    pane = name.split('/')[0]
    for number, line in enumerate(lines, 1):
        if re.match(r'\s*#\s*include\s+"\.\./', line):
            yield number, 'an include climbs out of its folder'
        if pane in PANES and name.endswith(('.h', '.cpp')):
            other = re.match(r'\s*#\s*include\s+[<"](\w+)/', line)
            if other and other.group(1) in PANES and other.group(1) != pane:
                yield number, f'a pane includes its sibling {other.group(1)}'
        if name.endswith('CMakeLists.txt') and re.match(r'\s*target_link_libraries\s*\(', line) \
                and not name.startswith('cmake/'):
            yield number, 'a bare target_link_libraries; use add_layer or its kin'
        if name.endswith('.cpp') and re.search(r'translate\("\w+", \w+\)', line) and 'QT_TRANSLATE_NOOP(' not in text:
            yield number, 'a text is translated that lupdate cannot collect; mark it with QT_TRANSLATE_NOOP'
    if name.endswith('.h') and '#pragma once' not in text:
        yield 1, 'no #pragma once'


def main():
    count = checked = 0
    for name in tracked():
        path = os.path.join(root, name)
        if name.endswith('.sh') and not os.access(path, os.X_OK):
            print(f'{name}: not executable')
            count += 1
        if not name.endswith(('.h', '.cpp', 'CMakeLists.txt')):
            continue
        checked += 1
        with open(path, encoding='utf8') as source:
            for number, problem in problems_of(name, source.read()):
                print(f'{name}:{number}: {problem}')
                count += 1
    print(f'{checked} files checked, {count} problems')
    return 1 if count or not checked else 0


sys.exit(main())
