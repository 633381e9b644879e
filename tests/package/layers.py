#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Usage: layers.py ROOT

Includes in source/fwlib go only to the same folder and to the lines below it in the drawing of docs/architecture.md, but
for those that it lists. Public headers include public headers only, as does the tool; what is in internal/ is used by
more than one folder.
"""
import os
import re
import sys

os.chdir(sys.argv[1])
with open("docs/architecture.md", encoding="utf-8") as file:
    text = file.read()
drawing = re.search(r"```\n(fwlib\.h .*?)```", text, re.S).group(1)
layers = [re.split(r", ", re.split(r"  +", line)[0]) for line in drawing.splitlines()]
allowed = set(re.findall(r"^- `(\S+)` includes `(\S+)`", text, re.M))
with open("CMakeLists.txt", encoding="utf-8") as file:
    public = {name for name in re.findall(r"^  source/fwlib/(\S+\.h)", file.read(), re.M)}
faults = []


def layer(path):
    """The line of the drawing, from the top: that of the file if there is one, else of its folder."""
    for names in (path, re.sub(r"\.\w+$", ".*", path)), (os.path.dirname(path).split("/")[0],):
        for number, row in enumerate(layers):
            if any(name in row for name in names):
                return number
    faults.append(f"{path} is not in the drawing")
    return -1


def includes(path):
    with open(path, encoding="utf-8") as source:
        return re.findall(r'^#include ["<]fwlib/([^">]+)', source.read(), re.M)


users, used = {}, set()
for folder, _, names in os.walk("source/fwlib"):
    for name in (n for n in names if n.endswith((".h", ".cpp"))):
        path = os.path.relpath(os.path.join(folder, name), "source/fwlib")
        own = os.path.dirname(path)
        for other in includes(os.path.join(folder, name)):
            users.setdefault(other, set()).add(own)
            if (path, other) in allowed:
                used.add((path, other))
            elif layer(other) <= layer(path) and os.path.dirname(other) != own:
                faults.append(f"{path} includes {other}, which is not below it")
            if path in public and other not in public:
                faults.append(f"{path} is public and includes {other}")
for folder, _, names in os.walk("tools/fwpipe"):
    faults += [f"{folder}/{name} includes {other}" for name in names for other in includes(f"{folder}/{name}")
               if other not in public]
faults += [f"{path} serves one folder only" for path, by in users.items()
           if path.startswith("internal/") and len(by) < 2]
faults += [f"{path} includes {other} no more" for path, other in allowed - used]
print("\n".join(sorted(set(faults))))
sys.exit(bool(faults) or not users)
