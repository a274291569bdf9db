"""Every message that the program can tell a person, read from its sources.

A message is what stands in a call of TELLERS or in what is thrown: its literals, one after the other, with PLACE where
a value comes in between. The boxes' texts stand in a table of their own (BOXES).
"""

import re

PLACE = "\0"
# What is told by these routines, with the argument in which the words stand; -1 the last one.
TELLERS = {
    "LogError": 3, "LogNotice": 3, "PrintError": 0, "GiveUp": -1, "Fail": -1, "Finding": -1, "Refuse": -1,
    "Complain": -1, "Warn": -1, "TellFault": -1, "Usage": -1,
}
TOKEN = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"\((?P<raw>.*?)\)"|"(?P<text>(?:[^"\\\n]|\\.)*)"|\'(?P<sign>(?:[^\'\\\n]|\\.)+)\'|'
    r"(?P<word>[A-Za-z_]\w*(?:::\w+)*)|(?P<number>\d[\w'.]*)|(?P<mark>\S)", re.S)


def unescaped(text):
    simple = {"n": "\n", "r": "\r", "t": "\t", "0": "\0"}
    return re.sub(r"\\(.)", lambda found: simple.get(found.group(1), found.group(1)), text)


def tokens(source):
    """Kind, value and place of each token of a C++ source, without comments."""
    found = []
    for match in TOKEN.finditer(source):
        kind = match.lastgroup
        if kind is None:
            continue
        value = match.group(kind)
        if kind == "raw":
            kind = "text"
        elif kind in ("text", "sign"):
            value, kind = unescaped(value), "text"
        found.append((kind, value, match.start()))
    return found


def arguments(found, opening):
    """The arguments of the call whose bracket opens at that token, each as its tokens; and the token behind it."""
    depth, parts, at = 0, [[]], opening
    while at < len(found):
        kind, value, _ = found[at]
        if kind == "mark" and value in "([{":
            depth += 1
        if kind == "mark" and value in ")]}":
            depth -= 1
            if depth == 0:
                return [part for part in parts if part], at + 1
        if depth == 1 and (kind, value) == ("mark", ","):
            parts.append([])
        elif at > opening:
            parts[-1].append(found[at])
        at += 1
    return [], at


def split_at(part, signs):
    """The tokens between marks of these signs that stand outside of all brackets."""
    depth, pieces = 0, [[]]
    for token in part:
        if token[0] == "mark" and token[1] in "([{":
            depth += 1
        if token[0] == "mark" and token[1] in ")]}":
            depth -= 1
        if depth == 0 and token[0] == "mark" and token[1] in signs:
            pieces.append([])
        else:
            pieces[-1].append(token)
    return pieces


def unwrapped(term):
    """Without the brackets around it, or a conversion to a text."""
    while term:
        if term[0][:2] in (("word", "std::string"), ("word", "std::string_view")) and len(term) > 2 and \
                term[1][1] in "({":
            inner, behind = arguments(term, 1)
            if behind == len(term) and len(inner) == 1:
                term = inner[0]
                continue
        if term[0][:2] == ("mark", "("):
            inner, behind = arguments(term, 0)
            if behind == len(term) and len(inner) == 1:
                term = inner[0]
                continue
        break
    return term


def words_of(part, names):
    """All that a text's expression can read: literals with PLACE between them."""
    part = unwrapped(part)
    asked = split_at(part, "?")
    if len(asked) == 2:
        return [text for branch in split_at(asked[1], ":") if branch for text in words_of(branch, names)]
    texts = [""]
    for term in split_at(part, "+"):
        term = unwrapped(term)
        if term and all(kind == "text" for kind, _, _ in term):
            options = ["".join(value for _, value, _ in term)]
        elif len(term) == 1 and term[0][0] == "word" and term[0][1].split("::")[-1] in names:
            options = [names[term[0][1].split("::")[-1]]]
        elif len(split_at(term, "?")) == 2:
            options = words_of(term, names)
        else:
            options = [PLACE]
        texts = [text + option for text in texts for option in options]
    return [re.sub(PLACE + "+", PLACE, text) for text in texts]
