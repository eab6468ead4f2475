"""What can be changed in a C++ source, one change at a time.

Places are found in the text, not in a syntax tree: the sources are formatted by clang-format, so a binary operator has
blanks on both sides and a template's bracket, a reference or a pointer has not. A change that does not compile is found
out by the compiler and does not count.

Left out are kinds of places whose changes nothing but time and memory can show:
- what containers are told to reserve or Reserve, and whether their reserve is called at all
- thresholds between two ways to the same result, which are constants named gFew..., gMost..., gShort... or gSmall..., and
  comparisons with them
- capacities, which are numbers among the arguments of a template and as the size of an array
- hashes: what functions called Hash and hHash do
"""

import re
from dataclasses import dataclass

import tokens as lexer

OPERATORS = {
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",),
    "&&": ("||",), "||": ("&&",), "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("/",),
    "<<": (">>",), ">>": ("<<",), "&": ("|",), "|": ("&",), "^": ("|",),
    "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",), "%=": ("/=",), "<<=": (">>=",), ">>=": ("<<=",),
    "&=": ("|=",), "|=": ("&=",), "^=": ("|=",),
}
STEPS = {"++": "--", "--": "++"}
FLAGS = {"true": "false", "false": "true"}
THRESHOLD = re.compile(r"g(Few|Most|Short|Small)([A-Z]\w*)?")
TYPE_WORDS = {"class", "struct", "union", "enum"}
TERM_STARTS = {"&&", "||", "?", ":", ";", ",", "{", "}", "(", "[", "return"}
TERM_STOPS = {"&&", "||", "?", ":", ";", ",", "{", "}", ")", "]"}
# What an expression statement cannot start with.
OTHER_STATEMENTS = {
    "return", "const", "constexpr", "constinit", "static", "using", "auto", "if", "for", "while", "do", "switch", "case",
    "default", "else", "class", "struct", "enum", "union", "friend", "typename", "template", "try", "catch", "inline",
    "explicit", "virtual", "public", "private", "protected", "unsigned", "signed", "int", "long", "short", "bool", "char",
    "wchar_t", "float", "double", "void", "namespace", "operator", "extern", "mutable", "static_assert", "goto", "typedef",
    "__extension__",
}


@dataclass(frozen=True)
class Mutant:
    file: str
    start: int
    stop: int
    new: str
    number: int  # of the line, from 1
    line: str  # its text
    change: str  # for people

    def apply(self, text):
        return text[: self.start] + self.new + text[self.stop :]

    def key(self):
        return (self.file, self.line, self.change)

    def __str__(self):
        return f"{self.file}:{self.number}: {self.change}\n    {self.line}"


