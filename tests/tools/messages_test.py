"""Checks that every message of host/ and tools/ has its Japanese one: messages_test.py ROOT."""

import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
tables = [*(root / "host/text").glob("messages_932*.cpp")]

LITERAL = r'"(?:[^"\\]|\\.)*"'
LITERALS = rf"{LITERAL}(?:\s+{LITERAL})*"
# What takes a message; here none may stand that is not translated.
SPEAKERS = r"\b(?:CommandError|InputError|PrintMessage|Warn|Fail|Fault|Refuse|(?:Progress \w+|OfResults))[({]"


def value(literals):
    """The text of literals that stand one behind the other."""
    parts = re.findall(LITERAL, literals)
    return "".join(re.sub(r"\\(.)", r"\1", part[1:-1]) for part in parts)


def arguments(code, start):
    """Those of the call whose bracket opens before `start`."""
    found, depth, at = [""], 0, start
    while depth >= 0:
        piece = re.compile(rf"{LITERAL}|.", re.S).match(code, at).group()
        at += len(piece)
        depth += (piece in "([{") - (piece in ")]}")
        if piece == "," and depth == 0:
            found.append("")
        elif depth >= 0:
            found[-1] += piece
    return [text.strip() for text in found if text.strip()]


faults, formats = [], set()
for path in [*(root / "host").rglob("*.[hc]*"), *(root / "tools").rglob("*.[hc]*")]:
    if path in tables:
        continue
    code = re.sub(r"//.*", "", path.read_text())
    translated = list(re.finditer(rf"\b(Say|Message|Translated)\(\s*({LITERALS})", code))
    for call in translated:
        text = value(call[2])
        formats.add(text)
        words = len(arguments(code, call.start(2))) - 1
        if call[1] == "Say" and words != text.count("{}"):
            faults.append(f"{path.relative_to(root)}: {words} words for {text!r}")
    for call in re.finditer(SPEAKERS, code):
        said = " ".join(arguments(code, call.end()))
        said = re.sub(rf"\b(Say|Message|Translated)\(\s*{LITERALS}", "", said)
        for text in re.findall(LITERAL, said):
            if re.search(r"[a-z] ?[a-z]* ", text):
                faults.append(f"{path.relative_to(root)}: {text} is not translated")

rows = re.findall(rf"\{{\s*({LITERALS}),\s*({LITERALS})\}}", "".join(table.read_text(encoding="utf-8") for table in tables))
rows = [(value(english), value(japanese)) for english, japanese in rows]
known = {english for english, _ in rows}
faults += [f"no translation of {text!r}" for text in sorted(formats - known)]
faults += [f"nothing says {text!r}" for text in sorted(known - formats)]
if len(known) != len(rows):
    faults.append("a message is translated twice")
for english, japanese in rows:
    places = re.findall(r"\{(\d?)\}", japanese)
    count = english.count("{}")
    if sorted(places) not in ([""] * count, [str(n + 1) for n in range(count)]):
        faults.append(f"{japanese!r} has not the words of {english!r}")
    if not re.search("[\u3041-\u30ff\u4e00-\u9fff]", japanese):
        faults.append(f"{japanese!r} is not Japanese")
    try:
        japanese.encode("cp932")
    except UnicodeEncodeError as fault:
        faults.append(f"{japanese!r}: {fault}")
print("\n".join(faults) or f"{len(rows)} messages")
sys.exit(1 if faults or len(rows) < 100 else 0)
