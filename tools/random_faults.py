"""Draws faults by chance, the same for the same seed.

A line is drawn, evenly over all lines of the sources in FOLDERS that have a place for a fault, and
none twice; then one of the kinds of faults that it has a place for, then the place. The kinds: a
relational operator becomes its neighbour, + and - each other, && and || each other; a condition or
what is returned is negated; a number is one more or less; a call or an assignment is left out; true
and false each other; ++ or -- is left out.
"""

import pathlib
import random
import re

FOLDERS = ("frame", "types", "containers", "scanner", "cgtab", "pouh", "translate", "host")
UNSEEN = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<![0-9A-F])\'(?:\\.|[^\'\\\n])+\'', re.DOTALL)
NO_CODE = re.compile(r"\s*(#|$|template\b|static_assert\b|using\b|friend\b|extern\b|namespace\b|typedef\b|__builtin)")
OTHER = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "+": "-", "-": "+", "+=": "-=",
         "-=": "+=", "&&": "||", "||": "&&", "true": "false", "false": "true", "++": "", "--": ""}
SWAPS = {"relation": r"(?<= )(?:[<>]=?|[=!]=)(?=\s|$)", "sum": r"(?<= )[+-]=?(?=\s|$)",
         "logic": r"(?<= )(?:&&|\|\|)(?=\s|$)", "truth": r"\b(?:true|false)\b", "step": r"\+\+|--"}
NUMBER = r"(?<![\w.\"'])(0[xX][0-9A-Fa-f]+|\d+)(?=[uUlL]*(?![\w.\"']))"
CONDITIONS = r"\b(?:if|while) \((.*)\) \{$", r"(?:= |return )([^?]*) \? ", r"^\s*return ([^{].*);$"
STATEMENT = re.compile(r"\s*((?:\(void\)|\*|delete )?[\w:.\[\]>-]+\(.*\);|delete .*;|"
                       r"[*(]?[\w:.\[\]()>-]+ (?:[-+|&^*/%]|<<|>>)?= .*;)$")
CONSTANT = re.compile(r"true|false|nullptr|-?\w*\d\w*$")


def one_beside(number):
    value = int(number, 0) if number[:2] in ("0x", "0X") else int(number)
    return [f"0x{n:X}" if "x" in number else str(n) for n in (value + 1, value - 1) if n >= 0]


def places(code, is_statement):
    """By kind, where the line can have a fault: from, to, and what takes the place."""
    found = {kind: [(m.start(), m.end(), OTHER[m[0]]) for m in re.finditer(swap, code)]
             for kind, swap in SWAPS.items()}
    found["number"] = [(m.start(1), m.end(1), n) for m in re.finditer(NUMBER, code) for n in one_beside(m[1])]
    found["condition"] = [(m.start(1), m.end(1), None) for form in CONDITIONS for m in re.finditer(form, code)
                          if m[1].count("(") == m[1].count(")") and not re.search(r";| = ", m[1])
                          and not CONSTANT.match(m[1])]
    statement = STATEMENT.match(code) if is_statement else None
    found["statement"] = [(statement.start(1), statement.end(1), ";")] if statement else []
    return {kind: of_kind for kind, of_kind in found.items() if of_kind}


def lines_of(root, source):
    """The lines that can have a fault: the file's lines, the number, and the places."""
    text = (root / source).read_text()
    lines = text.split("\n")
    masked = UNSEEN.sub(lambda m: re.sub(r"[^\n]", '"' if m[0][0] in "\"'" else " ", m[0]), text)
    before = ";"
    for number, code in enumerate(map(str.rstrip, masked.split("\n"))):
        if not NO_CODE.match(code) and not before.endswith("\\"):
            if of_line := places(code, before[-1] in ";{}:"):
                yield source, lines, number, of_line
        before = code or before


def faults(root, seed, pattern):
    """Endless enough: source, a text that it has once, and what takes its place; ⏎ ends a line."""
    drawing = random.Random(seed)
    sources = sorted(str(path.relative_to(root)) for folder in FOLDERS
                     for path in (root / folder).rglob("*") if path.suffix in (".cpp", ".h"))
    found = [line for source in sources if pattern in source for line in lines_of(root, source)]
    for source, lines, number, of_line in drawing.sample(found, len(found)):
        start, end, other = drawing.choice(of_line[drawing.choice(sorted(of_line))])
        line, first = lines[number], number
        other = f"!({line[start:end]})" if other is None else other
        text, changed = line.strip(), (line[:start] + other + line[end:]).strip()
        while "\n".join(lines).count(text) != 1 and first > 0:
            first -= 1
            text, changed = (lines[first].strip() + "\n" + "\n".join(lines[first + 1:number] + [rest])
                             for rest in (line, line[:start] + other + line[end:]))
        yield source, text, changed.rstrip(" "), None
