"""What sources declare, counted without the reader: recount.py LQ FILE...

Every variable with its unit, section, type, address and value, in order, must be what `lq symbols`
lists of the file. For files that are whole compilation units, without a fault."""

import csv
import io
import re
import subprocess
import sys

COMMENT = re.compile(r"""('(?:\$.|[^'$\n])*'|"(?:\$.|[^"$\n])*")|\(\*.*?\*\)|/\*.*?\*/|//[^\n]*|\{[^}]*\}""", re.S)
UNIT = re.compile(r"\b(PROGRAM|FUNCTION_BLOCK|FUNCTION|CONFIGURATION|RESOURCE|TYPE)\b\s*"
                  r"(?:(?:PUBLIC|INTERNAL|ABSTRACT|FINAL)\s+)?(\w*)", re.I)
SECTION = re.compile(r"^\s*(VAR(?:_[A-Z_]+)?)\b((?:[ \t]+(?:CONSTANT|RETAIN|NON_RETAIN|PERSISTENT)\b)*)(.*)$",
                     re.S | re.I)
ENDS = ["END_PROGRAM", "END_FUNCTION", "END_FUNCTION_BLOCK", "END_CONFIGURATION", "END_RESOURCE"]
MARKS = ["CONSTANT", "RETAIN", "NON_RETAIN", "PERSISTENT"]


def plain(text):
    """Without blanks outside of strings, as types and values are compared."""
    parts = re.split(r"""('(?:\$.|[^'$])*'|"(?:\$.|[^"$])*")""", text)
    return "".join(part if i % 2 else re.sub(r"\s", "", part) for i, part in enumerate(parts))


def type_of(text):
    text = re.sub(r"\bPOINTER\s+TO\b", "REF_TO", text.strip(), flags=re.I)
    text = re.sub(r"(STRING\s*)\[([^\]]*)\]", r"\1(\2)", text, flags=re.I)
    return plain(text).upper()


def value_of(text):
    text = plain(text)
    members = re.fullmatch(r"\((\w+:=.*)\)", text, re.S)
    return members.group(1) if members else text


def declarations(body):
    """The declarations of a section, cut at semicolons that are in no string."""
    for text in re.split(r""";(?=(?:[^'"]|'(?:\$.|[^'$])*'|"(?:\$.|[^"$])*")*$)""", body):
        if not text.strip():
            continue
        names, _, rest = text.partition(":")
        kind, _, value = rest.partition(":=")
        names, _, address = re.sub(r"\s+AT\s+", "\1", names, flags=re.I).partition("\1")
        for name in names.split(","):
            yield name.strip(), type_of(kind), address.strip(), value_of(value)


def counted(text):
    code = COMMENT.sub(lambda found: found.group(1) or re.sub(r"[^\n]", " ", found.group(0)), text)
    hidden = re.sub(r"""'(?:\$.|[^'$\n])*'|"(?:\$.|[^"$\n])*\"""", lambda s: "'" * len(s.group()), code)
    holders, rows, at = [], [], 0
    for found in re.finditer(r"(?<![\w.#])VAR(_\w+)?\b|\bEND_\w+\b|" + UNIT.pattern, hidden, re.I):
        if found.start() < at:
            continue
        word = found.group().strip().upper()
        if re.fullmatch(r"VAR(_\w+)?", word):
            end = hidden.upper().index("END_VAR", found.end())
            section = SECTION.match(code[found.start():end])
            marks = [mark for mark in MARKS if mark in section.group(2).upper().split()]
            for row in declarations(section.group(3)):
                rows.append((holders[-1] if holders else "", " ".join([section.group(1).upper(), *marks]), *row))
            at = end + len("END_VAR")
        elif word.startswith("END_"):
            holders = holders[:-1] if word in ENDS else holders
        elif word.startswith("PROGRAM") and re.match(r"\s*(WITH\b|:)", hidden[found.end():]):
            pass  # an instance
        elif found.group(2).upper() != "TYPE":
            holders.append(found.group(3))
    return rows


def listed(lq, path):
    told = subprocess.run([lq, "symbols", "--csv", path], capture_output=True, check=False)
    return [(row["path"].split(".")[-1], row["section"], row["name"], plain(row["type"]).upper(), row["address"],
             plain(row["initial"])) for row in csv.DictReader(io.StringIO(told.stdout.decode()))]


faults, count = 0, 0
for path in sys.argv[2:]:
    own = counted(open(path, encoding="utf-8", newline="").read().split("\x1a")[0])
    lqs = listed(sys.argv[1], path)
    # Lists of a project stand before or behind its units, in the order of both.
    for is_global in (False, True):
        mine = [row for row in own if row[1].startswith("VAR_GLOBAL") == is_global]
        theirs = [row for row in lqs if row[1].startswith("VAR_GLOBAL") == is_global]
        count += len(mine)
        for a, b in zip(mine + [None] * len(theirs), theirs + [None] * len(mine)):
            if a != b:
                print(f"{path}: {a} is listed as {b}")
                faults += 1
                break
print(f"{count} variables")
sys.exit(1 if faults or count == 0 else 0)
