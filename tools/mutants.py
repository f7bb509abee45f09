"""Finds the places in a C++ file that tools/mutate changes.

A mutant is one small change of the text. The file is split into tokens; comments and preprocessor lines are left alone.
The code is formatted by clang-format, so an operator with blanks on both sides is a binary one: in `a < b` there are
two blanks, in `vector<int>` there are none. A change that does not compile is counted as such and does no harm.
"""
import re
from dataclasses import dataclass

TOKEN = re.compile(r"""
    (?P<skip>\s+ | //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:\\\n|[^\n])* | \[\[.*?\]\])
  | (?P<string>(?:u8|[uUL])?R"(?P<mark>[^(]*)\(.*?\)(?P=mark)" | (?:u8|[uUL])?"(?:\\.|[^"\\])*")
  | (?P<char>(?:u8|[uUL])?'(?:\\.|[^'\\])+')
  | (?P<number>\.?\d(?:'?[\w.]|(?<=[eEpP])[+-])*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<op><=>|->\*?|\+\+|--|<<=|>>=|<<|>>|[-+*/%&|^=!<>]=|&&|\|\||::|\.\.\.|.)
    """, re.VERBOSE | re.DOTALL | re.MULTILINE)

BINARY = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
    "&&": ["||"], "||": ["&&"], "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"], "&": ["|"], "|": ["&"],
    "^": ["&"], "<<": [">>"], ">>": ["<<"], "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="], "|=": ["&="],
    "&=": ["|="], "<<=": [">>="], ">>=": ["<<="],
}
OPENING = {"(": ")", "[": "]", "{": "}"}
# A statement that begins with one of these is neither a call nor an assignment.
NO_STATEMENT = {
    "return", "throw", "using", "case", "default", "goto", "break", "continue", "static_assert", "template", "typedef",
    "delete", "new", "if", "for", "while", "switch", "do", "else", "try", "catch", "public", "private", "protected",
    "const", "constexpr", "static", "auto", "friend", "enum", "struct", "class", "namespace", "extern", "virtual",
    "inline", "explicit", "operator", "co_return", "co_await", "co_yield",
}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


@dataclass(frozen=True)
class Mutant:
    file: str
    line: int
    column: int
    kind: str
    start: int
    end: int
    old: str
    new: str

    def applied_to(self, text):
        return text[:self.start] + self.new + text[self.end:]

    def __str__(self):
        shorten = lambda part: " ".join(part.split())[:90] or "nothing"
        return f"{self.file}:{self.line}:{self.column}: {self.kind}: {shorten(self.old)}  ->  {shorten(self.new)}"


def tokens_of(text):
    return [Token(found.lastgroup if found.lastgroup != "mark" else "string", found.group(), found.start(), found.end())
            for found in TOKEN.finditer(text) if found.lastgroup != "skip"]


