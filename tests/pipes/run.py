#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs language tests: run.py HOST PLUGINS FILE...

Each case has a process and a folder of its own. A file holds cases of sections:

  --- case NAME          begins a case
  --- also NAME          begins one with the sections of the last "case", except for those that it has itself
  --- pipe               the pipe file, main.pipe; "--- file NAME" is another one beside it
  --- config FILE        builds with this configuration file; "--- noconfig FILE" in that form, switched off
  --- stdin              the standard input
  --- stdout, stderr     what is printed, to the letter; nothing when the section is missing
  --- printed            in the place of stdout: what is printed once the pipeline is built
  --- built              the framework's settings and what the pipeline holds afterwards, unless missing
  --- left NAME          what stands in this file when the pipeline is gone
  --- answers 1 1 0      of building, initializing, and each run; a step that is not listed is not made. "again=1" is
                         of initializing once more. "error" behind them: the framework has seen one

"(N times) TEXT" stands for N lines, "(these K lines N times)" repeats the K lines before it, and <n> is then the
number from 0 on. <N*TEXT> stands for N texts in a row, <cr>, <tab> and <zero> for these characters, <end> for the
missing newline of a last line, <loader> for what the platform's loader says. plugins/ holds the test plugins; probe.cpp
and plugin.cpp tell of the elements that send and take what a case needs. A case's files are not to be called how, in,
out, err, built, answers or status. FWLIB_WRAPPER is a command that HOST is run by, such as a checker of memory.
"""
import difflib
import os
import re
import shlex
import subprocess
import sys
import tempfile
from pathlib import Path

MARKS = {"cr": "\r", "tab": "\t", "zero": "\0"}
BYTES = {"encoding": "latin-1", "newline": ""}  # every byte is a character


def numbered(count, text):
    return "".join(text.replace("<n>", str(n)) for n in range(count))


def expand(line, section):
    """Adds what a line stands for."""
    rows = re.fullmatch(r"\(these (\d+) lines (\d+) times\)", line)
    if rows:
        repeated = section[-int(rows[1]) :]
        section[-int(rows[1]) :] = [numbered(int(rows[2]), "".join(repeated))]
        return
    line = re.sub(r"<(\d+)\*([^>]*)>", lambda m: m[2] * int(m[1]), line)
    line = re.sub(r"<(cr|tab|zero)>", lambda m: MARKS[m[1]], line)
    times = re.match(r"\((\d+) times\) ", line)
    if times:
        section.append(numbered(int(times[1]), line[times.end() :] + "\n"))
    else:
        section.append(line[: -len("<end>")] if line.endswith("<end>") else line + "\n")


def load(path):
    """The cases of a file: name and sections."""
    cases, shared, section = [], {}, []
    with open(path, **BYTES) as file:
        lines = file.read().split("\n")[:-1]
    for line in lines:
        head = re.fullmatch(r"--- (case|also|answers)? ?(.*)", line)
        if head and head[1] in ("case", "also"):
            cases.append((head[2], dict(shared) if head[1] == "also" else {}))
            shared = shared if head[1] == "also" else cases[-1][1]
        elif head and head[1]:
            cases[-1][1]["answers"] = [head[2]]
        elif head:
            section = cases[-1][1][head[2]] = []
        elif cases:
            expand(line, section)
    return [(name, {head: "".join(text) for head, text in sections.items()}) for name, sections in cases]


def prepare(folder, sections, plugins):
    folder.mkdir()
    (folder / "plugins").symlink_to(plugins)
    files = {head[5:]: text for head, text in sections.items() if head.startswith("file ")}
    form = [head for head in sections if re.match("(no)?config ", head)] or ["plain -"]
    files["how"] = f"{form[0]} {'printed' if 'printed' in sections else 'all'} {sections['answers']}\n"
    files["main.pipe"], files["in"] = sections.get("pipe", ""), sections.get("stdin", "")
    for name, text in files.items():
        with open(folder / name, "w", **BYTES) as file:
            file.write(text)


def found(folder, name):
    path = folder / name
    return open(path, **BYTES).read() if path.exists() else ""


def differences(folder, sections):
    """What is not as the case says."""
    wanted = {"out": sections.get("printed", sections.get("stdout", "")), "err": sections.get("stderr", ""), "status": "0"}
    wanted["answers"] = sections["answers"]
    wanted.update({head.removeprefix("left "): sections[head] for head in sections if head == "built" or head.startswith("left ")})
    for name, text in wanted.items():
        real = found(folder, name)
        at = text.find("<loader>")
        if 0 <= at < len(real):
            end = real.find("\n", at)
            real = real[:at] + "<loader>" + real[end:]
        if real != text:
            yield from difflib.unified_diff(text.split("\n"), real.split("\n"), f"{name} wanted", f"{name} found", lineterm="")


def main():
    host, plugins = (Path(argument).resolve() for argument in sys.argv[1:3])
    failed = total = 0
    with tempfile.TemporaryDirectory() as scratch:
        cases = [(Path(path).stem, *case) for path in sys.argv[3:] for case in load(path)]
        folders = [Path(scratch) / str(number) for number in range(len(cases))]
        for folder, (_, _, sections) in zip(folders, cases):
            prepare(folder, sections, plugins)
        subprocess.run([*shlex.split(os.environ.get("FWLIB_WRAPPER", "")), host, *folders], check=True)
        for folder, (file, name, sections) in zip(folders, cases):
            lines = list(differences(folder, sections))
            total, failed = total + 1, failed + bool(lines)
            print("\n".join([f"{file}: {name}: {'FAILED' if lines else 'ok'}", *lines]))
    print(f"{total - failed} passed, {failed} failed")
    return 1 if failed or not total else 0


if __name__ == "__main__":
    sys.exit(main())
