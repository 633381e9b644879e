# SPDX-License-Identifier: MIT
"""C++ source text as tokens, functions and statements: as much as the tools need, for code in the layout of clang-format."""
import re
from bisect import bisect_right
from dataclasses import dataclass

_TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|R"\(.*?\)"|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*|\bstatic_assert\b.*?;
                |\b(?:__attribute__|__builtin_cpu_supports)\b.*?\)+|\bFWLIB_PRINTF\([^)]*\))
      | (?P<text>"(?:\\.|[^"\\\n])*")
      | (?P<character>'(?:\\.|[^'\\\n])+')
      | (?P<number>\b(?:0[xX][0-9A-Fa-f']+|[0-9][0-9']*)[uUlL]*\b)
      | (?P<word>\b[A-Za-z_]\w*\b)
      | (?P<operator>->|\+\+|--|<<=|>>=|[-+*/%&|^=!<>]=|&&|\|\||<<|>>|::|[-+*/%&|^!<>=~?:;,.(){}\[\]])""",
    re.X | re.S | re.M,
)
_CONTROL = ("if", "for", "while", "switch", "do", "try", "else", "catch", "{")


@dataclass(frozen=True)
class Token:
    kind: str
    begin: int
    end: int
    word: str


@dataclass(frozen=True)
class Region:
    """A function, a table or another declaration: its whole text."""

    name: str
    begin: int
    end: int


@dataclass(frozen=True)
class Statement:
    begin: int
    end: int
    simple: bool  # it ends with a semicolon and contains no block
    first: str  # its first word


def tokens_of(text):
    """All tokens; those of kind "skip" are comments, directives and other text without faults."""
    return [Token(m.lastgroup, m.start(), m.end(), m.group()) for m in _TOKEN.finditer(text) if m.group()]


def _called(head):
    """The position in a declaration of the name before its parameters, or -1."""
    for at, token in enumerate(head[:-1]):
        if token.kind == "word" and head[at + 1].word == "(" and head[at + 1].begin == token.end:
            return at
    return -1


def _name(head):
    """The name that a declaration declares, qualified as in the text."""
    words = [token.word for token in head]
    at = _called(head)
    stop = next((i for i, word in enumerate(words) if word in ("=", "[", "{", ";")), len(words))
    if at < 0 or at > stop:
        at = next((i for i in range(stop - 1, -1, -1) if head[i].kind == "word"), -1)
    if at < 0:
        return ""
    name = words[at]
    if at > 0 and words[at - 1] == "~":
        name, at = "~" + name, at - 1
    while at > 1 and words[at - 1] == "::" and head[at - 2].kind == "word":
        name, at = words[at - 2] + "::" + name, at - 2
    return name


class _Reader:
    """Reads the tokens outside of functions."""

    def __init__(self, text):
        self.tokens = [token for token in tokens_of(text) if token.kind != "skip"]
        self.found = []
        self.scopes = []  # names of classes, "" for namespaces

    def closing(self, at):
        """The position of the bracket that closes the one at this position."""
        depth = 0
        while at < len(self.tokens):
            word = self.tokens[at].word
            depth += (word in ("(", "{", "[")) - (word in (")", "}", "]"))
            if depth == 0:
                return at
            at += 1
        return len(self.tokens) - 1

    def read(self):
        at = start = 0
        while at < len(self.tokens):
            word = self.tokens[at].word
            if word == "}" and self.scopes:
                self.scopes.pop()
                start = at + 1
            elif word == "{":
                at, start = self._open(start, at)
            elif word in ("(", "["):
                at = self.closing(at)
            elif word == ";":
                self._add(start, at)
                start = at + 1
            elif word == ":" and at > 0 and self.tokens[at - 1].word in ("public", "private", "protected"):
                start = at + 1
            at += 1
        return self.found

    def _add(self, start, end):
        if start >= end:
            return
        name = "::".join([scope for scope in self.scopes if scope] + [_name(self.tokens[start : end + 1])])
        self.found.append(Region(name, self.tokens[start].begin, self.tokens[end].end))

    def _open(self, start, at):
        """Where to continue after the brace at this position, and where the next declaration begins."""
        head = self.tokens[start:at]
        words = [token.word for token in head]
        if "namespace" in words or words[:1] == ["extern"]:
            self.scopes.append("")
            return at, at + 1
        if _called(head) < 0 and "=" not in words and {"class", "struct", "union"} & set(words):
            stop = words.index(":") if ":" in words else len(words)
            named = [token.word for token in head[:stop] if token.kind == "word" and token.word != "final"]
            self.scopes.append(named[-1])
            return at, at + 1
        end = self.closing(at)
        before = self.tokens[at - 1]
        if "=" in words or "enum" in words or (before.kind == "word" and before.end == self.tokens[at].begin):
            return end, start  # a value or the start of an entry; the declaration continues
        self._add(start, end)
        return end, end + 1


class Functions:
    """The function, table or declaration that contains a position in a text."""

    def __init__(self, text):
        self.regions = sorted(_Reader(text).read(), key=lambda region: region.begin)
        self.begins = [region.begin for region in self.regions]

    def at(self, place):
        found = bisect_right(self.begins, place) - 1
        region = self.regions[found] if found >= 0 else None
        return region if region and place < region.end else Region("", place, place)


def blocks_of(text):
    """The statements of each block, also of lambdas, in their order."""
    tokens = [token for token in tokens_of(text) if token.kind != "skip"]
    blocks, pending = [], [[[], None, 0, False]]  # statements, position of the first token, open brackets, contains a block
    for at, token in enumerate(tokens):
        block = pending[-1]
        if token.word == "}" and len(pending) > 1:
            blocks.append(pending.pop()[0])
            block = pending[-1]
            following = tokens[at + 1].word if at + 1 < len(tokens) else ""
            first = tokens[block[1]]
            if block[2] == 0 and first.word in _CONTROL and following not in ("else", "catch", "while"):
                block[0].append(Statement(first.begin, token.end, False, first.word))
                block[1], block[3] = None, False
            continue
        if block[1] is None:
            block[1], block[3] = at, False
        block[2] += (token.word in ("(", "[")) - (token.word in (")", "]"))
        if token.word == "{":
            block[3] = True
            pending.append([[], None, 0, False])
        elif token.word == ";" and block[2] == 0:
            first = tokens[block[1]]
            block[0].append(Statement(first.begin, token.end, not block[3], first.word))
            block[1] = None
    return blocks