class Finder:
    """Finds the mutants of one source."""

    def __init__(self, file, text):
        self.file = file
        self.text = text
        self.tokens = lexer.tokenize(text)
        self.partners = lexer.match_brackets(self.tokens)
        self.left_out = self._left_out()
        self.found = []

    def find(self):
        for index, token in enumerate(self.tokens):
            if index in self.left_out:
                continue
            if token.kind == "sign":
                self._find_at_sign(index, token)
            elif token.kind == "number":
                self._find_at_number(token)
            elif token.kind == "string":
                self._find_at_string(index, token)
            elif token.kind == "character":
                self._find_at_character(token)
            else:
                self._find_at_word(index, token)
        self._find_statements()
        return sorted(self.found, key=lambda mutant: (mutant.start, mutant.stop, mutant.new))

    def _add(self, start, stop, new, change=None):
        number = self.text.count("\n", 0, start) + 1
        line_start = self.text.rfind("\n", 0, start) + 1
        line = self.text[line_start:].partition("\n")[0].strip()
        old = " ".join(self.text[start:stop].split())
        if change is None:
            # Of several such places in the line, which one.
            before = sum(line_start <= token.start < start and token.text == old for token in self.tokens)
            place = f" (number {before + 1} in the line)" if before else ""
            change = f"{old} becomes {new}{place}"
        self.found.append(Mutant(self.file, start, stop, new, number, line, change))

    def _left_out(self):
        """Returns the indexes of tokens that are no behaviour: what is only checked or named while compiling, and what the
        head of this file names."""
        result = set()
        for index, token in enumerate(self.tokens):
            following = self.tokens[index + 1].text if index + 1 < len(self.tokens) else ""
            if token.text in ("static_assert", "alignas", "decltype") and following == "(":
                result.update(range(index, self.partners[index + 1] + 1))
            elif token.text == "template" and following == "<":
                result.update(range(index, self._after_angle(index + 1)))
            elif token.text == "extern" and self.tokens[index + 1].kind == "string":
                result.update((index, index + 1))
            elif token.text == "operator":
                result.update((index, index + 1))
            elif token.text in ("reserve", "Reserve") and self.tokens[index - 1].text in (".", "->"):
                result.update(range(index + 1, self.partners[index + 1] + 1))
            elif token.text in ("Hash", "hHash") and following == "(":
                result.update(self._body_behind(index + 1))
            elif THRESHOLD.fullmatch(token.text):
                result.update(self._term_around(index))
            elif token.text == "[" and self._is_size_of_array(index):
                result.add(index + 1)
            elif token.text == "<" and not token.is_after_blank and index not in result:
                result.update(place for place in range(index, self._after_angle(index))
                              if self.tokens[place].kind == "number")
        return result

    def _is_size_of_array(self, opening):
        """Of "Type name[3]"; "return name[3]" has no type."""
        before = self.tokens[opening - 2]
        is_type = before.text == ">" or (before.kind == "word" and before.text not in ("return", "throw", "case"))
        return is_type and self.tokens[opening - 1].kind == "word" and self.partners[opening] == opening + 2

    def _body_behind(self, opening):
        """Returns the indexes of the body of the function whose parameters begin at opening; none for a call."""
        place = self.partners[opening] + 1
        while self.tokens[place].text in ("const", "noexcept", "override"):
            place += 1
        return range(place, self.partners[place] + 1) if self.tokens[place].text == "{" else ()

    def _term_around(self, index):
        """Returns the indexes of what is compared with, or assigned to, the name at index."""
        start, stop = index, index
        while self.tokens[start - 1].text not in TERM_STARTS:
            start = self.partners.get(start - 1, start - 1)
        while self.tokens[stop + 1].text not in TERM_STOPS:
            stop = self.partners.get(stop + 1, stop + 1)
        return range(start, stop + 1)

    def _after_angle(self, index):
        """Returns the index behind the angle bracket that closes the one at index."""
        depth = 0
        while True:
            text = self.tokens[index].text
            depth += {"<": 1, ">": -1, ">>": -2}.get(text, 0)
            index += 1
            if depth <= 0:
                return index

    def _find_at_sign(self, index, token):
        if token.text in OPERATORS and token.stands_apart():
            for new in OPERATORS[token.text]:
                self._add(token.start, token.stop, new)
        elif token.text in STEPS:
            self._add(token.start, token.stop, STEPS[token.text])
        elif token.text == "!" and not token.is_before_blank:
            self._add(token.start, token.stop, "", f"the ! before {self.tokens[index + 1].text} goes")
        elif token.text == "~" and not token.is_before_blank and self.tokens[index + 1].kind == "word":
            if self.tokens[index + 1].text[0] in "il":  # not a destructor
                self._add(token.start, token.stop, "", f"the ~ before {self.tokens[index + 1].text} goes")
        elif token.text == "?":
            self._find_choice(index)

    def _find_choice(self, index):
        """a ? b : c becomes a ? c : b."""
        colon, depth, place = None, 0, index + 1
        while True:
            text = self.tokens[place].text
            if text in lexer.OPENING:
                place = self.partners[place]
            elif text == "?":
                depth += 1
            elif text == ":" and depth > 0:
                depth -= 1
            elif text == ":" and colon is None:
                colon = place
            elif text in (";", ",") or text in lexer.CLOSING or text == ":":
                break
            place += 1
        first = self.text[self.tokens[index + 1].start : self.tokens[colon - 1].stop]
        second = self.text[self.tokens[colon + 1].start : self.tokens[place - 1].stop]
        self._add(self.tokens[index + 1].start, self.tokens[place - 1].stop, f"{second} : {first}",
                  f"the choice of {' '.join(first.split())} is swapped")

    def _find_at_number(self, token):
        digits = token.text.rstrip("uUlLzZfF" if not token.text.lower().startswith("0x") else "uUlLzZ")
        suffix = token.text[len(digits) :]
        plain = digits.replace("'", "")
        if "." in plain:
            return
        value = int(plain, 16 if plain.lower().startswith("0x") else 10)
        for new in (value + 1, value - 1):
            if new >= 0:
                self._add(token.start, token.stop, (hex(new) if plain.lower().startswith("0x") else str(new)) + suffix)

    def _find_at_string(self, index, token):
        prefix, content = token.text[: token.text.index('"')], token.text[token.text.index('"') + 1 : -1]
        if self.tokens[index - 1].kind == "string":
            return  # the compiler joins the two; the first stands for both
        if not content:
            self._add(token.start, token.stop, f'{prefix}"?"')
            return
        if "\\" in content:
            return
        other = "Q" if content[0] != "Q" else "R"
        self._add(token.start, token.stop, f'{prefix}"{other}{content[1:]}"')
        self._add(token.start, token.stop, f'{prefix}"{content[:-1]}"')

    def _find_at_character(self, token):
        prefix, content = token.text[: token.text.index("'")], token.text[token.text.index("'") + 1 : -1]
        new = "Q" if content != "Q" else "R"
        self._add(token.start, token.stop, f"{prefix}'{new}'")

    def _find_at_word(self, index, token):
        if token.text in FLAGS:
            self._add(token.start, token.stop, FLAGS[token.text])
        elif token.text in ("if", "while") and self.tokens[index + 1].text == "(":
            self._negate(token.text, index + 1)

    def _negate(self, word, opening):
        """if (a) becomes if (!(a)), and if (int a = b; a) becomes if (int a = b; !(a))."""
        closing = self.partners[opening]
        start = opening + 1
        place = start
        while place < closing:
            if self.tokens[place].text in lexer.OPENING:
                place = self.partners[place]
            elif self.tokens[place].text == ";":
                start = place + 1
            place += 1
        first, last = self.tokens[start].start, self.tokens[closing - 1].stop
        if self.left_out.issuperset(range(start, closing)):
            return
        condition = self.text[first:last]
        self._add(first, last, f"!({condition})", f"the condition of {word} is turned round")

    def _find_statements(self):
        """Expression statements, break, continue and throw are dropped."""
        for index, token in enumerate(self.tokens):
            if token.text not in ("{", "}", ";") or index + 1 == len(self.tokens) or not self._is_in_code(index + 1):
                continue
            if index + 1 in self.left_out:
                continue
            stop = self._end_of_statement(index + 1)
            if stop is not None and self._is_droppable(index + 1, stop) and not self._only_reserves(stop):
                start = self.tokens[index + 1].start
                statement = " ".join(self.text[start : self.tokens[stop].stop].split())
                shown = statement if len(statement) <= 60 else statement[:57] + "..."
                self._add(start, self.tokens[stop].stop, ";", f"the statement {shown} goes")

    def _is_in_code(self, index):
        """Whether the innermost curly bracket around a token is a function's or a block's, not a type's or a list's."""
        depth_start = index - 1
        while depth_start >= 0:
            text = self.tokens[depth_start].text
            if text in lexer.CLOSING:
                depth_start = self.partners[depth_start]
            elif text in lexer.OPENING:
                break
            depth_start -= 1
        return depth_start >= 0 and self.tokens[depth_start].text == "{" and self._opens_code(depth_start)

    def _opens_code(self, brace):
        head, place = [], brace - 1
        while place >= 0 and self.tokens[place].text not in (";", "{", "}"):
            if self.tokens[place].text in (")", "]"):
                head.append(self.tokens[place].text)
                place = self.partners[place]
            head.append(self.tokens[place].text)
            place -= 1
        if not head:
            return True  # a block of its own
        words = [word for word in head if word != "template"]
        if "namespace" in words or "extern" in words:
            return False
        if head[0] in (")", "]", "const", "noexcept", "override", "else", "do", "try", "mutable"):
            return not (TYPE_WORDS & set(words)) or ")" in head or head[0] == "else"
        if TYPE_WORDS & set(words):
            return False
        return "->" in head and ")" in head  # a lambda that names what it returns

    def _end_of_statement(self, index):
        """Returns the index of the semicolon, or None where a block comes first."""
        place = index
        while place < len(self.tokens):
            text = self.tokens[place].text
            if text in ("(", "["):
                place = self.partners[place]
            elif text == ";":
                return place
            elif text == "{":
                if self._opens_code(place):
                    return None
                place = self.partners[place]
            elif text in lexer.CLOSING:
                return None
            place += 1
        return None

    def _is_droppable(self, start, stop):
        first = self.tokens[start]
        if stop == start or first.text in OTHER_STATEMENTS:
            return False
        if first.text in ("break", "continue", "throw", "delete", "++", "--", "*", "(", "::", "this"):
            return True
        return first.kind == "word" and not self._is_declaration(start, stop)

    def _only_reserves(self, stop):
        return self.tokens[stop - 1].text == ")" and self.tokens[self.partners[stop - 1] - 1].text == "reserve"

    def _is_declaration(self, start, stop):
        """A type's name is followed by the name of what it declares; an expression's first name never is."""
        place = start + 1
        while place < stop:
            token = self.tokens[place]
            if token.text == "::":
                place += 2
            elif token.text == "<" and not token.is_after_blank:
                place = self._after_angle(place)
            else:
                break
        token = self.tokens[place]
        if token.text in ("*", "&", "&&") and not token.is_after_blank:
            return True
        return token.kind == "word"


def find_mutants(file, text):
    return Finder(file, text).find()
