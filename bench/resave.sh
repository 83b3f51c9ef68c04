#!/bin/bash
# bench/resave.sh [ROUNDS [FOLDER]]: how long `tetotool resave` of a document of 200 MB takes, against `cp`, in turn, on
# the disk of FOLDER (that of the build without one). Prints the best and the median of both, their ratios, and the
# program's peak of memory. Needs a build of tetotool and make_samples; BIN names its folder, build/release/bin without.
set -e
cd "$(dirname "$0")/.."
rounds=${1:-9}
bin=${BIN:-build/release/bin}
folder=$(mktemp -d -p "${2:-build}")
trap 'rm -rf "$folder"' EXIT
QT_QPA_PLATFORM=offscreen "$bin/make_samples" --report 100 300 "$folder/big.ofd" --pad 200000000
cat "$folder/big.ofd" > /dev/null # both read from memory

timed() { # milliseconds of a command, into the file $1
    local out=$1
    shift
    rm -f "$folder/copy.ofd"
    sync "$folder"
    local begin end
    begin=$(date +%s%N)
    "$@"
    end=$(date +%s%N)
    echo $(((end - begin) / 1000)) >> "$out"
}

for ((i = 0; i < rounds; ++i)); do
    timed "$folder/cp" cp "$folder/big.ofd" "$folder/copy.ofd"
    timed "$folder/resave" "$bin/tetotool" resave "$folder/big.ofd" "$folder/copy.ofd"
    cmp "$folder/big.ofd" "$folder/copy.ofd"
done
rm -f "$folder/copy.ofd"
python3 - "$folder" "$bin" <<'END'
import resource, statistics, subprocess, sys
folder, binary = sys.argv[1:]
times = {name: [int(line) / 1000 for line in open(f"{folder}/{name}")] for name in ("cp", "resave")}
for name, values in times.items():
    print(f"{name}: best {min(values):.0f} ms, median {statistics.median(values):.0f} ms")
print(f"ratio: best {min(times['resave']) / min(times['cp']):.2f}, "
      f"median {statistics.median(times['resave']) / statistics.median(times['cp']):.2f} (goal 1.1)")
subprocess.run([f"{binary}/tetotool", "resave", f"{folder}/big.ofd", f"{folder}/copy.ofd"], check=True)
print(f"memory: {resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024:.0f} MB")
END
