"""Runs the examples of each check of `lq check`, holds docs/checks.md against the table, and looks for
planted faults: check_test.py LQ DOCS ROWS. LQ_UPDATE_GOLDEN=1 writes the page anew."""

import json
import os
import pathlib
import subprocess
import sys

lq, docs, rows = sys.argv[1:]

HEAD = ("<project xmlns='http://www.plcopen.org/xml/tc6_0201'><fileHeader companyName='c' productName='p' "
        "productVersion='1' creationDateTime='2024-01-01T00:00:00'/><contentHeader name='n'/><types><dataTypes/><pous>")
TAIL = "</pous></types></project>"
BODY = "<body><ST><p xmlns='http://www.w3.org/1999/xhtml'>;</p></ST></body>"
# Checks that need more than their example.
OPTIONS = {"4008": ["--addresses", "byte"]}


def whole(text):
    """A fragment as a project, on the same lines."""
    if text.startswith("<"):
        if text.startswith("<variable"):
            text = f"<localVars>{text}</localVars>"
        if not text.startswith("<pou"):
            text = f"<pou name='Main' pouType='program'><interface>{text}</interface>{BODY}</pou>"
        return HEAD + text + TAIL
    if text.startswith("VAR"):
        return "PROGRAM Main " + text + " ; END_PROGRAM"
    if text.startswith("TASK") or text.startswith("PROGRAM p"):
        return ("PROGRAM Main ; END_PROGRAM CONFIGURATION c RESOURCE r " + text +
                " END_RESOURCE END_CONFIGURATION")
    return text


def check(code, text, *options):
    # Fragments have no body, and those of declarations use nothing.
    options += () if code == "6003" else ("--ignore", "6003")
    options += () if code[0] == "8" else ("--ignore", "8xxx")
    run = subprocess.run([lq, "check", "-", "--json", *options], input=whole(text).encode(), capture_output=True)
    if run.returncode not in (0, 1):
        return [("exit", run.returncode, run.stderr.decode())]
    return [(f["code"], f["line"], f["message"]) for f in json.loads(run.stdout)["findings"]]


def page(table):
    lines = ["# Checks", "", "What `lq check` looks for. `lq check --explain CODE` shows a check, `lq check --list` all of them;",
             "[lq.md](lq.md) has the command's options. A fragment stands for a program that has these variables, or for",
             "a resource that has these tasks.", ""]
    for c in table:
        lines += [f"## {c['code']} {c['name']}", "", f"{c['rule']}. {c['reason']}.", "",
                  f"Severity: {c['severity']}" + (", until it is asked for" if c["severity"] == "off" else "") + "."]
        if c["wrong"]:
            for title in ("wrong", "right"):
                lines += ["", f"{title.capitalize()}:", "", *("    " + line for line in c[title].split("\n"))]
        lines.append("")
    return "\n".join(lines)


faults = []
table = json.loads(subprocess.run([lq, "check", "--list", "--json"], capture_output=True, check=True).stdout)["checks"]
for c in table:
    if not c["wrong"]:
        continue
    options = OPTIONS.get(c["code"], [])
    if c["severity"] == "off":
        options = [*options, "--severity", c["code"] + "=note"]
    wrong = check(c["code"], c["wrong"], *options)
    if {f[0] for f in wrong} != {c["code"]}:
        faults.append(f"{c['code']}: the wrong example has {wrong}")
    right = check(c["code"], c["right"], *options)
    if right:
        faults.append(f"{c['code']}: the right example has {right}")

path = pathlib.Path(docs, "checks.md")
if os.environ.get("LQ_UPDATE_GOLDEN"):
    path.write_text(page(table))
if path.read_text() != page(table):
    faults.append(f"{path} is not what the table says")

planted = 0
for row in pathlib.Path(rows).read_text().splitlines():
    if not row.strip() or row.startswith("// "):
        continue
    code, line, text = (cell.strip() for cell in row.split(" | ", 2))
    options = OPTIONS.get(code, [])
    found = check(code, text.replace("\\n", "\n"), *options)
    planted += 1
    if [(f[0], f[1]) for f in found] != ([(code, int(line))] if code[-1] != "-" else []):
        faults.append(f"{row}: {found}")
print("\n".join(faults) or f"{len(table)} checks, {planted} planted faults")
sys.exit(1 if faults else 0)
