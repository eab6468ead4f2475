#!/usr/bin/env python3
"""Prints a sum of each header of a folder: of its declarations, default arguments, inline functions and macros.

Comments, layout and the names of parameters and local variables do not count. Those are told by the letter that they
begin with, as .clang-tidy wants it; each stands for its place among those of its declaration.

    headers.py FOLDER
"""
import hashlib
import os
import re
import sys

TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ ]*\#(?:[^\n\\]|\\.)*)
  | (?P<text>(?:u8|[uUL])?"(?:[^"\\]|\\.)*"|(?:u8|[uUL])?'(?:[^'\\]|\\.)*')
  | (?P<number>\d(?:[\w.]|'\d)*)
  | (?P<name>\w+)
  | (?P<sign>\S)""", re.VERBOSE | re.DOTALL | re.MULTILINE)
OWN_NAME = re.compile(r"(?:ip?|op?|l)[A-Z]\w*")
SCOPES = {"namespace", "class", "struct", "union", "enum", "extern"}


class Names:
    """Numbers the names of parameters and local variables, from 1 in every declaration."""

    def __init__(self):
        self._numbers = {}
        self._scopes = []  # for each open brace, whether declarations stand inside
        self._tokens = set()  # since the last brace or semicolon

    def see(self, token):
        """Returns what the token counts as."""
        if token == "{":
            self._scopes.append(bool(self._tokens & SCOPES) and "(" not in self._tokens)
        elif token == "}" and self._scopes:
            self._scopes.pop()
        if token in "{};":
            self._tokens.clear()
            if all(self._scopes):
                self._numbers.clear()
            return token
        self._tokens.add(token)
        if OWN_NAME.fullmatch(token):
            return f"${self._numbers.setdefault(token, len(self._numbers) + 1)}"
        return token


def tokens_of(text):
    """Returns what counts of a header, token by token."""
    names = Names()
    result = []
    for match in TOKEN.finditer(text):
        if match["directive"]:
            inside = match[0].replace("#", "", 1).replace("\\\n", " ").strip()
            result += ["#", *tokens_of(inside), "\n"]
        elif match["text"]:
            result.append(match[0])
        elif not match["comment"]:
            result.append(names.see(match[0]))
    return result


def sum_of(text):
    """Returns the sum of what counts of a header."""
    return hashlib.sha256("\0".join(tokens_of(text)).encode()).hexdigest()[:16]


def main(folder):
    """Prints the sums of a folder's headers in the order of their paths."""
    paths = [os.path.relpath(os.path.join(parent, file), folder)
             for parent, _, files in os.walk(folder) for file in files if file.endswith(".h")]
    for path in sorted(paths):
        with open(os.path.join(folder, path), encoding="utf-8") as file:
            print(sum_of(file.read()), path)


if __name__ == "__main__":
    main(*sys.argv[1:])
