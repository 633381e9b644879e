#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Whole processes, from start to end, beside gst-launch-1.0: time and peak memory.

Time is the clock's, but for the replay, which one thread does here and two do there: its is processor time.

    bench/processes.py FWPIPE

Each pair runs in turns, and the medians count. Exit 1 when a ratio does not keep its bar.
"""
import os
import resource
import statistics
import subprocess
import sys
import tempfile
import time

TURNS = 7
OBJECTS = 1_000_000


def processor():
    """Processor seconds of all children that have ended."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def measure(command, clock=time.monotonic):
    """Seconds and the peak resident memory in KiB of one run."""
    # A child's peak begins with that of whoever forks it, so a small program starts it.
    start = clock()
    subprocess.run(["/usr/bin/time", "-f", "%M", "-o", "peak", *command], stdout=subprocess.DEVNULL, check=True)
    seconds = clock() - start
    with open("peak", encoding="ascii") as peak:
        return seconds, int(peak.read())


def compare(name, bar, ours, theirs, clock=time.monotonic):
    """Prints a row of the table: whether the time keeps its bar."""
    runs = [(measure(ours, clock), measure(theirs, clock)) for _ in range(TURNS)]
    (time_ours, memory_ours), (time_theirs, memory_theirs) = (
        [statistics.median(run[side][what] for run in runs) for what in (0, 1)] for side in (0, 1))
    ratio = time_ours / time_theirs
    print(f"| {name:<44} | {time_ours * 1e3:8.1f} | {time_theirs * 1e3:8.1f} | {ratio:6.3f} | {bar:5.2f} | "
          f"{'ok' if ratio <= bar else 'OVER':4} | {memory_ours:9.0f} | {memory_theirs:9.0f} |", flush=True)
    return ratio <= bar


def pipe(path, *lines):
    with open(path, "w", encoding="ascii") as file:
        file.write("\n".join(("plugin libfwlib.so",) + lines) + "\n")
    return path


def main():
    fwpipe = os.path.abspath(sys.argv[1])
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(dir=memory) as folder:
        os.chdir(folder)
        source = ("element ESource", "property Name source", "sink source")
        taps = tuple(line for i in range(3) for line in ("element EPassthrough", f"property Name tap{i}"))
        pipe("chain.pipe", *source, *taps, "element EDevNull", "property Name end", "connect source 0 tap0 0",
             "connect tap0 0 tap1 0", "connect tap1 0 tap2 0", "connect tap2 0 end 0")
        pipe("record.pipe", *source, "element ESerialize", "property Name recorder", "property Filename objects",
             "property Strict 1", "connect source 0 recorder 0")
        run = [fwpipe, "run", "--quiet", "--repeat", str(OBJECTS // 1000)]
        launch = ["gst-launch-1.0", "-q"]
        print(f"| {'whole process':<44} | fwpipe ms |  peer ms |  ratio |  bar  |      | fwpipe KiB |  peer KiB |")
        print(f"|{'-' * 46}|----------:|---------:|-------:|------:|------|-----------:|----------:|")
        kept = compare("start and end, one run", 1.0, run[:-1] + ["1", "chain.pipe"],
                       launch + "fakesrc num-buffers=1000 ! identity ! identity ! identity ! fakesink".split())
        kept &= compare(f"{OBJECTS} objects through three", 1.0, run + ["chain.pipe"],
                        launch + f"fakesrc num-buffers={OBJECTS} ! identity ! identity ! identity ! fakesink".split())
        measure(run + ["record.pipe"])
        os.rename("objects", "recorded")
        size = os.path.getsize("recorded") // OBJECTS  # the same bytes in as many buffers
        kept &= compare(f"{OBJECTS} objects recorded strictly", 1.0, run + ["record.pipe"],
                        launch + ["filesrc", "location=recorded", f"blocksize={size}", "!", "filesink",
                                  "location=copied", "buffer-mode=unbuffered"])
        with open("four", "w", encoding="ascii") as file:  # properties an object
            file.writelines(f"QObject\nm_b2PropertyCount=4\nx={i % 9973:04}\ny={i % 7919:04}\nz={i % 9999:04}\n"
                            f"id={i % 9001:04}\n" for i in range(OBJECTS))
        pipe("replay.pipe", "element EDeserialize", "property Name replay", "property Filename four", "sink replay",
             "element EDevNull", "property Name end", "connect replay 0 end 0")
        size = os.path.getsize("four") // OBJECTS
        kept &= compare(f"{OBJECTS} objects replayed, processor time", 0.17,
                        [fwpipe, "run", "--quiet", "--drain", "replay.pipe"],
                        launch + ["filesrc", "location=four", f"blocksize={size}", "!", "fakesink"], processor)
    return not kept


if __name__ == "__main__":
    sys.exit(main())
