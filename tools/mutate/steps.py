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
# Functions and constructors that only read, and those that also write to an argument.
_PURE = {"Setting", "SoughtText", "string_view", "strlen", "strchr", "strcmp", "min", "max", "empty", "size", "back",
         "capacity", "Begin", "Length", "Text"}  # fmt: skip
_READERS = _PURE | {"GetProperty", "GetPropertyLength"}
_SETTING_WORDS = re.compile(r"GetProperty\w*|c\w*Properties|m_cProperties|Key|Section|Standard|nullptr|sizeof|Text|std|static_cast")
_RELEASES = re.compile(r"(?:\s*(?:std::free|fwfree)\([^()]*\);)+\s*\}?")
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

    def only_calls(self, known):
        """Whether it calls nothing else. Only a declaration may construct an object."""
        built = re.search(r"(\w+)[&* ]+(?:const )?\w+\(", self.text) if self.calls[:1] == [self.declares] else None
        calls = ([built[1]] if built else []) + self.calls[1 if built else 0 :]
        return all(call in known for call in calls)

    def independent_settings(self, other):
        """Whether both only read settings, and no variable of one is in the other."""
        shared = {word for word in self.words & other.words if not _SETTING_WORDS.fullmatch(word)}
        return self.only_calls(_READERS) and other.only_calls(_READERS) and not shared

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
        if self.independent_settings(following) or "va_end" in (self.statement.first, following.statement.first):
            return False
        if _RELEASES.fullmatch(self.text) and _RELEASES.fullmatch(following.text):
            return False  # the order of releases of memory does not matter
        if self.only_calls(_PURE) and following.only_calls(_PURE) and not shared:
            return False
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


def _is_guard(step, rest):
    """Whether a declaration has its effect by its constructor and destructor alone."""
    guard = _GUARD.match(step.text)
    return bool(guard and not re.search(rf"\b{guard[1]}\b", rest))


def _orders(text, block):
    """Two neighbours exchanged."""
    for one, other in zip(block, block[1:]):
        if not _is_step(one, text) or not _is_step(other, text):
            continue
        first, second = _Step(text, one), _Step(text, other)
        if first.swaps_with(second):
            between = text[one.end : other.begin]
            guards = [step for step in (first, second) if _is_guard(step, text[other.end : block[-1].end])]
            kind = "guard" if guards else "setting" if _SETTING.search(second.text) and not _SETTING.search(first.text) else "order"
            yield (kind, one.begin, other.end, second.text + between + first.text,
                   f"{second.head} before {first.head}")  # fmt: skip


def _early_settings(text, block):
    """A setting that is read at the start of the block that reads it."""
    for at, statement in enumerate(block[2:], 2):
        if statement.simple and _is_step(statement, text) and _SETTING.search(text[statement.begin : statement.end]):
            step, begin = _Step(text, statement), block[0].begin
            moved = step.text + "\n" + text[begin : statement.begin].rstrip()
            passed = [_Step(text, before) for before in block[:at]]
            declared = {other.declares for other in passed} - {""}
            if all(step.independent_settings(other) for other in passed):
                continue
            if not declared & step.words and _is_step(block[0], text):
                yield "setting", begin, statement.end, moved, f"{step.head} at the begin"


def _dropped(text, block, at):
    statement = block[at]
    own = text[statement.begin : statement.end]
    if not statement.simple or statement.first in _NO_STEPS or statement.first == "va_end":  # has no effect on these systems
        return
    step = _Step(text, statement)
    if _is_guard(step, text[statement.end : block[-1].end]):
        yield "guard", statement.begin, statement.end, ";", f"without {step.declares}"
    elif not step.declares:
        kind = "reset" if _RESET.match(own) else "statement"
        yield kind, statement.begin, statement.end, ";", f"without {step.head}"


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
                if _RELEASES.fullmatch(text, loop.end(), statement.end):
                    continue
                name = loop["name"]
                head = f"for ({loop['type']} {name} = {loop['end']}; {name}-- > 0;) {{"
                yield "loop", loop.start(), loop.end(), head, "reversed loop"
    for test in re.finditer(r"!?[\w.>-]+\.test_and_set\([^;()]*\)", text):
        yield "guard", test.start(), test.end(), "true" if test[0][0] == "!" else "false", "without test_and_set"
