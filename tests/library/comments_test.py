"""Every operation that the library exports has a comment of its own: comments_test.py ROOT.

Operations are the functions marked LQ_DATA_API and the public members of classes marked so. A comment
stands in the line before, or behind the declaration. Constructors, destructors and assignments, what is
deleted, what overrides, and the macros that declare need none.
"""

import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1])
CLASS = re.compile(r"^(?:template.*)?(?:class|struct) (LQ_DATA_API )?(\w+)[^;]*\{")
MACRO = re.compile(r"LQ_[A-Z_]+(\(\w+\))?")
NEEDS_NONE = re.compile(r"~|\boperator ?=\(|= delete|= default|\boverride\b|^\s*(?:friend|using|typedef|static_assert)\b")


def declarations(lines):
    """Line numbers and texts of statements and of what opens a block, with the line in front."""
    start, text = None, ""
    for number, line in enumerate(lines):
        code = re.sub(r"//.*", "", line).rstrip()
        if not code.strip() or code.startswith("#") or MACRO.fullmatch(code.strip()):
            continue
        if start is None:
            start = number
        text += " " + code.strip()
        if re.search(r"[;{}:]$", code):
            yield start, number, text.strip()
            start, text = None, ""


def operations(path):
    """Lines and texts of the operations, and whether each has a comment."""
    lines = path.read_text().split("\n")
    scopes = []  # of each open brace: the class's name where it is exported, and whether members are public
    for start, end, text in declarations(lines):
        here = scopes[-1] if scopes else None
        if text in ("public:", "protected:", "private:"):
            here[1] = text == "public:"
            continue
        found = CLASS.match(text)
        is_member = bool(here and here[0] and here[1])
        is_operation = "(" in text and (text.startswith("LQ_DATA_API") or (is_member and not found))
        name = here[0] if here else None
        if (is_operation and not NEEDS_NONE.search(text) and "LQ_DATA_LOCAL" not in text
                and not re.match(rf"(?:explicit |constexpr )*{name}\(", text) and "alignas" not in text):
            has_comment = "//" in lines[end] or lines[start - 1].strip().startswith("//")
            yield start + 1, text, has_comment
        for brace in re.findall(r"[{}]", text):
            if brace == "{":
                scopes.append([found.group(2) if found and found.group(1) else None,
                               bool(found) and "struct " in text.split("{")[0]])
            elif scopes:
                scopes.pop()


faults, count = [], 0
for path in sorted((root / "include").rglob("*.h")):
    if path.parent.name == "detail":  # not part of the interface
        continue
    for line, text, has_comment in operations(path):
        count += 1
        if not has_comment:
            faults.append(f"{path.relative_to(root)}:{line}: {text}")
print("\n".join(faults) or f"{count} operations")
sys.exit(1 if faults or count < 400 else 0)
