#!/usr/bin/env python3
"""Changes parts of documents at random, packs them again into whole archives, and gives each to tetotool, which must
neither crash nor hang nor take all memory. The fuzz targets change bytes; this changes what the bytes mean: numbers,
elements, references, whole parts, and what the archive says of them.

usage: mutate.py [--tool PATH] [--seconds N] [--seed N] [--keep DIR] [--memory MB] [--slow FACTOR] FILE_OR_FOLDER...

FILES are the beginnings, as make_samples writes them. --memory 0 and --slow 20 are for a build with sanitizers. A
finding is kept as DIR/KIND-SEED-NUMBER.ofd with what was said beside it; the same seed and files make the same
documents. Ends with 1 when anything was found."""
import argparse
import io
import os
import random
import re
import resource
import struct
import subprocess
import sys
import time
import warnings
import zipfile
import zlib

NUMBERS = [b'0', b'-1', b'1e-300', b'1e300', b'-1e30', b'nan', b'inf', b'-inf', b'2147483647', b'-2147483648',
           b'4294967295', b'4294967296', b'9223372036854775807', b'99999999999999999999', b'1e7', b'9999999', b'1e-7',
           b'0.0000001', b'0x10', b'', b' ', b'1,5', b'--1', b'1 2 3', b'g 2000000000 1', b'256', b'65536', b'-0']
NUMBER = re.compile(rb'-?\d+(?:\.\d+)?')
ATTRIBUTE = re.compile(rb'([\w:]+)="([^"<]*)"')
LEAF = re.compile(rb'<([\w:]+)(?:\s[^<>]*)?(?:/>|>[^<>]*</\1>)')
START = re.compile(rb'<([A-Za-z][\w:]*)')
COMMANDS = [['check', '--json', 'FILE']] * 8 + [
    ['text', 'FILE'], ['info', '--json', 'FILE'], ['find', 'FILE', 'e'], ['list', 'outline', 'FILE'],
    ['list', 'tags', 'FILE'], ['list', 'annotations', 'FILE'], ['list', 'attachments', 'FILE'],
    ['list', 'layers', 'FILE'], ['resave', 'FILE', 'OUT'], ['extract', 'FILE', '--all', '-d', 'DIR'],
    ['render', 'FILE', '--page', '1', '--dpi', '150', '-o', 'PNG']]
EXITS = {0, 1, 2, 3}


