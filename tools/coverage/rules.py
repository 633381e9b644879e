# SPDX-License-Identifier: MIT
"""Branches that no source text decides: the compiler adds them."""
from bisect import bisect_right

from functions import tokens_of

_DECIDING = {"if", "for", "while", "switch", "case", "default", "catch", "?", "&&", "||"}
_BEFORE_VALUES = {"=", ",", "(", "{", "return"}  # a brace behind one of these opens a list of values, not a block


class Statements:
    """The words of the statements of a text, by line."""

    def __init__(self, text):
        self.lines = [[] for _ in range(text.count("\n") + 2)]
        starts = [0] + [at + 1 for at, character in enumerate(text) if character == "\n"]
        brackets, statement, before = [], [], None
        for token in tokens_of(text):
            if token.kind == "skip":
                continue
            statement.append(token)
            block = False
            if token.word in ("(", "[", "{"):
                values = before and (before.word in _BEFORE_VALUES or (before.kind == "word" and before.end == token.begin))
                block = token.word == "{" and not values
                brackets.append(block)
            elif token.word in (")", "]", "}") and brackets:
                block = brackets.pop()
            if block or (token.word == ";" and (not brackets or brackets[-1])):
                self._add(statement, starts)
                statement = []
            before = token
        self._add(statement, starts)

    def _add(self, tokens, starts):
        words = [token.word for token in tokens]
        for line in {bisect_right(starts, token.begin) for token in tokens}:
            self.lines[line] += words

    def untaken(self, line, counts):
        """(branches of a line that its text decides, how many of these nothing takes); counts: how often each was taken."""
        if not _DECIDING & set(self.lines[line]):
            return 0, 0  # new, delete, dynamic_cast, the lock of a static variable, clean-up after an exception
        reached = len(counts)
        while reached > 0 and counts[reached - 1] == 0:
            reached -= 1
        if reached > 0:
            # Behind the others, in pairs: clean-up after an exception, and conditions that the one before them excludes.
            counts = counts[: len(counts) - (len(counts) - reached) // 2 * 2]
        return len(counts), counts.count(0)
