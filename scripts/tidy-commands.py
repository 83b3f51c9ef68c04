#!/usr/bin/env python3
"""Rewrites compile_commands.json for clang-tidy: no compiler launcher, no precompiled headers, no flags only gcc knows.

usage: tidy-commands.py IN OUT"""
import json
import shlex
import sys

source, target = sys.argv[1:3]
commands = json.load(open(source))
for command in commands:
    words = shlex.split(command.pop('command'))
    while not words[0].endswith(('++', 'g++', 'clang++')):
        words.pop(0)
    kept, skip = [], 0
    for i, word in enumerate(words):
        if skip:
            skip -= 1
        elif word == '-include' and 'cmake_pch' in words[i + 1]:
            skip = 1
        elif word in ('-fpch-preprocess', '-Winvalid-pch', '-Wno-invalid-pch', '-mno-direct-extern-access'):
            pass
        else:
            kept.append(word)
    command['arguments'] = kept
json.dump(commands, open(target, 'w'), indent=1)
