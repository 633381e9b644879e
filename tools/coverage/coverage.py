#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Judges what gcovr counted: coverage.py REPORT.json

Prints the functions that no test calls and the branches that no test takes, except those that the compiler adds
(rules.py) and those that unreached.txt lists. Exit status 1 when there are any, when an entry of the list matches
nothing, when fewer than 98 % of the lines or 95 % of the branches are reached, and when a line of the wholly tested
groups is not run.
"""
import json
import re
import sys
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from functions import Functions
from listed import listed
from rules import Statements

LEAST_LINES, LEAST_BRANCHES = 0.98, 0.95
WHOLLY_RUN = ("source/fwlib/properties/", "source/fwlib/pipeline/", "source/fwlib/streams/")


@dataclass
class Entry:
    """A line of unreached.txt: FUNCTION: not called, FUNCTION: N lines, which are not run, or FUNCTION: N branches, of
    the lines that contain WORD if given."""

    text: str
    function: str
    word: str
    left: int

    @staticmethod
    def of(text):
        found = re.fullmatch(r"(\S+|operator .+): (?:(not called)|(?:(\d+) )?(?:(lines?)|branch(?:es)?(?: at (\S+))?))", text)
        if not found:
            sys.exit(f"unreached.txt: expected FUNCTION: not called, [N] lines, or [N] branches [at WORD]: {text}")
        word = "not called" if found[2] else "not run" if found[4] else found[5] or ""
        return Entry(text, found[1], word, int(found[3] or 1))


class Judge:
    def __init__(self, entries):
        self.entries = sorted(entries, key=lambda entry: not entry.word)
        self.faults = []
        self.lines = self.run = self.branches = self.taken = self.listed = 0

    def _accept(self, function, words, count):
        """Takes up to so many from the entries of a function; returns how many none of them lists."""
        branches = words not in (["not called"], ["not run"])
        for entry in self.entries:
            if entry.function == function and (entry.word in words or (not entry.word and branches)):
                accepted = min(count, entry.left)
                entry.left -= accepted
                count -= accepted
        return count

    def add(self, file):
        name = file["file"]
        text = (ROOT / name).read_text()
        statements, functions, source = Statements(text), Functions(text), text.split("\n")
        starts, called = [0], set()
        for line in source:
            starts.append(starts[-1] + len(line) + 1)
        for line in file["lines"]:
            if line.get("gcovr/noncode") or line.get("gcovr/excluded"):
                continue
            at = line["line_number"]
            code = source[at - 1].strip()
            region = functions.at(starts[at - 1] + source[at - 1].find(code))
            self.lines, self.run = self.lines + 1, self.run + (line["count"] > 0)
            if line["count"] == 0 and name.startswith(WHOLLY_RUN) and self._accept(region.name, ["not run"], 1):
                self.faults.append(f"{name}:{at}: not run: {code}")
            if region.begin not in called:
                called.add(region.begin)
                if line["count"] == 0 and self._accept(region.name, ["not called"], 1):
                    self.faults.append(f"{name}:{at}: not called: {region.name}")
            counts = [branch["count"] for branch in line["branches"] if not branch.get("throw")]
            own, untaken = statements.untaken(at, counts)
            self.branches, self.taken = self.branches + own, self.taken + own - untaken
            if line["count"] and untaken:
                left = self._accept(region.name, re.findall(r"\w+", code), untaken)
                self.listed += untaken - left
                if left:
                    self.faults.append(f"{name}:{at}: {region.name}: {left} of {len(counts)} branches not taken: {code}")


def main():
    judge = Judge([Entry.of(text) for text, _ in listed(Path(__file__).parent / "unreached.txt")])
    for file in json.loads(Path(sys.argv[1]).read_text())["files"]:
        judge.add(file)
    faults = judge.faults + [f"unreached.txt: matches nothing: {e.text} ({e.left} left)" for e in judge.entries if e.left]
    print(*faults, sep="\n")
    run, taken = judge.run / judge.lines, judge.taken / judge.branches
    print(f"lines: {judge.run} of {judge.lines}, {100 * run:.1f} %")
    print(f"branches: {judge.taken} of {judge.branches}, {100 * taken:.1f} %; {judge.listed} more are listed in unreached.txt")
    print(f"findings: {len(faults)}")
    return 1 if faults or run < LEAST_LINES or taken < LEAST_BRANCHES else 0


if __name__ == "__main__":
    sys.exit(main())
