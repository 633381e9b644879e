#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Puts small faults into the library, one at a time, and tells which of them the tests do not find.

Usage: mutate.py [--count N] [--seed N] [--flags FLAGS] [--verbose] [FILE...]

Without files the faults are spread over source/fwlib in proportion to the code. Each worker has a copy of the tree
and a build folder of its own under build/mutate. A fault that does not compile is replaced by another one;
equivalent.txt lists those that no test can find. Exit status 1 when fewer than 95 % of the others are caught.
"""
import argparse
import os
import queue
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time
from pathlib import Path

from faults import code_lines, shares, shuffled

ROOT = Path(__file__).resolve().parents[2]
SCRATCH = ROOT / "build" / "mutate"
WORKERS = 2
LEAST_CAUGHT = 0.95
COPIED = ("CMakeLists.txt", "cmake", "docs", "examples", "fuzz", "packaging", "source", "tests", "tools")
# The programs stop at their first failure; then everything else but what builds the installed tree's users.
STEPS = (
    ("-R", r"^(fwlib_|pipes\.)"),
    ("-E", r"^(fwlib_.*|pipes\..*|fwpipe\..*|failures\..*|package\.(headers|install|cmake|pkgconfig|fwpipe|plain))$"),
    ("-R", r"^(fwpipe\..*|failures\..*)$"),
)


def equivalents():
    """The (file, line, changed line) that need no test."""
    listed, file = set(), ""
    before = ""
    for line in (Path(__file__).parent / "equivalent.txt").read_text().split("\n"):
        if line.startswith("- "):
            before = line[2:]
        elif line.startswith("+ "):
            listed.add((file, before, line[2:]))
        elif line and not line.startswith("#"):
            file = line.split(":")[0]
    return listed


def limit():
    os.setsid()
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def ends_well(command, folder, seconds):
    """Whether a command answers 0 in time; the processes of one that does not are ended."""
    environment = dict(os.environ, GTEST_FAIL_FAST="1", GTEST_BRIEF="1",
                       LSAN_OPTIONS="max_allocation_size_mb=4000")
    child = subprocess.Popen(
        command, cwd=folder, env=environment, preexec_fn=limit,
        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
    )  # fmt: skip
    try:
        return child.wait(seconds) == 0, False
    except subprocess.TimeoutExpired:
        return False, True
    finally:
        try:
            os.killpg(child.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        child.wait()


class Tree:
    """A copy of the tree, with a build folder in it."""

    def __init__(self, number, flags):
        self.root = SCRATCH / str(number)
        self.build = self.root / "build" / "release"
        self.limits = []  # in seconds, of the steps
        self._copy()
        subprocess.run(
            ["cmake", "-S", self.root, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
             f"-DCMAKE_CXX_FLAGS={flags}"],
            check=True, stdout=subprocess.DEVNULL,
        )  # fmt: skip
        subprocess.run(["cmake", "--build", self.build, "-j", "1"], check=True, stdout=subprocess.DEVNULL)

    def _copy(self):
        """Brings the copy to what the tree is now; files that did not change keep their times."""
        wanted = set()
        for name in COPIED:
            found = ROOT / name
            for path in [found] if found.is_file() else sorted(p for p in found.rglob("*") if p.is_file()):
                target = self.root / path.relative_to(ROOT)
                wanted.add(target)
                if not target.exists() or target.read_bytes() != path.read_bytes():
                    target.parent.mkdir(parents=True, exist_ok=True)
                    shutil.copy(path, target)
        for name in COPIED:
            for path in (self.root / name).rglob("*"):
                if path.is_file() and path not in wanted:
                    path.unlink()

    def compiles(self, *targets):
        which = ["--target", *targets] if targets else []
        return ends_well(["cmake", "--build", str(self.build), "-j", "1", *which], self.root, 600)[0]

    def found_by(self, measure=False):
        """How a fault is found: "test", or "time", or "" when all tests pass."""
        for step, (way, pattern) in enumerate(STEPS):
            command = ["ctest", "--test-dir", str(self.build), "--stop-on-failure", "--timeout", "100", way, pattern]
            begun = time.monotonic()
            passes, late = ends_well(command, self.root, 600 if measure else self.limits[step])
            if not passes:
                return "time" if late else "test"
            if measure:
                self.limits.append(20 + 4 * (time.monotonic() - begun))
        return ""


class Run:
    def __init__(self, arguments):
        self.arguments = arguments
        self.known = equivalents()
        self.files = queue.SimpleQueue()
        self.lock = threading.Lock()
        self.results = []  # (fault, how it was found)
        self.left_out = self.uncompiled = self.broken = 0
        self._choose()

    def _choose(self):
        names = self.arguments.files or sorted(
            str(p.relative_to(ROOT)) for p in (ROOT / "source" / "fwlib").rglob("*") if p.suffix in (".cpp", ".h")
        )
        texts = {name: (ROOT / name).read_text() for name in names}
        faults = {name: shuffled(name, text, self.arguments.seed) for name, text in texts.items()}
        given = shares({name: code_lines(texts[name]) for name in names if faults[name]}, self.arguments.count)
        for name in sorted(given, key=lambda n: (-given[n], n)):
            if given[name]:
                self.files.put((name, texts[name], faults[name], given[name]))

    def work(self, number):
        tree = Tree(number, self.arguments.flags)
        if tree.found_by(measure=True):
            self.broken += 1
            return
        while True:
            try:
                name, text, faults, wanted = self.files.get_nowait()
            except queue.Empty:
                return
            for fault in faults:
                wanted -= self._try(tree, text, fault) if wanted else 0
            (tree.root / name).write_text(text)

    def _try(self, tree, text, fault):
        """Whether the fault counts as one of the chosen."""
        if (fault.file, fault.before, fault.after) in self.known:
            self.left_out += 1
            return True
        begun = time.monotonic()
        (tree.root / fault.file).write_text(text[: fault.begin] + fault.by + text[fault.end :])
        # Test programs built before a header changed find most faults in it, too, and building them takes long.
        header = fault.file.endswith(".h")
        if not tree.compiles(*(["fwlib", "fwpipe"] if header else [])):
            self.uncompiled += 1
            return False
        built = time.monotonic()
        found = tree.found_by()
        if header and not found:
            found = tree.found_by() if tree.compiles() else "test"
        now = time.monotonic()
        with self.lock:
            self.results.append((fault, found))
            if not found:
                print(f"{fault.file}:{fault.line}: survives\n  - {fault.before}\n  + {fault.after}", flush=True)
            if self.arguments.verbose:
                told = found or "nothing"
                print(f"{fault.file}:{fault.line}: {told}, {built - begun:.1f} s + {now - built:.1f} s", flush=True)
        return True

    def report(self):
        caught = sum(1 for _, found in self.results if found)
        late = sum(1 for _, found in self.results if found == "time")
        total = len(self.results)
        share = caught / total if total else 0
        print(
            f"{total} faults, {caught} caught ({100 * share:.1f} %), {late} of them by running too long; "
            f"{self.left_out} more are equivalent, {self.uncompiled} did not compile"
        )
        return 0 if total and share >= LEAST_CAUGHT else 1


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("files", nargs="*", help="from the root of the tree; all of the library when none is named")
    parser.add_argument("--count", type=int, default=240, help="faults that compile, equivalent ones among them")
    parser.add_argument("--seed", type=int, default=1, help="another seed chooses other faults")
    parser.add_argument("--flags", default="-O1 -DFWLIB_WATCH -fsanitize=leak", help="for the compiler; leaks and code that goes too early end a program, too")
    parser.add_argument("--verbose", action="store_true", help="tell each fault and its time")
    run = Run(parser.parse_args())
    begun = time.monotonic()
    workers = [threading.Thread(target=run.work, args=(number,)) for number in range(WORKERS)]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    if run.broken or not run.results:
        print("the tests fail without a fault, or nothing was tried: ctest --test-dir", SCRATCH / "0/build/release", file=sys.stderr)
        return 2
    print(f"{time.monotonic() - begun:.0f} s with {WORKERS} workers")
    return run.report()


if __name__ == "__main__":
    sys.exit(main())
