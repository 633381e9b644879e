# SPDX-License-Identifier: MIT
"""Small faults that can be put into C++ source text, and a choice among them that is the same each time."""
import random
import re
from dataclasses import dataclass

_TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|R"\(.*?\)"|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*|\bstatic_assert\b.*?;
                |\b(?:__attribute__|__builtin_cpu_supports)\b.*?\)+)
      | (?P<text>"(?:\\.|[^"\\\n])*")
      | (?P<character>'(?:\\.|[^'\\\n])+')
      | (?P<number>\b(?:0[xX][0-9A-Fa-f']+|[0-9][0-9']*)[uUlL]*\b)
      | (?P<word>\b[A-Za-z_]\w*\b)
      | (?P<operator>->|\+\+|--|<<=|>>=|[-+*/%&|^=!<>]=|&&|\|\||<<|>>|::|[-+*/%&|^!<>=~?:;,.(){}\[\]])""",
    re.X | re.S | re.M,
)
_OPERATORS = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["/"], "&": ["|"],
    "|": ["&"], "^": ["&"], "<<": [">>"], ">>": ["<<"], "+=": ["-="], "-=": ["+="], "|=": ["&="], "&=": ["|="],
    "<<=": [">>="], ">>=": ["<<="],
}  # fmt: skip
_STATEMENT = re.compile(
    r"^\s+(?!(?:return|using|typedef|break|continue|goto|case|default|else|throw|public|private|protected)\b)"
    r"(?:delete(?:\[\])? \S+;|(?:\+\+|--)\S+;|[\w.\->\[\]:*()]+ (?:[-+|&^*]|<<|>>)?= [^;]*;|[\w.\->:\[\]*]+\(.*\);)$"
)
_CONDITION = re.compile(r"\b(if|while) \((.*)\) \{$")
_RETURN = re.compile(r"\breturn (?![01];|nullptr;)(.+);$")


@dataclass(frozen=True)
class Fault:
    """Replaces text[begin:end], which lies in one line."""

    file: str
    kind: str
    begin: int
    end: int
    by: str
    line: int
    before: str  # the line, without blanks around it
    after: str


def _tokens(text):
    return [(m.lastgroup, m.start(), m.end(), m.group()) for m in _TOKEN.finditer(text) if m.group()]


def _number(word):
    suffix = word[len(word.rstrip("uUlL")) :] if not word.lower().startswith("0x") else ""
    value = int(word[: len(word) - len(suffix)].rstrip("uUlL").replace("'", ""), 0 if word[:2].lower() == "0x" else 10)
    return [f"{value + 1}{suffix}"] + ([f"{value - 1}{suffix}"] if value > 0 else [])


def _changed_text(word):
    inner = word[1:-1]
    if not inner:
        return ['"x"']
    if inner.endswith("\\n"):
        return [f'"{inner[:-2]}"', f'"x{inner}"']
    if inner[-1].isalnum() and not re.search(r"(\\x?[0-9A-Fa-f]*|%\d*\w)$", inner):
        return [f'"{inner[:-1]}"']
    return [f'"{inner}x"', f'"x{inner}"']


def _of_token(kind, start, end, word, text):
    """What may stand in a token's place."""
    spaced = text[start - 1 : start] == " " and text[end : end + 1] in (" ", "\n")
    if kind == "number":
        return "constant", _number(word)
    if kind == "text":
        return "text", _changed_text(word)
    if kind == "character" and len(word) == 3:
        return "text", ["'" + chr(ord(word[1]) ^ 1) + "'"]
    if kind == "operator":
        if word == "!":
            return "negation", [""]
        if word in ("++", "--"):
            return "operator", ["--" if word == "++" else "++"]
        if word in _OPERATORS and spaced:
            return "operator", _OPERATORS[word]
    if kind == "word" and word in ("true", "false"):
        return "constant", ["false" if word == "true" else "true"]
    if kind == "word" and word in ("break", "continue") and text[end : end + 1] == ";":
        return "statement", [""]
    return "", []


