"""Holds docs/checks.md against the table of checks: check_test.py LQ DOCS. LQ_UPDATE_GOLDEN=1 writes the page
anew. What the checks find is tested in tests/host/check/."""

import json
import os
import pathlib
import subprocess
import sys

lq, docs = sys.argv[1:]


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


table = json.loads(subprocess.run([lq, "check", "--list", "--json"], capture_output=True, check=True).stdout)["checks"]
path = pathlib.Path(docs, "checks.md")
if os.environ.get("LQ_UPDATE_GOLDEN"):
    path.write_text(page(table))
if path.read_text() != page(table):
    sys.exit(f"{path} is not what the table says")
print(f"{len(table)} checks")
