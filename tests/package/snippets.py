#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Usage: snippets.py DOCUMENT STAGE WORK COMPILER [FLAG...]

Does what a document says, with the installed tree. A block of code whose paragraph above ends with a file's name in
backquotes and a colon is that file; blocks of one file are joined. A block of commands (sh) is run in the folder of the
files. A block without a language, or a drawing, that is no file is what the commands above it print. Other C++ blocks are compiled as
declarations, as members of an element, or as statements in one of its functions.
"""
import os
import re
import shutil
import subprocess
import sys

document, stage, work, compiler = (os.path.abspath(p) if os.path.exists(p) or n < 3 else p
                                   for n, p in enumerate(sys.argv[1:5]))
flags = sys.argv[5:]
shutil.rmtree(work, ignore_errors=True)
os.makedirs(work + "/bin")
os.chdir(work)
with open("bin/c++", "w", encoding="utf-8") as file:
    file.write('#!/bin/sh\nexec "%s" %s -Wall -Wextra -Werror "$@"\n' % (compiler, " ".join(flags)))
os.chmod("bin/c++", 0o755)
library = next(folder for folder, _, names in os.walk(stage) if "libfwlib.so" in names)
environment = dict(os.environ, PATH=f"{work}/bin:{stage}/bin:{os.environ['PATH']}", CXX=work + "/bin/c++",
                   PKG_CONFIG_PATH=library + "/pkgconfig", CMAKE_PREFIX_PATH=stage, LD_LIBRARY_PATH=library)
HEADERS = """#include <cstdio>
#include <fwlib/fwlib.h>
#include <fwlib/testing/harness.h>
#include <vector>
using namespace VESK;
"""
FORMS = ("%s", "struct EExample : Element<EExample> {\n%s\n};",
         "struct EExample : Element<EExample> { static void Declare(Declaration<EExample>&);\n%s\n};",
         "struct EExample : EObject { void Around(QObject& cObject, FRAMEWORK& cFramework, "
         "EPipeline& cPipeline) {\n%s\n}};")


def fail(line, text):
    sys.exit(f"{document}:{line}: {text}")


def compiles(code):
    """The compiler's errors for each form of a fragment; none when one of them compiles."""
    errors = []
    for form in FORMS:
        text = HEADERS + form % code
        done = subprocess.run(["bin/c++", "-std=c++17", "-fsyntax-only", "-Wno-unused", "-Wno-unused-parameter", "-I",
                               stage + "/include", "-x", "c++", "-"], input=text, text=True, capture_output=True)
        if not done.returncode:
            return []
        errors.append(done.stderr)
    return errors


def blocks(text):
    """Of each block of code: its line number, the last line of text before it, its language, its lines."""
    above, block = "", None
    for number, line in enumerate(text.splitlines(True), 1):
        if line.startswith("```"):
            if block:
                yield block
            block = None if block else (number + 1, above, line[3:].strip(), [])
            above = ""
        elif block:
            block[3].append(line)
        elif line.strip():
            above = line


with open(document, encoding="utf-8") as file:
    text = file.read()
printed, files = None, set()
for line, above, language, lines in blocks(text):
    code = "".join(lines)
    name = re.search(r"`([\w./-]+\.\w+)`:$", above)
    if name:
        os.makedirs(os.path.dirname(name[1]) or ".", exist_ok=True)
        with open(name[1], "a" if name[1] in files else "w", encoding="utf-8") as file:
            file.write(code)
        files.add(name[1])
    elif language == "sh":
        done = subprocess.run(["bash", "-e", "-c", code], env=environment, text=True, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        printed = done.stdout
        if done.returncode:
            fail(line, f"exit status {done.returncode}\n{printed}")
    elif language == "cpp":
        errors = compiles(code)
        if errors:
            fail(line, "does not compile in any form\n" + "\n".join(errors))
    elif language in ("", "mermaid") and printed is not None:
        if code != printed:
            fail(line, f"the commands print\n{printed}instead of\n{code}")
        printed = None
if not files:
    fail(1, "no files")
