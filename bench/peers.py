#!/usr/bin/env python3
"""Measures tetoreader against qpdfview: busy until idle, CPU time and peak memory. usage: peers.py ROUNDS BIN WORK

Busy time is the wall time until the process has used no CPU for two seconds; CPU time is user and system time of all
its threads up to then, which a loaded machine stretches less. Each round starts both readers on each document once, in
turn; the best round counts."""
import os
import shutil
import subprocess
import sys
import time

from make_pdf import make_pdf

SIZES = [(10, 0), (1000, 3000), (1000, 100000)]
TICK = 0.02
IDLE_SECONDS = 2.0
MOST_SECONDS = 60.0


def cpu_ticks(pid):
    """User and system ticks of a process; None when it is gone."""
    try:
        with open(f'/proc/{pid}/stat') as stat:
            words = stat.read().rsplit(')', 1)[1].split()
    except OSError:
        return None
    return int(words[11]) + int(words[12])


def peak_mb(pid):
    with open(f'/proc/{pid}/status') as status:
        for line in status:
            if line.startswith('VmHWM'):
                return int(line.split()[1]) / 1024
    return 0.0


def measure(command, env):
    start = time.monotonic()
    process = subprocess.Popen(command, env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    last, busy_until = -1, start
    while time.monotonic() - start < MOST_SECONDS:
        time.sleep(TICK)
        ticks = cpu_ticks(process.pid)
        if ticks is None or process.poll() is not None:
            sys.exit(f'{command[0]} ended by itself with {process.poll()}')
        now = time.monotonic()
        if ticks > last:
            last, busy_until = ticks, now
        elif now - busy_until > IDLE_SECONDS:
            break
    peak = peak_mb(process.pid)
    process.kill()
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = status
    return busy_until - start, usage.ru_utime + usage.ru_stime, peak


def start_display():
    display = ':93'
    server = subprocess.Popen(['Xvfb', display, '-screen', '0', '1280x900x24'], stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
    time.sleep(1.5)
    return display, server


def settings(home):
    """A fresh home, so that no earlier session is restored."""
    shutil.rmtree(home, ignore_errors=True)
    os.makedirs(home)
    return {'HOME': home, 'XDG_CONFIG_HOME': home, 'XDG_DATA_HOME': home, 'XDG_RUNTIME_DIR': home}


def main():
    rounds, binaries, work = int(sys.argv[1]), os.path.abspath(sys.argv[2]), os.path.abspath(sys.argv[3])
    os.makedirs(work, exist_ok=True)
    documents = []
    for pages, entries in SIZES:
        base = os.path.join(work, f'report-{pages}-{entries}')
        if not os.path.exists(base + '.ofd'):
            subprocess.run([binaries + '/make_samples', '--report', str(pages), str(entries), base + '.ofd'], check=True)
        if not os.path.exists(base + '.pdf'):
            make_pdf(pages, entries, base + '.pdf')
        documents.append((pages, entries, base))
    display, server = start_display()
    best = {}
    try:
        for _ in range(rounds):
            for pages, entries, base in documents:
                for name, command in (('tetoreader', [binaries + '/tetoreader', '--new-window', base + '.ofd']),
                                      ('qpdfview', ['qpdfview', base + '.pdf'])):
                    env = dict(os.environ, DISPLAY=display, **settings(os.path.join(work, 'home')))
                    env.pop('QT_QPA_PLATFORM', None)
                    taken = measure(command, env)
                    best[name, base] = tuple(map(min, taken, best.get((name, base), taken)))
    finally:
        server.kill()
    print_table(documents, best)


def print_table(documents, best):
    head = f'{"busy":>7} {"CPU":>7} {"memory":>7}'
    print(f'{"":>24} {"tetoreader":>24} {"qpdfview":>24} {"ratio":>24}')
    print(f'{"document":>24} {head:>24} {head:>24} {head:>24}')
    for pages, entries, base in documents:
        ours, theirs = best['tetoreader', base], best['qpdfview', base]
        print(f'{f"{pages} pages, {entries} entries":>24}', row(ours), row(theirs),
              ' '.join(f'{a / b:>6.2f}x' for a, b in zip(ours, theirs)).rjust(24))


def row(taken):
    return f'{taken[0]:>5.2f} s {taken[1]:>5.2f} s {taken[2]:>4.0f} MB'.rjust(24)


main()
