"""How often sources use their variables, counted without the reader: uses_recount.py LQ FILE...

Each count must be what `lq symbols --uses` has. For files that are whole compilation units, without a
fault, whose names mean one thing each; every file is a project of its own."""

import collections
import csv
import io
import re
import subprocess
import sys

from recount import declarations, read, without_comments, without_strings

TOKEN = re.compile(r"\w+#[-+]?[\w.:#]*|\d[\w.]*|%\w[\w.*]*|[^\W\d]\w*|:=|=>|\.\.|\S")
SECTION = re.compile(r"(?<![\w.#])VAR(?:_\w+)?\b(?:[ \t]+(?:CONSTANT|RETAIN|NON_RETAIN|PERSISTENT)\b)*(.*?)\bEND_VAR\b",
                     re.S | re.I)
UNIT = re.compile(r"^\s*(PROGRAM|FUNCTION_BLOCK|FUNCTION)\s+(\w+)(.*?)\bEND_\1\b", re.S | re.I | re.M)
JUMPS = ("JMP", "JMPC", "JMPCN")


def is_word(token):
    return re.fullmatch(r"[^\W\d]\w*", token) is not None


class Project:
    def __init__(self, text):
        code = without_strings(without_comments(text))
        self.members = {}  # by unit or structure, then by name, all in capitals: the type
        self.external = set()
        self.functions = set()
        self.counts = collections.Counter()
        pragmas = {match.group(2).upper(): re.findall(r"\{[^}]*\}", match.group(3)) for match in UNIT.finditer(text)}
        values = []  # the unit, and what its declarations name
        for name, body in re.findall(r"(\w+)\s*:\s*STRUCT\b(.*?)\bEND_STRUCT\b", code, re.S | re.I):
            values += self.declare(name.upper(), body)
        # Of an enumeration's value and an instance of one name, the value is what stands alone.
        types = " ".join(re.findall(r"^\s*TYPE\b.*?\bEND_TYPE\b", code, re.S | re.I | re.M))
        self.values = {value.split(":=")[0].strip().upper()
                       for text in re.findall(r":\s*\w*\s*\(([^()]*)\)\s*(?:;|:=)", types) for value in text.split(",")}
        units = [(match.group(2).upper(), match.group(3)) for match in UNIT.finditer(code)]
        self.functions = {match.group(2).upper() for match in UNIT.finditer(code) if match.group(1).upper() == "FUNCTION"}
        for unit, inner in units:
            for section in SECTION.finditer(inner):
                if section.group(0).upper().startswith("VAR_EXTERNAL"):
                    self.external |= {(unit, name.upper()) for name, *_ in declarations(section.group(1))}
                values += self.declare(unit, section.group(1))
        outside = UNIT.sub("", code)
        for section in SECTION.finditer(outside):
            if section.group(0).upper().startswith("VAR_GLOBAL"):
                values += self.declare("", section.group(1))
        values += [("", text) for text in re.findall(r"\b(?:SINGLE|INTERVAL)\s*:=([^,)]*)", outside, re.I)]
        for unit, text in values:
            self.walk(unit, TOKEN.findall(text), True)
        for unit, inner in units:
            for word in re.findall(r"(?<!\w)[^\W\d]\w*", " ".join(pragmas.get(unit, ()))):
                owner = next((owner for owner in (unit, "") if word.upper() in self.members.get(owner, ())), None)
                if owner is not None:
                    self.use(owner, word.upper())
            header, _, body = SECTION.sub(" ; ", inner).partition(";")
            self.walk(unit, TOKEN.findall(header + body))

    def declare(self, owner, body):
        names = self.members.setdefault(owner, {})
        values = []
        for name, kind, _, value, _ in declarations(body):
            names.setdefault(name.upper(), re.sub(r"^(ARRAY\[[^]]*\]OF|REF_TO)+", "", kind))
            values.append((owner, value + " " + " ".join(re.findall(r"[\[(](.*)[\])]", kind))))
        return values

    def use(self, owner, name):
        self.counts[(owner, name)] += 1
        if (owner, name) in self.external:
            self.counts[("", name)] += 1

    def walk(self, unit, tokens, is_value=False):
        stack, callees = [], {}
        for at, token in enumerate(tokens):
            after = tokens[at + 1] if at + 1 < len(tokens) else ""
            before = tokens[at - 1] if at else ""
            if token in "([":
                stack.append(callees.get(at, ""))
            elif token in ")]":
                stack = stack[:-1]
            elif token == ";":
                stack = []
            is_alone = after not in (".", "(", ":=")
            if not is_word(token) or before == "." or before.upper() in JUMPS or \
                    is_alone and token.upper() in self.values:
                continue
            name = token.upper()
            if after in (":=", "=>") and (is_value or stack):
                if stack and name in self.members.get(stack[-1], ()):
                    self.use(stack[-1], name)
                continue
            owner = unit if name in self.members.get(unit, ()) else "" if name in self.members.get("", ()) else None
            if owner is None:
                callees[at + 1] = name if name in self.functions else ""
                continue
            self.use(owner, name)
            self.follow(tokens, at + 1, self.members[owner][name], callees)

    def follow(self, tokens, at, kind, callees):
        """The members behind a variable of that type."""
        while at < len(tokens):
            if tokens[at] == "^":
                at += 1
            elif tokens[at] == "[":
                depth = 0
                while at < len(tokens):
                    depth += (tokens[at] == "[") - (tokens[at] == "]")
                    at += 1
                    if depth == 0:
                        break
            elif tokens[at] == "." and at + 1 < len(tokens) and tokens[at + 1].upper() in self.members.get(kind, ()):
                member = tokens[at + 1].upper()
                self.use(kind, member)
                kind = self.members[kind][member]
                at += 2
            else:
                break
        callees[at] = kind


def main():
    faults, count = 0, 0
    for path in sys.argv[2:]:
        project = Project(read(path))
        told = subprocess.run([sys.argv[1], "symbols", "--uses", "--csv", path], capture_output=True, check=False)
        for row in csv.DictReader(io.StringIO(told.stdout.decode())):
            is_global = row["section"].startswith("VAR_GLOBAL")
            own = project.counts[("" if is_global else row["path"].upper(), row["name"].upper())]
            count += 1
            if str(own) != row["uses"]:
                print(f"{path}:{row['line']}: {row['path']}.{row['name']} is used {own} times, not {row['uses']}")
                faults += 1
    print(f"{count} variables")
    return 1 if faults or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
