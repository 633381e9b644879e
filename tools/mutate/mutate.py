#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Puts small faults into the library and the tool, one at a time, and lists those that the tests do not find.

Usage: mutate.py [--count N] [--seed N] [--kind KIND]... [--fault NAME]... [--resume] [--quick] [--workers N]
                 [--flags FLAGS] [--verbose] [FILE...]

The kinds of faults take turns; within a kind the choice is random but reproducible, whatever the names of the files. Each
worker has a copy of the tree and its own builds under build/mutate. A fault that does not compile is replaced by another
one; equivalent.txt lists those that no test can find. Results are kept in build/mutate/results: with --resume, faults that
were caught there count as caught, and the others are tried. The exit status is 1 if fewer than 95 % are caught.
"""
import argparse
import sys
import threading
import time
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))

from faults import faults_of, ordered
from isolate import isolate
from listed import listed
from tree import Tree, note

SCRATCH = ROOT / "build" / "mutate"
RESULTS = SCRATCH / "results"
LEAST_CAUGHT = 0.95
# For processors whose stacks fwpipe does not read, and what "fwpipe new" writes, which package.new builds.
NOT_COMPILED = ("tools/fwpipe/unreadstack.cpp", "tools/fwpipe/templates/*")


def keys(fault):
    """By which equivalent.txt may name it: with its file where functions of several files have the same name."""
    return {fault.name, f"{Path(fault.file).name}: {fault.name}"}


class Run:
    def __init__(self, arguments):
        self.arguments = arguments
        self.lock = threading.Lock()
        self.results = []  # (fault, what found it)
        self.left_out = self.uncompiled = self.pending = self.put_off = 0
        self.broken, self.seconds, self.measuring = [], {}, threading.Lock()
        self.known = {name for name, _ in listed(Path(__file__).parent / "equivalent.txt")}
        names = arguments.files or sorted(
            str(path.relative_to(ROOT))
            for folder in ("source/fwlib", "tools/fwpipe")
            for path in (ROOT / folder).rglob("*")
            if path.suffix in (".cpp", ".h") and not any(path.match(pattern) for pattern in NOT_COMPILED)
        )
        self.texts = {name: (ROOT / name).read_text() for name in names}
        faults = [fault for name, text in self.texts.items() for fault in faults_of(name, text)]
        self.unknown = self.known - {key for fault in faults for key in keys(fault)} if not arguments.files else set()
        chosen = [fault for fault in faults if (not arguments.kind or fault.kind in arguments.kind)
                  and (not arguments.fault or fault.name in arguments.fault)]  # fmt: skip
        self.faults = iter(ordered(chosen, arguments.seed))
        self.before = self._before()
        self.found = Counter()  # faults, by test and by file and test
        for fault in faults:
            note(self.found, fault.file, self.before.get(fault.identity, ""))
        if not arguments.resume:
            RESULTS.unlink(missing_ok=True)
            self.before = {}

    def _before(self):
        """The results of an earlier run, by the identity of the fault."""
        lines = RESULTS.read_text().splitlines() if RESULTS.exists() else []
        return dict(line.split("\t")[:2] for line in lines)

    def _next(self):
        """The next fault to try, or None when there are enough. Counts those that were tried already."""
        with self.lock:
            while len(self.results) + self.left_out + self.pending + self.put_off < self.arguments.count:
                fault = next(self.faults, None)
                if fault is None:
                    return None
                found = self.before.get(fault.identity)
                if self.known & keys(fault):
                    self.left_out += 1
                elif found == "compiler":
                    self.uncompiled += 1
                elif found:
                    self.results.append((fault, found))
                elif self.arguments.quick and fault.kind == "guard":
                    self.put_off += 1
                else:
                    self.pending += 1
                    return fault
        return None

    def work(self, number):
        tree = Tree(ROOT, SCRATCH, number, self.arguments.flags, self.found)
        with self.measuring:  # one for all: the trees are the same
            if not self.seconds and not self.broken:
                self.broken = [f"{name}: ctest --test-dir {tree.build}" for name in tree.measure(self.arguments.quick)]
                self.seconds = tree.seconds
        tree.seconds = self.seconds
        if self.broken:
            return
        while fault := self._next():
            text, begun = self.texts[fault.file], time.monotonic()
            tree.put(fault, text)
            found = tree.tried(fault, self.arguments.quick)
            tree.restore(fault, text)
            with self.lock:
                self.pending -= 1
                self._tell(fault, found, time.monotonic() - begun)

    def _tell(self, fault, found, seconds):
        with RESULTS.open("a") as results:
            results.write(f"{fault.identity}\t{'compiler' if found is None else found}\t{fault.kind}\t{fault.name}\n")
        if found is None:
            self.uncompiled += 1
            return
        self.results.append((fault, found))
        if not found:
            print(f"{fault.file}:{fault.line}: {fault.kind} survives: {fault.name}\n  - {fault.before}\n  + {fault.after}",
                  flush=True)  # fmt: skip
        if self.arguments.verbose:
            print(f"{len(self.results)}: {fault.name}: {found or 'nothing'}, {seconds:.1f} s", flush=True)

    def report(self):
        tried, caught = Counter(fault.kind for fault, _ in self.results), Counter(f.kind for f, found in self.results if found)
        for kind in sorted(tried):
            print(f"{kind}: {caught[kind]} of {tried[kind]} caught")
        total, late = sum(tried.values()), sum(1 for _, found in self.results if found.endswith("(time)"))
        share = caught.total() / total if total else 0
        print(f"{total} faults, {caught.total()} caught ({100 * share:.1f} %), {late} of them by running too long; "
              f"{self.left_out} more are equivalent, {self.uncompiled} did not compile")  # fmt: skip
        for name in sorted(self.unknown):
            print(f"equivalent.txt lists what is no fault: {name}")
        return 0 if share >= LEAST_CAUGHT and not self.unknown else 1


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("files", nargs="*", help="from the root of the tree; all of the library and the tool when none is named")
    parser.add_argument("--count", type=int, default=400, help="faults that compile, equivalent ones among them")
    parser.add_argument("--seed", type=int, default=1, help="another seed chooses other faults")
    parser.add_argument("--kind", action="append", help="only faults of this kind, such as order, setting, reset, guard, loop")
    parser.add_argument("--fault", action="append", help="only the fault of this name, as a survivor is printed")
    parser.add_argument("--resume", action="store_true", help="go on after a run that ended early, or with more tests")
    parser.add_argument("--quick", action="store_true", help="without the sanitizers; then judge the rest with --resume")
    parser.add_argument("--workers", type=int, default=2)
    parser.add_argument("--flags", default="-O1 -DFWLIB_WATCH -fsanitize=leak", help="for the compiler; leaks and code that goes too early end a program, too")
    parser.add_argument("--verbose", action="store_true", help="tell each fault and its time")
    arguments = parser.parse_args()
    isolate(SCRATCH)
    run, begun = Run(arguments), time.monotonic()
    workers = [threading.Thread(target=run.work, args=(number,)) for number in range(arguments.workers)]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    if run.broken or not run.results:
        print("tests fail without a fault, or nothing was tried:", *run.broken, sep="\n", file=sys.stderr)
        return 2
    print(f"{time.monotonic() - begun:.0f} s with {arguments.workers} workers")
    return run.report()


if __name__ == "__main__":
    sys.exit(main())
