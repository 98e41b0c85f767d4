"""Counts the variables of projects anew, with another reader of XML, and compares them with what
`lq symbols` lists, row by row: symbols_test.py LQ FILE_OR_FOLDER..."""

import csv
import io
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree as ET

COLUMNS = "path name section type address initial comment file line column".split()
SECTIONS = {"localVars": "VAR", "tempVars": "VAR_TEMP", "inputVars": "VAR_INPUT", "outputVars": "VAR_OUTPUT",
            "inOutVars": "VAR_IN_OUT", "externalVars": "VAR_EXTERNAL", "globalVars": "VAR_GLOBAL", "configVars": "VAR_CONFIG",
            "accessVars": "VAR_ACCESS"}
ACCESS = {"readOnly": " READ_ONLY", "readWrite": " READ_WRITE"}
MARKS = {"constant": " CONSTANT", "retain": " RETAIN", "nonretain": " NON_RETAIN", "persistent": " PERSISTENT"}


def tag(element):
    return element.tag.split("}")[-1]


def child(element, name):
    return next((c for c in element if tag(c) == name), None)


def span(element):
    return element.get("lower") + ".." + element.get("upper")


def type_of(holder):
    kind = holder[0]
    name, base = tag(kind), child(kind, "baseType")
    if name == "derived":
        return kind.get("name").strip()
    if name.lower() in ("string", "wstring"):
        return name.upper() + (f"({kind.get('length')})" if kind.get("length") else "")
    if name == "array":
        spans = ", ".join(span(c) for c in kind if tag(c) == "dimension")
        return f"ARRAY [{spans}] OF {type_of(base)}"
    if name.startswith("subrange"):
        return f"{type_of(base)} ({span(child(kind, 'range'))})"
    if name == "enum":
        return "(" + ", ".join(v.get("name") for v in child(kind, "values")) + ")"
    if name == "struct":
        return "STRUCT " + "".join(f"{v.get('name')} : {type_of(child(v, 'type'))}; " for v in kind) + "END_STRUCT"
    return "REF_TO " + type_of(base) if name == "pointer" else name


def value_of(holder, isInner=False):
    kind = holder[0]
    if tag(kind) == "simpleValue":
        return kind.get("value").strip()
    if tag(kind) == "structValue":
        text = ", ".join(f"{v.get('member')} := {value_of(v, True)}" for v in kind)
        return f"({text})" if isInner else text
    counts = [(v.get("repetitionValue") or "1", value_of(v, True)) for v in kind]
    return "[" + ", ".join(text if n == "1" else f"{n}({text})" for n, text in counts) + "]"


def recount(root, file):
    """The rows without their places, for each variable that is in a list of variables."""

    def walk(element, path):
        name = tag(element)
        if name in ("pou", "configuration", "resource"):
            path = path + [element.get("name")]
        for variable in element if name in SECTIONS else []:
            isAccess = tag(variable) == "accessVariable"
            place = variable.get("instancePathAndName")
            title = variable.get("alias") if isAccess else variable.get("name", place)
            if tag(variable) not in ("variable", "configVariable", "accessVariable") or title is None:
                continue
            marks = "".join(text for mark, text in MARKS.items() if element.get(mark) in ("true", "1"))
            initial, comment = child(variable, "initialValue"), child(variable, "documentation")
            rows.append([".".join(path), title.strip(), SECTIONS[name] + marks + ACCESS.get(variable.get("direction"), ""),
                         type_of(child(variable, "type")),
                         ((place if isAccess else variable.get("address")) or "").strip(),
                         "" if initial is None else value_of(initial),
                         " ".join("".join(comment.itertext()).split()) if comment is not None else "", file])
        for inner in element:
            walk(inner, path)

    rows = []
    walk(root, [])
    return rows


def check(lq, path):
    """What differs."""
    run = subprocess.run([lq, "symbols", path, "--csv"], capture_output=True)
    try:
        root = ET.parse(path).getroot()
    except ET.ParseError as fault:
        return [] if run.returncode == 2 else [f"read, and yet {fault}"]
    if run.returncode not in (0, 1):
        return [run.stderr.decode().strip()]
    titles, *rows = csv.reader(io.StringIO(run.stdout.decode(), newline=""))
    found = [f"columns {titles}"] if titles != COLUMNS else []
    expected, lines = recount(root, str(path)), path.read_text("utf-8").split("\n")
    for row, other in zip(rows, expected):
        row[6] = " ".join(row[6].split())
        found += [f"{row} is {other}"] if row[:8] != other else []
        place = lines[int(row[8]) - 1][int(row[9]) - 1:]
        found += [f"{row} begins not so: {place}"] if not re.match(r"<(\w+:)?(configV|accessV|v)ariable\b", place) else []
    found += [f"{len(rows)} rows are {len(expected)}"] if len(rows) != len(expected) else []
    for structure in [e for e in root.iter() if tag(e) == "struct"]:
        structure.clear()  # its members are no variables
    addresses = sorted(e.get("address").strip() for e in root.iter() if e.get("address"))
    if sorted(row[4] for row in rows if row[4] and "VAR_ACCESS" not in row[2]) != addresses:
        found.append(f"the addresses are {addresses}")
    counts[0] += len(rows)
    counts[1] += len(addresses)
    return found


lq, *inputs = sys.argv[1:]
counts, faults = [0, 0], []
files = [f for i in map(pathlib.Path, inputs) for f in (sorted(i.rglob("*.xml")) if i.is_dir() else [i])]
for file in files:
    faults += [f"{file}: {fault}" for fault in check(lq, file)]
print("\n".join(faults) or f"{len(files)} projects, {counts[0]} variables, {counts[1]} addresses")
sys.exit(1 if faults or counts[1] == 0 else 0)
