# SPDX-License-Identifier: MIT
"""Lists of what the tests need not find: a reason, and below it an indented line for each case."""
import sys


def listed(path):
    """(entry, reason) of each line; the program ends at a line without a reason."""
    entries, reason = [], ""
    lines = path.read_text().splitlines()
    for number, line in enumerate(lines, 1):
        if line.startswith("  "):
            if not reason:
                sys.exit(f"{path.name}:{number}: no reason above")
            entries.append((line.strip(), reason))
        elif not line or line.startswith("#"):
            reason = ""
        else:
            reason = f"{reason} {line}".strip() if number > 1 and not lines[number - 2].startswith("  ") else line
    return entries
