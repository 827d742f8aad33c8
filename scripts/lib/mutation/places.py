"""Finds the places of a C++ source at which one operator, constant or character can be changed."""

import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""
    (?P<space>\s+|//[^\n]*|/\*.*?\*/)
  | (?P<directive>(?<![^\n])[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<raw>(?:u8|[uUL])?R"(?P<fence>[^(\s]*)\(.*?\)(?P=fence)")
  | (?P<string>(?:u8|[uUL])?"(?:\\.|[^"\\])*")
  | (?P<character>(?:u8|[uUL])?'(?:\\.|[^'\\])+')
  | (?P<number>\.?[0-9](?:[eEpP][+-]|'?[\w.])*)
  | (?P<name>[^\W\d]\w*)
  | (?P<operator><=>|<<=|>>=|->\*|\.\.\.|::|->|\+\+|--|&&|\|\||[-+*/%&|^<>=!]=|<<|>>|.)
    """,
    re.VERBOSE | re.DOTALL,
)

# Binary operators stand between blanks, which tells them from templates, references and signs.
BINARY = {
    "comparison": {"<": "<= >", "<=": "< >", ">": ">= <", ">=": "> <", "==": "!=", "!=": "=="},
    "arithmetic": {
        "+": "-", "-": "+", "*": "/", "/": "*", "%": "/",
        "+=": "-=", "-=": "+=", "*=": "/=", "/=": "*=", "%=": "/=",
    },
    "logic": {"&&": "||", "||": "&&"},
    "bits": {"&": "|", "|": "&", "^": "|", "&=": "|=", "|=": "&=", "^=": "|="},
    "shift": {"<<": ">>", ">>": "<<", "<<=": ">>=", ">>=": "<<="},
}
BINARY = {operator: (kind, others.split()) for kind, table in BINARY.items() for operator, others in table.items()}
OTHER = {"++": ("step", "--"), "--": ("step", "++"), "true": ("truth", "false"), "false": ("truth", "true")}
ESCAPE = re.compile(r"\\(?:x[0-9a-fA-F]+|[0-7]{1,3}|u[0-9a-fA-F]{4}|U[0-9a-fA-F]{8}|.)", re.DOTALL)
CONTROL = re.compile(r"\b(?:if|for|while|switch|else|do|try|catch|case|default)\b")


@dataclass(frozen=True)
class Place:
    path: str
    start: int
    kind: str
    old: str
    new: str


def other_character(character):
    if not character.isascii():
        return "ä" if character == "ö" else "ö"
    if character.isalpha():
        return {"z": "a", "Z": "A"}.get(character) or chr(ord(character) + 1)
    if character.isdigit():
        return str((int(character) + 1) % 10)
    return {".": ",", " ": "_"}.get(character, ".")


def next_number(text):
    """The integer plus one, written in the same way; None if this is no integer."""
    match = re.fullmatch(r"(0[xX]|0[bB]|)([0-9a-fA-F']+?)([uUlLzZ]*)", text)
    if not match:
        return None
    prefix, digits, suffix = match.groups()
    base = {"x": 16, "b": 2}.get(prefix[-1:].lower(), 10)
    try:
        value = int(digits.replace("'", ""), base) + 1
    except ValueError:
        return None
    width = len(digits.replace("'", "")) if prefix else 0
    return prefix + format(value, {16: "X", 2: "b", 10: "d"}[base]).rjust(width, "0") + suffix


class Finder:
    def __init__(self, path, text, random):
        self.path, self.text, self.random = path, text, random
        tokens = [(self.group(match), match.group(), match.start()) for match in TOKEN.finditer(text)]
        self.tokens = [token for token in tokens if token[0] not in ("space", "directive")]
        self.places = []

    @staticmethod
    def group(match):
        return next(name for name, value in match.groupdict().items() if value is not None and name != "fence")

    def add(self, kind, start, old, new):
        self.places.append(Place(self.path, start, kind, old, new))

    def find(self):
        self.blocks = []  # what each open brace belongs to
        head = 0  # where the statement began that the next brace may belong to
        index = 0
        while index < len(self.tokens):
            group, text, start = self.tokens[index]
            skipped = self.past_what_is_no_code(index)
            if skipped > index:
                index = skipped
                continue
            if text == "{":
                self.blocks.append(self.answers_bool(self.text[head:start]))
            if text == "}" and self.blocks:
                self.blocks.pop()
            if text in ("{", "}", ";"):
                head = start + 1
            self.token(index, group, text, start)
            index += 1
        return self.places

    def past_what_is_no_code(self, index):
        """The index after a static_assert or an attribute that begins here."""
        text = self.tokens[index][1]
        if text in ("static_assert", "__attribute__"):
            opening, closing = "(", ")"
        elif text == "[" and self.tokens[index + 1][1:] == ("[", self.tokens[index][2] + 1):
            opening, closing = "[", "]"
        else:
            return index
        depth = 0
        while index < len(self.tokens):
            depth += {opening: 1, closing: -1}.get(self.tokens[index][1], 0)
            if self.tokens[index][1] == closing and depth == 0:
                return index + 1
            index += 1
        return index

    def answers_bool(self, head):
        """Whether a block returns a bool: True, False, or as the block around it."""
        if re.search(r"\[[^\[\]]*\]\s*(?:\([^()]*\)\s*)?(?:mutable\s*)?(?:noexcept\s*)?$", head):
            return True  # a lambda; the compiler knows
        if re.search(r"\bbool\s+[\w:]+\s*\(|\bbool\s+operator", head):
            return True
        if "(" in head and not CONTROL.search(head):
            return False
        return self.blocks[-1] if self.blocks else False

    def token(self, index, group, text, start):
        if group == "number":
            number = next_number(text)
            if number is not None:
                self.add("constant", start, text, number)
        elif group in ("string", "character", "raw"):
            self.literal(group, text, start)
        elif text in OTHER:
            kind, other = OTHER[text]
            self.add(kind, start, text, other)
        elif text == "!":
            self.add("negation", start, "!", "")
        elif text == "return":
            self.returned(index)
        elif text in BINARY and self.between_blanks(text, start):
            kind, others = BINARY[text]
            self.add(kind, start, text, self.random.choice(others))

    def between_blanks(self, text, start):
        end = start + len(text)
        return self.text[start - 1 : start].isspace() and self.text[end : end + 1].isspace()

    def literal(self, group, text, start):
        quote = "'" if group == "character" else '"'
        first, last = text.index(quote) + 1, len(text) - 1
        if group == "raw":
            first, last = text.index("(") + 1, text.rindex(")")
            escaped = set()
        else:
            escaped = {at for match in ESCAPE.finditer(text) for at in range(match.start(), match.end())}
        free = [at for at in range(first, last) if at not in escaped]
        if free:
            at = self.random.choice(free)
            self.add("text", start + at, text[at], other_character(text[at]))

    def returned(self, index):
        if not self.blocks or not self.blocks[-1] or self.tokens[index + 1][0] == "number":
            return
        first = self.tokens[index + 1]
        if first[1] in (";", "{", "true", "false"):
            return
        depth, end = 0, index + 1
        while end < len(self.tokens) and (depth > 0 or self.tokens[end][1] != ";"):
            depth += {"(": 1, "{": 1, "[": 1, ")": -1, "}": -1, "]": -1}.get(self.tokens[end][1], 0)
            end += 1
        if end < len(self.tokens):
            expression = self.text[first[2] : self.tokens[end][2]]
            # Compiles for a bool only: anything else would have other values that count as true.
            negated = f"[](auto value) requires __is_same(decltype(value), bool) {{ return !value; }}({expression})"
            self.add("return", first[2], expression, negated)


def find_places(path, text, random):
    return Finder(path, text, random).find()
