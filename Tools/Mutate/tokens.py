"""Cuts C++ source into tokens, as far as mutating it needs: comments and preprocessor lines are left out."""

import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:\\\n|[^\n])*|\[\[.*?\]\])
      | (?P<raw>(?:L|u8|u|U)?R"(?P<mark>[^()\s]*)\(.*?\)(?P=mark)")
      | (?P<string>(?:L|u8|u|U)?"(?:\\.|[^"\\\n])*")
      | (?P<character>(?:L|u8|u|U)?'(?:\\.|[^'\\\n])+')
      | (?P<number>0[xX][0-9A-Fa-f']+[uUlLzZ]*|\d[\d']*(?:\.\d+)?[uUlLfFzZ]*)
      | (?P<word>[A-Za-z_]\w*)
      | (?P<sign><<=|>>=|<=>|\.\.\.|->\*|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||\+=|-=|\*=|/=|%=|&=|\|=|\^=|[^\w\s])
      """,
    re.MULTILINE | re.DOTALL | re.VERBOSE,
)

OPENING = {"(": ")", "[": "]", "{": "}"}
CLOSING = {closing: opening for opening, closing in OPENING.items()}


@dataclass(frozen=True)
class Token:
    kind: str  # raw, string, character, number, word or sign
    text: str
    start: int
    is_after_blank: bool
    is_before_blank: bool

    @property
    def stop(self):
        return self.start + len(self.text)

    def stands_apart(self):
        """Whether blanks are on both sides, as the formatter puts them around binary operators and nothing else."""
        return self.is_after_blank and self.is_before_blank


def tokenize(text):
    tokens = []
    for match in TOKEN.finditer(text):
        if match.lastgroup == "skip" or match.group("skip") is not None:
            continue
        kind = next(name for name in ("raw", "string", "character", "number", "word", "sign") if match.group(name))
        after = match.start() == 0 or text[match.start() - 1].isspace()
        before = match.end() == len(text) or text[match.end()].isspace()
        tokens.append(Token(kind, match.group(), match.start(), after, before))
    return tokens


def match_brackets(tokens):
    """Returns {index of a bracket: index of its partner} for round, square and curly brackets."""
    partners, open_ones = {}, []
    for index, token in enumerate(tokens):
        if token.kind == "sign" and token.text in OPENING:
            open_ones.append(index)
        elif token.kind == "sign" and token.text in CLOSING:
            if not open_ones or OPENING[tokens[open_ones[-1]].text] != token.text:
                raise ValueError(f"an unbalanced {token.text} at {token.start}")
            partners[index] = open_ones.pop()
            partners[partners[index]] = index
    if open_ones:
        raise ValueError(f"an unbalanced {tokens[open_ones[-1]].text} at {tokens[open_ones[-1]].start}")
    return partners
