# SPDX-License-Identifier: MIT
"""Small faults in C++ source text, and a reproducible random choice among them."""
import hashlib
import re
from collections import Counter
from dataclasses import dataclass

from functions import Functions, tokens_of
from steps import steps_of

_OPERATORS = {
    "==": ["!="], "!=": ["=="], "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["/"], "&": ["|"],
    "|": ["&"], "^": ["&"], "<<": [">>"], ">>": ["<<"], "+=": ["-="], "-=": ["+="], "|=": ["&="], "&=": ["|="],
    "<<=": [">>="], ">>=": ["<<="],
}  # fmt: skip
_CONDITION = re.compile(r"\b(if|while) \((.*)\) \{$")
_RETURN = re.compile(r"\breturn (?![01];|nullptr;)(.+);$")
_DECLARED = re.compile(r"(?!sizeof|new|delete)(?:[\w:<>]+ )*[\w:<>]+(?: |[*&]+ ?)\w+$|const ")
_COMPARISONS = {"strcmp", "fwstrcmp", "strncmp", "memcmp", "fwmemcmp", "fwstricmp"}

_ERRORS = {"EACCES", "EAGAIN", "EEXIST", "EFBIG", "EINTR", "EINVAL", "EIO", "ENODATA", "ENOENT", "ENOMEM", "ENOTSUP",
           "EPERM", "EWOULDBLOCK"}  # fmt: skip


@dataclass(frozen=True)
class Fault:
    """A replacement of text[begin:end] in a file. Its name and identity do not contain the name of the file."""

    file: str
    kind: str
    begin: int
    end: int
    by: str
    line: int
    before: str  # the lines, joined
    after: str
    name: str  # the function and the change in it
    identity: str  # a hash of the function with the fault


def _number(word):
    suffix = word[len(word.rstrip("uUlL")) :] if not word.lower().startswith("0x") else ""
    value = int(word[: len(word) - len(suffix)].rstrip("uUlL").replace("'", ""), 0 if word[:2].lower() == "0x" else 10)
    return [f"{value + 1}{suffix}"] + ([f"{value - 1}{suffix}"] if value > 0 else [])


def _changed_text(word):
    inner = word[1:-1]
    if re.fullmatch(r"[rwa]\+?b\+?", inner):  # a mode for opening; these systems ignore the b
        return []
    if not inner:
        return ['"x"']
    if inner.endswith("\\n"):
        return [f'"{inner[:-2]}"', f'"x{inner}"']
    if inner[-1].isalnum() and not re.search(r"(\\x?[0-9A-Fa-f]*|%\d*\w)$", inner):
        return [f'"{inner[:-1]}"']
    return [f'"{inner}x"', f'"x{inner}"']


def _of_token(token, text):
    """The kind of fault, and what may replace a token."""
    kind, word = token.kind, token.word
    spaced = text[token.begin - 1 : token.begin] == " " and text[token.end : token.end + 1] in (" ", "\n")
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
    if kind == "word" and word in _ERRORS:
        return "errno", ["ENOENT" if word == "EIO" else "EIO"]
    if kind == "word" and word in ("true", "false"):
        return "constant", ["false" if word == "true" else "true"]
    if kind == "word" and word in ("break", "continue") and text[token.end : token.end + 1] == ";":
        return "statement", [""]
    return "", []


def _only_equality(text, begin, end):
    """Whether a call's result is only compared with 0, so that the order of its arguments does not matter."""
    return bool(re.search(r"!(std::)?$", text[:begin]) or re.match(r"\s*[!=]= 0\b", text[end:]))


def _only_names(text, first, second, end):
    """Whether these are parameters. Those of a declaration may have any name; in a definition, an exchange compiles only
    where their types are the same."""
    if not _DECLARED.match(first):
        return False
    defined = re.match(r"[\w\s]*(?:[:{]|->)", text[end:])
    return not defined or re.sub(r"\w+$", "", first) != re.sub(r"\w+$", "", second)


def _swapped(tokens, text):
    """The first two arguments of calls, exchanged."""
    for at, (token, bracket) in enumerate(zip(tokens, tokens[1:])):
        if token.kind != "word" or bracket.word != "(" or bracket.begin != token.end:
            continue
        depth, commas = 0, []
        for other in tokens[at + 1 :]:
            depth += (other.word in ("(", "[", "{")) - (other.word in (")", "]", "}"))
            if other.word == "," and depth == 1:
                commas.append(other.begin)
            if depth == 0:
                commas.append(other.begin)
                break
        if token.word in ("max", "min", "calloc"):  # the same in any order
            continue
        if token.word in _COMPARISONS and _only_equality(text, token.begin, other.end):
            continue
        if len(commas) >= 2:
            first, second = text[bracket.end : commas[0]], text[commas[0] + 1 : commas[1]].strip()
            if first != second and not _only_names(text, first, second, other.end) and "\n" not in text[token.end : commas[1]]:
                yield "arguments", bracket.end, commas[1], f"{second}, {first}", f"arguments of {token.word}"


def _of_lines(text):
    """Conditions and results negated."""
    start = 0
    for line in text.split("\n"):
        for pattern, group in ((_CONDITION, 2), (_RETURN, 1)):
            match = pattern.search(line)
            if match and line.count("(") == line.count(")"):
                negated = "result" if group == 1 else match[1]
                begin, end = start + match.start(group), start + match.end(group)
                yield "condition", begin, end, f"!({match[group]})", f"negated {negated}"
        start += len(line) + 1


def _found(text):
    """(kind, begin, end, replacement, description) of all faults."""
    tokens = tokens_of(text)
    skipped = [token for token in tokens if token.kind == "skip"]
    code = [token for token in tokens if token.kind != "skip"]
    for token in code:
        kind, choices = _of_token(token, text)
        for by in choices:
            yield kind, token.begin, token.end, by, f"{token.word} -> {by or 'nothing'}"
    yield from _swapped(code, text)
    for fault in _of_lines(text):
        if not any(token.begin < fault[2] and fault[1] < token.end for token in skipped):
            yield fault
    yield from steps_of(text)


def faults_of(file, text):
    """All faults of a file, in the order of the text."""
    functions = Functions(text)
    faults, names = [], Counter()
    for kind, begin, end, by, what in sorted(set(_found(text)), key=lambda fault: fault[1:4]):
        left, right = text.rfind("\n", 0, begin) + 1, text.find("\n", end)
        line = text[left:right]
        if re.match(r'\s*extern "C"|\s*(class|struct|enum|template|namespace|using)\b', line):
            continue
        region = functions.at(begin)
        name = f"{region.name}: {what}"
        names[name] += 1
        name += f" #{names[name]}" if names[name] > 1 else ""
        whole = text[region.begin : begin] + by + text[end : region.end]
        identity = hashlib.sha256(f"{region.name} {kind} {whole}".encode()).hexdigest()[:16]
        before, after = " ".join(line.split()), " ".join((text[left:begin] + by + text[end:right]).split())
        faults.append(Fault(file, kind, begin, end, by, text.count("\n", 0, begin) + 1, before, after, name, identity))
    return faults


def ordered(faults, seed):
    """The order in which faults are tried: random but reproducible, one of each kind in turn."""
    kinds = {}
    for fault in sorted(faults, key=lambda fault: hashlib.sha256(f"{seed} {fault.identity}".encode()).digest()):
        kinds.setdefault(fault.kind, []).append(fault)
    turns = [(turn, kind, fault) for kind, of_kind in kinds.items() for turn, fault in enumerate(of_kind)]
    return [fault for _, _, fault in sorted(turns, key=lambda turn: turn[:2])]
