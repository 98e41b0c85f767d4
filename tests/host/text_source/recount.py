"""What sources declare, counted without the reader: recount.py LQ FILE...

Every variable with its unit, section, type, address and value, in order, must be what `lq symbols`
lists of the file. What differs must be told: by a message that names the variable, or stands in its
section or what that is left out with, before it or on its line."""

import csv
import difflib
import io
import re
import subprocess
import sys

COMMENT = re.compile(r"""('(?:\$.|[^'$\n])*'|"(?:\$.|[^"$\n])*")|\(\*.*?\*\)|/\*.*?\*/|//[^\n]*|\{[^}]*\}""", re.S)
UNIT = re.compile(r"\b(PROGRAM|FUNCTION_BLOCK|FUNCTION|CONFIGURATION|RESOURCE|TYPE)\b\s*"
                  r"(?:(?:PUBLIC|INTERNAL|ABSTRACT|FINAL)\s+)?(\w*)", re.I)
SECTION = re.compile(r"^\s*(VAR(?:_[A-Z_]+)?)\b((?:[ \t]+(?:CONSTANT|RETAIN|NON_RETAIN|PERSISTENT)\b)*)(.*)$",
                     re.S | re.I)
BEYOND = re.compile(r"\bEND_\w+|^\s*(?:VAR(?:_\w+)?|PROGRAM|FUNCTION|FUNCTION_BLOCK|TYPE|METHOD|ACTION)\b", re.I | re.M)
KIND = r"(?<![\w.#])VAR(_INPUT|_OUTPUT|_IN_OUT|_TEMP|_EXTERNAL|_GLOBAL|_ACCESS|_CONFIG|_INST|_STAT)?\b"
ENDS = ["END_PROGRAM", "END_FUNCTION", "END_FUNCTION_BLOCK", "END_CONFIGURATION", "END_RESOURCE"]
MARKS = ["CONSTANT", "RETAIN", "NON_RETAIN", "PERSISTENT"]


def read(path):
    return open(path, encoding="utf-8", newline="").read().split("\x1a")[0]


def without_comments(text):
    blank = lambda found: found.group(1) or re.sub(r"[^\n]", " ", found.group(0))
    code = COMMENT.sub(blank, text)
    if "*)" not in code:
        return code
    # Comments in comments: the innermost ones first.
    inner, found = r"\(\*(?:(?!\(\*|\*\)).)*\*\)", True
    while found:
        text, found = re.subn(inner, lambda one: re.sub(r"[^\n]", " ", one.group()), text, flags=re.S)
    return COMMENT.sub(blank, text)


def without_strings(code):
    return re.sub(r"""'(?:\$.|[^'$\n])*'|"(?:\$.|[^"$\n])*\"""", lambda s: "'" + "0" * (len(s.group()) - 2) + "'", code)


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
    """The declarations of a section, cut at semicolons that are in no string, each with where it begins."""
    at = 0
    for text in re.split(r""";(?=(?:[^'"]|'(?:\$.|[^'$])*'|"(?:\$.|[^"$])*")*$)""", body):
        begin, at = at, at + len(text) + 1
        if not text.strip():
            continue
        names, _, rest = text.partition(":")
        kind, _, value = rest.partition(":=")
        names, _, address = re.sub(r"\s+AT\s+", "\1", names, flags=re.I).partition("\1")
        for name in names.split(","):
            place = begin + (text.index(name.strip()) if name.strip() else len(text) - len(text.lstrip()))
            yield name.strip(), type_of(kind), address.strip(), value_of(value), place


def row_of(holder, section, name, kind, address, value):
    if section.startswith("VAR_ACCESS"):  # "name : path : type READ_ONLY"
        address, _, kind = kind.partition(":")  # in capitals, as types are
        kind, direction, _ = re.match(r"(.*?)(READ_ONLY|READ_WRITE)?()$", kind).groups()
        section += " " + direction if direction else ""
    return holder, section, name, kind, address, value


def counted(text):
    """The rows, and of each its line and that of what it stands in."""
    code = without_comments(text)
    hidden = without_strings(code)
    line_of = lambda at: text.count("\n", 0, at) + 1
    holders, rows, at, left_out = [], [], 0, None
    for found in re.finditer(KIND + r"|\bEND_\w+\b|^\s*(?:METHOD|PROPERTY)\b|" + UNIT.pattern, hidden,
                             re.I | re.M):
        if found.start() < at:
            continue
        word = found.group().strip().upper()
        if re.fullmatch(KIND, word):
            beyond = BEYOND.search(hidden, found.end())
            end = beyond.start() if beyond else len(hidden)
            section = SECTION.match(code[found.start():end])
            marks = [mark for mark in MARKS if mark in section.group(2).upper().split()]
            begin = found.start() + section.start(3)
            for *row, place in declarations(section.group(3)):
                rows.append((row_of(holders[-1] if holders else "", " ".join([section.group(1).upper(), *marks]), *row),
                             line_of(begin + place), left_out or line_of(found.start())))
            at = end + (len("END_VAR") if beyond and beyond.group().upper() == "END_VAR" else 0)
        elif word in ("METHOD", "PROPERTY"):
            left_out = line_of(found.end())
        elif word.startswith("END_"):
            left_out = None
            holders = holders[:-1] if word in ENDS else holders
        elif word.startswith("PROGRAM") and re.match(r"\s*(WITH\b|:)", hidden[found.end():]):
            pass  # an instance
        elif found.group(2).upper() != "TYPE":
            left_out = None
            holders.append(found.group(3))
    return rows


def path_of(row):
    return plain(row["address"]).upper() if row["section"].startswith("VAR_ACCESS") else plain(row["address"])


def listed(lq, path):
    told = subprocess.run([lq, "symbols", "--csv", path], capture_output=True, check=False)
    rows = [((row["path"].split(".")[-1], row["section"], row["name"], plain(row["type"]).upper(), path_of(row),
              plain(row["initial"])), int(row["line"]), int(row["line"]))
            for row in csv.DictReader(io.StringIO(told.stdout.decode()))]
    return rows, told.stderr.decode()


def is_told(row, messages):
    (_, _, name, *_), line, begin = row
    for message in messages.splitlines():
        place = re.search(r":(\d+):\d+: ", message)
        if f"'{name}'" in message or place and (begin <= int(place.group(1)) <= line or
                                                "more)" in message and int(place.group(1)) <= line):
            return True
    return False


def main():
    faults, count = 0, 0
    for path in sys.argv[2:]:
        own = counted(read(path))
        lqs, messages = listed(sys.argv[1], path)
        # Lists of a project stand before or behind its units, in the order of both.
        for is_global in (False, True):
            mine = [row for row in own if row[0][1].startswith("VAR_GLOBAL") == is_global]
            theirs = [row for row in lqs if row[0][1].startswith("VAR_GLOBAL") == is_global]
            count += len(mine)
            pairs = difflib.SequenceMatcher(None, [row[0] for row in mine], [row[0] for row in theirs], False)
            for kind, a, b, c, d in pairs.get_opcodes():
                for row in [] if kind == "equal" else mine[a:b] + theirs[c:d]:
                    if not is_told(row, messages):
                        print(f"{path}:{row[1]}: {row[0]} is {'counted' if row in mine else 'listed'} alone")
                        faults += 1
    print(f"{count} variables")
    return 1 if faults or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
