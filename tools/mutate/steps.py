# SPDX-License-Identifier: MIT
"""Faults of order: the steps of a program are the same, but one is too early, in the other direction, or missing."""
import re

from functions import Functions, blocks_of, tokens_of

_ENDS = {"return", "break", "continue", "goto", "throw"}
_NO_STEPS = _ENDS | {"using", "typedef", "case", "default", "public", "private", "protected", "extern", "namespace",
                     "class", "struct", "enum", "template", "friend", "static_assert"}  # fmt: skip
_NO_CALLS = {"if", "for", "while", "switch", "sizeof", "static_cast", "reinterpret_cast", "const_cast", "return", "catch"}
_RESET = re.compile(
    r"(?:[\w.:>-]*(?:reset|clear|close|flush|sync|restart|forget|release|free|unlink\w*)\w*\(.*\)|delete(?:\[\])? .*"
    r"|[\w.>-]+ = [\w.>= -]*?\b(?:nullptr|0|false|Unknown|-1))\s*;$",
    re.I | re.S,
)
_SETTING = re.compile(r"\b(?:GetProperty|GetPropertyLength|ReadConfig|getenv|fcntl|sigaction)\(")
_LOOP = re.compile(r"for \((?P<type>[\w:]+) (?P<name>\w+) = 0; (?P=name) < (?P<end>[^;]+); \+\+(?P=name)\) \{")
_ENDS_LIFE = re.compile(r"\bdelete\b|free\(|[Cc]lose\(|~\w+\(")
_DECLARED = re.compile(r"(?:(?:const|static|auto|constexpr) )*[\w:<>, ]*[\w>][&* ]+(?:const )?(\w+)(?: =|[({\[;])")
_GUARD = re.compile(r"const [A-Za-z_][\w:<>]* (\w+)(?:\(.*\))?;$", re.S)


class _Step:
    """The names that a statement uses, changes and calls."""

    def __init__(self, text, statement):
        self.statement = statement
        self.text = text[statement.begin : statement.end]
        self.tokens = [token for token in tokens_of(self.text) if token.kind != "skip"]
        self.words = {token.word for token in self.tokens if token.kind == "word"}
        declared = _DECLARED.match(self.text) if statement.simple else None
        self.declares = declared[1] if declared and statement.first not in ("delete", "return") else ""
        self.calls, self.changes = [], {self.declares} - {""}
        for token, following in zip(self.tokens, self.tokens[1:]):
            if token.kind != "word":
                continue
            if following.word == "(" and token.word not in _NO_CALLS:
                self.calls.append(token.word)
            if re.fullmatch(r"[-+*/%&|^]?=|<<=|>>=|\+\+|--", following.word):
                self.changes.add(token.word)
        for token, following in zip(self.tokens, self.tokens[1:]):
            if token.word in ("++", "--", "&", "delete") and following.kind == "word":
                self.changes.add(following.word)

    @property
    def head(self):
        """The word that names the step."""
        if self.declares:
            return self.declares
        changed = [token.word for token in self.tokens if token.word in self.changes]
        return (self.calls or changed or [self.statement.first])[0]

    def swaps_with(self, following):
        """Whether the two compile in the other order, and the order may matter."""
        if self.declares and self.declares in following.words:
            return False
        shared = (self.changes & following.words) | (following.changes & self.words)
        outside = re.compile(r"m_|errno$")
        return bool(
            shared
            or (self.calls and following.calls)
            or (self.calls and any(outside.match(word) for word in following.changes))
            or (following.calls and any(outside.match(word) for word in self.changes))
        )


def _is_step(statement, text):
    if statement.first in _NO_STEPS:
        return False
    return statement.simple or not _ENDS & set(re.findall(r"\w+", text[statement.begin : statement.end]))


def _orders(text, block):
    """Two neighbours exchanged."""
    for one, other in zip(block, block[1:]):
        if not _is_step(one, text) or not _is_step(other, text):
            continue
        first, second = _Step(text, one), _Step(text, other)
        if first.swaps_with(second):
            between = text[one.end : other.begin]
            kind = "setting" if _SETTING.search(second.text) and not _SETTING.search(first.text) else "order"
            yield (kind, one.begin, other.end, second.text + between + first.text,
                   f"{second.head} before {first.head}")  # fmt: skip


def _early_settings(text, block):
    """A setting that is read at the start of the block that reads it."""
    for at, statement in enumerate(block[2:], 2):
        if statement.simple and _is_step(statement, text) and _SETTING.search(text[statement.begin : statement.end]):
            step, begin = _Step(text, statement), block[0].begin
            moved = step.text + "\n" + text[begin : statement.begin].rstrip()
            declared = {_Step(text, before).declares for before in block[:at]} - {""}
            if not declared & step.words and _is_step(block[0], text):
                yield "setting", begin, statement.end, moved, f"{step.head} at the begin"


def _dropped(text, block, at):
    statement = block[at]
    own = text[statement.begin : statement.end]
    if not statement.simple or statement.first in _NO_STEPS:
        return
    guard = _GUARD.match(own)
    rest = text[statement.end : block[-1].end]
    if guard and not re.search(rf"\b{guard[1]}\b", rest):
        yield "guard", statement.begin, statement.end, ";", f"without {guard[1]}"
    elif not _Step(text, statement).declares:
        kind = "reset" if _RESET.match(own) else "statement"
        yield kind, statement.begin, statement.end, ";", f"without {_Step(text, statement).head}"


def steps_of(text):
    """(kind, begin, end, replacement, description) of all such faults."""
    functions = Functions(text)
    for block in blocks_of(text):
        if not block or functions.at(block[0].begin).begin == block[0].begin:
            continue  # declarations
        yield from _orders(text, block)
        yield from _early_settings(text, block)
        for at, statement in enumerate(block):
            yield from _dropped(text, block, at)
            loop = _LOOP.match(text, statement.begin)
            if loop and statement.first == "for" and _ENDS_LIFE.search(text[loop.end() : statement.end]):
                name = loop["name"]
                head = f"for ({loop['type']} {name} = {loop['end']}; {name}-- > 0;) {{"
                yield "loop", loop.start(), loop.end(), head, "reversed loop"
    for test in re.finditer(r"!?[\w.>-]+\.test_and_set\([^;()]*\)", text):
        yield "guard", test.start(), test.end(), "true" if test[0][0] == "!" else "false", "without test_and_set"
