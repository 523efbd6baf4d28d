"""Finds the possible mutations of C++ source text: replaced operators, bounds and constants, and removed statements.
Works on tokens without parsing C++; the caller drops mutations that do not compile. Relies on .clang-format to tell
binary operators, which have a space on either side, from references, pointers and template brackets."""
import re
from dataclasses import dataclass

TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\.)*(?:\\\n[^\n]*)*)
  | (?P<text>(?:u8|L|u|U)?"(?:\\.|[^"\\\n])*"|(?:u8|L|u|U)?'(?:\\.|[^'\\\n])*')
  | (?P<number>(?:0[xX][0-9a-fA-F']+|0[bB][01']+|\d[\d']*(?:\.\d*)?(?:[eE][+-]?\d+)?|\.\d+)[uUlLfFzZ]*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<mark><<=|>>=|<=>|\.\.\.|->\*|<<|>>|<=|>=|==|!=|&&|\|\||\+\+|--
           |\+=|-=|\*=|/=|%=|&=|\|=|\^=|->|::|\[\[|\]\]|[^\s])
""", re.VERBOSE | re.MULTILINE | re.DOTALL)

# The replacements of each operator.
OPERATORS = {
    "+": ("-",), "-": ("+",), "*": ("/",), "/": ("*",), "%": ("*",),
    "<<": (">>",), ">>": ("<<",), "&": ("|",), "|": ("&",), "^": ("&",),
    "<": ("<=", ">="), "<=": ("<", ">"), ">": (">=", "<="), ">=": (">", "<"), "==": ("!=",), "!=": ("==",),
    "&&": ("||",), "||": ("&&",),
    "+=": ("-=",), "-=": ("+=",), "*=": ("/=",), "/=": ("*=",), "%=": ("*=",),
    "<<=": (">>=",), ">>=": ("<<=",), "&=": ("|=",), "|=": ("&=",), "^=": ("&=",),
}
STEPS = {"++": "--", "--": "++"}
WORDS = {"true": "false", "false": "true", "True": "False", "False": "True"}
# A statement that begins with one of these words is not a single expression.
NO_EXPRESSION = {
    "if", "else", "for", "while", "do", "switch", "case", "default", "try", "catch", "using", "namespace", "class",
    "struct", "enum", "template", "typedef", "static_assert", "public", "private", "protected", "friend", "constexpr",
    "const", "auto", "static", "inline", "extern", "virtual", "explicit", "union", "goto", "return", "break", "continue",
    "operator", "throw",
}
BLOCKS = {"if", "else", "for", "while", "do", "switch", "try", "catch", "template"}
# Returned values that are empty already; removing them changes nothing.
NOTHING = {"{}", "false", "False", "0", "nullptr", "std::nullopt"}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    start: int
    end: int


@dataclass(frozen=True)
class Change:
    """Replaces text[start:end]; line counts from 1."""
    start: int
    end: int
    replacement: str
    line: int
    what: str


def tokens_of(text):
    """The tokens that generate code: without preprocessor lines, attributes, static assertions and Qt's properties."""
    found, depth, asserting, generating = [], 0, False, False
    for match in TOKEN.finditer(text):
        kind = match.lastgroup
        if kind in ("comment", "directive"):
            continue
        token = Token(kind, match.group(), match.start(), match.end())
        if asserting:
            asserting = token.text != ";"
        elif generating:
            generating = token.text != ")"
        elif token.text == "Q_PROPERTY":
            generating = True
        elif token.text == "static_assert":
            asserting = True
        elif token.text == "[[":
            depth += 1
        elif token.text == "]]" and depth:
            depth -= 1
        elif depth == 0:
            found.append(token)
    return found


def spaced(text, token):
    """Whether an operator is between spaces or at the end of a line, as a binary one is."""
    return text[token.start - 1] in " \n" and text[token.end:token.end + 1] in (" ", "\n")


def ends_operand(token):
    return token.kind in ("word", "number", "text") and token.text not in ("return", "case", "operator") or \
        token.text in (")", "]")


def numbers_beside(literal):
    """The literal plus one and minus one, in the same base and of the same type."""
    body = re.fullmatch(r"(.*?)([uUlLfFzZ]*)", literal)
    digits, suffix = body.groups()
    if digits.lower().startswith("0x"):
        digits, suffix = literal.rstrip("uUlLzZ"), literal[len(literal.rstrip("uUlLzZ")):]
        value = int(digits.replace("'", ""), 16)
        return [f"0x{value + 1:X}{suffix}"] + ([f"0x{value - 1:X}{suffix}"] if value else [])
    digits = digits.replace("'", "")
    if digits.lower().startswith("0b"):
        value = int(digits, 2)
    elif "." in digits or "e" in digits.lower():
        value = float(digits)
        return [f"{value + 1}{suffix}", f"({value - 1}{suffix})"]
    else:
        value = int(digits, 8) if re.fullmatch(r"0\d+", digits) else int(digits)
    return [f"{value + 1}{suffix}"] + ([f"{value - 1}{suffix}"] if value else [])


def token_changes(text, tokens):
    """(token, replacement, what) for all tokens that can be replaced."""
    for i, token in enumerate(tokens):
        before = tokens[i - 1] if i else None
        after = tokens[i + 1] if i + 1 < len(tokens) else None
        if before is None or after is None or before.text == "operator" or before.text == "#":
            continue
        if token.text in OPERATORS and spaced(text, token) and ends_operand(before):
            for other in OPERATORS[token.text]:
                yield token, other, f"{token.text} to {other}"
        elif token.text in STEPS:
            yield token, STEPS[token.text], f"{token.text} to {STEPS[token.text]}"
        elif token.text in ("-", "!", "~") and not spaced(text, token) and not ends_operand(before):
            yield token, "", f"{token.text} removed"
        elif token.kind == "number":
            for other in numbers_beside(token.text):
                yield token, other, f"{token.text} to {other}"
        elif token.text in WORDS:
            yield token, WORDS[token.text], f"{token.text} to {WORDS[token.text]}"


def begins_value(part):
    """Whether the statement so far expects a value: it is an assignment, an initialisation or a return."""
    if not part or part[0].text in BLOCKS:
        return False
    depth = 0
    for token in part:
        depth += (token.text in ("(", "[")) - (token.text in (")", "]"))
        if depth == 0 and token.text in ("=", "return"):
            return True
    return False


def statements(tokens):
    """(first, last) token index of each statement that ends with a semicolon, including those in lambdas."""
    first, open_marks = 0, []
    for i, token in enumerate(tokens):
        inside = bool(open_marks) and open_marks[-1][0] != "{"
        if token.text in ("(", "["):
            open_marks.append((token.text, first))
        elif token.text == "{":
            # A brace inside a statement belongs to a lambda or a list; the statement continues after it.
            part_of_one = inside or begins_value(tokens[first:i])
            open_marks.append(("{", first if part_of_one else None))
            first = i + 1
        elif token.text in (")", "]", "}") and open_marks:
            outer = open_marks.pop()[1]
            first = i + 1 if outer is None else outer
        elif token.text in (";", ":") and not inside:
            if token.text == ";" and first < i:
                yield first, i
            if token.text == ";" or tokens[first].text in ("case", "default", "public", "private", "protected"):
                first = i + 1


def statement_changes(text, tokens):
    """(start, end, replacement, what) for the statements that can be removed."""
    for first, last in statements(tokens):
        head, span = tokens[first], (tokens[first].start, tokens[last].end)
        if head.text == "return":
            if last == first + 1:
                yield *span, ";", "return removed"
            elif text[tokens[first + 1].start:tokens[last].start] not in NOTHING:
                yield *span, "return {};", "returned value removed"
        elif head.text in ("break", "continue"):
            yield *span, ";", f"{head.text} removed"
        elif head.text not in NO_EXPRESSION and is_expression(tokens[first:last]):
            yield *span, ";", "statement removed"


def is_expression(part):
    """Whether a statement is an assignment, an increment, a decrement or a call, and not a declaration."""
    if part[0].text == "emit":
        return True
    texts = [token.text for token in part]
    if texts[-1] in ("default", "delete") or texts[0] == "~":
        return False
    if any(text in STEPS for text in texts):
        return True
    for i, (left, right) in enumerate(zip(part, part[1:])):
        # Two adjacent words, or a word after the bracket, star or ampersand of a type: a declaration.
        if right.kind == "word" and (left.kind == "word" or left.text in (">", "&", "*", "&&") and i < 8
                                     and "(" not in texts[:i] and "=" not in texts[:i]):
            return False
        if left.text == "=" or left.text == "(":
            break
    return "(" in texts or any(text == "=" or text in OPERATORS and text.endswith("=") for text in texts)


def changes_in(text):
    """All changes of a file's text, ordered by position."""
    tokens = tokens_of(text)
    found = [(token.start, token.end, other, what) for token, other, what in token_changes(text, tokens)]
    found += statement_changes(text, tokens)
    return [Change(start, end, other, text.count("\n", 0, start) + 1, what)
            for start, end, other, what in sorted(set(found))]
