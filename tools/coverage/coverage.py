#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Judges what gcovr counted: coverage.py REPORT.json

Prints the lines and branches that the tests do not reach, but for those that unreached.txt lists with a reason. Exit
status 1 when fewer than 98 % of the lines or 95 % of all branches are reached, when a line of the wholly tested
groups is not run, when a branch is neither reached nor listed, and when a listed one is reached after all.
"""
import json
import re
import sys
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
LEAST_LINES, LEAST_BRANCHES = 0.98, 0.95
WHOLLY_RUN = ("source/fwlib/properties/", "source/fwlib/pipeline/", "source/fwlib/streams/")


def listed():
    """How many branches of (file, line) cannot be reached. Each entry has a reason above it."""
    branches, reason = Counter(), False
    for text in (Path(__file__).parent / "unreached.txt").read_text().splitlines():
        entry = re.fullmatch(r"(\d+) ([\w./]+): (.+)", text)
        if entry and reason:
            branches[entry[2], entry[3]] += int(entry[1])
        elif entry or (text and not text.startswith("#") and re.match(r"\d", text)):
            sys.exit(f"unreached.txt: no reason above, or not COUNT FILE: LINE: {text}")
        else:
            reason = bool(text) and not text.startswith("#")
    return branches


def main():
    report = json.loads(Path(sys.argv[1]).read_text())
    left_out = listed()
    lines, run, branches, taken = 0, 0, 0, 0
    faults = []
    for file in report["files"]:
        name, source = file["file"], (ROOT / file["file"]).read_text().split("\n")
        for line in file["lines"]:
            if line.get("gcovr/noncode") or line.get("gcovr/excluded"):
                continue
            text = source[line["line_number"] - 1].strip()
            of_line = [b["count"] for b in line["branches"] if not b.get("throw")]
            untaken = of_line.count(0)
            lines, run = lines + 1, run + (line["count"] > 0)
            branches, taken = branches + len(of_line), taken + len(of_line) - untaken
            if line["count"] == 0 and name.startswith(WHOLLY_RUN):
                faults.append(f"{name}:{line['line_number']}: not run: {text}")
            known = min(untaken, left_out[name, text])
            left_out[name, text] -= known
            if untaken > known:
                faults.append(f"{name}:{line['line_number']}: {untaken - known} branches not reached: {text}")
    faults += [f"{name}: {count} listed branches are reached: {text}" for (name, text), count in left_out.items() if count]
    print(*faults, sep="\n")
    listed_now = sum(listed().values())
    print(f"lines {run} of {lines}, {100 * run / lines:.1f} %")
    print(f"branches {taken} of {branches}, {100 * taken / branches:.1f} %; {listed_now} cannot be reached, see unreached.txt: "
          f"{100 * taken / (branches - listed_now):.1f} % of the others")
    return 1 if faults or run < LEAST_LINES * lines or taken < LEAST_BRANCHES * branches else 0


if __name__ == "__main__":
    sys.exit(main())