class Mutator:
    """One way to change a document a session; all chance comes from `dice`."""

    def __init__(self, dice, documents):
        self.dice = dice
        self.documents = documents

    def element(self, xml):
        """The range of some whole element, or None."""
        starts = list(START.finditer(xml))
        for _ in range(8):
            if not starts:
                break
            start = self.dice.choice(starts)
            name = start.group(1)
            depth, at = 0, start.start()
            for tag in re.compile(rb'<(/?)' + re.escape(name) + rb'(?=[\s/>])[^<>]*?(/?)>').finditer(xml, at):
                depth += -1 if tag.group(1) else 0 if tag.group(2) else 1
                if depth <= 0:
                    return (at, tag.end()) if tag.end() - at < 200000 else None
        return None

    def some_bytes(self, data):
        data = bytearray(data)
        for _ in range(self.dice.choice([1, 1, 2, 5, 20])):
            if data:
                data[self.dice.randrange(len(data))] = self.dice.choice([0, 1, 0x7f, 0x80, 0xff,
                                                                         self.dice.randrange(256)])
        return bytes(data)

    def flipped_bits(self, data):
        data = bytearray(data)
        for _ in range(self.dice.choice([1, 2, 4, 16])):
            if data:
                data[self.dice.randrange(len(data))] ^= 1 << self.dice.randrange(8)
        return bytes(data)

    def truncated(self, data):
        return data[:self.dice.randrange(len(data) + 1)]

    def header_number(self, data):
        at = self.dice.randrange(max(1, min(len(data), self.dice.choice([64, 256, 4096]))))
        value = self.dice.choice([0, 1, 0x7fffffff, 0xffffffff, 0x80000000, 0xffff, 0x10000, 0x00ffffff, 20000])
        return data[:at] + struct.pack(self.dice.choice(['>I', '<I']), value) + data[at + 4:]

    def chunk_again(self, data):
        begin = self.dice.randrange(len(data) + 1)
        end = min(len(data), begin + self.dice.choice([4, 16, 100, 4000]))
        return data[:end] + data[begin:end] * self.dice.choice([1, 3, 100]) + data[end:]

    def number(self, xml):
        found = list(NUMBER.finditer(xml))
        for hit in sorted(self.dice.sample(found, min(len(found), self.dice.choice([1, 1, 2, 8]))),
                          key=lambda m: -m.start()):
            xml = xml[:hit.start()] + self.dice.choice(NUMBERS) + xml[hit.end():]
        return xml

    def grown_list(self, xml):
        """A list of numbers many times as long."""
        lists = list(re.finditer(rb'(?:-?[\d.]+ ){2,}-?[\d.]+', xml))
        if not lists:
            return xml
        hit = self.dice.choice(lists)
        return xml[:hit.end()] + (b' ' + hit.group(0)) * self.dice.choice([2, 50, 3000]) + xml[hit.end():]

    def attribute(self, xml):
        found = list(ATTRIBUTE.finditer(xml))
        if not found:
            return xml
        hit, other = self.dice.choice(found), self.dice.choice(found)
        value = self.dice.choice([other.group(2), b'', b'x' * 100000, b'../../../etc/hostname', b'/', b'&#1114111;',
                                  b'\xff\xfe', b'&lt;&amp;', self.dice.choice(NUMBERS)])
        return xml[:hit.start(2)] + value + xml[hit.end(2):]

    def reference(self, xml):
        """Two numbers of attributes that name or use things change places."""
        found = list(re.finditer(rb'(?:ID|Font|Relative|DrawParam|ImageMask|Substitution|PageRef|ZOrder)="([^"]*)"',
                                 xml))
        if len(found) < 2:
            return xml
        hit, other = self.dice.sample(found, 2)
        return xml[:hit.start(1)] + other.group(1) + xml[hit.end(1):]

    def again(self, xml):
        where = self.element(xml)
        if not where:
            return xml
        piece = xml[where[0]:where[1]]
        times = self.dice.choice([1, 2, 30, 1000])
        return xml[:where[1]] + piece * min(times, 1 + 3000000 // len(piece)) + xml[where[1]:]

    def without(self, xml):
        where = self.element(xml)
        return xml[:where[0]] + xml[where[1]:] if where else xml

    def nested(self, xml):
        """An element within itself, many times."""
        where = self.element(xml)
        if not where:
            return xml
        piece = xml[where[0]:where[1]]
        tag = re.match(rb'<([\w:]+)[^<>]*?>', piece)
        if not tag or tag.group(0).endswith(b'/>'):
            return xml
        depth = min(self.dice.choice([2, 10, 40, 250, 3000]), 1 + 1000000 // len(tag.group(0)))
        return (xml[:where[0]] + tag.group(0) * depth + piece + (b'</' + tag.group(1) + b'>') * depth +
                xml[where[1]:])

    def moved(self, xml):
        """An element of this or another part stands somewhere else."""
        source = xml
        if self.dice.random() < 0.6:
            parts = self.dice.choice(self.documents)
            names = [name for name in parts if name.lower().endswith('.xml')]
            source = parts[self.dice.choice(names)] if names else xml
        where = self.element(source)
        places = [m.start() for m in re.finditer(rb'<', xml)][1:]
        if not where or not places:
            return xml
        at = self.dice.choice(places)
        return xml[:at] + source[where[0]:where[1]] + xml[at:]

    def renamed(self, xml):
        names = list(START.finditer(xml))
        if not names:
            return xml
        where = self.element(xml)
        if not where:
            return xml
        piece = xml[where[0]:where[1]]
        old, new = START.match(piece).group(1), self.dice.choice(names).group(1)
        return xml[:where[0]] + piece.replace(b'<' + old, b'<' + new).replace(b'</' + old, b'</' + new) + xml[where[1]:]

    def text(self, xml):
        found = [hit for hit in LEAF.finditer(xml) if b'</' in hit.group(0)]
        if not found:
            return xml
        hit = self.dice.choice(found)
        at, end = hit.group(0).index(b'>') + 1, hit.group(0).rindex(b'</')
        value = self.dice.choice([b'', b'x' * 300000, b'&#x10ffff;' * 100, '𝔸\u0301\u202e字'.encode() * 50,
                                  b' ' * 10000, b'\x00', b'<![CDATA[', b'M 0 0 ' + b'L 9e6 -9e6 ' * 3000,
                                  b'M 0 0 A 1e-9 1e6 0 1 1 5 5 ' * 200, hit.group(0)[at:end] * 50])
        return xml[:hit.start() + at] + value + xml[hit.start() + end:]

    def changed_part(self, name, data):
        if name.lower().endswith('.xml'):
            ways = [self.number] * 6 + [self.reference] * 3 + [self.again] * 2 + [
                self.attribute, self.attribute, self.without, self.nested, self.moved, self.moved, self.renamed,
                self.text, self.text, self.grown_list, self.truncated, self.some_bytes, self.flipped_bits]
        else:
            ways = [self.some_bytes, self.flipped_bits, self.truncated, self.header_number, self.header_number,
                    self.chunk_again]
        changed = self.dice.choice(ways)(data)
        if changed[:8] == b'\x89PNG\r\n\x1a\n' and self.dice.random() < 0.7:
            changed = with_png_sums(changed)
        return changed

    def document(self):
        parts = dict(self.dice.choice(self.documents))
        for _ in range(self.dice.choice([1, 1, 1, 2, 3, 6])):
            names = list(parts)
            name = self.dice.choice(names)
            chance = self.dice.random()
            if chance < 0.04:
                del parts[name]
                if not parts:
                    break
            elif chance < 0.08:
                parts[name] = parts[self.dice.choice(names)]
            elif chance < 0.12:
                other = self.dice.choice(self.documents)
                parts[name] = other[self.dice.choice(list(other))]
            else:
                parts[name] = self.changed_part(name, parts[name])
        return self.changed_archive(packed(self.dice, parts))

    def changed_archive(self, data):
        chance = self.dice.random()
        if chance > 0.12:
            return data
        if chance < 0.02:
            return self.truncated(data)
        if chance < 0.04:
            return self.flipped_bits(data)
        # What the directory or a local header says of an entry.
        records = [m.start() for m in re.finditer(rb'PK\x01\x02|PK\x03\x04|PK\x05\x06', data)]
        at = self.dice.choice(records) + self.dice.randrange(4, 46)
        value = self.dice.choice([b'\0', b'\1', b'\xff', b'\xff\xff', b'\xff\xff\xff\x7f', b'\xff\xff\xff\xff'])
        return data[:at] + value + data[at + len(value):]


def with_png_sums(data):
    out, at = data[:8], 8
    while at + 12 <= len(data):
        length = struct.unpack('>I', data[at:at + 4])[0]
        body = data[at + 4:at + 8 + length]
        if len(body) < 4 + length:
            break
        out += data[at:at + 4] + body + struct.pack('>I', zlib.crc32(body))
        at += 12 + length
    return out + data[at:]


def packed(dice, parts):
    out = io.BytesIO()
    twice = dice.random() < 0.03
    with zipfile.ZipFile(out, 'w', zipfile.ZIP_DEFLATED) as archive:
        for name, data in parts.items():
            method = zipfile.ZIP_STORED if dice.random() < 0.1 else zipfile.ZIP_DEFLATED
            archive.writestr(zipfile.ZipInfo(name, (2024, 1, 1, 0, 0, 0)), data, method)
        if twice and parts:
            name = dice.choice(list(parts))
            archive.writestr(zipfile.ZipInfo(name, (2024, 1, 1, 0, 0, 0)), parts[name][:dice.randrange(200)])
    return out.getvalue()


def read_documents(places):
    documents = []
    paths = []
    for place in places:
        if os.path.isdir(place):
            for folder, _, names in sorted(os.walk(place)):
                paths += [os.path.join(folder, name) for name in sorted(names) if name.lower().endswith('.ofd')]
        else:
            paths.append(place)
    for path in paths:
        try:
            with zipfile.ZipFile(path) as archive:
                parts = {name: archive.read(name) for name in archive.namelist() if not name.endswith('/')}
        except Exception:  # not whole to begin with: nothing to change
            continue
        if parts and sum(map(len, parts.values())) < 4 << 20:
            documents.append(parts)
    return documents


class Run:
    """One call of the tool under limits."""

    def __init__(self, options, folder, path, command):
        words = {'FILE': path, 'OUT': folder + '/out.ofd', 'DIR': folder + '/extracted', 'PNG': folder + '/out.png'}
        environment = dict(os.environ, QT_QPA_PLATFORM='offscreen', XDG_RUNTIME_DIR=folder, LC_ALL='C.UTF-8')
        begin = time.time()
        limit = int(30 * options.slow)

        def limits():
            resource.setrlimit(resource.RLIMIT_CPU, (limit, limit))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            if options.memory:
                resource.setrlimit(resource.RLIMIT_AS, (3 << 30, 3 << 30))
        with open(folder + '/said.txt', 'wb') as said:
            process = subprocess.Popen([options.tool] + [words.get(word, word) for word in command],
                                       stdout=subprocess.DEVNULL, stderr=said, env=environment, preexec_fn=limits)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        self.exit = process.returncode
        self.seconds = usage.ru_utime + usage.ru_stime
        self.megabytes = usage.ru_maxrss / 1024
        self.wall = time.time() - begin
        with open(folder + '/said.txt', 'rb') as said:
            self.said = said.read()[-20000:]

    def finding(self, options, size):
        if self.exit not in EXITS or b'Sanitizer' in self.said or b'runtime error' in self.said:
            return 'crash'
        if self.seconds > 2 * options.slow * max(1, size / 1e6):
            return 'slow'
        if options.memory and self.megabytes > options.memory:
            return 'memory'
        return None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    parser.add_argument('--tool', default=root + '/build/release/bin/tetotool')
    parser.add_argument('--seconds', type=float, default=60)
    parser.add_argument('--seed', type=int, default=int(time.time()))
    parser.add_argument('--keep', default=root + '/build/mutated')
    parser.add_argument('--memory', type=float, default=1024)
    parser.add_argument('--slow', type=float, default=1)
    parser.add_argument('files', nargs='+')
    options = parser.parse_args()
    documents = read_documents(options.files)
    if not documents:
        sys.exit('mutate.py: no document to begin with')
    warnings.simplefilter('ignore')  # names that are there twice are on purpose
    os.makedirs(options.keep, exist_ok=True)
    folder = os.path.abspath(options.keep) + '/run-%d' % os.getpid()
    os.makedirs(folder + '/extracted', exist_ok=True)
    end = time.time() + options.seconds
    count, found, exits, slowest = 0, 0, {}, 0
    while time.time() < end:
        dice = random.Random(options.seed * 1000003 + count)
        data = Mutator(dice, documents).document()
        command = dice.choice(COMMANDS)
        path = folder + '/in.ofd'
        with open(path, 'wb') as file:
            file.write(data)
        for old in ('out.ofd', 'out.png'):
            if os.path.exists(folder + '/' + old):
                os.remove(folder + '/' + old)
        subprocess.run(['rm', '-rf', folder + '/extracted'], check=True)
        os.makedirs(folder + '/extracted')
        run = Run(options, folder, path, command)
        exits[run.exit] = exits.get(run.exit, 0) + 1
        slowest = max(slowest, run.seconds)
        kind = run.finding(options, len(data))
        if kind:
            found += 1
            name = '%s/%s-%d-%d' % (options.keep, kind, options.seed, count)
            with open(name + '.ofd', 'wb') as file:
                file.write(data)
            with open(name + '.txt', 'wb') as file:
                file.write(('%s\nexit %d, %.1f s, %d MB\n' % (' '.join(command), run.exit, run.seconds,
                                                              run.megabytes)).encode() + run.said)
            print('%s: %s, exit %d, %.1f s, %d MB' % (name, command[0], run.exit, run.seconds, run.megabytes),
                  flush=True)
        count += 1
    subprocess.run(['rm', '-rf', folder], check=True)
    print('seed %d: %d documents from %d, exits %s, slowest %.1f s, %d findings' %
          (options.seed, count, len(documents), exits, slowest, found))
    sys.exit(1 if found else 0)


if __name__ == '__main__':
    main()
