#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the manual pages of the commands in scdoc's form: pages.py COMMANDS OUT.

COMMANDS is docs/commands.md, which a test compares with the help of fwpipe, so the pages have the same options.
"""
import re
import sys
import textwrap
from pathlib import Path

STATUS = """
*0*
	success
*1*
	a step failed; standard error has the reason
*2*
	wrong usage
*3*
	a recording is damaged after complete objects
*128 + N*
	ended by signal N
"""
ENVIRONMENT = """
*NO_COLOR*
	*fwpipe check* uses no colours if this is set.
*LD_LIBRARY_PATH*
	Where plugins without a slash in their names are searched first.
"""


def escape(text):
    return re.sub(r"([\\*_#~<>\[\]`.])", r"\\\1", text)


def entries(lines):
    """Options, positionals or subcommands: name and text, which may begin in the next line."""
    found = []
    for line in lines:
        if re.match(r"  \S", line):
            parts = re.split(r"  +", line.strip(), maxsplit=1)
            found.append([parts[0], parts[1] if len(parts) == 2 else ""])
        elif line.strip():
            found[-1][1] += " " + line.strip()
    return found


def listed(lines):
    return "".join(f"*{escape(name)}*\n\t{escape(text.strip())}\n\n" for name, text in entries(lines))


def literal(lines):
    return "```\n" + textwrap.dedent("\n".join(lines)) + "\n```\n"


def blocks(text):
    """The paragraphs of a help text that have headings, the text before them, and the rest."""
    about, sections, rest, current = [], {}, [], None
    for line in text.split("\n"):
        head = re.fullmatch(r"(Positionals|Options|Subcommands|Examples|Exit status):", line)
        if head:
            current = sections.setdefault(head[1], [])
        elif line.startswith("Usage: "):
            sections["Usage"] = [line.removeprefix("Usage: ")]
        elif current is not None and (line.startswith("  ") or not line):
            current.append(line)
        elif "Usage" in sections:
            current = None
            rest.append(line)
        else:
            about.append(line)
    return " ".join(about).strip(), {head: "\n".join(lines).rstrip().split("\n") for head, lines in sections.items()}, rest


def page(name, text, verbs):
    about, sections, rest = blocks(text)
    summary = about[0].lower() + about[1:] if name != "fwpipe" else "runs, checks, draws and tests pipe files"
    parts = [f"{name}(1)\n\n# NAME\n\n{name} - {summary.rstrip('.')}\n", f"# SYNOPSIS\n\n*{escape(sections['Usage'][0])}*\n"]
    description = f"{escape(about.rstrip('.'))}.\n"
    if any(rest):
        description += "\n" + literal("\n".join(rest).strip("\n").split("\n"))
    parts.append(f"# DESCRIPTION\n\n{description}")
    for head, title in (("Positionals", "ARGUMENTS"), ("Options", "OPTIONS"), ("Subcommands", "COMMANDS")):
        if head in sections:
            parts.append(f"# {title}\n\n{listed(sections[head])}")
    if name == "fwpipe":
        parts.append("Each command has a page of its own, such as *fwpipe-run*(1).\n")
    if "Examples" in sections:
        parts.append(f"# EXAMPLES\n\n{literal(sections['Examples'])}")
    parts.append("# EXIT STATUS\n\n" + (literal(sections["Exit status"]) if "Exit status" in sections else STATUS.lstrip()))
    if name == "fwpipe":
        parts.append("# ENVIRONMENT\n\n" + ENVIRONMENT.lstrip())
    also = [other for other in verbs if other != name] if name == "fwpipe" else ["fwpipe"]
    parts.append("# SEE ALSO\n\n" + ", ".join([f"*{other}*(1)" for other in also] + ["*fwpipe-pipe*(5)", "*fwpipe-recording*(5)"]) + "\n")
    return "\n".join(parts)


def main():
    commands, out = Path(sys.argv[1]), Path(sys.argv[2])
    out.mkdir(parents=True, exist_ok=True)
    found = re.findall(r"(?:^## ([a-z ]+)\n\n)?^```\n(.*?)\n```$", commands.read_text(), re.M | re.S)
    texts = {"-".join(["fwpipe", *verb.split()]): text for verb, text in found}
    for name, text in texts.items():
        (out / f"{name}.1.scd").write_text(page(name, text, list(texts)))


if __name__ == "__main__":
    main()