def _swapped(tokens, text):
    """The first two arguments of calls, exchanged."""
    for at, (kind, start, end, _) in enumerate(tokens[:-1]):
        if kind != "word" or tokens[at + 1][3] != "(" or tokens[at + 1][1] != end:
            continue
        depth, commas = 0, []
        for _, begin, _, word in tokens[at + 1 :]:
            depth += (word in "([{") - (word in ")]}") if word in "()[]{}" else 0
            if word == "," and depth == 1:
                commas.append(begin)
            if depth == 0:
                commas.append(begin)
                break
        if len(commas) >= 2:
            first, second = text[end + 1 : commas[0]], text[commas[0] + 1 : commas[1]].strip()
            declared = re.compile(r"[\w:<>]+[ *&]+\w+$|const ")  # a parameter may have any name
            if first != second and not declared.match(first) and "\n" not in text[end : commas[1]]:
                yield end + 1, commas[1], f"{second}, {first}"


def _of_lines(text, skipped):
    """Statements dropped, conditions and answers negated."""
    start = 0
    ended = True  # whether the line before ended a statement
    for line in text.split("\n"):
        if start not in skipped:
            if ended and _STATEMENT.match(line) and line.count("(") == line.count(")"):
                indent = len(line) - len(line.lstrip())
                yield "statement", start + indent, start + len(line), ";"
            for pattern, group in ((_CONDITION, 2), (_RETURN, 1)):
                match = pattern.search(line)
                if match and line.count("(") == line.count(")"):
                    yield "condition", start + match.start(group), start + match.end(group), f"!({match[group]})"
        stripped = line.split("//")[0].strip()
        ended = not stripped or stripped[-1] in "{};:" or stripped.startswith("#")
        start += len(line) + 1


def faults_of(file, text):
    """All faults of a file, in the order of the text."""
    tokens = _tokens(text)
    skipped = [(start, end) for kind, start, end, _ in tokens if kind == "skip"]
    code = [token for token in tokens if token[0] != "skip"]
    found = []
    for kind, start, end, word in code:
        name, choices = _of_token(kind, start, end, word, text)
        found += [(name, start, end, by) for by in choices]
    found += [("arguments", *swap) for swap in _swapped(code, text)]
    found += _of_lines(text, {start for start, _ in skipped})
    faults = []
    for kind, begin, end, by in sorted(set(found), key=lambda f: (f[1], f[2], f[3])):
        if any(start < end and begin < stop for start, stop in skipped):
            continue
        left, right = text.rfind("\n", 0, begin) + 1, text.find("\n", end)
        line = text[left:right]
        if re.match(r'\s*extern "C"|\s*(class|struct|enum|template|namespace|using)\b', line):
            continue
        after = text[left:begin] + by + text[end:right]
        faults.append(Fault(file, kind, begin, end, by, text.count("\n", 0, begin) + 1, line.strip(), after.strip()))
    return faults


def shuffled(file, text, seed):
    """The faults of a file in the order in which they are tried: the kinds take turns."""
    chance = random.Random(f"{seed} {file}")
    kinds = {}
    for fault in faults_of(file, text):
        kinds.setdefault(fault.kind, []).append(fault)
    for faults in kinds.values():
        chance.shuffle(faults)
    names = sorted(kinds)
    chance.shuffle(names)
    order = []
    while any(kinds.values()):
        order += [kinds[name].pop() for name in names if kinds[name]]
    return order


def code_lines(text):
    """How many lines hold code."""
    without = _TOKEN.sub(lambda m: "" if m.lastgroup == "skip" else m.group(), text)
    return sum(1 for line in without.split("\n") if re.search(r"\w", line))


def shares(sizes, count):
    """Splits a count among files in proportion to their sizes."""
    total = sum(sizes.values())
    exact = {name: count * size / total for name, size in sizes.items()}
    given = {name: int(share) for name, share in exact.items()}
    rest = sorted(sizes, key=lambda name: (given[name] - exact[name], name))
    for name in rest[: count - sum(given.values())]:
        given[name] += 1
    return given