class Finder:
    """The mutants of one file, in the order of their places."""

    def __init__(self, file, text):
        self.file = file
        self.text = text
        self.tokens = tokens_of(text)
        self.partner, self.outside = self.brackets()
        self.mutants = []

    def brackets(self):
        """The closing token for each opening one, and for each token the opening one that it is directly in."""
        partner, outside, open_at = {}, [], []
        for i, token in enumerate(self.tokens):
            if token.kind == "op" and open_at and token.text == OPENING[self.tokens[open_at[-1]].text]:
                partner[open_at.pop()] = i
            outside.append(open_at[-1] if open_at else -1)
            if token.kind == "op" and token.text in OPENING:
                open_at.append(i)
        return partner, outside

    def at(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def add(self, kind, first, last, new):
        """Replaces the tokens from `first` to `last`."""
        start, end = self.tokens[first].start, self.tokens[last].end
        line = self.text.count("\n", 0, start) + 1
        column = start - self.text.rfind("\n", 0, start)
        self.mutants.append(Mutant(self.file, line, column, kind, start, end, self.text[start:end], new))

    def spaced(self, token):
        return self.text[token.start - 1].isspace() and self.text[token.end:token.end + 1].isspace()

    def find(self):
        left_out_until = -1
        for i, token in enumerate(self.tokens):
            if i <= left_out_until:
                continue
            if token.text in ("static_assert", "noexcept", "operator", "alignas") and self.at(i + 1) == "(":
                left_out_until = self.partner.get(i + 1, i)
            elif token.text == "operator":
                left_out_until = i + 1
            elif token.text in ("if", "while"):
                self.condition(i)
            elif token.kind in ("number", "string", "char") or token.text in ("true", "false"):
                self.constant(i, token)
            elif token.kind == "op":
                self.operator(i, token)
            if self.begins_statement(i):
                self.statement(i)
        return sorted(set(self.mutants), key=lambda m: (m.start, m.end, m.new))

    def operator(self, i, token):
        before, after = self.tokens[i - 1] if i else None, self.tokens[i + 1] if i + 1 < len(self.tokens) else None
        if token.text in BINARY and before and after and self.spaced(token):
            if not (token.text in "+-" and "string" in (before.kind, after.kind)):
                for new in BINARY[token.text]:
                    self.add("operator", i, i, new)
        elif token.text in ("++", "--"):
            self.add("operator", i, i, "--" if token.text == "++" else "++")
        elif token.text in ("!", "-") and after and token.end == after.start and after.kind != "op" or \
                token.text == "!" and self.at(i + 1) == "(":
            self.add("operator", i, i, "")

    def constant(self, i, token):
        if token.text in ("true", "false"):
            self.add("constant", i, i, "false" if token.text == "true" else "true")
        elif token.kind == "number":
            self.add("constant", i, i, f"({token.text} + 1)")
        elif token.kind == "string":
            quote = token.text.index('"')
            self.add("constant", i, i, token.text[:quote] + ('"?"' if token.text.endswith('""') else '""'))
        elif token.kind == "char":
            self.add("constant", i, i, f"static_cast<decltype({token.text})>({token.text} + 1)")

    def condition(self, i):
        first = i + 1
        if self.at(first) == "constexpr" or first not in self.partner:
            return
        last = self.partner[first]
        inside = range(first + 1, last)
        semicolons = [k for k in inside if self.at(k) == ";"]
        begin = semicolons[-1] + 1 if semicolons else first + 1
        if begin >= last or any(self.at(k) == "=" for k in range(begin, last)) or self.at(begin) in ("true", "false"):
            return
        # Not changed, because a loop that never ends would only cost time.
        for new in (["true", "false"] if self.at(i) == "if" else ["false"]):
            self.add("condition", begin, last - 1, new)

    def begins_statement(self, i):
        if self.tokens[i].kind != "name" and self.at(i) not in ("*", "++", "--", "("):
            return False
        if self.outside[i] < 0 or self.at(self.outside[i]) != "{":  # not a function's body, or a part of a for
            return False
        before = self.at(i - 1)
        if before in (";", "{", "}", "else", "do"):
            return True
        if before == ")":  # of an if, a for or a while
            opening = next((o for o, c in self.partner.items() if c == i - 1), None)
            return opening is not None and self.at(opening - 1) in ("if", "for", "while")
        if before == ":":  # of a case
            k = i - 2
            while k > 0 and self.at(k) not in (";", "{", "}", "case", "default", "?"):
                k -= 1
            return self.at(k) in ("case", "default")
        return False

    def statement(self, i):
        """Removes a call or an assignment."""
        if self.at(i) in NO_STATEMENT or self.at(i) == "(":
            return
        k, assigned, called = i, False, False
        while self.at(k) != ";":
            token = self.tokens[k] if k < len(self.tokens) else None
            if token is None or token.text in ("}", ")", "]", "{"):
                return
            if not assigned:
                # Two names next to each other, and a name after & or *, are a declaration.
                adjacent = k > i and token.kind == "name" and (self.tokens[k - 1].kind == "name" or
                                                                self.at(k - 1) in ("&", "*", ">") and k - 1 > i)
                if adjacent or token.kind in ("string", "number"):
                    return
            if token.text in ("=", "+=", "-=", "*=", "/=", "|=", "&=", "^=", "<<=", ">>="):
                assigned = True
            if token.text in OPENING:
                if k not in self.partner:
                    return
                called = called or token.text == "("
                k = self.partner[k]
            k += 1
        if k > i and (assigned or called) and self.at(k - 1) not in ("delete", "default"):
            self.add("assignment" if assigned else "call", i, k - 1, "")


def mutants_of(file, text):
    return Finder(file, text).find()
