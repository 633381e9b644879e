#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Usage: generate.py FWPIPE BUILDS PLUGINS [NUMBER [SEED]]

Makes NUMBER pipe files from the grammar of the language, half of them with one mistake, and compares what "fwpipe check
--load" reports with what the library does with them:
- a file without an error builds, initializes and finds its sink element, unless two elements use one file;
- a file that builds, initializes and finds a sink element that can originate objects has no error, except unknown-element
  at a source line, or at the sink line of a nested file.
"""
import collections
import json
import os
import random
import subprocess
import sys
import tempfile

fwpipe, builds, plugins = (os.path.abspath(p) for p in sys.argv[1:4])
number = int(sys.argv[4]) if len(sys.argv) > 4 else 500
seed = int(sys.argv[5]) if len(sys.argv) > 5 else random.randrange(1 << 32)
choose = random.Random(seed)

# type: sink pads, source pads (or the property that sets them and its default), other properties
LIBRARY = {"ESource": (0, ("TotalSourcePads", 1), {}), "ETee": (1, ("TotalSourcePads", 2), {}),
           "EPassthrough": (1, 1, {}), "ESink": (1, 0, {}), "EDevNull": (1, 0, {}),
           "ESerialize": (1, ("Passthrough", 0), {"Filename": "%s.rec", "Strict": "1"}),
           "EDeserialize": (0, 1, {"Filename": "in.rec"})}
CSV = {"ERate": (1, 1, {"Every": "5"}), "EFilter": (1, 1, {"Key": "Count", "Minimum": "-2.5"})}
DIRECT = {"EFilter": (1, 1, {"Key": "Count"})}  # a plugin without descriptions
BARE = {"EBare": (0, 1, {"Width": "3"})}  # a type that its plugin does not describe
PLUGINS = [("libcsv.so", CSV), ("filter.so", DIRECT), ("described.so", BARE)]
PRODUCERS = {"ESource", "EDeserialize", "EBare", "?"}  # EBare does not name its type
WORDS = ["plugin", "fwprop", "pipe", "element", "property", "sink", "source", "connect", "config"]


def nested_file(name, depth):
    """Writes a file to be nested. Returns its sink and source pads and whether it originates objects."""
    lines, made = pipeline(name, depth, choose.sample(PLUGINS, choose.randrange(2)))
    first, last = choose.choice(made), choose.choice(made)
    sinks = sources = 0
    if choose.random() < 0.8:
        lines.append("sink " + first[0])
        sinks = first[1]
    if choose.random() < 0.8:
        lines.append("source " + last[0])
        sources = last[2]
    write(name, lines)
    return sinks, sources, first[3] and sinks == first[1]


def pipeline(name, depth, chosen):
    """The lines up to the connections, and of each element its name, pads, and whether it originates objects."""
    types, lines, made = dict(LIBRARY), ["plugin libfwlib.so"], []
    for plugin, more in chosen:
        lines.append("plugin " + plugin)
        types.update({key: value for key, value in more.items() if key not in types})
    for index in range(choose.randint(1, 7)):
        label = "e%d" % index
        if depth < 2 and choose.random() < 0.12:
            path = "%s-%d.pipe" % (name[:-5], index)
            sinks, sources, originates = nested_file(path, depth + 1)
            lines.append("pipe " + path)
        else:
            kind = choose.choice(sorted(types))
            sinks, sources, settings = types[kind]
            originates = kind in PRODUCERS
            lines.append("element " + kind)
            for key, value in settings.items():
                if kind in ("EFilter", "EBare") or choose.random() < 0.5:
                    lines.append("property %s %s" % (key, value.replace("%s", name + label)))  # one element for each file
            if isinstance(sources, tuple):
                key, sources = sources
                if choose.random() < 0.5:
                    sources = choose.choice([0, 1, 2, 3, 70])
                    lines.append("property %s %d" % (key, sources))
        if choose.random() < 0.1:
            lines.append(choose.choice(["property Debug 0", "config some.cfg Standard", "# a comment", "", "\tfwprop Debug 0",
                                        "property Color red", "config some.cfg Other"]))
        lines.append("property Name " + label)
        made.append((label, sinks, sources, originates))
    for label, _, sources, _ in made:
        for pad in range(min(sources, 3)):
            to = choose.choice(made)
            if to[1] and choose.random() < 0.8:
                lines.append("connect %s %d %s %d" % (label, pad, to[0], choose.randrange(to[1])))
    return lines, made


def spoil(lines):
    """One mistake, which may be none."""
    at = choose.choice([n for n, line in enumerate(lines) if "Filename" not in line])  # no file is made that others name
    tokens = lines[at].split() or ["x"]
    word = choose.randrange(len(tokens))
    kind = choose.randrange(12)
    if kind == 0:
        del lines[at]
    elif kind == 1:
        lines.insert(choose.randrange(len(lines)), lines[at])
    elif kind == 2:
        other = choose.randrange(len(lines))
        lines[at], lines[other] = lines[other], lines[at]
    elif kind == 3:
        del tokens[word]
    elif kind == 4:
        tokens.insert(word, choose.choice(["x", "0", "7", "connect"]))
    elif kind == 5:
        cut = choose.randrange(len(tokens[word]))
        tokens[word] = tokens[word][:cut] + tokens[word][cut + 1:]
    elif kind == 6:
        tokens[word] = choose.choice(["e0", "e9", "0", "1", "9", "-1", "65536", "100000", "x", "2x", "1.5", "absent.so", "0x2"])
    elif kind == 7:
        tokens += ["t%d" % n for n in range(14)]
    elif kind == 8:
        lines.insert(at, choose.choice(WORDS) + " " + " ".join(choose.choice(["e0", "1", "absent", "."]) for _ in range(
            choose.randrange(6))))
    elif kind == 9:
        lines.insert(at, "#" + "c" * choose.choice([253, 254, 255, 300]))
    elif kind == 10:
        lines[0] = choose.choice(["\ufeff", "\ufeff ", "\0"]) + lines[0]
    else:
        lines.insert(at, choose.choice(["sink e0", "source e0", "property TotalSourcePads 65521", "property Every 0",
                                        "property TotalSourcePads -1", "property Minimum x", "plugin some.cfg",
                                        "pipe %s", "config some.cfg Absent", "property Name e0", "property Name e1"]))
    if 3 <= kind <= 7:
        lines[at] = " ".join(tokens)


def write(name, lines):
    end = choose.choice(["\n", "\n", "\r\n"])
    with open(name, "w", encoding="utf-8", newline="") as file:
        file.write(end.join(line.replace("%s", name) for line in lines) + choose.choice(["", end]))


def make(name, spoilt):
    lines, made = pipeline(name, 0, choose.sample(PLUGINS, choose.randrange(3)))
    producers = [label for label, _, _, originates in made if originates]
    lines.append("sink " + choose.choice(producers or [made[0][0]]))
    if spoilt:
        spoil(lines)
    write(name, lines)


def allowed(name, diagnosis):
    with open(diagnosis["file"], "rb") as file:
        words = file.read().split(b"\n")[diagnosis["line"] - 1].split()
    return diagnosis["id"] == "unknown-element" and (words[0] == b"source" or words[0] == b"sink" and
                                                     diagnosis["file"] != name)


def main():
    names = ["p%d.pipe" % n for n in range(number)]
    for index, name in enumerate(names):
        make(name, index % 2)
    environment = dict(os.environ, FWLIB_PLUGIN_PATH=plugins)
    done = subprocess.run([builds], input="\n".join(names) + "\n", text=True, stdout=subprocess.PIPE, env=environment,
                          check=True)
    results = {line.split()[0]: line.split()[1:] for line in done.stdout.splitlines()}
    errors, shared = collections.defaultdict(list), set()
    for begin in range(0, number, 500):
        done = subprocess.run([fwpipe, "check", "--load", "--json", *names[begin:begin + 500]], text=True,
                              stdout=subprocess.PIPE, env=environment, check=False)
        for diagnosis in json.loads(done.stdout):
            name = diagnosis["file"].split(".")[0].split("-")[0] + ".pipe"
            if diagnosis["severity"] == "error":
                errors[name].append(diagnosis)
            elif diagnosis["id"] == "shared-file":
                shared.add(name)
    wrong, good = 0, 0
    for name in names:
        built, initialized, sink = results[name]
        good += not errors[name]
        strange = [e for e in errors[name] if not allowed(name, e)]
        if (not errors[name] and sink == "-" and name not in shared) or (sink in PRODUCERS and strange):
            wrong += 1
            if wrong < 6:
                print("%s: built %s, initialized %s, sink element %s; errors: %s" % (name, built, initialized, sink, errors[name]))
                with open(name, encoding="utf-8") as file:
                    print(file.read())
    found = collections.Counter(e["id"] for es in errors.values() for e in es)
    print("seed %d: %d pipes, %d without errors, %d disagreements; errors: %s" %
          (seed, number, good, wrong, ", ".join("%s %d" % pair for pair in found.most_common())))
    return wrong != 0 or good in (0, number)


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    with open("some.cfg", "w", encoding="utf-8") as config:
        config.write("[Standard]\nDebug=0\n[Other]\nValue=1\n")
    with open("in.rec", "w", encoding="utf-8") as recording:
        recording.write("")
    sys.exit(main())
